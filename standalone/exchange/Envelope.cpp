#include "standalone/exchange/Envelope.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "standalone/exchange/Errors.h"
#include "standalone/exchange/Fact.h"
#include "standalone/exchange/Netstrings.h"
#include "standalone/values/Text.h"

namespace exchange {

namespace {

using standalone::Quoted;

constexpr std::string_view kOutside = "multientity-sealed-1\n";
constexpr std::string_view kEnvelopeForm = "multientity-envelope-1";
constexpr std::string_view kTheEnvelope = "The envelope";
// "64:", the signature, ",".
constexpr std::size_t kSignatureNetstringBytes = kSignatureBytes + 4;
constexpr std::size_t kAroundContentBytes = kOutside.size() + kSealBytes;
constexpr std::size_t kMostContentBytes = kMostEnvelopeBytes - kAroundContentBytes;
constexpr std::size_t kFullContentBytes = kFullEnvelopeBytes - kAroundContentBytes;
// Of one month in one field; more go into further fields.
constexpr std::size_t kMostHashesInAField = 16'000;

void Require(bool holds, const std::string& otherwise) {
  if (!holds) throw Malformed("The envelope " + otherwise + ".");
}

void RequireWord(std::string_view what, std::string_view text) {
  Require(IsPairingId(text), "has the " + std::string(what) + " " + Quoted(text) +
                                 ", which is not 32 hexadecimal digits in small letters");
}

void RequireMonth(std::string_view text) {
  Require(text.empty() || IsMonth(text), "names the month " + Quoted(text) + "; a month is such as 2026-11");
}

void AppendField(std::string& out, std::string_view name, std::string_view value) {
  AppendNetstring(out, name);
  AppendNetstring(out, value);
}

std::string FieldOf(std::string_view name, std::string_view value) {
  std::string field;
  AppendField(field, name, value);
  return field;
}

// What each part of a letter begins with.
std::string HeadOf(const Letter& letter) {
  std::string head;
  AppendNetstring(head, kEnvelopeForm);
  AppendNetstring(head, letter.pairing);
  AppendNetstring(head, letter.sender.Hex());
  AppendNetstring(head, letter.receiver.Hex());
  if (!letter.word.empty()) AppendField(head, "word", letter.word);
  if (!letter.echo.empty()) AppendField(head, "echo", letter.echo);
  AppendField(head, "summary", letter.summary.Text());
  return head;
}

void AddHashes(std::vector<std::string>& fields, const std::string& month, const std::vector<Hash>& hashes) {
  std::size_t at = 0;
  do {
    const std::size_t end = std::min(hashes.size(), at + kMostHashesInAField);
    std::string value = month + " ";
    for (; at < end; ++at) value += hashes[at].Bytes();
    fields.push_back(FieldOf("hashes", value));
  } while (at < hashes.size());
}

// What parts of a letter divide among them, in pieces that each fit into one.
std::vector<std::string> FieldsOf(const Letter& letter) {
  std::vector<std::string> fields;
  for (const auto& [month, summary] : letter.months) fields.push_back(FieldOf("month", month + " " + summary.Text()));
  for (const auto& [month, hashes] : letter.hashes) AddHashes(fields, month, hashes);
  for (const std::string& fact : letter.facts) fields.push_back(FieldOf("fact", fact));
  return fields;
}

// Whoever receives it can read it, or it is not sent.
std::string SealedLetter(std::string content, const PublicKey& receiver, const KeyPair& sender) {
  AppendNetstring(content, sender.Sign(content));
  LetterOf(content, receiver);
  return std::string(kOutside) + SealFor(receiver, content);
}

// A month, a blank and what follows it.
std::string_view TakeMonth(std::string_view& value) {
  const std::size_t blank = value.find(' ');
  Require(blank != std::string_view::npos, "has a month without a blank behind it");
  const std::string_view month = value.substr(0, blank);
  RequireMonth(month);
  value.remove_prefix(blank + 1);
  return month;
}

void TakeHashes(HashLists& lists, std::string_view value) {
  const std::string_view month = TakeMonth(value);
  Require(value.size() % kOctets == 0, "has a list of hashes that is cut off");
  std::vector<Hash>& hashes = lists[std::string(month)];
  for (; !value.empty(); value.remove_prefix(kOctets)) {
    const Hash hash = Hash::FromBytes(value.substr(0, kOctets));
    Require(hashes.empty() || hashes.back() < hash, "has hashes that do not ascend");
    hashes.push_back(hash);
  }
}

// The fields of a letter, one by one; those that this version does not know are skipped.
class LetterFields {
 public:
  explicit LetterFields(Letter& letter) : letter_(letter) {}

