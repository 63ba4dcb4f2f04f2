#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "partners/Dying.h"

namespace partners {

// What happens in a history: what people do, what the mailbox does, and what befalls the books.
enum class Act {
  kBill,
  kCheck,
  kEntry,
  kSend,
  kSendOne,
  kWithdraw,
  kReverse,
  kCorrect,
  kRemove,
  kMoveByHand,
  kAccept,
  kAcceptOne,
  kReject,
  kDispute,
  kNote,
  kNoteOnOwn,
  kBookByHand,
  kRemoveBooked,
  kMoveExpense,
  kRejectByHand,
  kClose,
  kReopen,
  kBlock,
  kUnblock,
  kAddRule,
  kRemoveRule,
  kBookAtOnce,
  kClock,
  kRekey,
  kConfirmKey,
  kCarry,
  kCarryAll,
  kLose,
  kDouble,
  kDelay,
  kArrive,
  kTruncate,
  kCorrupt,
  kReplay,
  kMisdirect,
  kBackUp,
  kRestoreBooks,
  kRestoreFolder,
  kConfirm,
  kCopyFolder,
  kCopyBooks,
  kUseOtherCopy,
  kEndOtherCopy,
};

// What histories only have where it is asked for.
enum class Extra { kNone, kRestores, kRekeys };
struct Extras {
  bool restores = false;
  bool rekeys = false;
};

// How often each act is drawn beside the others.
struct Kind {
  Act act;
  const char* name;
  int weight;
  Extra extra = Extra::kNone;
};
const std::vector<Kind>& Kinds();
const char* NameOf(Act act);

// `chance` decides all that the act leaves open, so that a step means the same when others before it are left out.
struct Step {
  Act act{};
  std::size_t who = 0;
  std::uint32_t chance = 0;
  std::optional<Death> death{};  // of the program that does it
};

struct History {
  std::size_t companies = 2;
  std::vector<Step> steps;
};

History NewHistory(std::uint64_t seed, const Extras& extras);
// A line for each step.
std::string TextOf(const History& history);

}  // namespace partners
