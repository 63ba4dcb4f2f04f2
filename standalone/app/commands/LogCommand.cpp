#include <memory>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/Company.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/company/LogReader.h"

namespace app {

namespace {

constexpr std::int32_t kMostLines = 1'000'000;

struct LogOptions {
  std::string file;
  std::string last = "20";
};

void ShowLog(Invocation& invocation, const LogOptions& options) {
  const std::int32_t count = WholeNumber("--last", options.last, 1, kMostLines);
  const Company company(invocation, options.file);
  const standalone::LogReader log(standalone::CompanyFile::LogPath(FilePath(options.file)));
  Json list = Json::array();
  Table table({{"Time"}, {"User"}, {"Level", Align::kRight}, {"Event", Align::kRight}, {"Operation"}, {"Message"}});
  for (const standalone::LogLine& line : log.LastLines(static_cast<std::size_t>(count))) {
    list.push_back({{"time", line.time},
                    {"user", line.user},
                    {"level", line.level},
                    {"eventType", line.eventType},
                    {"sourceFile", line.sourceFile},
                    {"sourceLine", line.sourceLine},
                    {"shortName", line.shortName},
                    {"signature", line.signature},
                    {"message", line.message}});
    table.Add({line.time, standalone::EscapeColumn(line.user), std::to_string(line.level),
               std::to_string(line.eventType), standalone::EscapeColumn(line.shortName),
               standalone::EscapeColumn(line.message)});
  }
  invocation.Report({{"lines", list}}, table.Empty() ? "The operations log has no lines.\n" : table.Text());
}

}  // namespace

void AddLog(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<LogOptions>();
  CLI::App& command = AddFileCommand(program, "log", "Show the end of the operations log, oldest line first",
                                     "log alder.company --last 50", options->file);
  command.add_option("--last", options->last, "How many lines")->capture_default_str();
  invocation.When(command, [options](Invocation& run) { ShowLog(run, *options); });
}

}  // namespace app
