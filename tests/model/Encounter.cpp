#include "model/Encounter.h"

#include <algorithm>

#include "MultiEntity/AttachHost.h"
#include "model/Narrator.h"

namespace model {

namespace {

std::string Numbered(const std::vector<std::string>& events, std::size_t from) {
  std::string all;
  for (std::size_t i = from; i < std::min(events.size(), from + 4); ++i) {
    all += "      " + std::to_string(i + 1) + ": " + events[i] + "\n";
  }
  return all.empty() ? "      nothing more\n" : all;
}

// Both records from the first entry on in which they differ.
std::string Difference(const std::vector<std::string>& module, const std::vector<std::string>& model) {
  const auto [left, right] = std::ranges::mismatch(module, model);
  const auto at = static_cast<std::size_t>(left - module.begin());
  return "    the module, from its event " + std::to_string(at + 1) + " on:\n" + Numbered(module, at) +
         "    the model:\n" + Numbered(model, at);
}

std::string Difference(const char* what, const std::string& module, const std::string& model) {
  return std::string("    ") + what + "\n      of the module: " + module + "\n      of the model:  " + model + "\n";
}

}  // namespace

Encounter::Encounter(ProcessMemory& memory) : model_(modelWorld_, memory) {
  if (AttachHost(host_.Services()) != MEAttachDone) beginning_ = "    the host was not attached\n";
  model_.Attach();
  beginning_ += Compare();
}

Encounter::~Encounter() {
  host_.DropMessages();
  if (attached_) DetachHost();
}

std::string Encounter::Step(const Operation& operation) {
  if (!beginning_.empty()) return beginning_;
  moduleWorld_.Begin(operation.fault);
  modelWorld_.Begin(operation.fault);
  if (static_cast<std::size_t>(operation.kind) >= kOperationKinds) {
    Change(moduleWorld_, operation);
    Change(modelWorld_, operation);
    last_ = {"done", {}};
    return Compare();
  }
  const Outcome expected = Perform(model_, operation);
  last_ = Perform(module_, operation);
  if (last_.answer != expected.answer) return Difference("the answer", last_.answer, expected.answer) + Compare();
  if (last_.results != expected.results) return Difference("the results", last_.results, expected.results) + Compare();
  return Compare();
}

std::string Encounter::Finish() {
  if (!beginning_.empty()) return beginning_;
  moduleWorld_.Begin({});
  modelWorld_.Begin({});
  host_.DropMessages();
  moduleWorld_.queue.clear();
  modelWorld_.queue.clear();
  DetachHost();
  attached_ = false;
  model_.Detach();
  return Compare();
}

std::string Encounter::Compare() const {
  if (moduleWorld_.Events() != modelWorld_.Events()) return Difference(moduleWorld_.Events(), modelWorld_.Events());
  const std::string table = moduleWorld_.DifferenceFrom(modelWorld_);
  if (!table.empty()) return "    " + table + " of their worlds differ\n";
  const std::string complaints = host_.Complaints();
  return complaints.empty() ? complaints : "    the host complains:" + complaints + "\n";
}

std::string LiveThrough(const History& history, ProcessMemory& memory,
                        const std::function<void(const Operation&, const Encounter&)>& after) {
  Encounter encounter(memory);
  for (std::size_t i = 0; i < history.size(); ++i) {
    const std::string difference = encounter.Step(history[i]);
    after(history[i], encounter);
    if (!difference.empty()) {
      return "  at step " + std::to_string(i + 1) + ", " + Told(history[i]) + ":\n" + difference;
    }
  }
  const std::string difference = encounter.Finish();
  return difference.empty() ? difference : "  when the host was detached:\n" + difference;
}

}  // namespace model
