#include "standalone/app/commands/Program.h"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/CommandTree.h"
#include "standalone/app/ExitCode.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/Remedies.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/app/terminal/Terminal.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/json/Json.h"
#include "standalone/desk/results/Refusal.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Suggestions.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

// What the module answers when it did what it was asked.
constexpr std::int32_t kDone = 1;

// What names the company of commands that are given none.
constexpr const char* kUsualCompany = "MULTIENTITY_COMPANY";

constexpr const char* kGlobalOptionsHelp =
    "--user NAME, --json, --wide, --trace and --network-share may be added to every command.";

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
  program.add_flag("--wide", invocation.options.wide, "Tables with all columns, also where the terminal is narrower");
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
      "multientity COMMAND --help explains a command. MULTIENTITY_COMPANY may name the company file of commands that\n"
      "are given none.\n\nExit codes: 0 done; 1 refused by the module or not\n"
      "finished; 2 wrong usage, a value that is not acceptable, or no right; 3 the company file cannot be opened or\n"
      "created; 4 saved, but standard output cannot be written; 5 the disk failed, and it is not known whether the "
      "work\n"
      "was saved.");
  AddInit(program, invocation);
  AddImport(program, invocation);
  AddAccounts(program, invocation);
  AddAccount(program, invocation);
  AddNames(program, invocation);
  AddName(program, invocation);
  AddAudit(program, invocation);
  AddBackup(program, invocation);
  AddRestore(program, invocation);
  AddExport(program, invocation);
  AddUsers(program, invocation);
  AddSettings(program, invocation);
  AddRelation(program, invocation);
  AddEnter(program, invocation);
  AddJournal(program, invocation);
  AddReverse(program, invocation);
  AddRemoveTransaction(program, invocation);
  AddAttach(program, invocation);
  AddDetach(program, invocation);
  AddBalances(program, invocation);
  AddRegister(program, invocation);
  AddOpenItems(program, invocation);
  AddShowTransaction(program, invocation);
  AddTransactions(program, invocation);
  AddTransaction(program, invocation);
  AddRejected(program, invocation);
  AddPartner(program, invocation);
  AddExchange(program, invocation);
  AddInbox(program, invocation);
  AddRules(program, invocation);
  AddOutbox(program, invocation);
  AddIdentity(program, invocation);
  AddRealm(program, invocation);
  AddPlugin(program, invocation);
  AddPersona(program, invocation);
  AddReminder(program, invocation);
  AddOpen(program, invocation);
  AddLog(program, invocation);
  AddCompletion(program, invocation);
  AddMan(program, invocation);
}

// The innermost command that was understood; the program itself when none was.
const CLI::App& ChosenCommand(const CLI::App& program) {
  for (const CLI::App* const command : program.get_subcommands()) {
    if (!command->get_name().empty()) return ChosenCommand(*command);
  }
  return program;
}

// What a command works on, in the order in which it stands behind it.
std::vector<const CLI::Option*> OperandsOf(const CLI::App& command) {
  return command.get_options([](const CLI::Option* option) { return !option->nonpositional(); });
}

// A company that is to be made is always named, and so is what a backup goes to.
bool MayHaveTheUsualCompany(const CLI::App& command) {
  const std::vector<const CLI::Option*> operands = OperandsOf(command);
  return !operands.empty() && operands.front()->get_name(true) == "FILE" && command.get_name() != "init";
}

// Those of which one is given, as an operand or otherwise, stand in a group without a name.
bool LacksAnOperandOfAGroup(const CLI::App& command) {
  const std::vector<const CLI::App*> groups =
      command.get_subcommands([](const CLI::App* child) { return child->get_name().empty(); });
  return std::any_of(groups.begin(), groups.end(),
                     [](const CLI::App* group) { return !OperandsOf(*group).empty() && group->count_all() == 0; });
}

// A list behind a transaction has something in it, too, when all are one place too far to the front.
bool HasATransactionForAFile(const std::vector<const CLI::Option*>& operands) {
  const auto isNumber = [](const CLI::Option* operand) {
    return operand->count() == 1 && standalone::ParseRecordNumber(operand->results().front());
  };
  return operands.size() > 2 && operands.back()->get_items_expected_max() > 1 && isNumber(operands[0]) &&
         !isNumber(operands[1]);
}

bool LacksAnOperand(const CLI::App& command) {
  if (LacksAnOperandOfAGroup(command)) return true;
  const std::vector<const CLI::Option*> operands = OperandsOf(command);
  if (HasATransactionForAFile(operands)) return true;
  return std::any_of(operands.begin(), operands.end(),
                     [](const CLI::Option* operand) { return operand->get_required() && operand->count() == 0; });
}

