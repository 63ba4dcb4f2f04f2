#include "crash/Wish.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <sstream>

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::json;

constexpr int kEstablished = 3;
constexpr int kExitNotDone = 1;
constexpr int kExitBadInput = 2;

std::set<std::string> Missing(const std::set<std::string>& from, const std::set<std::string>& in) {
  std::set<std::string> missing;
  std::ranges::set_difference(from, in, std::inserter(missing, missing.end()));
  return missing;
}

// The one object that the program prints with --json; a null value when it is not there in full.
Json ObjectIn(const std::string& printed) {
  return printed.ends_with('\n') ? Json::parse(printed, nullptr, /*allow_exceptions=*/false) : Json();
}

bool HasRow(const Transaction& transaction, const std::string& request) {
  return std::ranges::any_of(transaction.rows, [&](const IntercompanyRow& row) { return row.request == request; });
}

class Booking final : public Wish {
 public:
  Booking(const std::filesystem::path& company, BookingOrder order) : company_(company), order_(std::move(order)) {}

  std::string Kind() const override { return "journal record"; }

  std::vector<std::string> Words() const override {
    return {"journal",
            "record",
            company_.string(),
            "--realm",
            kRealm,
            "--request",
            order_.request,
            "--amount",
            AmountText(order_.amount),
            order_.expenseIsNew ? "--new-expense" : "--expense",
            order_.expense,
            order_.nameIsNew ? "--new-name" : "--name",
            order_.name};
  }

 protected:
  bool Claim(Change& change, std::vector<std::string>& faults) override {
    const auto found =
        std::ranges::find_if(change.added, [&](const auto& added) { return HasRow(added.second, order_.request); });
    if (found == change.added.end()) return false;
    subject_ = found->first;
    if (!IsAsOrdered(found->second)) faults.push_back("not booked as ordered: request " + order_.request);
    if (order_.expenseIsNew && change.newAccounts.erase(order_.expense) == 0) {
      faults.push_back("booked without its new account: request " + order_.request);
    }
    if (order_.nameIsNew && change.newNames.erase(order_.name) == 0) {
      faults.push_back("booked without its new name: request " + order_.request);
    }
    change.added.erase(found);
    return true;
  }

 private:
  bool IsAsOrdered(const Transaction& entry) const {
    if (entry.type != kJournalEntry || entry.name != order_.name || entry.confirmed) return false;
    if (entry.lines.size() != 2 || entry.rows.size() != 1) return false;
    const EntryLine& debit = entry.lines[0];
    const EntryLine& credit = entry.lines[1];
    return debit.account == order_.expense && debit.amount == order_.amount && credit.id == debit.id + 1 &&
           credit.account == kDueTo &&
           entry.rows[0] == IntercompanyRow{debit.id, kRealm, order_.request, kJournalEntry, kEstablished};
  }

  std::filesystem::path company_;
  BookingOrder order_;
};

class Removal final : public Wish {
 public:
  Removal(const std::filesystem::path& company, std::int64_t transaction) : company_(company) {
    subject_ = transaction;
  }

  std::string Kind() const override { return "journal remove"; }
  std::vector<std::string> Words() const override {
    return {"journal", "remove", company_.string(), "--txn", std::to_string(*subject_)};
  }

 protected:
  bool Claim(Change& change, std::vector<std::string>& /*faults*/) override {
    return change.removed.erase(*subject_) != 0;
  }

 private:
  std::filesystem::path company_;
};

class StateChange final : public Wish {
 public:
  StateChange(const std::filesystem::path& company, std::int64_t transaction, const IntercompanyRow& row, int state)
      : company_(company), row_(row), state_(state) {
    subject_ = transaction;
  }

  std::string Kind() const override { return "transaction set-state"; }
  std::vector<std::string> Words() const override {
    return {"transaction", "set-state", company_.string(),     "--realm", row_.realm, "--request",
            row_.request,  "--state",   std::to_string(state_)};
  }

