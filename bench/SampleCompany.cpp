#include "bench/SampleCompany.h"

#include <fmt/format.h>

#include <fstream>
#include <random>

#include "standalone/books/AuditTable.h"
#include "standalone/company/CompanyFile.h"

namespace bench {

namespace {

using standalone::Access;
using standalone::CompanyFile;
using standalone::NewCompany;
using standalone::SqliteDatabase;
using standalone::UnitOfWork;

constexpr std::int64_t kHashFactor = 2654435761;
constexpr std::int64_t kHashMask = 0xFFFFFFFF;

constexpr const char* kTwoRelated = R"sql(
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20)
INSERT INTO me_relation (realm_id, partner_name, relation_type, state, created_at, changed_at, revision,
    due_from_account_id, due_to_account_id)
  SELECT printf('91300000000%04d', i), printf('Partner Company %d', i), 1, 3, 0, 0, 1, 2 + i, 22 + i FROM n;
)sql";

constexpr const char* kAccounts = R"sql(
INSERT INTO account (parent_id, name, full_name, type, special_kind, deleted) VALUES
  (NULL, 'Accounts Payable', 'Accounts Payable', 5, 0, 0),
  (NULL, 'Checking', 'Checking', 0, 0, 0);
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20)
INSERT INTO account (parent_id, name, full_name, type, special_kind, deleted)
  SELECT NULL, printf('Due from Partner %d', i), printf('Due from Partner %d', i), 2, 0, 0 FROM n;
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20)
INSERT INTO account (parent_id, name, full_name, type, special_kind, deleted)
  SELECT NULL, printf('Due to Partner %d', i), printf('Due to Partner %d', i), 7, 0, 0 FROM n;
INSERT INTO account (parent_id, name, full_name, type, special_kind, deleted)
  VALUES (NULL, 'Operating Expenses', 'Operating Expenses', 12, 0, 0);
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 40)
INSERT INTO account (parent_id, name, full_name, type, special_kind, deleted)
  SELECT 43, printf('Department %d', i), printf('Operating Expenses:Department %d', i), 12, 0, 0 FROM n;
)sql";

// The first tenth stands at the top, the next third under it, the rest under that.
constexpr const char* kNameRows = R"sql(
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30)
INSERT INTO name (parent_id, name, full_name, kind) SELECT NULL, printf('Region %d', i), printf('Region %d', i), 1 FROM n;
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 100)
INSERT INTO name (parent_id, name, full_name, kind)
  SELECT 1 + i % 30, printf('Vendor %d', i), printf('Region %d:Vendor %d', 1 + i % 30, i), 1 FROM n;
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 170)
INSERT INTO name (parent_id, name, full_name, kind)
  SELECT parent.id, printf('Branch %d', i), parent.full_name || printf(':Branch %d', i), 1
    FROM n CROSS JOIN name parent ON parent.id = 31 + i % 100;
)sql";

// Transaction i has the lines 2i - 1, the target, and 2i. Of each four the last is no intercompany one.
constexpr const char* kTransactions = R"sql(
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {0})
INSERT INTO txn (type, date, name_id, memo)
  SELECT CASE i % 4 WHEN 1 THEN 9 WHEN 2 THEN 3 WHEN 3 THEN 8 ELSE 9 END,
         2025 * 65536 + (1 + (i - 1) * 12 / {0}) * 256 + 1 + i % 28, 1 + i % 300, printf('Order %d', i) FROM n;
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 2 * {0})
INSERT INTO txn_line (txn_id, account_id, amount, memo)
  SELECT (i + 1) / 2,
         CASE WHEN i % 2 = 1 THEN 44 + (i / 2) % 40
              ELSE CASE (i / 2) % 4 WHEN 2 THEN 2 WHEN 3 THEN 23 + (i / 2) % 20 ELSE 1 END END,
         CASE WHEN i % 2 = 1 THEN 1 ELSE -1 END * (1 + ((i + 1) / 2 * 7919) % 1000000),
         printf('Services of month %d', (i + 1) / 2 % 12 + 1) FROM n;
UPDATE txn SET posted = 1;
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {0})
INSERT INTO me_transaction (txn_id, target_id, relation_id, request_id, txn_type, state)
  SELECT i, 2 * i - 1, 1 + i % 20,
         printf('%08x-0000-4000-8000-%012x', ((i - i / 4) * 2654435761) & 4294967295, i - i / 4),
         CASE i % 4 WHEN 1 THEN 9 WHEN 2 THEN 3 ELSE 8 END, 1 FROM n WHERE i % 4 <> 0;
)sql";

// Types as a chart has them: few banks and balance-sheet accounts, many of income and expense.
constexpr const char* kChart = R"sql(
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {0})
INSERT INTO account (parent_id, name, full_name, type, special_kind, deleted)
  SELECT CASE WHEN i % 5 = 0 THEN i - 1 END, printf('Account number %d', i),
         CASE WHEN i % 5 = 0 THEN printf('Account number %d:Account number %d', i - 1, i)
              ELSE printf('Account number %d', i) END, (i - (i % 5 = 0)) / 7 % 16, 0, 0 FROM n;
WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < {1})
INSERT INTO me_relation (realm_id, partner_name, relation_type, state, created_at, changed_at, revision,
    due_from_account_id, due_to_account_id)
  SELECT printf('91300000000%04d', i), printf('Partner Company %d', i), 1, 3, 0, 0, 1, 20 * i + 1, 20 * i + 2 FROM n;
)sql";