// The place behind the words of a command, among which options of the program may stand.
std::vector<std::string>::const_iterator Behind(const CLI::App& command, const CLI::App& program,
                                                const std::vector<std::string>& arguments) {
  std::vector<std::string> words;
  for (const CLI::App* word = &command; word != &program; word = word->get_parent()) words.push_back(word->get_name());
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    const CLI::Option* const option = program.get_option_no_throw(*argument);
    if (option != nullptr && option->get_items_expected_max() > 0 && std::next(argument) != arguments.end()) ++argument;
    if (option != nullptr || words.empty() || *argument != words.back()) continue;
    words.pop_back();
    if (words.empty()) return std::next(argument);
  }
  return arguments.end();
}

// The arguments with the usual company in front of what the command works on, if that is what they lack.
std::optional<std::vector<std::string>> WithUsualCompany(const CLI::App& program,
                                                         const std::vector<std::string>& arguments) {
  const CLI::App& command = ChosenCommand(program);
  if (!MayHaveTheUsualCompany(command) || !LacksAnOperand(command)) return std::nullopt;
  const std::optional<std::string> company = EnvironmentText(kUsualCompany);
  if (!company) return std::nullopt;
  std::vector<std::string> completed = arguments;
  completed.insert(completed.begin() + (Behind(command, program, arguments) - arguments.begin()), *company);
  return completed;
}

// Whoever mistyped a command has a word too many, not a missing one.
bool IsUnknownCommand(const CLI::App& command, const std::vector<std::string>& rest) {
  return !rest.empty() && !rest.front().starts_with('-') && !DescriptionOf(command).subcommands.empty();
}

std::string WhatIsWrong(const CLI::App& command, const CLI::ParseError& error, const std::vector<std::string>& rest) {
  if (IsUnknownCommand(command, rest)) return fmt::format("there is no command {}", standalone::Quoted(rest.front()));
  const bool lacksCompany = MayHaveTheUsualCompany(command) && OperandsOf(command).front()->count() == 0;
  const std::string what = fmt::format("{}{}", error.what(),
                                       lacksCompany ? fmt::format(", unless {} names the company", kUsualCompany) : "");
  if (rest.empty()) return what;
  const bool nothingElse = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
  return fmt::format("{}not understood: {}", nothingElse ? "" : what + "; ", fmt::join(rest, " "));
}

// The command or the options that may have been meant.
std::string Suggestion(const CLI::App& program, const CLI::App& command, const std::vector<std::string>& rest) {
  if (rest.empty()) return {};
  const CommandText described = DescriptionOf(command);
  if (IsUnknownCommand(command, rest)) return standalone::DidYouMean(rest.front(), described.subcommands);
  if (!rest.front().starts_with("--")) return {};
  std::vector<std::string> names;
  for (const OptionText& option : described.options)
    names.insert(names.end(), option.names.begin(), option.names.end());
  for (const OptionText& option : DescriptionOf(program).options) names.push_back(option.names.back());
  return standalone::DidYouMean(rest.front().substr(0, rest.front().find('=')), names);
}

// The parser takes "[a,b]" for a list wherever a command takes several values. No argument of a program has a byte of
// zero, which keeps it from doing so and is taken off again.
constexpr char kNoList = '\0';

std::string AsWasTyped(std::string argument) {
  if (argument.ends_with(kNoList)) argument.pop_back();
  return argument;
}

ExitCode FailUsage(const CLI::App& program, const CLI::ParseError& error, bool json) {
  const CLI::App& command = ChosenCommand(program);
  std::vector<std::string> rest = program.remaining(true);
  for (std::string& argument : rest) argument = AsWasTyped(std::move(argument));
  const std::string suggestion = Suggestion(program, command, rest);
  return FailWithHint(
      json, kExitBadInput,
      fmt::format("{}{} {} --help", WhatIsWrong(command, error, rest),
                  suggestion.empty() ? "; see" : fmt::format(".{} See", suggestion), FullNameOf(command)),
      UsageOf(command));
}

// Help and version are asked for by ending the parsing, too.
ExitCode EndParsing(const CLI::App& program, const CLI::ParseError& end, bool json) {
  if (end.get_exit_code() != 0) return FailUsage(program, end, json);
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
    return FailWithHint(json, kExitCompanyFile, error.what(), HintWhenDamaged());
  } catch (const standalone::CompanyFileError& error) {
    return Fail(
        json, kExitCompanyFile,
        fmt::format("{}{}", error.what(),
                    invocation.options.usualCompany ? fmt::format(" ({} names this file)", kUsualCompany) : ""));
  } catch (const OutputFailed& error) {
    return FailToTell(invocation, error);
  } catch (const FailedWith& error) {
    return Fail(json, error.Code(), error.what());
  } catch (const standalone::OutcomeUnknown& error) {
    return FailWithHint(json, kExitNotKnown, error.what(), HintWhenNotKnown());
  } catch (const std::exception& error) {
    return Fail(json, kExitNotDone, error.what());
  }
}