 protected:
  bool Claim(Change& change, std::vector<std::string>& faults) override {
    const auto found = change.changed.find(*subject_);
    if (found == change.changed.end()) return false;
    auto [expected, is] = found->second;
    expected.rows.front().state = state_;
    expected.confirmed = expected.confirmed || state_ == kEstablished;
    if (is != expected) faults.push_back("the state is changed by half: transaction " + std::to_string(*subject_));
    change.changed.erase(found);
    return true;
  }

 private:
  std::filesystem::path company_;
  IntercompanyRow row_;
  int state_;
};

constexpr std::array kImportTypes{kJournalEntry, kBill, kCheck};

class Import final : public Wish {
 public:
  Import(const std::filesystem::path& company, const std::filesystem::path& csv, const std::string& key,
         int transactions)
      : company_(company), csv_(csv), key_(key), transactions_(transactions) {
    std::ofstream file(csv);
    file << "transaction,type,date,name,memo,account,amount,partner_realm,request_id,state\n";
    for (int number = 0; number < transactions; ++number) WriteTransaction(file, number);
    if (!file.flush()) throw std::runtime_error("cannot write " + csv.string());
  }

  std::string Kind() const override { return "import transactions"; }
  std::vector<std::string> Words() const override {
    return {"import", "transactions", company_.string(), csv_.string()};
  }

 protected:
  bool Claim(Change& change, std::vector<std::string>& faults) override {
    // A reversal has the memo of its original.
    const std::size_t claimed = std::erase_if(
        change.added, [this](const auto& added) { return added.second.memo == key_ && added.second.links.empty(); });
    if (claimed != 0 && claimed != static_cast<std::size_t>(transactions_)) {
      faults.push_back("imported in part: " + std::to_string(claimed) + " of " + std::to_string(transactions_) +
                       " transactions of " + csv_.string());
    }
    return claimed != 0;
  }

 private:
  // A journal entry comes first: the request ids of journal entries are what makes the program refuse a second import.
  void WriteTransaction(std::ostream& file, int number) const {
    const int type = kImportTypes[static_cast<std::size_t>(number) % kImportTypes.size()];
    const std::string amount = AmountText(100 + number);
    const std::string key = "T" + std::to_string(number);
    const std::string partner = std::string(",") + kRealm + ',' + key_ + '-' + std::to_string(number) + ",0\n";
    switch (type) {
      case kJournalEntry:
        file << key << ",journal,2024-03-31,Northern Power," << key_ << ",Utilities," << amount << partner;
        file << key << ",journal,,,," << kDueTo << ",-" << amount << ",,,\n";
        break;
      case kBill:
        file << key << ",bill,2024-03-01,Northern Power," << key_ << ",Payables,-" << amount << ",,,\n";
        file << key << ",bill,,,," << kDueFrom << ',' << amount << partner;
        break;
      default:
        file << key << ",check,2024-03-15,Northern Power," << key_ << ",Checking,-" << amount << ",,,\n";
        file << key << ",check,,,," << kDueFrom << ',' << amount << partner;
        break;
    }
  }

  std::filesystem::path company_;
  std::filesystem::path csv_;
  std::string key_;
  int transactions_;
};

bool Any(const std::vector<Report>& reports, Report::Kind kind) {
  return std::ranges::any_of(reports, [kind](const Report& report) { return report.kind == kind; });
}

}  // namespace

std::string AmountText(std::int64_t minorUnits) {
  const std::int64_t cents = minorUnits % 100;
  return std::to_string(minorUnits / 100) + (cents < 10 ? ".0" : ".") + std::to_string(cents);
}

