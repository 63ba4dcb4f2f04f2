#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "crash/ProgramRun.h"

// Something is wrong with the books after a crash. What() says what, and what was done last.
class BooksBroken : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Scene {
  std::filesystem::path program{};
  std::filesystem::path directory{};  // existing and empty
};

// What is run for the words of a command, which answers in JSON.
std::vector<std::string> CommandOf(const Scene& scene, const std::vector<std::string>& words);
// Throws BooksBroken unless it succeeds.
ProgramRun RunToItsEnd(const Scene& scene, const std::vector<std::string>& words);

// For people.
std::string Joined(const std::vector<std::string>& words);
std::string AfterMilliseconds(std::chrono::nanoseconds time);
std::string Description(const ProgramRun& run);

// What a run that was alone on the company file changed of it.
struct Traces {
  bool inLog = false;
  bool inFile = false;
};

// The size and the time of the last change of a company file and of its write-ahead log.
class Stamps {
 public:
  explicit Stamps(const std::filesystem::path& file) : file_(Of(file)), log_(Of(file.string() + "-wal")) {}

  Traces Until(const Stamps& later) const { return {.inLog = log_ != later.log_, .inFile = file_ != later.file_}; }

 private:
  using Stamp = std::pair<std::uintmax_t, std::filesystem::file_time_type>;

  static Stamp Of(const std::filesystem::path& file);

  Stamp file_;
  Stamp log_;
};
