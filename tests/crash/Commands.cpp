#include "crash/Commands.h"

#include <sstream>

std::vector<std::string> CommandOf(const Scene& scene, const std::vector<std::string>& words) {
  std::vector<std::string> command{scene.program.string()};
  command.insert(command.end(), words.begin(), words.end());
  command.emplace_back("--json");
  return command;
}

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

std::string AfterMilliseconds(std::chrono::nanoseconds time) {
  if (time == kWhenItPrints) return " when it prints";
  std::ostringstream text;
  text << " after " << static_cast<double>(time.count()) / 1e6 << " ms";
  return text.str();
}

std::string Description(const ProgramRun& run) {
  switch (run.ending) {
    case Ending::kByItself:
      return "ended with " + std::to_string(run.code) + ' ' + run.out + run.err;
    case Ending::kKilled:
      return "killed; it had printed: " + run.out + run.err + '\n';
    default:
      return "died of signal " + std::to_string(run.code) + ' ' + run.err;
  }
}

ProgramRun RunToItsEnd(const Scene& scene, const std::vector<std::string>& words) {
  ProgramRun run = Run(CommandOf(scene, words), {.directory = scene.directory});
  if (run.ending == Ending::kByItself && run.code == 0) return run;
  throw BooksBroken("multientity " + Joined(words) + ' ' + Description(run));
}

Stamps::Stamp Stamps::Of(const std::filesystem::path& file) {
  std::error_code missing;
  const std::uintmax_t size = std::filesystem::file_size(file, missing);
  if (missing || size == 0) return {};
  return {size, std::filesystem::last_write_time(file, missing)};
}
