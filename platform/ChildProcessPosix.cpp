// A program is forked instead of spawned as only its own process can ask to be ended with its parent.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <mutex>
#include <system_error>
#include <utility>

#include "platform/ChildProcess.h"
#include "platform/DescriptorPosix.h"

namespace platform {

namespace {

constexpr int kSignalled = 128;
constexpr int kNotStarted = 127;
constexpr int kNoDescriptor = -1;

[[noreturn]] void ThrowProcessError(int error, const std::string& what) {
  throw std::system_error(error, std::generic_category(), what);
}

ssize_t ReadSome(int descriptor, char* into, std::size_t most) noexcept {
  while (true) {
    const ssize_t count = read(descriptor, into, most);
    if (count >= 0 || errno != EINTR) return count;
  }
}

}  // namespace

class ChildProcess::Child {
 public:
  Child(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
    std::vector<std::string> words = {program.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const Descriptor nothing(open("/dev/null", O_RDONLY | O_CLOEXEC));
    Pipe failure;
    const pid_t parent = getpid();
    process_ = fork();
    if (process_ < 0) ThrowProcessError(errno, program.string());
    if (process_ == 0) Become(pointers.data(), parent, nothing.Number(), failure.writeEnd.Number());
    output_.writeEnd.Close();
    errors_.writeEnd.Close();
    failure.writeEnd.Close();
    int error = 0;
    if (ReadSome(failure.readEnd.Number(), reinterpret_cast<char*>(&error), sizeof error) != sizeof error) return;
    Reap();
    ThrowProcessError(error, program.string());
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  ~Child() {
    End();
    Reap();
  }

  EndedProcess Wait() {
    EndedProcess ended;
    ReadUntilBothEnd(ended);
    const int status = Reap();
    ended.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : kSignalled + WTERMSIG(status);
    return ended;
  }

  void End() noexcept {
    const std::lock_guard lock(mutex_);
    if (process_ > 0) kill(process_, SIGKILL);
  }

 private:
  // In the new process, which may only do what a signal handler may.
  [[noreturn]] void Become(char* const* words, pid_t parent, int input, int failure) const noexcept {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    setpgid(0, 0);
    if (getppid() == parent && dup2(input, STDIN_FILENO) >= 0 && dup2(output_.writeEnd.Number(), STDOUT_FILENO) >= 0 &&
        dup2(errors_.writeEnd.Number(), STDERR_FILENO) >= 0) {
      execv(words[0], words);
    }
    const int error = errno;
    static_cast<void>(!write(failure, &error, sizeof error));
    _exit(kNotStarted);
  }

  void ReadUntilBothEnd(EndedProcess& ended) const {
    std::array<pollfd, 2> watched{pollfd{output_.readEnd.Number(), POLLIN, 0},
                                  pollfd{errors_.readEnd.Number(), POLLIN, 0}};
    const std::array<std::string*, 2> texts{&ended.output, &ended.errors};
    std::array<char, 4096> bytes{};
    while (watched[0].fd >= 0 || watched[1].fd >= 0) {
      if (poll(watched.data(), watched.size(), -1) < 0) continue;
      for (std::size_t i = 0; i < watched.size(); ++i) {
        if (watched[i].fd < 0 || watched[i].revents == 0) continue;
        const ssize_t count = ReadSome(watched[i].fd, bytes.data(), bytes.size());
        if (count <= 0) {
          watched[i].fd = kNoDescriptor;
        } else {
          texts[i]->append(bytes.data(), static_cast<std::size_t>(count));
        }
      }
    }
  }

  // Waits without taking its number back, so that End() ends nobody else who has got it.
  int Reap() noexcept {
    if (process_ <= 0) return 0;
    siginfo_t ignored{};
    while (waitid(P_PID, static_cast<id_t>(process_), &ignored, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
    }
    const std::lock_guard lock(mutex_);
    int status = 0;
    waitpid(std::exchange(process_, 0), &status, 0);
    return status;
  }

  Pipe output_;
  Pipe errors_;
  std::mutex mutex_;
  pid_t process_ = 0;
};

ChildProcess::ChildProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments)
    : child_(std::make_unique<Child>(program, arguments)) {}

ChildProcess::~ChildProcess() = default;

EndedProcess ChildProcess::Wait() {
  return child_->Wait();
}

void ChildProcess::End() noexcept {
  child_->End();
}

}  // namespace platform
