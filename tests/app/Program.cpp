// Starting a program and waiting for it is POSIX here.
#include "app/Program.h"

#include <fcntl.h>
#include <pty.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace {

class Redirections {
 public:
  // Nobody is there to type.
  Redirections() {
    posix_spawn_file_actions_init(&actions_);
    posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  }
  Redirections(const Redirections&) = delete;
  Redirections& operator=(const Redirections&) = delete;
  ~Redirections() { posix_spawn_file_actions_destroy(&actions_); }

  void ToFile(int descriptor, const std::filesystem::path& file) {
    posix_spawn_file_actions_addopen(&actions_, descriptor, file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  }
  void ToDescriptor(int descriptor, int target) { posix_spawn_file_actions_adddup2(&actions_, target, descriptor); }
  void InDirectory(const std::filesystem::path& directory) {
    posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str());
  }

  const posix_spawn_file_actions_t* Get() const { return &actions_; }

 private:
  posix_spawn_file_actions_t actions_;
};

int WaitForEnd(pid_t child) {
  int status = 0;
  if (waitpid(child, &status, 0) < 0) throw std::system_error(errno, std::generic_category(), "waitpid");
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::vector<std::string> Joined(std::vector<std::string> words, const std::vector<std::string>& more) {
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

int Spawn(const Redirections& redirections, std::vector<std::string> words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  pid_t child = 0;
  const int error = posix_spawn(&child, pointers[0], redirections.Get(), nullptr, pointers.data(), environ);
  if (error != 0) throw std::system_error(error, std::generic_category(), pointers[0]);
  return WaitForEnd(child);
}

std::vector<std::string> OnAFullDisk(int blocks, const std::vector<std::string>& words) {
  const std::string limited = "trap '' XFSZ; ulimit -f " + std::to_string(blocks) + R"(; exec "$0" "$@")";
  return Joined({"/bin/sh", "-c", limited}, words);
}

// Another program that was built with the one under test.
std::vector<std::string> Variant(const char* builtHere, const std::string& name) {
  if (!IsWindowsProgram()) return {builtHere};
  return {"/usr/bin/env", "MULTIENTITY_WINDOWS_PROGRAM=" + name, ProgramUnderTest()};
}

std::vector<std::string> NextProgram() {
  return Variant(MULTIENTITY_NEXT_PROGRAM, "multientity_next");
}

Outcome RunWords(const std::filesystem::path& output, const std::filesystem::path& directory,
                 const std::vector<std::string>& words) {
  const std::filesystem::path errors = directory / "standard-error";
  Redirections redirections;
  redirections.ToFile(STDOUT_FILENO, output);
  redirections.ToFile(STDERR_FILENO, errors);
  redirections.InDirectory(directory);
  const int exitCode = Spawn(redirections, words);
  return {exitCode, {}, ContentsOf(errors)};
}

Outcome RunAndRead(const std::filesystem::path& directory, const std::vector<std::string>& words) {
  const std::filesystem::path out = directory / "standard-output";
  Outcome outcome = RunWords(out, directory, words);
  outcome.out = ContentsOf(out);
  return outcome;
}

Outcome RunOnAReadOnlyDisk(const std::filesystem::path& directory, const std::vector<std::string>& words) {
  const std::string script =
      "mkdir -p disk temporary && mount -t tmpfs none disk && find . -maxdepth 1 -type f -exec cp {} disk \\; && "
      "mount -o remount,ro disk && export TMPDIR=\"$PWD/temporary\" && cd disk && exec \"$@\"";
  const std::vector<std::string> shell{"/usr/bin/unshare", "--mount", "/bin/sh", "-c", script, "sh"};
  return RunAndRead(directory, Joined(shell, words));
}

}  // namespace

std::string ProgramUnderTest() {
  const char* named = std::getenv("MULTIENTITY_PROGRAM");
  return named != nullptr ? named : MULTIENTITY_PROGRAM;
}

bool IsWindowsProgram() {
  return std::filesystem::path(ProgramUnderTest()).filename() == "windows-multientity.sh";
}

Outcome RunProgram(const std::filesystem::path& directory, const std::vector<std::string>& arguments) {
  return RunAndRead(directory, Joined({ProgramUnderTest()}, arguments));
}

Outcome RunOtherProgram(const std::filesystem::path& directory, const std::vector<std::string>& words) {
  return RunAndRead(directory, Joined({"/usr/bin/env", "LC_ALL=C.UTF-8"}, words));
}

Outcome RunNextProgram(const std::filesystem::path& directory, const std::vector<std::string>& arguments) {
  return RunAndRead(directory, Joined(NextProgram(), arguments));
}

Outcome RunNextProgramOfThisSystem(const std::filesystem::path& directory, const std::vector<std::string>& arguments) {
  return RunAndRead(directory, Joined({MULTIENTITY_NEXT_PROGRAM}, arguments));
}

Outcome RunNextProgramOnASmallDisk(std::uintmax_t kibibytes, const std::filesystem::path& directory,
                                   const std::string& file, const std::vector<std::string>& arguments) {
  const std::string script =
      "size=$1; file=$2; shift 2; rm -rf after && mkdir -p disk && mount -t tmpfs -o size=${size}k none disk && "
      "cp \"$file\" disk && cd disk && { \"$@\"; code=$?; cp -r . ../after && exit $code; }; exit 125";
  const std::vector<std::string> shell{"/usr/bin/unshare",        "--mount", "/bin/sh", "-c", script, "sh",
                                       std::to_string(kibibytes), file};
  return RunWords(directory / "standard-output", directory, Joined(Joined(shell, NextProgram()), arguments));
}

Outcome RunNextProgramOnAReadOnlyDiskWithLittleRoom(std::uintmax_t kibibytes, const std::filesystem::path& directory,
                                                    const std::vector<std::string>& arguments) {
  const std::string script =
      "size=$1; shift; rm -rf disk temporary && mkdir disk temporary && "
      "mount -t tmpfs none disk && find . -maxdepth 1 -type f -exec cp {} disk \\; && "
      "mount -o remount,ro disk && mount -t tmpfs -o size=${size}k none temporary && "
      "export TMPDIR=\"$PWD/temporary\" && cd disk && exec \"$@\"";
  const std::vector<std::string> shell{"/usr/bin/unshare",       "--mount", "/bin/sh", "-c", script, "sh",
                                       std::to_string(kibibytes)};
  return RunAndRead(directory, Joined(Joined(shell, NextProgram()), arguments));
}

Outcome RunProgramOnAReadOnlyDisk(const std::filesystem::path& directory, const std::vector<std::string>& arguments) {
  return RunOnAReadOnlyDisk(directory, Joined({ProgramUnderTest()}, arguments));
}

Outcome RunNextProgramOnAReadOnlyDisk(const std::filesystem::path& directory,
                                      const std::vector<std::string>& arguments) {
  return RunOnAReadOnlyDisk(directory, Joined(NextProgram(), arguments));
}

Outcome RunProgramOnABadDisk(const std::filesystem::path& directory, const std::vector<std::string>& arguments) {
  return RunAndRead(directory,
                    Joined(Variant(MULTIENTITY_PROGRAM_ON_A_BAD_DISK, "multientity_on_a_bad_disk"), arguments));
}

Outcome RunProgramOnANetworkShare(const std::filesystem::path& directory, const std::vector<std::string>& arguments) {
  return RunAndRead(directory, Joined(Variant(MULTIENTITY_PROGRAM_ON_A_SHARE, "multientity_on_a_share"), arguments));
}

Outcome RunProgramInto(const std::filesystem::path& output, const std::filesystem::path& directory,
                       const std::vector<std::string>& arguments) {
  return RunWords(output, directory, Joined({ProgramUnderTest()}, arguments));
}

Outcome RunProgramIntoAClosedPipe(const std::filesystem::path& directory, const std::vector<std::string>& arguments) {
  const std::filesystem::path errors = directory / "standard-error";
  int ends[2];
  if (pipe(ends) != 0) throw std::system_error(errno, std::generic_category(), "pipe");
  close(ends[0]);
  Redirections redirections;
  redirections.ToDescriptor(STDOUT_FILENO, ends[1]);
  redirections.ToFile(STDERR_FILENO, errors);
  redirections.InDirectory(directory);
  const int exitCode = Spawn(redirections, Joined({ProgramUnderTest()}, arguments));
  close(ends[1]);
  return {exitCode, {}, ContentsOf(errors)};
}

Outcome RunProgramAtATerminal(unsigned short cells, const std::filesystem::path& directory,
                              const std::vector<std::string>& arguments) {
  const std::filesystem::path errors = directory / "standard-error";
  const winsize size{.ws_row = 24, .ws_col = cells, .ws_xpixel = 0, .ws_ypixel = 0};
  int ours = -1;
  int its = -1;
  if (openpty(&ours, &its, nullptr, nullptr, &size) != 0) {
    throw std::system_error(errno, std::generic_category(), "openpty");
  }
  Redirections redirections;
  redirections.ToDescriptor(STDOUT_FILENO, its);
  redirections.ToFile(STDERR_FILENO, errors);
  redirections.InDirectory(directory);
  const int exitCode = Spawn(redirections, Joined({ProgramUnderTest()}, arguments));
  close(its);
  // What a short output fills is read once nobody has the other end open any more.
  std::string out;
  std::array<char, 4096> part{};
  for (ssize_t count = read(ours, part.data(), part.size()); count > 0; count = read(ours, part.data(), part.size())) {
    out.append(part.data(), static_cast<std::size_t>(count));
  }
  close(ours);
  std::erase(out, '\r');
  return {exitCode, out, ContentsOf(errors)};
}

Outcome RunProgramOnAFullDisk(int blocks, const std::filesystem::path& directory,
                              const std::vector<std::string>& arguments) {
  return RunWords(directory / "standard-output", directory,
                  OnAFullDisk(blocks, Joined({ProgramUnderTest()}, arguments)));
}

Outcome RunNextProgramOnAFullDisk(int blocks, const std::filesystem::path& directory,
                                  const std::vector<std::string>& arguments) {
  return RunWords(directory / "standard-output", directory, OnAFullDisk(blocks, Joined(NextProgram(), arguments)));
}

Outcome RunProgramWithoutRights(const std::filesystem::path& directory, const std::vector<std::string>& arguments) {
  if (geteuid() != 0) return RunProgram(directory, arguments);
  // Others may not reach the place where it was built.
  const std::filesystem::path reachable = directory / "program";
  const std::filesystem::path built = std::filesystem::path(MULTIENTITY_PROGRAM).parent_path();
  std::filesystem::create_directory(reachable);
  for (const char* name : {"multientity", "libMultiEntity.Native.so", "AddinBridge.DLL"}) {
    std::filesystem::copy_file(built / name, reachable / name, std::filesystem::copy_options::skip_existing);
  }
  return RunAndRead(directory,
                    Joined({"/usr/bin/setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "/usr/bin/env",
                            "LD_LIBRARY_PATH=" + reachable.string(), (reachable / "multientity").string()},
                           arguments));
}

bool MayRunWithoutRights() {
  return geteuid() != 0 || !IsWindowsProgram();
}

Outcome RunProgramOnASmallDisk(const std::filesystem::path& directory, const std::string& file,
                               const std::vector<std::string>& arguments) {
  // The disk is seen by this shell and its children only, and is gone when they end.
  const std::string script =
      "file=$1; shift; mkdir disk && "
      "mount -t tmpfs -o size=$(($(stat -c %s \"$file\") / 1024 + 64))k none disk && "
      "cp \"$file\" disk && cd disk && "
      "{ \"$@\"; code=$?; cp \"$file\" .. && exit $code; }; exit 125";
  return RunWords(
      directory / "standard-output", directory,
      Joined({"/usr/bin/unshare", "--mount", "/bin/sh", "-c", script, "sh", file, ProgramUnderTest()}, arguments));
}

bool MayMountASmallDisk() {
  const Redirections nowhere;
  return geteuid() == 0 && !IsWindowsProgram() &&
         Spawn(nowhere, {"/usr/bin/unshare", "--mount", "/bin/sh", "-c", "mount -t tmpfs none /mnt 2>/dev/null"}) == 0;
}

std::string ContentsOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + file.string());
  return {std::istreambuf_iterator<char>(stream), {}};
}

void Write(const std::filesystem::path& file, std::string_view text) {
  std::ofstream stream(file, std::ios::binary);
  stream << text;
  if (!stream.flush()) throw std::runtime_error("cannot write " + file.string());
}
