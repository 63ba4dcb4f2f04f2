#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/ExitCode.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Remedies.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/app/terminal/Terminal.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/json/Json.h"
#include "standalone/desk/results/Refusal.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

// What the module answers when it did what it was asked.
constexpr std::int32_t kDone = 1;

constexpr const char* kGlobalOptionsHelp =
    "--user NAME, --json, --trace and --network-share may be added to every command.";

// The lines that the log gained; an answer other than 1 is told as an error later.
void PrintTrace(const Invocation& invocation) {
  const bool json = invocation.options.json;
  for (const desk::NewLogLine& line : invocation.trace) PrintError(TraceText(line, json));
  if (invocation.options.trace && !json && invocation.Answer() == kDone) PrintError("status 1: done\n");
}

ExitCode Fail(bool json, ExitCode code, std::string_view message) {
  PrintError(json ? JsonText({{"error", {{"exit", code}, {"message", message}}}})
                  : fmt::format("multientity: {}\n", standalone::Shown(message)));
  return code;
}

// `hint` is what to type to put it right.
ExitCode FailWithHint(bool json, ExitCode code, std::string_view message, std::string_view hint) {
  PrintError(json ? JsonText({{"error", {{"exit", code}, {"message", message}, {"hint", hint}}}})
                  : fmt::format("multientity: {}\n  {}\n", standalone::Shown(message), hint));
  return code;
}

// A line for each row.
ExitCode FailBadRows(bool json, const standalone::BadRows& bad) {
  PrintError(json ? JsonText({{"error",
                               {{"exit", kExitBadInput},
                                {"message", bad.what()},
                                {"rows", desk::JsonOf(bad.First())},
                                {"more", bad.More()}}}})
                  : standalone::ShownLines(fmt::format("multientity: {}\n", bad.what())));
  return kExitBadInput;
}

// What the module refuses could have been done; what the desk refuses before it asks is not acceptable.
ExitCode FailRefused(bool json, const desk::Refusal& refusal) {
  const ExitCode code = refusal.status ? kExitNotDone : kExitBadInput;
  const std::string message = refusal.status ? fmt::format("status {}: {}", *refusal.status, refusal.why) : refusal.why;
  const std::string_view hint = HintFor(refusal.remedy);
  if (json) {
    Json error{{"exit", code}, {"message", message}};
    error.update(desk::JsonOf(refusal));
    error["hint"] = hint;
    PrintError(JsonText({{"error", error}}));
    return code;
  }
  PrintError(fmt::format("multientity: {}\n", standalone::Shown(message)));
  if (!hint.empty()) PrintError(fmt::format("  {}\n", hint));
  return code;
}

// Whoever does it again would do it twice.
ExitCode FailToTell(const Invocation& invocation, const OutputFailed& error) {
  const bool json = invocation.options.json;
  if (!invocation.HasSaved()) return Fail(json, kExitNotDone, error.what());
  return Fail(
      json, kExitNotTold,
      fmt::format("the work is saved, only what it came to was not printed ({}); do not do it again, but have the "
                  "company listed",
                  error.what()));
}

void AddCommands(CLI::App& program, Invocation& invocation) {
  program.name("multientity");
  program.set_version_flag("--version", "multientity " MULTIENTITY_VERSION);
  program.add_option("--user", invocation.options.user, "The user of the company file who does this")
      ->default_str(desk::kFirstUser);
  program.add_flag("--json", invocation.options.json, "Results and errors as JSON, for programs");
  program.add_flag("--trace", invocation.options.trace,
                   "Print the lines that the operations log gains to standard error");
  program.add_flag("--network-share", invocation.options.networkShare,
                   "Work on a company file although it lies on a network share, as an administrator insists");
  program.require_subcommand(1);
  program.fallthrough();
  // A path may begin with a slash on every system.
  program.allow_windows_style_options(false);
  program.footer(
      "Example:\n  multientity accounts alder.company --free --json\n\n"
      "multientity COMMAND --help explains a command. Exit codes: 0 done; 1 refused by the module or not\n"
      "finished; 2 wrong usage, a value that is not acceptable, or no right; 3 the company file cannot be opened or\n"
      "created; 4 saved, but standard output cannot be written; 5 the disk failed, and it is not known whether the "
      "work\n"
      "was saved.");
  AddInit(program, invocation);
  AddImport(program, invocation);
  AddAccounts(program, invocation);
  AddNames(program, invocation);
  AddAudit(program, invocation);
  AddBackup(program, invocation);
  AddRestore(program, invocation);
  AddUsers(program, invocation);
  AddSettings(program, invocation);
  AddRelation(program, invocation);
  AddJournal(program, invocation);
  AddTransactions(program, invocation);
  AddTransaction(program, invocation);
  AddRejected(program, invocation);
  AddRealm(program, invocation);
  AddPlugin(program, invocation);
  AddPersona(program, invocation);
  AddReminder(program, invocation);
  AddOpen(program, invocation);
  AddLog(program, invocation);
}

