#include <array>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Log.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Columns.h"

namespace app {

namespace {

constexpr std::int32_t kMostLines = 1'000'000;

struct LogOptions {
  std::string file;
  std::string last = "20";
};

constexpr std::array kLogColumns{"time",       "user",      "level",     "eventType", "sourceFile",
                                 "sourceLine", "shortName", "signature", "message"};

void ShowLog(Invocation& invocation, const LogOptions& options) {
  const std::int32_t count = WholeNumber("--last", options.last, 1, kMostLines);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::LogLine> lines = desk::ListLogLines(company, static_cast<std::size_t>(count));
  using enum Importance;
  Table table({{.title = "Time", .fit = Fit::kWhole},
               {.title = "User", .importance = kMinor},
               {.title = "Level", .align = Align::kRight, .importance = kDetail},
               {.title = "Event", .align = Align::kRight, .importance = kDetail},
               {.title = "Operation", .importance = kMajor},
               {.title = "Message"}});
  for (const desk::LogLine& line : lines) {
    table.Add({line.time, standalone::EscapeColumn(line.user), std::to_string(line.level),
               std::to_string(line.eventType), standalone::EscapeColumn(line.shortName),
               standalone::EscapeColumn(line.message)});
  }
  invocation.ReportList({{"lines", desk::JsonOf(lines)}}, kLogColumns,
                        table.Empty() ? "The operations log has no lines.\n" : table.Text());
}

}  // namespace

void AddLog(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<LogOptions>();
  CLI::App& command = AddFileCommand(program, "log", "Show the end of the operations log, oldest line first",
                                     "log alder.company --last 50", options->file);
  command.add_option("--last", options->last, "How many lines")->capture_default_str();
  AddCsvOption(command, invocation.options);
  invocation.When(command, [options](Invocation& run) { ShowLog(run, *options); });
}

}  // namespace app
