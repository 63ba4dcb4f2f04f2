// Starting a program is the system's own business: posix_spawn, or _spawnv on Windows.
#include "faults/FreshProcess.h"

#include <system_error>

#if defined(_WIN32)
#include <process.h>
#else
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#endif

int RunToTheEnd(const std::string& program, const std::vector<std::string>& arguments) {
  std::vector<std::string> words{program};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);

#if defined(_WIN32)
  const auto code = _spawnv(_P_WAIT, program.c_str(), pointers.data());
  if (code < 0) throw std::system_error(errno, std::generic_category(), program);
  return static_cast<int>(code);
#else
  pid_t child = 0;
  const int error = posix_spawn(&child, program.c_str(), nullptr, nullptr, pointers.data(), environ);
  if (error != 0) throw std::system_error(error, std::generic_category(), program);
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) throw std::system_error(errno, std::generic_category(), "waitpid");
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
#endif
}