std::string UsageErrorText(const CLI::App& program, const CLI::ParseError& error) {
  const std::string rest = fmt::format("{}", fmt::join(program.remaining(true), " "));
  if (rest.empty()) return fmt::format("{}; see multientity --help", error.what());
  const bool nothingElse = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
  return fmt::format("{}not understood: {}; see multientity --help",
                     nothingElse ? "" : fmt::format("{}; ", error.what()), rest);
}

// Help and version are asked for by ending the parsing, too.
ExitCode EndParsing(const CLI::App& program, const CLI::ParseError& end, bool json) {
  if (end.get_exit_code() != 0) return Fail(json, kExitBadInput, UsageErrorText(program, end));
  std::ostringstream text;
  program.exit(end, text, text);
  Print(text.str());
  FinishPrinting();
  return kExitDone;
}

// The trace comes before what is said about a failure, whatever the failure is.
void RunTraced(Invocation& invocation) {
  try {
    invocation.Run();
    FinishPrinting();
    if (invocation.HasSaved()) RequireAReader();
  } catch (...) {
    PrintTrace(invocation);
    throw;
  }
  PrintTrace(invocation);
}

ExitCode RunCommand(Invocation& invocation) {
  const bool json = invocation.options.json;
  try {
    RunTraced(invocation);
    return kExitDone;
  } catch (const desk::Refused& refused) {
    return FailRefused(json, refused.Value());
  } catch (const standalone::BadRows& bad) {
    return FailBadRows(json, bad);
  } catch (const standalone::InvalidInput& error) {
    return Fail(json, kExitBadInput, error.what());
  } catch (const standalone::DamagedFile& error) {
    return FailWithHint(json, kExitCompanyFile, error.what(), "multientity restore BACKUP FILE --replace");
  } catch (const standalone::CompanyFileError& error) {
    return Fail(json, kExitCompanyFile, error.what());
  } catch (const OutputFailed& error) {
    return FailToTell(invocation, error);
  } catch (const standalone::OutcomeUnknown& error) {
    return FailWithHint(json, kExitNotKnown, error.what(), HintWhenNotKnown());
  } catch (const std::exception& error) {
    return Fail(json, kExitNotDone, error.what());
  }
}

ExitCode Run(const std::vector<std::string>& arguments) {
  // A command line that cannot be understood is complained about in the form that it asks for all the same.
  const bool json = std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
  Invocation invocation;
  invocation.options.user = desk::kFirstUser;
  CLI::App program("Intercompany accounting with partner companies, on company files of this machine");
  AddCommands(program, invocation);
  try {
    // The parser takes the last argument first.
    program.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (const CLI::ParseError& end) {
    return EndParsing(program, end, json);
  }
  return RunCommand(invocation);
}

}  // namespace

CLI::App& AddFileCommand(CLI::App& parent, const char* name, const char* description, const char* example,
                         std::string& file) {
  CLI::App& command = *parent.add_subcommand(name, description);
  command.add_option("FILE", file, "The company file")->required();
  AddFooter(command, example);
  return command;
}

void AddFooter(CLI::App& command, const char* example) {
  command.footer(fmt::format("Example:\n  multientity {}\n\n{}", example, kGlobalOptionsHelp));
}

}  // namespace app

int main(int argumentCount, char** arguments) {
  app::IgnoreClosedPipes();
  app::PrintTheSameEverywhere();
  try {
    return app::Run(app::ArgumentsInUtf8(argumentCount, arguments));
  } catch (const standalone::InvalidInput& error) {
    return app::Fail(/*json=*/false, app::kExitBadInput, error.what());
  } catch (const std::exception& error) {
    return app::Fail(/*json=*/false, app::kExitNotDone, error.what());
  } catch (...) {
    app::PrintError("multientity: unknown error\n");
  }
  return app::kExitNotDone;
}
