#include <algorithm>
#include <array>
#include <map>
#include <random>

#include "standalone/desk/Correcting.h"
#include "standalone/desk/Entering.h"
#include "standalone/values/Dates.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::TransactionState;

// A transaction of a history, as it has to be in the books.
struct Told {
  std::int16_t type = 0;
  DateType32 date;
  bool isOwn = true;
  std::map<std::string, std::int64_t> amounts;  // by account
  std::vector<int> states;                      // of its requests, in the order of its lines
  std::optional<std::int32_t> reverses;
  std::optional<std::int32_t> corrects;
  std::optional<std::int32_t> moves;
  std::string standsAt;  // where a move puts the expense, or an entry of a partner's request has it
};

std::map<std::string, std::int64_t> Negated(std::map<std::string, std::int64_t> amounts) {
  for (auto& [account, amount] : amounts) amount = -amount;
  return amounts;
}

constexpr std::array kStatesToMoveTo{TransactionState::kEntered, TransactionState::kSent, TransactionState::kCameBack,
                                     TransactionState::kEstablished, TransactionState::kClosed};

// Books with two partners, beside a model of them.
class AHistory : public DeskFixture, public testing::WithParamInterface<unsigned> {
 protected:
  AHistory() {
    RelateBirch();
    RelateCedar();
  }

  // Does it if the model has it allowed, and expects a refusal that leaves everything as it was otherwise.
  template <typename Act>
  bool Try(bool isAllowed, const std::string& what, Act&& act) {
    SCOPED_TRACE(what);
    const std::string before = isAllowed ? "" : WholeFile();
    try {
      std::forward<Act>(act)();
    } catch (const Refused& refused) {
      EXPECT_FALSE(isAllowed) << what << ": " << refused.what();
      EXPECT_EQ(isAllowed ? before : WholeFile(), before) << what;
      return false;
    }
    EXPECT_TRUE(isAllowed) << what << " was not refused";
    return true;
  }

  bool IsClosed(DateType32 day) const { return day.Compare(closedThrough_) <= 0; }
  bool IsReversed(std::int32_t txnId) const { return ReversalOf(txnId) != 0; }
  std::int32_t ReversalOf(std::int32_t txnId) const {
    for (const auto& [id, told] : books_) {
      if (told.reverses == txnId && !IsOriginalOfAny(id)) return id;
    }
    return 0;
  }
  bool IsOriginalOfAny(std::int32_t txnId) const {
    return std::ranges::any_of(books_, [txnId](const auto& entry) { return entry.second.reverses == txnId; });
  }
  bool HasState(const Told& told, int state) const { return std::ranges::count(told.states, state) != 0; }
  bool IsLastMove(std::int32_t txnId) const {
    const std::optional<std::int32_t> entry = books_.at(txnId).moves;
    return !entry || LastMoveOf(*entry) <= txnId;
  }
  std::int32_t LastMoveOf(std::int32_t entry) const {
    std::int32_t last = 0;
    for (const auto& [id, told] : books_) {
      if (told.moves == entry && !IsReversed(id)) last = id;
    }
    return last;
  }
  bool HasCorrection(std::int32_t txnId, bool liveOnly) const {
    return std::ranges::any_of(books_, [&](const auto& entry) {
      return entry.second.corrects == txnId && !(liveOnly && IsReversed(entry.first));
    });
  }
  bool HasLater(std::int32_t txnId) const {
    return std::ranges::any_of(books_, [txnId](const auto& entry) {
      return entry.second.reverses == txnId || entry.second.corrects == txnId || entry.second.moves == txnId;
    });
  }
  // Whether a partner who has the original sent the reversal back, or it was withdrawn.
  bool HasComeToNothing(const Told& reversal) const {
    const Told& original = books_.at(*reversal.reverses);
    for (std::size_t i = 0; i < reversal.states.size(); ++i) {
      if (reversal.states[i] == 2 || (reversal.states[i] == 5 && original.states[i] == 3)) return true;
    }
    return false;
  }
  bool MayBeReversed(std::int32_t txnId) const {
    const Told& told = books_.at(txnId);
    if (!told.isOwn || IsReversed(txnId) || HasState(told, 1) || !IsLastMove(txnId)) return false;
    if (!told.reverses) return true;
    return HasComeToNothing(told) && !HasState(told, 0) && !books_.at(*told.reverses).reverses &&
           !HasCorrection(*told.reverses, /*liveOnly=*/true);
  }
  bool MayBeRemoved(std::int32_t txnId) const {
    const Told& told = books_.at(txnId);
    if (!told.isOwn || HasLater(txnId) || !IsLastMove(txnId)) return false;
    if (std::ranges::count(told.states, 0) != static_cast<std::ptrdiff_t>(told.states.size())) return false;
    return !told.reverses || (!HasCorrection(*told.reverses, /*liveOnly=*/false) && IsLastMove(*told.reverses));
  }

