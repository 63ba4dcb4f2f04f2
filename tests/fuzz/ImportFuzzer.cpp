#include <array>

#include "fuzz/BooksFuzzing.h"
#include "standalone/import/Import.h"

// CSV files. The first byte of the input chooses what is imported, and whether what is known is passed over. A file is
// imported as a whole or refused with a reason, and then the books are as they were.

namespace {

using fuzzing::Require;
using Import = standalone::ImportResult (*)(standalone::StandaloneHost&, standalone::CsvSource&&,
                                            const standalone::ImportOptions&);

constexpr std::array<Import, 3> kImports{standalone::ImportAccounts, standalone::ImportNames,
                                         standalone::ImportTransactions};

constexpr const char* kCounts =
    "SELECT (SELECT count(*) FROM account) + (SELECT count(*) FROM name) + (SELECT count(*) FROM txn) + "
    "(SELECT count(*) FROM txn_line) + (SELECT count(*) FROM me_transaction)";

std::string Digest(fuzzing::Books& books) {
  return books.Host().Request(standalone::Access::kRead, [&] {
    return books.Data().QueryText(
        "SELECT (SELECT group_concat(id || full_name || type) FROM account) || "
        "(SELECT group_concat(id || full_name || kind) FROM name) || (SELECT count(*) FROM txn) || "
        "(SELECT count(*) FROM txn_line) || (SELECT count(*) FROM me_transaction)");
  });
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static fuzzing::Books books;
  static const std::string before = Digest(books);
  static const std::int64_t countBefore = books.Number(kCounts);
  if (size == 0) return 0;

  const std::filesystem::path csv = books.File("rows.csv");
  standalone::WriteFile(csv, fuzzing::Text(bytes + 1, size - 1));
  try {
    const standalone::ImportResult result = kImports[bytes[0] % kImports.size()](
        books.Host(), csv, {.skipKnown = bytes[0] >= 128, .progress = {}, .onRead = {}});
    const std::int64_t added =
        result.accounts + result.names + result.transactions + result.lines + result.intercompanyRows;
    books.RequireSound();
    Require(books.Number(kCounts) == countBefore + added, "what was said to be imported is there, and nothing else");
    if (added != 0) books.BeginAnew();
  } catch (const standalone::InvalidInput& refusal) {
    Require(std::string_view(refusal.what()).find("rows.csv") != std::string_view::npos, "a refusal names the file");
    Require(Digest(books) == before, "a refused import leaves the books as they were");
  }
  return 0;
}
