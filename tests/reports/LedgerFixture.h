#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "MultiEntityHost/Enumerations.h"
#include "standalone/books/LedgerQueries.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {

// Small books, within one unit of work.
class LedgerFixture : public CompanyFixture {
 protected:
  using Lines = std::vector<std::pair<std::int32_t, std::int64_t>>;

  std::int32_t AddAccount(const std::string& fullName) { return host_.Accounts().Create({fullName, 12, 0, false}).id; }

  std::int32_t Enter(DateType32 date, const Lines& lines, std::int16_t type = kTxnTypeJournalEntry) {
    const std::int32_t txnId =
        host_.Transactions().AddHeader({.type = type, .date = date, .nameId = 0, .memo = "", .documentNumber = ""});
    for (const auto& [account, amount] : lines) {
      host_.Transactions().AddLine(txnId, {.accountId = account, .amount = amount, .memo = ""});
    }
    return txnId;
  }
  std::int32_t Post(DateType32 date, const Lines& lines, std::int16_t type = kTxnTypeJournalEntry) {
    const std::int32_t txnId = Enter(date, lines, type);
    host_.Transactions().Post(txnId);
    return txnId;
  }

  // Some hundred transactions of 2025 on these accounts.
  void PostAtRandom(const std::vector<std::int32_t>& accounts, unsigned seed) {
    std::mt19937 random(seed);
    const auto upTo = [&random](int most) {
      return static_cast<int>(random() % static_cast<unsigned>(most));
    };
    for (int i = 0; i < 300; ++i) {
      Lines lines;
      std::int64_t sum = 0;
      for (int line = 1 + upTo(4); line > 0; --line) {
        const std::int64_t amount = upTo(200'000) - 100'000;
        lines.emplace_back(accounts[static_cast<std::size_t>(upTo(static_cast<int>(accounts.size())))], amount);
        sum += amount;
      }
      lines.emplace_back(accounts.front(), -sum);
      Post({2025, 1 + upTo(12), 1 + upTo(28)}, lines);
    }
  }

  LedgerQueries& Ledger() { return host_.Ledger(); }

  StandaloneHost host_{path_};
  UnitOfWork unit_{host_.Data(), Access::kWrite};
};

}  // namespace standalone
