// Starting, watching and killing a program is POSIX here; which files it has open and changes is told by Linux.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/inotify.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "crash/ProgramRun.h"
#include "platform/DescriptorPosix.h"

namespace {

using Clock = std::chrono::steady_clock;
using platform::Descriptor;
using platform::Pipe;

[[noreturn]] void ThrowSystemError(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

// Which a program hands on to those that it starts, so that it is open as long as one of them lives.
constexpr int kHandedOn = STDERR_FILENO + 1;

struct Sources {
  Pipe out;
  Pipe err;
  Pipe living;
  Descriptor changes;
};

pid_t Start(std::vector<std::string> words, const RunOptions& options, const Sources& to) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, to.out.writeEnd.Number(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, to.err.writeEnd.Number(), STDERR_FILENO);
  posix_spawn_file_actions_adddup2(&actions, to.living.writeEnd.Number(), kHandedOn);
  posix_spawn_file_actions_addchdir_np(&actions, options.directory.c_str());
  pid_t child = 0;
  const int error = posix_spawn(&child, pointers[0], &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::system_error(error, std::generic_category(), pointers[0]);
  return child;
}

bool HasOpen(pid_t child, const std::filesystem::path& file) {
  std::error_code error;
  const std::filesystem::path descriptors = "/proc/" + std::to_string(child) + "/fd";
  for (std::filesystem::directory_iterator entry(descriptors, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code gone;
    if (std::filesystem::read_symlink(entry->path(), gone) == file) return true;
  }
  return false;
}

void ReadInto(std::string& text, Descriptor& from) {
  std::array<char, 65536> bytes{};
  const ssize_t count = read(from.Number(), bytes.data(), bytes.size());
  if (count < 0) ThrowSystemError("read");
  if (count == 0) {
    from.Close();
  } else {
    text.append(bytes.data(), static_cast<std::size_t>(count));
  }
}

// What is changed in the folders from now on; none without any.
Descriptor Changes(const std::vector<std::filesystem::path>& folders) {
  if (folders.empty()) return Descriptor(-1);
  const int changes = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  if (changes < 0) ThrowSystemError("inotify_init1");
  for (const std::filesystem::path& folder : folders) {
    if (inotify_add_watch(changes, folder.c_str(), IN_CREATE | IN_MODIFY | IN_MOVE | IN_DELETE) < 0) {
      ThrowSystemError("inotify_add_watch");
    }
  }
  return Descriptor(changes);
}

// All that have come count as one, as they may have come together.
void CountChange(ProgramRun& run, const Descriptor& changes) {
  std::array<char, 65536> bytes{};
  if (read(changes.Number(), bytes.data(), bytes.size()) < 0) ThrowSystemError("read");
  ++run.changes;
}

void WaitForAll(const Pipe& living) {
  char none = 0;
  while (read(living.readEnd.Number(), &none, sizeof none) < 0 && errno == EINTR) {
  }
}

// False when nothing came until then.
bool ReadSome(ProgramRun& run, Sources& from, std::optional<Clock::time_point> until) {
  std::array<pollfd, 3> watched{pollfd{from.out.readEnd.Number(), POLLIN, 0},
                                pollfd{from.err.readEnd.Number(), POLLIN, 0}, pollfd{from.changes.Number(), POLLIN, 0}};
  timespec left{};
  if (until) {
    const auto remaining = std::max(*until - Clock::now(), Clock::duration::zero());
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(remaining);
    left.tv_sec = seconds.count();
    left.tv_nsec = std::chrono::nanoseconds(remaining - seconds).count();
  }
  const int ready = ppoll(watched.data(), watched.size(), until ? &left : nullptr, nullptr);
  if (ready < 0) ThrowSystemError("ppoll");
  if (watched[0].revents != 0) ReadInto(run.out, from.out.readEnd);
  if (watched[1].revents != 0) ReadInto(run.err, from.err.readEnd);
  if (watched[2].revents != 0) CountChange(run, from.changes);
  return ready != 0;
}

}  // namespace

ProgramRun Run(const std::vector<std::string>& words, const RunOptions& options) {
  ProgramRun run;
  Sources from{.out = {}, .err = {}, .living = {}, .changes = Changes(options.watchedFolders)};
  const Clock::time_point start = Clock::now();
  const pid_t child = Start(words, options, from);
  from.out.writeEnd.Close();
  from.err.writeEnd.Close();
  from.living.writeEnd.Close();

  const bool killsWhenItPrints = options.killAfter == kWhenItPrints;
  std::optional<Clock::time_point> killAt;
  if (options.killAfter && !killsWhenItPrints) killAt = start + *options.killAfter;
  bool wasKilled = false;
  while (from.out.readEnd.IsOpen() || from.err.readEnd.IsOpen()) {
    const bool isTime = !ReadSome(run, from, killAt);
    const bool hasPrinted = killsWhenItPrints && !run.out.empty();
    const bool hasChanged = options.killAtChange && run.changes >= *options.killAtChange;
    if (wasKilled || !(isTime || hasPrinted || hasChanged)) continue;
    run.hadFileOpen = HasOpen(child, options.watchedFile);
    kill(child, SIGKILL);
    wasKilled = true;
    killAt.reset();
  }
  int status = 0;
  if (waitpid(child, &status, 0) < 0) ThrowSystemError("waitpid");
  WaitForAll(from.living);
  run.took = Clock::now() - start;
  if (WIFEXITED(status)) {
    run.code = WEXITSTATUS(status);
  } else {
    run.code = WTERMSIG(status);
    run.ending = run.code == SIGKILL && wasKilled ? Ending::kKilled : Ending::kCrashed;
  }
  return run;
}
