#include "partners/History.h"

#include <algorithm>
#include <random>

#include "partners/Companies.h"

namespace partners {

namespace {

constexpr int kDiesOneIn = 16;

// All that a program of a company does, rather than the mailbox, a clock or who keeps backups.
bool IsOfAProgram(Act act) {
  return act < Act::kClock || act == Act::kCarry || act == Act::kCarryAll || act == Act::kConfirm;
}

// So that the first writings are met as often as the last ones of those who write much.
Death NewDeath(std::mt19937_64& random) {
  constexpr int kMostDoublings = 8;
  const int most = 1 << std::uniform_int_distribution<int>(0, kMostDoublings)(random);
  return {.atWriting = std::uniform_int_distribution<int>(1, most)(random),
          .isPowerLost = std::uniform_int_distribution<int>(0, 1)(random) == 1,
          .chance = static_cast<std::uint32_t>(random())};
}

std::string TextOf(const Death& death) {
  return " and dies of writing " + std::to_string(death.atWriting) +
         (death.isPowerLost ? ", as the power fails (" : " (") + std::to_string(death.chance) + ")";
}

}  // namespace

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
      {Act::kRekey, "rekey", 1, Extra::kRekeys},
      {Act::kConfirmKey, "confirm-key", 4, Extra::kRekeys},
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
      {Act::kBackUp, "back-up", 5, Extra::kRestores},
      {Act::kRestoreBooks, "restore-books", 3, Extra::kRestores},
      {Act::kRestoreFolder, "restore-folder", 1, Extra::kRestores},
      {Act::kConfirm, "confirm", 6, Extra::kRestores},
      {Act::kCopyFolder, "copy-folder", 2, Extra::kRestores},
      {Act::kCopyBooks, "copy-books", 1, Extra::kRestores},
      {Act::kUseOtherCopy, "use-other-copy", 9, Extra::kRestores},
      {Act::kEndOtherCopy, "end-other-copy", 1, Extra::kRestores},
  };
  return kinds;
}

const char* NameOf(Act act) {
  return std::ranges::find(Kinds(), act, &Kind::act)->name;
}

History NewHistory(std::uint64_t seed, const Extras& extras) {
  std::mt19937_64 random(seed);
  std::vector<int> weights;
  for (const Kind& kind : Kinds()) {
    const bool isLeftOut =
        (kind.extra == Extra::kRestores && !extras.restores) || (kind.extra == Extra::kRekeys && !extras.rekeys);
    weights.push_back(isLeftOut ? 0 : kind.weight);
  }
  std::discrete_distribution<std::size_t> kinds(weights.begin(), weights.end());
  // Mostly two: what goes wrong is mostly between two, and each further one makes fewer histories.
  std::discrete_distribution<std::size_t> companies({0, 0, 20, 9, 3, 1, 1});
  History history{.companies = companies(random), .steps = {}};
  const auto length = std::uniform_int_distribution<std::size_t>(15, 85)(random);
  std::uniform_int_distribution<std::size_t> who(0, history.companies - 1);
  std::bernoulli_distribution deaths(1.0 / kDiesOneIn);
  for (std::size_t step = 0; step < length; ++step) {
    const Act act = Kinds()[kinds(random)].act;
    const std::size_t actor = who(random);
    Step next{.act = act, .who = actor, .chance = static_cast<std::uint32_t>(random())};
    if (deaths(random) && IsOfAProgram(act)) next.death = NewDeath(random);
    history.steps.push_back(next);
  }
  return history;
}

std::string TextOf(const History& history) {
  std::string text = std::to_string(history.companies) + " companies\n";
  for (const Step& step : history.steps) {
    text.append("  ").append(kCompanies.at(step.who)).append(" ").append(NameOf(step.act));
    text.append(" (").append(std::to_string(step.chance)).append(")");
    if (step.death) text += TextOf(*step.death);
    text += '\n';
  }
  return text;
}

}  // namespace partners