void Fill(const std::filesystem::path& file, const std::string& sql) {
  NewCompany company;
  company.name = "Alder Works";
  CompanyFile::Create(file, company);
  SqliteDatabase database(file, standalone::kBusyTimeout);
  // Made anew after a crash.
  database.Execute("PRAGMA synchronous = OFF; PRAGMA cache_size = -200000;");
  {
    UnitOfWork unit(database, Access::kWrite);
    database.Execute(sql.c_str());
    unit.Commit();
  }
  database.Execute("PRAGMA wal_checkpoint(TRUNCATE)");
}

std::string Lists() {
  return std::string(kAccounts) + kTwoRelated + kNameRows;
}

std::string FullName(std::int64_t id) {
  if (id <= 30) return fmt::format("Region {}", id);
  if (id <= 130) return fmt::format("Region {}:Vendor {}", 1 + (id - 30) % 30, id - 30);
  return fmt::format("{}:Branch {}", FullName(31 + (id - 130) % 100), id - 130);
}

std::string OtherSide(std::int64_t transaction) {
  switch (transaction % 4) {
    case 2:
      return "Checking";
    case 3:
      return fmt::format("Due to Partner {}", 1 + transaction % kPartners);
    default:
      return "Accounts Payable";
  }
}

}  // namespace

WorkFolder::WorkFolder(const std::filesystem::path& parent)
    : path_(parent / fmt::format("multientity-bench-{:010}", std::random_device{}())) {
  std::filesystem::create_directories(path_);
}

WorkFolder::~WorkFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string RealmId(std::int32_t partner) {
  return fmt::format("91300000000{:04}", partner);
}

std::string RequestId(std::int64_t number) {
  return fmt::format("{:08x}-0000-4000-8000-{:012x}", number * kHashFactor & kHashMask, number);
}

void MakeCompany(const std::filesystem::path& file, std::int64_t lines) {
  // Of n transactions n - n / 4 have an intercompany line.
  const std::int64_t transactions = lines + (lines - 1) / 3;
  Fill(file, lines == 0 ? Lists() : Lists() + fmt::format(fmt::runtime(kTransactions), transactions));
}

void MakeChart(const std::filesystem::path& file, std::int32_t accounts, std::int32_t relations) {
  Fill(file, fmt::format(fmt::runtime(kChart), accounts, relations));
}

std::string ContentOf(const std::filesystem::path& company) {
  SqliteDatabase database(company, standalone::kBusyTimeout);
  return database.QueryText(R"sql(
SELECT (SELECT json_group_array(json_array(id, type, date, name_id, memo, document_number, posted, partner_confirmed))
          FROM txn)
    || (SELECT json_group_array(json_array(id, txn_id, account_id, amount, memo)) FROM txn_line)
    || (SELECT json_group_array(json_array(txn_id, target_id, relation_id, request_id, txn_type, state, of_before))
          FROM me_transaction)
    || (SELECT json_group_array(json_array(target_id, names, earlier_target_id)) FROM me_own_request)
    || (SELECT json_group_array(json_array(id, previous, at, clock, user, system_user, action, first_txn_id, last_txn_id,
                                           subject, changes)) FROM audit)
    || (SELECT json_group_array(json_array(sha256, audit_id)) FROM imported_file))sql");
}

std::vector<platform::Clock::TimePoint> MomentsOfTrail(const std::filesystem::path& company) {
  SqliteDatabase database(company, standalone::kBusyTimeout);
  standalone::AuditTable trail(database);
  std::vector<platform::Clock::TimePoint> moments;
  UnitOfWork unit(database, Access::kRead);
  trail.ForEach({},
                [&](const standalone::AuditLine& line) { moments.emplace_back(std::chrono::milliseconds(line.at)); });
  unit.Commit();
  return moments;
}

// Line number n belongs to transaction n + (n - 1) / 3.
Request RequestOf(std::int64_t line) {
  const std::int64_t transaction = line + (line - 1) / 3;
  return {RealmId(static_cast<std::int32_t>(1 + transaction % kPartners)), RequestId(line)};
}

void WriteImportFile(const std::filesystem::path& csv, std::int64_t transactions) {
  std::ofstream out(csv, std::ios::binary);
  out << "transaction,type,date,name,memo,account,amount,line_memo,partner_realm,request_id,state\n";
  for (std::int64_t i = 1; i <= transactions; ++i) {
    const bool isIntercompany = i % 4 != 0;
    const char* const type = i % 4 == 2 ? "check" : i % 4 == 3 ? "journal" : "bill";
    const std::int64_t amount = 1 + i * 7919 % 1000000;
    const auto partner = static_cast<std::int32_t>(1 + i % kPartners);
    out << fmt::format(
        "T{},{},2025-{:02}-{:02},{},Order {},Operating Expenses:Department {},{}.{:02},Services,{},{},{}\n", i, type,
        1 + i % 12, 1 + i % 28, FullName(1 + i % kNames), i, 1 + i % kExpenseAccounts, amount / 100, amount % 100,
        isIntercompany ? RealmId(partner) : "", isIntercompany ? RequestId(i) : "",
        isIntercompany ? std::to_string(kSampleState) : "");
    out << fmt::format("T{},,,,,{},-{}.{:02},Services,,,\n", i, OtherSide(i), amount / 100, amount % 100);
  }
}

}  // namespace bench