Change::Change(const Contents& before, const Contents& after)
    : newAccounts(Missing(after.accounts, before.accounts)), newNames(Missing(after.names, before.names)) {
  for (const auto& [id, transaction] : after.transactions) {
    const auto old = before.transactions.find(id);
    if (old == before.transactions.end()) {
      added.emplace(id, transaction);
    } else if (old->second != transaction) {
      changed.emplace(id, std::pair(old->second, transaction));
    }
  }
  for (const auto& [id, transaction] : before.transactions) {
    if (!after.transactions.contains(id)) removed.emplace(id, transaction);
  }
  lost = Missing(before.accounts, after.accounts);
  lost.merge(Missing(before.names, after.names));
}

std::vector<std::string> Change::Unclaimed() const {
  std::vector<std::string> faults;
  for (const auto& [id, transaction] : added) faults.push_back("nobody booked transaction " + std::to_string(id));
  for (const auto& [id, transaction] : removed) faults.push_back("nobody removed transaction " + std::to_string(id));
  for (const auto& [id, states] : changed) faults.push_back("nobody changed transaction " + std::to_string(id));
  for (const std::string& name : newAccounts) faults.push_back("nobody has an entry for the new account " + name);
  for (const std::string& name : newNames) faults.push_back("nobody has an entry for the new name " + name);
  for (const std::string& name : lost) faults.push_back("nobody removed the account or name " + name);
  return faults;
}

Report ReportOf(const ProgramRun& run) {
  const Json done = ObjectIn(run.out);
  if (done.is_object()) {
    Report report{.kind = Report::Kind::kDone, .text = run.out};
    if (done.contains("transaction")) report.transaction = done.at("transaction").get<std::int64_t>();
    return report;
  }
  if (run.ending == Ending::kKilled) return {};
  Report report{
      .kind = Report::Kind::kFailed,
      .text = (run.ending == Ending::kCrashed ? "signal " : "exit code ") + std::to_string(run.code) + " " + run.err};
  const Json complaint = ObjectIn(run.err);
  if (run.ending == Ending::kCrashed || !complaint.is_object()) return report;
  const Json error = complaint.value("error", Json::object());
  if (error.contains("status") && !error.at("status").is_null()) report.status = error.at("status").get<int>();
  const bool isRefusal = (run.code == kExitNotDone && report.status) || run.code == kExitBadInput;
  if (isRefusal) report.kind = Report::Kind::kRefused;
  return report;
}

void Wish::Judge(const std::vector<Report>& reports, Change& change, std::vector<std::string>& faults) {
  const bool wasFulfilled = fulfilled_;
  const bool isClaimed = Claim(change, faults);
  fulfilled_ = wasFulfilled || isClaimed;
  if (isClaimed && wasFulfilled) faults.push_back("done a second time: " + Kind());
  for (const Report& report : reports) {
    if (report.kind == Report::Kind::kFailed) faults.push_back(Kind() + " failed: " + report.text);
    if (report.kind == Report::Kind::kRefused && !fulfilled_) {
      faults.push_back(Kind() + " was refused without a reason: " + report.text);
    }
    if (report.transaction && Subject() != report.transaction) {
      faults.push_back("reported another transaction than the one that is there: " + report.text);
    }
  }
  if (Any(reports, Report::Kind::kDone) && !fulfilled_) {
    faults.push_back("reported as done, but it is not there: " + Kind());
  }
}

std::unique_ptr<Wish> BookingWish(const std::filesystem::path& company, BookingOrder order) {
  return std::make_unique<Booking>(company, std::move(order));
}

std::unique_ptr<Wish> RemovalWish(const std::filesystem::path& company, std::int64_t transaction) {
  return std::make_unique<Removal>(company, transaction);
}

std::unique_ptr<Wish> StateWish(const std::filesystem::path& company, std::int64_t transaction,
                                const IntercompanyRow& row, int state) {
  return std::make_unique<StateChange>(company, transaction, row, state);
}

std::unique_ptr<Wish> ImportWish(const std::filesystem::path& company, const std::filesystem::path& csv,
                                 const std::string& key, int transactions) {
  return std::make_unique<Import>(company, csv, key, transactions);
}