  Told ReversalToldOf(std::int32_t txnId, DateType32 date) {
    Told& original = books_.at(txnId);
    Told reversal{.type = original.type,
                  .date = date,
                  .amounts = Negated(original.amounts),
                  .states = {},
                  .reverses = txnId,
                  .corrects = {},
                  .moves = {},
                  .standsAt = {}};
    for (int& state : original.states) {
      reversal.states.push_back(state == 3 ? 0 : 5);
      if (state == 0 || state == 2) state = 5;
    }
    return reversal;
  }

  std::int32_t Any() {
    auto at = books_.begin();
    std::advance(at, Below(static_cast<int>(books_.size())));
    return at->first;
  }
  int Below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
  DateType32 AnyDay() { return {2026, 1 + Below(6), 1 + Below(28)}; }
  ClosedDays AnyWay() { return Below(4) == 0 ? ClosedDays::kChangedAllTheSame : ClosedDays::kRefused; }
  static bool Allows(ClosedDays closedDays) { return closedDays == ClosedDays::kChangedAllTheSame; }

  void RecordABill() {
    const std::int64_t birch = Below(3);
    const std::int64_t cedar = Below(3);
    const DateType32 date = AnyDay();
    const ClosedDays closedDays = AnyWay();
    TransactionToRecord bill{.type = EnteredType::kBill,
                             .date = date,
                             .name = Existing{"Northern Power"},
                             .lines = {{.account = "Utilities", .amount = standalone::LineAmount("10.00")}},
                             .shares = {},
                             .attachments = {},
                             .closedDays = closedDays};
    Told told{.type = kTxnTypeBill,
              .date = date,
              .amounts = {{"Utilities", 1000 - 100 * (birch + cedar)}, {"Payables", -1000}},
              .states = {},
              .reverses = {},
              .corrects = {},
              .moves = {},
              .standsAt = {}};
    for (const auto& [partner, name, share] :
         {std::tuple("1001", "Birch", birch), std::tuple("1002", "Cedar", cedar)}) {
      if (share == 0) continue;
      bill.shares.push_back({.partner = partner, .share = standalone::ShareText(std::to_string(share) + ".00")});
      told.amounts[std::string("Due from ") + name] = 100 * share;
      told.states.push_back(0);
    }
    Try(!IsClosed(date) || Allows(closedDays), "a bill of " + standalone::FormatIsoDate(date),
        [&] { books_[RecordTransaction(*company_, bill, Posting::kPost).txnId] = told; });
  }
  void BookARequest() {
    EntryToRecord entry = Entry("request-" + std::to_string(++requests_));
    entry.date = AnyDay();
    entry.closedDays = AnyWay();
    Try(!IsClosed(*entry.date) || Allows(entry.closedDays), "a partner's request", [&] {
      books_[RecordJournalEntry(*company_, entry)] = {.type = kTxnTypeJournalEntry,
                                                      .date = *entry.date,
                                                      .isOwn = false,
                                                      .amounts = {{"Utilities", 4000}, {"Due to Birch", -4000}},
                                                      .states = {3},
                                                      .reverses = {},
                                                      .corrects = {},
                                                      .moves = {},
                                                      .standsAt = "Utilities"};
    });
  }
  void ReverseAny() {
    const TransactionToReverse given{.txnId = Any(), .date = AnyDay(), .memo = {}, .closedDays = AnyWay()};
    const bool isAllowed = MayBeReversed(given.txnId) && given.date->Compare(books_.at(given.txnId).date) >= 0 &&
                           (!IsClosed(*given.date) || Allows(given.closedDays));
    Try(isAllowed, "the reversal of " + std::to_string(given.txnId), [&] {
      const std::int32_t id = ReverseTransaction(*company_, given).reversal.txnId;
      books_[id] = ReversalToldOf(given.txnId, *given.date);
    });
  }
  void CorrectAny() {
    TransactionToCorrect given{.type = EnteredType::kBill, .txnId = Any()};
    const Told original = books_.at(given.txnId);
    if (original.type != kTxnTypeBill) return;
    given.date = AnyDay();
    given.memo = standalone::Memo("Correction " + std::to_string(++requests_));
    given.closedDays = AnyWay();
    const DateType32 reversalDate = given.date->Compare(original.date) < 0 ? original.date : *given.date;
    const bool isAllowed = MayBeReversed(given.txnId) && !original.reverses &&
                           (!(IsClosed(*given.date) || IsClosed(reversalDate)) || Allows(given.closedDays));
    Try(isAllowed, "the correction of " + std::to_string(given.txnId), [&] {
      const CorrectedTransaction corrected = CorrectTransaction(*company_, given, Posting::kPost);
      books_[corrected.reversed.reversal.txnId] = ReversalToldOf(given.txnId, reversalDate);
      Told correction = original;
      correction.date = *given.date;
      correction.corrects = given.txnId;
      std::ranges::fill(correction.states, 0);
      books_[corrected.correction.txnId] = correction;
    });
  }
  void RemoveAny() {
    const std::int32_t txnId = Any();
    const ClosedDays closedDays = AnyWay();
    const bool isAllowed = MayBeRemoved(txnId) && (!IsClosed(books_.at(txnId).date) || Allows(closedDays));
    if (Try(isAllowed, "the removal of " + std::to_string(txnId),
            [&] { RemoveTransaction(*company_, txnId, closedDays); })) {
      books_.erase(txnId);
    }
  }
  void TakeBackAny() {
    const std::int32_t txnId = Any();
    const ClosedDays closedDays = AnyWay();
    const bool isAllowed =
        !books_.at(txnId).isOwn && !HasLater(txnId) && (!IsClosed(books_.at(txnId).date) || Allows(closedDays));
    if (Try(isAllowed, "taking back " + std::to_string(txnId),
            [&] { RemoveJournalEntry(*company_, txnId, closedDays); })) {
      books_.erase(txnId);
    }
  }
  void MoveAny() {
    const ExpenseToMove given{.txnId = Any(),
                              .account = Below(2) == 0 ? "Utilities:Power" : "Checking",
                              .date = AnyDay(),
                              .closedDays = AnyWay()};
    const Told& entry = books_.at(given.txnId);
    const std::int32_t last = LastMoveOf(given.txnId);
    const Told& stands = last == 0 ? entry : books_.at(last);
    const bool isAllowed = !entry.isOwn && given.account != stands.standsAt && given.date->Compare(stands.date) >= 0 &&
                           (!IsClosed(*given.date) || Allows(given.closedDays));
    Try(isAllowed, "moving the expense of " + std::to_string(given.txnId), [&] {
      Told move{.type = kTxnTypeJournalEntry,
                .date = *given.date,
                .amounts = {{given.account, 4000}, {stands.standsAt, -4000}},
                .states = {},
                .reverses = {},
                .corrects = {},
                .moves = given.txnId,
                .standsAt = given.account};
      books_[MoveExpense(*company_, given).move.txnId] = std::move(move);
    });
  }
  void SetAnyState() {
    const std::int32_t txnId = Any();
    Told& told = books_.at(txnId);
    if (told.states.empty()) return;
    const auto number = static_cast<std::size_t>(Below(static_cast<int>(told.states.size())));
    const TransactionState to = kStatesToMoveTo.at(static_cast<std::size_t>(Below(kStatesToMoveTo.size())));
    const TransactionState from{static_cast<std::int16_t>(told.states.at(number))};
    const std::int32_t lineId = ListIntercompanyLines(*company_, txnId).at(number).lineId;
    Try(std::ranges::count(standalone::MovesFrom(from), to) != 0, "a state of " + std::to_string(txnId), [&] {
      SetState(*company_, txnId, lineId, to);
      told.states.at(number) = static_cast<int>(to);
    });
  }
  void CloseSomeDay() {
    closedThrough_ = Below(2) == 0 ? NullDate() : AnyDay();
    ChangeSetting(*company_, "closing-date",
                  closedThrough_ == NullDate() ? "none" : standalone::FormatIsoDate(closedThrough_));
  }

