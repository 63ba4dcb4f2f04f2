#include <algorithm>
#include <iterator>
#include <utility>

#include "crash/Wish.h"

namespace {

constexpr const char* kPayables = "Payables";
constexpr int kEntered = 0;
constexpr int kShared = 3;
constexpr int kClosed = 5;

using Amounts = std::vector<std::pair<std::string, std::int64_t>>;

Amounts AmountsOf(const Transaction& transaction) {
  Amounts amounts;
  for (const EntryLine& line : transaction.lines) amounts.emplace_back(line.account, line.amount);
  std::ranges::sort(amounts);
  return amounts;
}

// Whether the one line that the partner bears has the one row.
bool HasPartnersRow(const Transaction& bill, const IntercompanyRow& expected) {
  const auto line = std::ranges::find(bill.lines, kDueFrom, &EntryLine::account);
  if (line == bill.lines.end() || bill.rows.size() != 1 || bill.rows[0].request.empty()) return false;
  IntercompanyRow row = expected;
  row.line = line->id;
  row.request = bill.rows[0].request;
  return bill.rows[0] == row;
}

bool IsBillAsOrdered(const Transaction& bill, const BillOrder& order) {
  Amounts amounts{{order.expense, order.half}, {kDueFrom, order.half}, {kPayables, -2 * order.half}};
  std::ranges::sort(amounts);
  return bill.type == kBill && bill.name == order.name && !bill.confirmed && AmountsOf(bill) == amounts;
}

IntercompanyRow RowIn(int state) {
  return {.realm = kRealm, .type = kBill, .state = state};
}

std::vector<std::string> WordsOf(const BillOrder& order) {
  return {"--memo",    order.key, "--line",  order.expense, AmountText(2 * order.half),
          "--partner", kRealm,    "--share", "50%"};
}

class BillRecording final : public Wish {
 public:
  BillRecording(const std::filesystem::path& company, BillOrder order) : company_(company), order_(std::move(order)) {}

  std::string Kind() const override { return "bill record"; }
  // The number of the paper is what has the program refuse a second one.
  std::vector<std::string> Words() const override {
    std::vector<std::string> words{
        "bill",      "record",   company_.string(), order_.nameIsNew ? "--new-name" : "--name",
        order_.name, "--number", order_.key};
    std::ranges::move(WordsOf(order_), std::back_inserter(words));
    return words;
  }

 protected:
  bool Claim(Change& change, std::vector<std::string>& faults) override {
    const auto found = std::ranges::find_if(change.added, [this](const auto& added) {
      return added.second.memo == order_.key && added.second.links.empty();
    });
    if (found == change.added.end()) return false;
    subject_ = found->first;
    if (!IsBillAsOrdered(found->second, order_) || !HasPartnersRow(found->second, RowIn(kEntered))) {
      faults.push_back("not entered as ordered: bill " + order_.key);
    }
    if (order_.nameIsNew && change.newNames.erase(order_.name) == 0) {
      faults.push_back("entered without its new name: bill " + order_.key);
    }
    change.added.erase(found);
    return true;
  }

 private:
  std::filesystem::path company_;
  BillOrder order_;
};

class BillCorrection final : public Wish {
 public:
  BillCorrection(const std::filesystem::path& company, std::int64_t original, Transaction before, BillOrder order)
      : company_(company), before_(std::move(before)), order_(std::move(order)) {
    subject_ = original;
    order_.name = before_.name;
  }

  std::string Kind() const override { return "bill correct"; }
  std::vector<std::string> Words() const override {
    std::vector<std::string> words{"bill", "correct", company_.string(), std::to_string(*subject_)};
    std::ranges::move(WordsOf(order_), std::back_inserter(words));
    return words;
  }

 protected:
  bool Claim(Change& change, std::vector<std::string>& faults) override {
    const auto reversal = LinkedAs("reverses", change);
    const auto correction = LinkedAs("corrects", change);
    const bool hasReversal = reversal != change.added.end();
    const bool hasCorrection = correction != change.added.end();
    if (!hasReversal && !hasCorrection) return false;
    const std::string what = "transaction " + std::to_string(*subject_);
    if (!hasReversal || !hasCorrection) {
      faults.push_back("corrected by half: " + what);
    } else {
      if (!IsReversal(reversal->second)) faults.push_back("not reversed as it was: " + what);
      if (!IsCorrection(correction->second)) faults.push_back("not corrected as ordered: " + what);
      if (!IsOriginalAsItShouldBe(change)) faults.push_back("its request stands as if nothing had been done: " + what);
    }
    if (hasReversal) change.added.erase(reversal);
    if (hasCorrection) change.added.erase(correction);
    change.changed.erase(*subject_);
    return true;
  }

 private:
  std::map<std::int64_t, Transaction>::iterator LinkedAs(const char* kind, Change& change) const {
    const std::vector<Link> links{{.kind = kind, .earlier = *subject_}};
    return std::ranges::find_if(change.added, [&](const auto& added) { return added.second.links == links; });
  }

  int StateBefore() const { return before_.rows.front().state; }

  bool IsReversal(const Transaction& reversal) const {
    Transaction negated = before_;
    for (EntryLine& line : negated.lines) line.amount = -line.amount;
    IntercompanyRow row = RowIn(StateBefore() == kShared ? kEntered : kClosed);
    row.names = "reverses";
    row.earlierLine = before_.rows.front().line;
    return reversal.type == kBill && reversal.name == before_.name && AmountsOf(reversal) == AmountsOf(negated) &&
           HasPartnersRow(reversal, row);
  }

  bool IsCorrection(const Transaction& correction) const {
    IntercompanyRow row = RowIn(kEntered);
    row.names = "corrects";
    row.earlierLine = before_.rows.front().line;
    return correction.memo == order_.key && IsBillAsOrdered(correction, order_) && HasPartnersRow(correction, row);
  }

  // What the partner has stays so; what it has not is closed.
  bool IsOriginalAsItShouldBe(const Change& change) const {
    Transaction expected = before_;
    if (StateBefore() != kShared) expected.rows.front().state = kClosed;
    const auto found = change.changed.find(*subject_);
    return found == change.changed.end() ? expected == before_ : found->second.second == expected;
  }

  std::filesystem::path company_;
  Transaction before_;
  BillOrder order_;
};

}  // namespace

std::vector<std::int64_t> CorrectableBills(const std::map<std::int64_t, Transaction>& books) {
  constexpr int kSent = 1;
  std::set<std::int64_t> involved;
  for (const auto& [id, transaction] : books) {
    for (const Link& link : transaction.links) {
      if (link.kind == "reverses") involved.insert({id, link.earlier});
    }
  }
  std::vector<std::int64_t> correctable;
  for (const auto& [id, transaction] : books) {
    const bool isBill = transaction.type == kBill && transaction.rows.size() == 1;
    if (isBill && transaction.rows.front().state != kSent && !involved.contains(id)) correctable.push_back(id);
  }
  return correctable;
}

std::unique_ptr<Wish> BillWish(const std::filesystem::path& company, BillOrder order) {
  return std::make_unique<BillRecording>(company, std::move(order));
}

std::unique_ptr<Wish> CorrectionWish(const std::filesystem::path& company, std::int64_t original,
                                     const Transaction& before, BillOrder order) {
  return std::make_unique<BillCorrection>(company, original, before, std::move(order));
}
