#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "standalone/desk/Reports.h"

struct sqlite3;

namespace bench {

// What a programmer would write who needs the same reports from the same file and nothing else: one connection, each
// statement prepared where it is needed, no host, no rights, no units of work.
class LookingUpByHand {
 public:
  explicit LookingUpByHand(const std::filesystem::path& file);

  // Of all days. Amounts are added up here or by SQL.
  desk::Balances Balances();
  desk::Balances BalancesBySql();
  desk::Register Register(std::int32_t accountId);
  desk::OpenItems OpenItems(DateType32 asOf);
  desk::ShownTransaction Show(std::int32_t txnId);

 private:
  struct Closer {
    void operator()(sqlite3* database) const noexcept;
  };

  std::unique_ptr<sqlite3, Closer> database_;
};

}  // namespace bench
