// Watches standard input and the signals that end a program on POSIX systems. A signal only writes its number into a
// pipe; one thread waits for that pipe and for standard input.
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

#include "standalone/app/terminal/LineCutter.h"
#include "standalone/app/terminal/Termination.h"

namespace app {

namespace {

constexpr std::array kEndingSignals{SIGINT, SIGTERM, SIGHUP};
constexpr int kNoPipe = -1;
constexpr unsigned char kStopWatching = 0;

std::atomic<int> pipeOfSignals = kNoPipe;
static_assert(std::atomic<int>::is_always_lock_free, "a signal may not wait");

extern "C" void PassSignalOn(int signal) {
  const int error = errno;
  const auto number = static_cast<unsigned char>(signal);
  // A full pipe holds a signal already.
  static_cast<void>(!write(pipeOfSignals, &number, sizeof number));
  errno = error;
}

class Pipe {
 public:
  Pipe() {
    if (pipe(ends_.data()) != 0) throw std::system_error(errno, std::generic_category(), "The watch for signals");
    for (const int end : ends_) {
      fcntl(end, F_SETFD, FD_CLOEXEC);
      fcntl(end, F_SETFL, O_NONBLOCK);
    }
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    close(ends_[0]);
    close(ends_[1]);
  }

  int ReadEnd() const noexcept { return ends_[0]; }
  int WriteEnd() const noexcept { return ends_[1]; }

 private:
  std::array<int, 2> ends_{};
};

// Passes the ending signals on while it lives.
class SignalHandlers {
 public:
  explicit SignalHandlers(int pipe) {
    int nobodys = kNoPipe;
    if (!pipeOfSignals.compare_exchange_strong(nobodys, pipe)) {
      throw std::logic_error("The signals are watched already.");
    }
    struct sigaction action{};
    action.sa_handler = &PassSignalOn;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < kEndingSignals.size(); ++i) {
      sigaction(kEndingSignals[i], nullptr, &before_[i]);
      // One that the program was started to ignore, as under nohup, stays ignored.
      if (before_[i].sa_handler != SIG_IGN) sigaction(kEndingSignals[i], &action, nullptr);
    }
  }
  SignalHandlers(const SignalHandlers&) = delete;
  SignalHandlers& operator=(const SignalHandlers&) = delete;
  ~SignalHandlers() {
    for (std::size_t i = 0; i < kEndingSignals.size(); ++i) sigaction(kEndingSignals[i], &before_[i], nullptr);
    pipeOfSignals = kNoPipe;
  }

 private:
  std::array<struct sigaction, kEndingSignals.size()> before_{};
};

}  // namespace

class Termination::Watch {
 public:
  explicit Watch(TerminationHandlers handlers) : handlers_(std::move(handlers)) {
    thread_ = std::thread([this] { Run(); });
  }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch() {
    static_cast<void>(!write(pipe_.WriteEnd(), &kStopWatching, sizeof kStopWatching));
    thread_.join();
  }

 private:
  void Run() {
    LineCutter lines(handlers_.onLine, handlers_.onLongLine);
    while (true) {
      // What has no number is passed over.
      const int input = handlers_.watchesInput ? STDIN_FILENO : -1;
      std::array<pollfd, 2> watched{pollfd{pipe_.ReadEnd(), POLLIN, 0}, pollfd{input, POLLIN, 0}};
      if (poll(watched.data(), watched.size(), -1) < 0) continue;
      if (watched[0].revents != 0) return EndBySignal();
      if (watched[1].revents != 0 && !ReadInput(lines)) return End(TerminationCause::kEndOfInput);
    }
  }

  // False at the end of input, which an input that cannot be read has reached, too.
  static bool ReadInput(LineCutter& lines) {
    std::array<char, 4096> bytes;
    const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) return true;
    if (count > 0) {
      lines.Add({bytes.data(), static_cast<std::size_t>(count)});
      return true;
    }
    lines.FinishLast();
    return false;
  }

  void EndBySignal() {
    unsigned char signal = kStopWatching;
    if (read(pipe_.ReadEnd(), &signal, sizeof signal) != sizeof signal || signal == kStopWatching) return;
    End(signal == SIGINT ? TerminationCause::kInterrupt : TerminationCause::kTerminate);
  }

  void End(TerminationCause cause) {
    if (handlers_.onEnd) handlers_.onEnd(cause);
  }

  TerminationHandlers handlers_;
  Pipe pipe_;
  SignalHandlers signals_{pipe_.WriteEnd()};
  std::thread thread_;
};

Termination::Termination(TerminationHandlers handlers) : watch_(std::make_unique<Watch>(std::move(handlers))) {}

Termination::~Termination() = default;

}  // namespace app