  void Take(std::string_view name, std::string_view value) {
    if (name == "word") {
      Once(letter_.word.empty(), name);
      RequireWord("word", value);
      letter_.word = value;
    } else if (name == "echo") {
      Once(letter_.echo.empty(), name);
      RequireWord("echo", value);
      letter_.echo = value;
    } else if (name == "summary") {
      Once(!hasSummary_, name);
      letter_.summary = Summary::FromText(value);
      hasSummary_ = true;
    } else if (name == "month") {
      const std::string month(TakeMonth(value));
      Require(letter_.months.emplace(month, Summary::FromText(value)).second,
              "has the month " + Quoted(month) + " twice");
    } else if (name == "hashes") {
      TakeHashes(letter_.hashes, value);
    } else if (name == "fact") {
      letter_.facts.emplace_back(value);
    }
  }

  void RequireAll() const { Require(hasSummary_, "has no summary"); }

 private:
  static void Once(bool isFirst, std::string_view name) {
    Require(isFirst, "has the field " + Quoted(name) + " twice");
  }

  Letter& letter_;
  bool hasSummary_ = false;
};

void RequireSigned(std::string_view content, std::size_t signedBytes, std::string_view signature,
                   const Letter& letter) {
  Require(Verify(letter.sender, content.substr(0, signedBytes), signature),
          "was not signed by the sender that it names, " + letter.sender.Hex());
}

Letter TakeHead(NetstringReader& reader, const PublicKey& receiver) {
  const std::string_view form = reader.Take();
  Require(form == kEnvelopeForm,
          "is of the form " + Quoted(form) + "; this version reads " + std::string(kEnvelopeForm));
  Letter letter;
  letter.pairing = reader.Take();
  RequireWord("pairing", letter.pairing);
  letter.sender = PublicKey::FromHex(reader.Take());
  letter.receiver = PublicKey::FromHex(reader.Take());
  Require(letter.receiver == receiver, "was written to " + letter.receiver.Hex() + ", not to " + receiver.Hex());
  Require(letter.sender != receiver, "was written by whom it is for");
  return letter;
}

}  // namespace

std::vector<std::string> Seal(const Letter& letter, const KeyPair& sender) {
  std::vector<std::string> envelopes;
  Sealing(letter, sender, [&](const std::string& envelope) { envelopes.push_back(envelope); }).Finish();
  return envelopes;
}

Sealing::Sealing(const Letter& letter, const KeyPair& sender, Take take)
    : receiver_(letter.receiver), sender_(sender), take_(std::move(take)), head_(HeadOf(letter)), content_(head_) {
  if (letter.sender != sender.Public()) throw std::invalid_argument("a company signs its own letters only");
  for (const std::string& field : FieldsOf(letter)) Add(field);
}

void Sealing::AddFact(std::string_view wire) {
  Add(FieldOf("fact", wire));
}

void Sealing::Add(std::string_view field) {
  const bool isBegun = content_.size() > head_.size();
  if (isBegun && content_.size() + field.size() + kSignatureNetstringBytes > kFullContentBytes) HandOn();
  content_ += field;
}

void Sealing::HandOn() {
  take_(SealedLetter(std::exchange(content_, head_), receiver_, sender_));
}

void Sealing::Finish() {
  HandOn();
}

Letter Open(std::string_view envelope, const KeyPair& receiver) {
  Require(envelope.size() <= kMostEnvelopeBytes, "is larger than 4 MiB");
  Require(envelope.starts_with(kOutside), "does not begin with multientity-sealed-1 and a line feed");
  return LetterOf(receiver.Unseal(envelope.substr(kOutside.size())), receiver.Public());
}

Letter LetterOf(std::string_view content, const PublicKey& receiver) {
  Require(content.size() <= kMostContentBytes, "is larger than 4 MiB");
  NetstringReader reader(kTheEnvelope, content);
  Letter letter = TakeHead(reader, receiver);
  LetterFields fields(letter);
  while (true) {
    const std::size_t signedBytes = reader.Position();
    const std::string_view name = reader.Take();
    if (reader.AtEnd()) {
      RequireSigned(content, signedBytes, name, letter);
      break;
    }
    const std::string_view value = reader.Take();
    Require(!reader.AtEnd(), "ends without a signature");
    fields.Take(name, value);
  }
  fields.RequireAll();
  return letter;
}

}  // namespace exchange
