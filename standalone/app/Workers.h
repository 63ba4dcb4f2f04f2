#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <stop_token>
#include <string>
#include <vector>

#include "platform/ChildProcess.h"
#include "standalone/app/ExitCode.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/terminal/Output.h"

// Several companies at a time: the module has one host in a process, so each has a process of its own.
namespace app {

// By which this program carries a company's letters once, for the same user.
std::vector<std::string> ArgumentsToCarry(const GlobalOptions& options, bool quiet, const std::string& file);

// This program once for each of these arguments, side by side, as many at a time as there are processors, at least two.
// `onEnded` is told of each in their order, on this thread, as soon as it and those before it have ended. One that
// could not be started has ended with kExitNotDone, and says why.
using OnEnded = std::function<void(std::size_t worker, const platform::EndedProcess& ended)>;
void RunSideBySide(const std::vector<std::vector<std::string>>& workers, const OnEnded& onEnded);

// What carries for a company.
struct Carrying {
  std::string file;
  std::vector<std::string> arguments;  // as ArgumentsToCarry has them
};
// Carries again and again, for each company anew as soon as there may be something to carry for it, or so long after
// the last run has ended; until a stop is requested, which ends those that run. `onEnded` is told of each as it ends,
// of one at a time; what it throws stops all, and is thrown. Where `isWanted` is given, it is asked before each run,
// which is left out unless it answers true.
void CarryAgainAndAgain(const std::vector<Carrying>& companies, std::chrono::seconds every, std::stop_source& end,
                        const OnEnded& onEnded, const std::function<bool()>& isWanted = {});

// An object, null for what is none.
Json AnswerIn(const std::string& output);
// Objects one after the other, and what is none of them as a text.
Json MessagesIn(const std::string& errors);

// What one of them said: with its company in front for people, on a line for programs; nothing of one that ended well
// and had nothing to tell.
void TellWorker(bool json, const std::string& file, const platform::EndedProcess& ended);

// What each of them said: for people as it comes, with the company in front, for programs as a list.
class WorkersTold {
 public:
  explicit WorkersTold(bool json) : json_(json), companies_(Json::array()) {}

  void Add(const std::string& file, const platform::EndedProcess& ended);
  const Json& Companies() const noexcept { return companies_; }
  // Throws FailedWith, with the exit code of the first one that failed, if one did.
  void FailIfOneDid() const;

 private:
  bool json_;
  Json companies_;
  ExitCode firstFailure_ = kExitDone;
  std::string failures_;
};

}  // namespace app
