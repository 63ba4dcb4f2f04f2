#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "fuzz/BooksFuzzing.h"
#include "standalone/app/commands/Program.h"

// The command line's arguments, one on each line of the input, after the name of the program; the words FILE and CSV
// stand for a company file and a file to import. Whatever is typed ends with an exit code that the program documents,
// and wrong usage leaves the company file as it was; `open` ends at once, as there is no input. POSIX calls keep the
// program's output away from the fuzzer's.

namespace {

using fuzzing::Require;

constexpr int kWrongUsage = 2;
constexpr int kLargestExitCode = 5;

// Any argument may turn out to be a path, and files elsewhere are not for fuzzing. Paths below the folder lead nowhere,
// as there are no folders in it.
bool IsOutOfBounds(const std::string& argument) {
  const std::filesystem::path path = std::filesystem::path(argument).lexically_normal();
  return path.is_absolute() || (!path.empty() && *path.begin() == "..");
}

std::vector<std::string> Arguments(std::string_view input, const fuzzing::Books& books) {
  std::vector<std::string> arguments{"multientity"};
  while (!input.empty()) {
    std::string argument(fuzzing::TakeLine(input));
    if (argument == "FILE") argument = books.Path().filename().string();
    arguments.push_back(argument.substr(0, argument.find('\0')));
  }
  return arguments;
}

class Silence {
 public:
  Silence() {
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
      kept_[descriptor] = dup(descriptor);
      dup2(nothing, descriptor);
    }
    close(nothing);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;
  ~Silence() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
      dup2(kept_[descriptor], descriptor);
      close(kept_[descriptor]);
    }
  }

 private:
  int kept_[3]{};
};

// The fuzzer's own files have relative names, so the working directory is only visited.
class Visit {
 public:
  explicit Visit(const std::filesystem::path& folder) { std::filesystem::current_path(folder); }
  Visit(const Visit&) = delete;
  Visit& operator=(const Visit&) = delete;
  ~Visit() { std::filesystem::current_path(home_); }

 private:
  std::filesystem::path home_ = std::filesystem::current_path();
};

int Run(std::vector<std::string>& arguments) {
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  return app::RunProgram(static_cast<int>(arguments.size()), pointers.data());
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static fuzzing::Books books;
  std::vector<std::string> arguments = Arguments(fuzzing::Text(bytes, size), books);
  if (std::any_of(arguments.begin(), arguments.end(), IsOutOfBounds)) return 0;
  standalone::WriteFile(books.File("CSV"), "name,kind\nVendor,vendor\n");
  books.IsChangedSinceLastAsked();

  const int code = [&] {
    const Visit visit(books.Path().parent_path());
    const Silence silence;
    return Run(arguments);
  }();

  Require(code >= 0 && code <= kLargestExitCode, "the exit code is one of the documented ones");
  const bool isChanged = books.IsChangedSinceLastAsked();
  Require(!isChanged || code != kWrongUsage, "wrong usage changes nothing");
  if (isChanged) {
    books.RequireSound();
    books.BeginAnew();
  }
  return 0;
}