void TakeOffMarks(CLI::App& command) {
  for (CLI::Option* option : command.get_options()) {
    if (option->get_items_expected_max() > 0) option->transform(AsWasTyped);
  }
  for (CLI::App* child : command.get_subcommands([](CLI::App*) { return true; })) TakeOffMarks(*child);
}

// In the order in which the parser takes them, the last one first.
std::vector<std::string> ForTheParser(CLI::App& program, const std::vector<std::string>& arguments) {
  std::vector<std::string> marked(arguments.rbegin(), arguments.rend());
  bool isAnyMarked = false;
  for (std::string& argument : marked) {
    if (!argument.starts_with('[') || !argument.ends_with(']')) continue;
    argument += kNoList;
    isAnyMarked = true;
  }
  if (isAnyMarked) TakeOffMarks(program);
  return marked;
}

struct CommandLine {
  std::vector<std::string> arguments;
  bool usualCompany = false;  // the company among them is the one that the environment names
};

ExitCode Run(const CommandLine& line) {
  const std::vector<std::string>& arguments = line.arguments;
  // A command line that cannot be understood is complained about in the form that it asks for all the same.
  const bool json = std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
  Invocation invocation;
  invocation.options.user = desk::kFirstUser;
  invocation.options.usualCompany = line.usualCompany;
  CLI::App program("Intercompany accounting with partner companies, on company files of this machine");
  AddCommands(program, invocation);
  try {
    program.parse(ForTheParser(program, arguments));
  } catch (const CLI::ParseError& end) {
    if (end.get_exit_code() != 0 && !line.usualCompany) {
      if (const auto completed = WithUsualCompany(program, arguments)) return Run({*completed, true});
    }
    return EndParsing(program, end, json);
  }
  if (!line.usualCompany) {
    if (const auto completed = WithUsualCompany(program, arguments)) return Run({*completed, true});
  }
  if (!invocation.options.wide) FitTablesTo(OutputWidth());
  return RunCommand(invocation);
}

}  // namespace

CLI::App& AddGroup(CLI::App& program, const char* name, const char* description, const char* example) {
  CLI::App& group = *program.add_subcommand(name, description);
  group.require_subcommand(1);
  group.footer(fmt::format("Example:\n  multientity {}", example));
  return group;
}

CLI::App& AddFileCommand(CLI::App& parent, const char* name, const char* description, const char* example,
                         std::string& file) {
  CLI::App& command = *parent.add_subcommand(name, description);
  command
      .add_option("FILE", file,
                  parent.get_parent() == nullptr && std::string_view(name) == "init"
                      ? "The company file to make"
                      : fmt::format("The company file; may be left out where {} names one", kUsualCompany))
      ->required();
  AddFooter(command, example);
  return command;
}

CLI::App& AddFilesCommand(CLI::App& parent, const char* name, const char* description, const char* example,
                          std::vector<std::string>& files) {
  CLI::App& command = *parent.add_subcommand(name, description);
  command
      .add_option("FILE", files, fmt::format("The company files; one may be left out where {} names it", kUsualCompany))
      ->required();
  AddFooter(command, example);
  return command;
}

void AddAfterClose(CLI::App& command, desk::ClosedDays& closedDays) {
  command.add_flag_callback(
      "--after-close", [&closedDays] { closedDays = desk::ClosedDays::kChangedAllTheSame; },
      "Although the books are closed on that day; for administrators, and the audit trail says so");
}

void AddFooter(CLI::App& command, const char* example) {
  command.footer(fmt::format("Example:\n  multientity {}\n\n{}", example, kGlobalOptionsHelp));
}

int RunProgram(int argumentCount, char** arguments) {
  IgnoreClosedPipes();
  PrintTheSameEverywhere();
  try {
    return Run({ArgumentsInUtf8(argumentCount, arguments)});
  } catch (const standalone::InvalidInput& error) {
    return Fail(/*json=*/false, kExitBadInput, error.what());
  } catch (const std::exception& error) {
    return Fail(/*json=*/false, kExitNotDone, error.what());
  } catch (...) {
    PrintError("multientity: unknown error\n");
  }
  return kExitNotDone;
}

}  // namespace app
