#include "standalone/app/Invocation.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>

#include "standalone/desk/json/Json.h"
#include "standalone/values/Columns.h"
#include "standalone/values/Errors.h"

namespace app {

std::string TraceText(const desk::NewLogLine& line, bool json) {
  if (!json) {
    return fmt::format("log level {} event {} {}: {}\n", line.level, line.eventType, line.shortName,
                       standalone::EscapeColumn(line.message));
  }
  return JsonText({{"log", desk::JsonOf(line)}});
}

void AddCsvOption(CLI::App& command, GlobalOptions& options) {
  command.add_flag("--csv", options.csv, "The list as CSV with all of its columns, for a spreadsheet");
}

void Invocation::When(CLI::App& command, Action action) {
  command.callback([this, action = std::move(action)] { action_ = action; });
}

void Invocation::Run() {
  if (options.csv && options.json) {
    throw standalone::InvalidInput("--csv and --json exclude each other; give the one in which the list is wanted");
  }
  action_(*this);
}

void Invocation::Report(const Json& forPrograms, std::string_view forPeople) const {
  if (!options.json) {
    Print(forPeople);
    return;
  }
  Json json = Json::object();
  if (answer_) json["status"] = *answer_;
  json.update(forPrograms);
  Print(JsonText(json));
}

void Invocation::ReportList(const Json& forPrograms, CsvColumns columns, std::string_view forPeople) const {
  if (!options.csv) {
    Report(forPrograms, forPeople);
    return;
  }
  PrintData(CsvText(columns, forPrograms.front()));
}

}  // namespace app
