#include "partners/Dying.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <exception>
#include <stdexcept>
#include <system_error>

#include "partners/MortalDisk.h"
#include "platform/DescriptorPosix.h"

namespace partners {

namespace {

[[noreturn]] void Live(const Death& death, const std::function<int(std::string& text)>& act, int tell) {
  MortalDisk disk(death, tell);
  LiveWith(disk);
  std::string text;
  const int code = act(text);
  static_cast<void>(!write(tell, text.data(), text.size()));
  _exit(code);
}

std::string AllOf(int pipe) {
  std::string text;
  std::array<char, 4096> bytes{};
  for (ssize_t count = read(pipe, bytes.data(), bytes.size()); count > 0;
       count = read(pipe, bytes.data(), bytes.size())) {
    text.append(bytes.data(), static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace

Ended DieDuring(const Death& death, const std::function<int(std::string& text)>& act) {
  platform::Pipe pipe;
  const pid_t process = fork();
  if (process < 0) throw std::system_error(errno, std::generic_category(), "fork");
  if (process == 0) Live(death, act, pipe.writeEnd.Number());
  pipe.writeEnd.Close();
  Ended ended{.hasDied = false, .code = 0, .text = AllOf(pipe.readEnd.Number())};
  int status = 0;
  waitpid(process, &status, 0);
  if (!WIFEXITED(status)) throw std::runtime_error("a process was ended by signal " + std::to_string(WTERMSIG(status)));
  ended.hasDied = WEXITSTATUS(status) == kDied;
  if (!ended.hasDied) ended.code = WEXITSTATUS(status);
  return ended;
}

}  // namespace partners
