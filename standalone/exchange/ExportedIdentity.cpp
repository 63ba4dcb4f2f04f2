#include "standalone/exchange/ExportedIdentity.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "standalone/exchange/Errors.h"
#include "standalone/exchange/IdentityFile.h"
#include "standalone/exchange/IdentityLines.h"
#include "standalone/exchange/Keys.h"
#include "standalone/exchange/Netstrings.h"
#include "standalone/exchange/Octets.h"
#include "standalone/exchange/Sodium.h"
#include "standalone/exchange/TextBlock.h"

namespace exchange {

namespace {

constexpr std::string_view kLabel = "MULTIENTITY IDENTITY";
constexpr std::string_view kExportForm = "multientity-exported-identity-1";
constexpr std::string_view kExport = "The exported identity";

// What a text may ask of this machine.
constexpr std::uint64_t kMostPasses = 10;
constexpr std::uint64_t kMostMemory = std::uint64_t{1} << 30U;
constexpr std::uint64_t kLeastMemory = crypto_pwhash_MEMLIMIT_MIN;
constexpr std::size_t kMostDigitsOfCosts = 10;

std::string RandomBytes(std::size_t count) {
  std::string bytes(count, '\0');
  randombytes_buf(bytes.data(), bytes.size());
  return bytes;
}

// A text that is wiped when it is no longer needed.
class Secret {
 public:
  explicit Secret(std::string text) : text_(std::move(text)) {}
  Secret(const Secret&) = delete;
  Secret& operator=(const Secret&) = delete;
  ~Secret() { Wipe(text_); }

  std::string& Text() noexcept { return text_; }

 private:
  std::string text_;
};

void DeriveKey(Secret& key, std::string_view passphrase, std::string_view salt, const Effort& effort) {
  key.Text().resize(crypto_secretbox_KEYBYTES);
  if (crypto_pwhash(BytesOf(key.Text()), key.Text().size(), passphrase.data(), passphrase.size(), BytesOf(salt),
                    effort.passes, static_cast<std::size_t>(effort.memory), crypto_pwhash_ALG_ARGON2ID13) != 0) {
    throw std::runtime_error("The passphrase needs " + std::to_string(effort.memory >> 20U) +
                             " MiB of memory, which this machine does not give now.");
  }
}

struct Sealed {
  Effort effort;
  std::string_view salt;
  std::string_view nonce;
  std::string_view box;
};

std::uint64_t TakeNumber(NetstringReader& reader, std::string_view what, std::uint64_t least, std::uint64_t most) {
  const std::string_view digits = reader.Take();
  const bool isNumber = !digits.empty() && digits.size() <= kMostDigitsOfCosts &&
                        digits.find_first_not_of("0123456789") == std::string_view::npos;
  const std::uint64_t number = isNumber ? std::stoull(std::string(digits)) : 0;
  if (isNumber && number >= least && number <= most && std::to_string(number) == digits) return number;
  throw Malformed(std::string(kExport) + " asks for " + std::string(what) + " beyond " + std::to_string(least) +
                  " to " + std::to_string(most) + ".");
}

std::string_view TakeBytes(NetstringReader& reader, std::string_view what, std::size_t count) {
  const std::string_view bytes = reader.Take();
  if (bytes.size() == count) return bytes;
  throw Malformed(std::string(kExport) + " has a " + std::string(what) + " of another length than " +
                  std::to_string(count) + " bytes.");
}

// The digest behind all else tells a text that was changed on its way from a passphrase that is another one. Returns
// what stands before it.
std::string_view BeforeDigest(std::string_view bytes) {
  const std::size_t before = bytes.size() - std::min(bytes.size(), kOctets);
  if (HashOf(bytes.substr(0, before)).Bytes() == bytes.substr(before)) return bytes.substr(0, before);
  throw Malformed(std::string(kExport) +
                  " was changed or is not complete. Copy the text again, from its first line to its last.");
}

Sealed Read(std::string_view bytes) {
  NetstringReader reader(kExport, bytes);
  if (reader.Take() != kExportForm) {
    throw Malformed(std::string(kExport) + " has another form than " + std::string(kExportForm) +
                    "; a newer program can read it.");
  }
  const std::string_view whole = BeforeDigest(bytes);
  Sealed sealed;
  sealed.effort.passes = TakeNumber(reader, "passes", crypto_pwhash_OPSLIMIT_MIN, kMostPasses);
  sealed.effort.memory = TakeNumber(reader, "bytes of memory", kLeastMemory, kMostMemory);
  sealed.salt = TakeBytes(reader, "salt", crypto_pwhash_SALTBYTES);
  sealed.nonce = TakeBytes(reader, "nonce", crypto_secretbox_NONCEBYTES);
  if (reader.Position() + crypto_secretbox_MACBYTES > whole.size())
    throw Malformed(std::string(kExport) + " is empty.");
  sealed.box = whole.substr(reader.Position());
  return sealed;
}

void RequirePassphrase(std::string_view passphrase) {
  if (passphrase.size() >= kShortestPassphrase) return;
  throw standalone::InvalidInput("The passphrase is too short. Give one of at least " +
                                 std::to_string(kShortestPassphrase) +
                                 " characters: whoever finds it out and has the "
                                 "text can speak for the company.");
}

}  // namespace

Effort UsualEffort() noexcept {
  return {.passes = crypto_pwhash_OPSLIMIT_MODERATE, .memory = crypto_pwhash_MEMLIMIT_MODERATE};
}

std::string ExportIdentity(const std::filesystem::path& identity, std::string_view passphrase, const Effort& effort) {
  RequirePassphrase(passphrase);
  RequireRandomNumbers();
  Secret text(IdentityFile(identity).Text());
  const std::string salt = RandomBytes(crypto_pwhash_SALTBYTES);
  const std::string nonce = RandomBytes(crypto_secretbox_NONCEBYTES);
  Secret key({});
  DeriveKey(key, passphrase, salt, effort);
  std::string box(text.Text().size() + crypto_secretbox_MACBYTES, '\0');
  crypto_secretbox_easy(BytesOf(box), BytesOf(text.Text()), text.Text().size(), BytesOf(nonce), BytesOf(key.Text()));
  std::string bytes;
  AppendNetstring(bytes, kExportForm);
  AppendNetstring(bytes, std::to_string(effort.passes));
  AppendNetstring(bytes, std::to_string(effort.memory));
  AppendNetstring(bytes, salt);
  AppendNetstring(bytes, nonce);
  bytes += box;
  bytes += HashOf(bytes).Bytes();
  return TextBlockOf(kLabel, bytes);
}

void ImportIdentity(const std::filesystem::path& identity, std::string_view text, std::string_view passphrase) {
  RequireRandomNumbers();
  IdentityFile::RequireNone(identity);
  const std::string bytes = BytesOfTextBlock(kLabel, text, kMostExportedText);
  const Sealed sealed = Read(bytes);
  Secret key({});
  DeriveKey(key, passphrase, sealed.salt, sealed.effort);
  Secret opened(std::string(sealed.box.size() - crypto_secretbox_MACBYTES, '\0'));
  if (crypto_secretbox_open_easy(BytesOf(opened.Text()), BytesOf(sealed.box), sealed.box.size(), BytesOf(sealed.nonce),
                                 BytesOf(key.Text())) != 0) {
    throw Malformed("The passphrase is not the one with which the identity was exported. Nothing was imported.");
  }
  IdentityLines lines{std::string(kExport), nullptr};
  lines.Add(opened.Text());
  lines.Finish();
  IdentityFile::MakeFrom(identity, opened.Text());
}

}  // namespace exchange
