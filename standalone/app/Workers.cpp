#include "standalone/app/Workers.h"

#include <fmt/format.h>

#include <algorithm>
#include <atomic>
#include <exception>
#include <future>
#include <memory>
#include <mutex>
#include <semaphore>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <thread>

#include "platform/NativePlatform.h"
#include "standalone/app/CompanyWatch.h"
#include "standalone/app/Values.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

// A stop ends it.
platform::EndedProcess RunOne(const std::vector<std::string>& arguments, const std::stop_token& end = {}) {
  try {
    const auto program = platform::OwnProgram();
    if (!program) throw std::runtime_error("the system does not tell where the program lies");
    platform::ChildProcess child(*program, arguments);
    const std::stop_callback onStop(end, [&child] { child.End(); });
    return child.Wait();
  } catch (const std::exception& error) {
    return {.exitCode = kExitNotDone,
            .output = {},
            .errors = fmt::format("multientity: the program was not started: {}\n", error.what())};
  }
}

std::vector<std::string> TellingPlaces(const Carrying& company) {
  std::vector<std::string> arguments = company.arguments;
  arguments.emplace_back(kTellPlaces);
  return arguments;
}

// Of one processor two, so that one that waits for something keeps nobody else waiting.
std::size_t MostAtATime() {
  return std::max(std::thread::hardware_concurrency(), 2U);
}

// How a program may end by itself; whatever else it ends with, somebody or something has ended it.
bool IsExitCode(int exitCode) {
  return exitCode >= kExitDone && exitCode <= kExitNotKnown;
}

bool WasBrokenOff(const platform::EndedProcess& ended) {
  return !IsExitCode(ended.exitCode) || (ended.exitCode != kExitDone && ended.errors.empty());
}

std::string ErrorsFor(const std::string& file, const platform::EndedProcess& ended) {
  constexpr std::string_view kName = "multientity: ";
  std::string text;
  if (WasBrokenOff(ended)) text = fmt::format("{}{}: it was broken off with {}\n", kName, file, ended.exitCode);
  std::istringstream lines(ended.errors);
  for (std::string line; std::getline(lines, line);) {
    const bool isNamed = line.starts_with(kName);
    text +=
        isNamed ? fmt::format("{}{}: {}\n", kName, standalone::Shown(file), line.substr(kName.size())) : line + '\n';
  }
  return text;
}

Json ToldBy(const std::string& file, const platform::EndedProcess& ended) {
  return {{"file", file},
          {"exit", ended.exitCode},
          {"answer", AnswerIn(ended.output)},
          {"messages", MessagesIn(ended.errors)}};
}

void TellPeople(const std::string& file, const platform::EndedProcess& ended) {
  if (!ended.output.empty()) Print(fmt::format("{}:\n", file));
  PrintData(ended.output);
  FinishPrinting();
  PrintError(ErrorsFor(file, ended));
}

}  // namespace

// One that was ended meanwhile has printed a part.
Json AnswerIn(const std::string& output) {
  Json answer = Json::parse(output, nullptr, /*allow_exceptions=*/false);
  return answer.is_discarded() ? Json() : answer;
}

Json MessagesIn(const std::string& errors) {
  Json messages = Json::array();
  std::istringstream text(errors);
  while (!(text >> std::ws).eof()) {
    const auto begin = static_cast<std::size_t>(text.tellg());
    try {
      Json message;
      text >> message;
      messages.push_back(std::move(message));
    } catch (const Json::parse_error&) {
      messages.push_back(errors.substr(begin));
      break;
    }
  }
  return messages;
}

std::vector<std::string> ArgumentsToCarry(const GlobalOptions& options, bool quiet, const std::string& file) {
  std::vector<std::string> arguments{"--user", options.user};
  const auto addWhen = [&arguments](bool isGiven, const char* option) {
    if (isGiven) arguments.emplace_back(option);
  };
  addWhen(options.json, "--json");
  addWhen(options.trace, "--trace");
  addWhen(options.networkShare, "--network-share");
  arguments.insert(arguments.end(), {"exchange", "run", file});
  addWhen(quiet, "--quiet");
  return arguments;
}

