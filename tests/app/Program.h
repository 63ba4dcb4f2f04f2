#pragma once

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

// Runs it with its standard output going to `output` instead, such as a device; Outcome::out stays empty.
Outcome RunProgramInto(const std::filesystem::path& output, const std::filesystem::path& directory,
                       const std::vector<std::string>& arguments);

// Runs it with its standard output going to a pipe that nobody reads any more.
Outcome RunProgramIntoAClosedPipe(const std::filesystem::path& directory, const std::vector<std::string>& arguments);

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

std::string ContentsOf(const std::filesystem::path& file);
void Write(const std::filesystem::path& file, std::string_view text);