  void DoAnything() {
    switch (books_.empty() ? 0 : Below(14)) {
      case 0:
      case 1:
        return RecordABill();
      case 2:
        return BookARequest();
      case 3:
      case 4:
        return ReverseAny();
      case 5:
      case 6:
        return CorrectAny();
      case 7:
        return RemoveAny();
      case 8:
        return TakeBackAny();
      case 9:
        return MoveAny();
      case 10:
        return CloseSomeDay();
      default:
        return SetAnyState();
    }
  }

  // What the books hold is what the model says, and each transaction balances.
  void ExpectTheBooks() {
    standalone::StandaloneHost other(path_);
    std::map<std::string, std::int64_t> sums;
    std::vector<std::int32_t> ids;
    for (const auto& [id, told] : books_) {
      ids.push_back(id);
      for (const auto& [account, amount] : told.amounts) sums[account] += amount;
    }
    EXPECT_EQ(standalone::Count(other, "SELECT count(*) FROM txn"), static_cast<std::int64_t>(ids.size()));
    EXPECT_EQ(standalone::Count(
                  other, "SELECT count(*) FROM (SELECT txn_id FROM txn_line GROUP BY txn_id HAVING sum(amount))"),
              0);
    EXPECT_EQ(standalone::Count(other, "SELECT count(*) FROM after_close"), 0);
    for (const auto& [account, sum] : sums) {
      const std::string sql =
          "SELECT ifnull(sum(amount), 0) FROM txn_line JOIN account ON account.id = account_id WHERE full_name = '" +
          account + "'";
      EXPECT_EQ(standalone::Count(other, sql.c_str()), sum) << account;
    }
    other.Request(standalone::Access::kRead, [&] {
      for (const auto& [id, told] : books_) ExpectTransaction(other, id, told);
    });
  }
  void ExpectTransaction(standalone::StandaloneHost& other, std::int32_t id, const Told& told) const {
    std::vector<DBMultiEntityTransaction> rows;
    other.Intercompany().ListOf(id, rows);
    std::vector<int> states;
    for (const DBMultiEntityTransaction& row : rows) states.push_back(row.state);
    EXPECT_EQ(states, told.states) << id;
    EXPECT_EQ(other.Links().ReversalOf(id).value_or(0), ReversalOf(id)) << id;
    EXPECT_EQ(other.Transactions().FindHeader(id).value().date, told.date) << id;
  }

  std::mt19937 random_{GetParam()};
  std::map<std::int32_t, Told> books_;
  DateType32 closedThrough_;
  int requests_ = 0;
};

TEST_P(AHistory, LeavesTheBooksAsTheRulesSay) {
  constexpr int kDeeds = 120;
  for (int deed = 0; deed < kDeeds && !HasFailure(); ++deed) DoAnything();

  ExpectTheBooks();
}

INSTANTIATE_TEST_SUITE_P(Random, AHistory, testing::Range(1U, 13U));

}  // namespace
}  // namespace desk