void RunSideBySide(const std::vector<std::vector<std::string>>& workers, const OnEnded& onEnded) {
  std::vector<std::packaged_task<platform::EndedProcess()>> tasks;
  std::vector<std::future<platform::EndedProcess>> outcomes;
  for (const std::vector<std::string>& arguments : workers) {
    tasks.emplace_back([&arguments] { return RunOne(arguments); });
    outcomes.push_back(tasks.back().get_future());
  }
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (std::size_t task = next++; task < tasks.size(); task = next++) tasks[task]();
  };
  std::vector<std::jthread> threads;
  for (std::size_t i = 0; i < std::min(MostAtATime(), tasks.size()); ++i) threads.emplace_back(work);
  for (std::size_t i = 0; i < outcomes.size(); ++i) onEnded(i, outcomes[i].get());
}

void CarryAgainAndAgain(const std::vector<Carrying>& companies, std::chrono::seconds every, std::stop_source& end,
                        const OnEnded& onEnded, const std::function<bool()>& isWanted) {
  std::counting_semaphore<> places(static_cast<std::ptrdiff_t>(MostAtATime()));
  std::mutex mutex;
  std::exception_ptr failure;
  std::vector<std::unique_ptr<CompanyWatch>> watches;
  for (const Carrying& company : companies) watches.push_back(std::make_unique<CompanyWatch>(FilePath(company.file)));
  const auto runAndTell = [&](std::size_t worker) {
    places.acquire();
    platform::EndedProcess ended =
        end.stop_requested() ? platform::EndedProcess() : RunOne(TellingPlaces(companies[worker]), end.get_token());
    places.release();
    watches[worker]->NoteBooks();
    ended.output = watches[worker]->TakePlaces(std::move(ended.output));
    const std::lock_guard lock(mutex);
    if (end.stop_requested()) return;
    try {
      onEnded(worker, ended);
    } catch (...) {
      failure = std::current_exception();
      end.request_stop();
    }
  };
  const auto keepRunning = [&](std::size_t worker) {
    const std::stop_callback onStop(end.get_token(), [&watches, worker] { watches[worker]->End(); });
    while (!end.stop_requested()) {
      if (!isWanted || isWanted()) runAndTell(worker);
      watches[worker]->WaitFor(every);
    }
  };
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < companies.size(); ++i) threads.emplace_back(keepRunning, i);
  }
  if (failure) std::rethrow_exception(failure);
}

void TellWorker(bool json, const std::string& file, const platform::EndedProcess& ended) {
  if (!json) return TellPeople(file, ended);
  const Json told = ToldBy(file, ended);
  const Json& answer = told.at("answer");
  const bool isNothing = answer.is_object() && answer.value("partners", Json::array()).empty();
  if (isNothing && ended.exitCode == kExitDone && told.at("messages").empty()) return;
  Print(JsonLine(told));
  FinishPrinting();
}

void WorkersTold::Add(const std::string& file, const platform::EndedProcess& ended) {
  if (json_) {
    companies_.push_back(ToldBy(file, ended));
  } else {
    TellPeople(file, ended);
  }
  if (ended.exitCode == kExitDone) return;
  failures_ += fmt::format("{}{} {} {}", failures_.empty() ? "" : ", ", file,
                           WasBrokenOff(ended) ? "was broken off with" : "ended with", ended.exitCode);
  if (firstFailure_ != kExitDone) return;
  firstFailure_ = IsExitCode(ended.exitCode) ? static_cast<ExitCode>(ended.exitCode) : kExitNotDone;
}

void WorkersTold::FailIfOneDid() const {
  if (firstFailure_ == kExitDone) return;
  throw FailedWith(firstFailure_, fmt::format("not all went well: {}", failures_));
}

}  // namespace app
