#include "fuzz/ExchangeFuzzing.h"
#include "standalone/exchange/ExportedIdentity.h"
#include "standalone/exchange/IdentityLines.h"
#include "standalone/exchange/TextBlock.h"
#include "support/TemporaryFolder.h"

// Identities: the lines of a file, and texts that somebody says are an export of one.

namespace {

using exchange::Hash;
using exchange::IdentityError;
using exchange::IdentityLines;
using fuzzing::Require;

constexpr const char* kPassphrase = "a passphrase that is long";

struct Read {
  std::string seed;
  std::size_t formerKeys = 0;
  std::uint64_t wholeBytes = 0;
  std::vector<Hash> left;

  friend bool operator==(const Read&, const Read&) = default;
};

std::optional<Read> InPieces(std::string_view text, std::size_t piece) {
  Read read;
  try {
    IdentityLines lines("It", [&read](const Hash& hash) { read.left.push_back(hash); });
    for (; !text.empty(); text.remove_prefix(std::min(piece, text.size()))) lines.Add(text.substr(0, piece));
    lines.Finish();
    read.seed = lines.Keys().HexSeed();
    read.formerKeys = lines.FormerKeys().size();
    read.wholeBytes = lines.WholeBytes();
    Require(lines.LeftCount() == read.left.size(), "each fact that left is told of");
  } catch (const IdentityError&) {
    return std::nullopt;
  } catch (const standalone::InvalidInput&) {
    return std::nullopt;
  }
  return read;
}

void CheckLines(std::string_view text) {
  const std::optional<Read> whole = InPieces(text, std::string_view::npos);
  Require(whole == InPieces(text, 7), "an identity is the same however it is read");
  if (!whole) return;
  Require(whole->wholeBytes <= text.size(), "no line ends behind the text");
  Require(InPieces(text.substr(0, whole->wholeBytes), std::string_view::npos) == whole,
          "what a crash left of a line is none");
}

// With little effort and the right digest, so that what stands between them is looked at.
std::string ExportOf(std::string_view lines) {
  std::string bytes;
  for (const char* text : {"multientity-exported-identity-1", "1", "8192"}) exchange::AppendNetstring(bytes, text);
  bytes += fuzzing::NetstringsOf(lines, '\n');
  bytes += exchange::HashOf(bytes).Bytes();
  return exchange::TextBlockOf("MULTIENTITY IDENTITY", bytes);
}

void CheckImport(std::string_view text) {
  static const standalone::TemporaryFolder folder;
  const std::filesystem::path file = folder / "company.identity";
  bool isRefused = false;
  try {
    exchange::ImportIdentity(file, text, kPassphrase);
  } catch (const IdentityError&) {
    isRefused = true;
  } catch (const standalone::InvalidInput&) {
    isRefused = true;
  }
  Require(isRefused && !std::filesystem::exists(file), "what the passphrase does not open leaves nothing");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const std::string_view text = fuzzing::Text(bytes, size);
  CheckLines(text);
  CheckLines("multientity-identity 1\nseed " + std::string(64, '0') + "\n" + std::string(text));
  CheckImport(ExportOf(text));
  return 0;
}
