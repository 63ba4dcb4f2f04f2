#include "partners/History.h"

#include <algorithm>
#include <random>

#include "partners/Companies.h"

namespace partners {

const std::vector<Kind>& Kinds() {
  static const std::vector<Kind> kinds{
      {Act::kBill, "bill", 12},
      {Act::kCheck, "check", 6},
      {Act::kEntry, "entry", 6},
      {Act::kSend, "send", 6},
      {Act::kSendOne, "send-one", 4},
      {Act::kWithdraw, "withdraw", 6},
      {Act::kReverse, "reverse", 8},
      {Act::kCorrect, "correct", 7},
      {Act::kRemove, "remove", 2},
      {Act::kMoveByHand, "move-by-hand", 2},
      {Act::kAccept, "accept", 8},
      {Act::kAcceptOne, "accept-one", 8},
      {Act::kReject, "reject", 6},
      {Act::kDispute, "dispute", 4},
      {Act::kNote, "note", 2},
      {Act::kNoteOnOwn, "note-on-own", 3},
      {Act::kBookByHand, "book-by-hand", 3},
      {Act::kRemoveBooked, "remove-booked", 2},
      {Act::kMoveExpense, "move-expense", 1},
      {Act::kRejectByHand, "reject-by-hand", 2},
      {Act::kClose, "close", 1},
      {Act::kReopen, "reopen", 1},
      {Act::kBlock, "block", 1},
      {Act::kUnblock, "unblock", 2},
      {Act::kAddRule, "add-rule", 2},
      {Act::kRemoveRule, "remove-rule", 1},
      {Act::kBookAtOnce, "book-at-once", 2},
      {Act::kClock, "clock", 2},
      {Act::kRekey, "rekey", 1},
      {Act::kConfirmKey, "confirm-key", 4},
      {Act::kCarry, "carry", 26},
      {Act::kCarryAll, "carry-all", 14},
      {Act::kLose, "lose", 4},
      {Act::kDouble, "double", 2},
      {Act::kDelay, "delay", 5},
      {Act::kArrive, "arrive", 5},
      {Act::kTruncate, "truncate", 2},
      {Act::kCorrupt, "corrupt", 2},
      {Act::kReplay, "replay", 4},
      {Act::kMisdirect, "misdirect", 2},
      {Act::kBackUp, "back-up", 5, true},
      {Act::kRestoreBooks, "restore-books", 3, true},
      {Act::kRestoreFolder, "restore-folder", 1, true},
      {Act::kConfirm, "confirm", 6, true},
  };
  return kinds;
}

const char* NameOf(Act act) {
  return std::ranges::find(Kinds(), act, &Kind::act)->name;
}

History NewHistory(std::uint64_t seed, bool withRestores) {
  std::mt19937_64 random(seed);
  std::vector<int> weights;
  for (const Kind& kind : Kinds()) weights.push_back(kind.isRestore && !withRestores ? 0 : kind.weight);
  std::discrete_distribution<std::size_t> kinds(weights.begin(), weights.end());
  // Mostly two: what goes wrong is mostly between two, and each further one makes fewer histories.
  std::discrete_distribution<std::size_t> companies({0, 0, 20, 9, 3, 1, 1});
  History history{.companies = companies(random), .steps = {}};
  const auto length = std::uniform_int_distribution<std::size_t>(15, 85)(random);
  std::uniform_int_distribution<std::size_t> who(0, history.companies - 1);
  for (std::size_t step = 0; step < length; ++step) {
    const Act act = Kinds()[kinds(random)].act;
    const std::size_t actor = who(random);
    history.steps.push_back({.act = act, .who = actor, .chance = static_cast<std::uint32_t>(random())});
  }
  return history;
}

std::string TextOf(const History& history) {
  std::string text = std::to_string(history.companies) + " companies\n";
  for (const Step& step : history.steps) {
    text.append("  ").append(kCompanies.at(step.who)).append(" ").append(NameOf(step.act));
    text.append(" (").append(std::to_string(step.chance)).append(")\n");
  }
  return text;
}

}  // namespace partners
