#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// How a run of the program ended and what it printed.
struct Outcome {
  int exitCode = -1;
  std::string out;
  std::string err;
};

// The program under test: the one that was built with the tests, or the one that the environment names, such as the
// Windows program run by an emulator.
std::string ProgramUnderTest();
// Whether that is the Windows program, run by scripts/windows-multientity.sh.
bool IsWindowsProgram();

// Runs multientity with these arguments and without input, and waits for its end. `directory` is its working directory
// and holds what it prints meanwhile.
Outcome RunProgram(const std::filesystem::path& directory, const std::vector<std::string>& arguments);

// Runs it as its next version may be, to which company files of this one are old.
Outcome RunNextProgram(const std::filesystem::path& directory, const std::vector<std::string>& arguments);

// Runs the one that was built for this system, also when that for Windows is tested.
Outcome RunNextProgramOfThisSystem(const std::filesystem::path& directory, const std::vector<std::string>& arguments);

// Runs that where no file may grow beyond this many blocks of 512 bytes, as on a disk that is full.
Outcome RunNextProgramOnAFullDisk(int blocks, const std::filesystem::path& directory,
                                  const std::vector<std::string>& arguments);

// Runs that on a disk of its own of so many KiB that holds `file` of the directory; what became of the disk is in
// "after". Only where MayMountASmallDisk().
Outcome RunNextProgramOnASmallDisk(std::uintmax_t kibibytes, const std::filesystem::path& directory,
                                   const std::string& file, const std::vector<std::string>& arguments);

// Runs it on a disk that fails whenever something is saved.
Outcome RunProgramOnABadDisk(const std::filesystem::path& directory, const std::vector<std::string>& arguments);

// Runs it as if it were on a network share, wherever its files lie.
Outcome RunProgramOnANetworkShare(const std::filesystem::path& directory, const std::vector<std::string>& arguments);

// Runs it on a read-only disk of its own that holds the files of the directory, where its temporary files go to
// "temporary". Only where MayMountASmallDisk().
Outcome RunProgramOnAReadOnlyDisk(const std::filesystem::path& directory, const std::vector<std::string>& arguments);
Outcome RunNextProgramOnAReadOnlyDisk(const std::filesystem::path& directory,
                                      const std::vector<std::string>& arguments);

// The same with room for so many KiB where its temporary files go.
Outcome RunNextProgramOnAReadOnlyDiskWithLittleRoom(std::uintmax_t kibibytes, const std::filesystem::path& directory,
                                                    const std::vector<std::string>& arguments);

// Runs it with its standard output going to `output` instead, such as a device; Outcome::out stays empty.
Outcome RunProgramInto(const std::filesystem::path& output, const std::filesystem::path& directory,
                       const std::vector<std::string>& arguments);

// Runs it with its standard output going to a pipe that nobody reads any more.
Outcome RunProgramIntoAClosedPipe(const std::filesystem::path& directory, const std::vector<std::string>& arguments);

// Runs it with its standard output going to a terminal of so many cells.
Outcome RunProgramAtATerminal(unsigned short cells, const std::filesystem::path& directory,
                              const std::vector<std::string>& arguments);

// Runs it where no file may grow beyond this many blocks of 512 bytes, as on a disk that is full.
Outcome RunProgramOnAFullDisk(int blocks, const std::filesystem::path& directory,
                              const std::vector<std::string>& arguments);

// Runs it as a user who owns nothing on this machine and may do what everybody may; as the user who runs the tests
// unless that is root. Only where MayRunWithoutRights().
Outcome RunProgramWithoutRights(const std::filesystem::path& directory, const std::vector<std::string>& arguments);
bool MayRunWithoutRights();

// Runs it on a disk of its own that holds `file` of the directory and has room for 64 KiB more; what became of the file
// is in the directory afterwards. Only where MayMountASmallDisk().
Outcome RunProgramOnASmallDisk(const std::filesystem::path& directory, const std::string& file,
                               const std::vector<std::string>& arguments);
bool MayMountASmallDisk();

// Runs a program of others, of this system, that is found by its name and reads and writes UTF-8.
Outcome RunOtherProgram(const std::filesystem::path& directory, const std::vector<std::string>& words);

std::string ContentsOf(const std::filesystem::path& file);
void Write(const std::filesystem::path& file, std::string_view text);
