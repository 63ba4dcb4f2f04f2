#pragma once

#include <functional>
#include <string>

#include "model/Model.h"
#include "model/Module.h"
#include "model/Operation.h"
#include "model/Performance.h"
#include "model/WorldHost.h"

namespace model {

// The module and the model side by side through one history, each on a world of its own, the module attached to its.
class Encounter {
 public:
  explicit Encounter(ProcessMemory& memory);
  Encounter(const Encounter&) = delete;
  Encounter& operator=(const Encounter&) = delete;
  ~Encounter();

  // Performs one step on both sides and compares; empty when they agree.
  std::string Step(const Operation& operation);

  // Ends the history on both sides and compares a last time.
  std::string Finish();

  // What the last step came to, and whether its fault was played.
  const Outcome& Last() const noexcept { return last_; }
  bool FaultPlayed() const noexcept { return modelWorld_.FaultPlayed(); }

 private:
  std::string Compare() const;

  World moduleWorld_ = FreshWorld();
  World modelWorld_ = FreshWorld();
  WorldHost host_{moduleWorld_};
  Module module_{moduleWorld_, host_};
  Model model_;
  bool attached_ = true;
  std::string beginning_;
  Outcome last_;
};

// Lives through a history. Empty when module and model agree to its end, otherwise what they disagree in.
std::string LiveThrough(const History& history, ProcessMemory& memory,
                        const std::function<void(const Operation&, const Encounter&)>& after);

}  // namespace model
