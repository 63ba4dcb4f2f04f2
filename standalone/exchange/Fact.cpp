#include "standalone/exchange/Fact.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <type_traits>

#include "standalone/exchange/Errors.h"
#include "standalone/exchange/Netstrings.h"
#include "standalone/values/Characters.h"
#include "standalone/values/Text.h"

namespace exchange {

namespace {

using standalone::IsAsciiDigit;
using standalone::Quoted;

constexpr std::string_view kFactForm = "multientity-fact-1";
constexpr std::size_t kPairingDigits = 32;
constexpr std::string_view kTheFact = "The fact";

bool IsTerm(std::string_view text) {
  return !text.empty() && text.size() <= kMostTermBytes &&
         std::ranges::all_of(text, [](char c) { return (c >= 'a' && c <= 'z') || c == '-'; });
}

// What is said otherwise is put together only then: there is much to require of each fact.
template <typename Otherwise>
void Require(bool holds, Otherwise&& otherwise) {
  if (holds) return;
  if constexpr (std::is_invocable_v<Otherwise>) {
    throw Malformed("The fact " + otherwise() + ".");
  } else {
    throw Malformed("The fact " + std::string(otherwise) + ".");
  }
}

void RequireName(std::string_view name) {
  try {
    standalone::RequireText("The fact's name", name, 1, kMostNameBytes);
  } catch (const standalone::InvalidInput& error) {
    throw Malformed(error.what());
  }
}

void RequireInRange(const Statement& statement) {
  Require(IsPairingId(statement.pairing), [&] {
    return "names the pairing " + Quoted(statement.pairing) + ", which is not 32 hexadecimal digits in small letters";
  });
  Require(IsTerm(statement.kind),
          [&] { return "is of kind " + Quoted(statement.kind) + "; a kind is 1 to 32 small letters and hyphens"; });
  RequireName(statement.name);
  Require(statement.month.empty() || IsMonth(statement.month),
          [&] { return "is of month " + Quoted(statement.month) + "; a month is such as 2026-11"; });
  Require(statement.fields.size() <= kMostFields, "has more than 64 fields");
  for (const auto& field : statement.fields) {
    Require(IsTerm(field.first), [&field] {
      return "has a field " + Quoted(field.first) + "; a field's name is 1 to 32 small letters and hyphens";
    });
  }
}

void RequireLength(std::string_view body) {
  Require(body.size() <= kMostBodyBytes,
          [&] { return "is too long with " + std::to_string(body.size()) + " bytes; 65,536 are the most"; });
}

// In strictly ascending order, so that no two facts say the same.
Fields TakeFields(NetstringReader& reader) {
  Fields fields;
  while (!reader.AtEnd()) {
    const std::string_view name = reader.Take();
    Require(!reader.AtEnd(), [&] { return "ends behind the name of the field " + Quoted(name); });
    Require(fields.empty() || name > fields.rbegin()->first,
            [&] { return "has the field " + Quoted(name) + " twice or out of order"; });
    fields.emplace_hint(fields.end(), name, reader.Take());
  }
  return fields;
}

// The facts that were verified last: one comes to be verified again with each look at an answer that carries it, which
// takes as long as writing it into the books does.
class VerifiedLately {
 public:
  bool Has(const Hash& id, std::string_view signature) const noexcept {
    return std::ranges::any_of(verified_, [&](const Verified& verified) {
      return verified.id == id && std::ranges::equal(verified.signature, signature);
    });
  }

  // Of a signature of the right length.
  void Add(const Hash& id, std::string_view signature) noexcept {
    Verified& oldest = verified_[next_];
    oldest.id = id;
    std::ranges::copy(signature, oldest.signature.begin());
    next_ = (next_ + 1) % verified_.size();
  }

 private:
  // One of noughts is that of no fact.
  struct Verified {
    Hash id;
    std::array<char, kSignatureBytes> signature{};
  };
  static constexpr std::size_t kMost = 4;

  std::array<Verified, kMost> verified_{};
  std::size_t next_ = 0;
};

thread_local VerifiedLately verifiedLately;

}  // namespace

bool IsPairingId(std::string_view text) noexcept {
  return text.size() == kPairingDigits &&
         std::ranges::all_of(text, [](char c) { return IsAsciiDigit(c) || (c >= 'a' && c <= 'f'); });
}

bool IsMonth(std::string_view text) noexcept {
  constexpr std::size_t kLength = 7;
  if (text.size() != kLength || text[4] != '-') return false;
  const std::string_view year = text.substr(0, 4);
  const std::string_view month = text.substr(5);
  return std::ranges::all_of(year, IsAsciiDigit) && std::ranges::all_of(month, IsAsciiDigit) && year >= "1900" &&
         month >= "01" && month <= "12";
}

std::string BodyOf(const Statement& statement) {
  RequireInRange(statement);
  std::string body;
  for (const std::string_view part : {kFactForm, std::string_view(statement.pairing)}) AppendNetstring(body, part);
  AppendNetstring(body, statement.author.Hex());
  for (const std::string& part : {statement.kind, statement.name, statement.month}) AppendNetstring(body, part);
  for (const auto& [name, value] : statement.fields) {
    AppendNetstring(body, name);
    AppendNetstring(body, value);
  }
  RequireLength(body);
  return body;
}

Statement StatementOf(std::string_view body) {
  RequireLength(body);
  NetstringReader reader(kTheFact, body);
  const std::string_view form = reader.Take();
  Require(form == kFactForm,
          [&] { return "is of the form " + Quoted(form) + "; this version reads multientity-fact-1"; });
  Statement statement;
  statement.pairing = reader.Take();
  statement.author = PublicKey::FromHex(reader.Take());
  statement.kind = reader.Take();
  statement.name = reader.Take();
  statement.month = reader.Take();
  statement.fields = TakeFields(reader);
  RequireInRange(statement);
  return statement;
}

Fact Fact::Signed(const Statement& statement, const KeyPair& author) {
  if (statement.author != author.Public()) throw std::invalid_argument("a company signs its own facts only");
  const std::string body = BodyOf(statement);
  return {body, author.Sign(body)};
}

Fact::Fact(std::string_view body, std::string_view signature)
    : what_(StatementOf(body)), body_(body), signature_(signature), id_(HashOf(body)) {
  Require(signature.size() == kSignatureBytes,
          [&] { return "has a signature of " + std::to_string(signature.size()) + " bytes; a signature has 64"; });
}

Fact Fact::FromWire(std::string_view wire) {
  NetstringReader reader(kTheFact, wire);
  const std::string_view body = reader.Take();
  const std::string_view signature = reader.Take();
  Require(reader.AtEnd(), "goes on behind its signature");
  return {body, signature};
}

Fact Fact::VerifiedFromWire(std::string_view wire) {
  Fact fact = FromWire(wire);
  Require(fact.IsVerified(),
          [&] { return "was not signed by its author " + fact.What().author.Hex() + ", or was changed"; });
  return fact;
}

bool Fact::IsVerified() const noexcept {
  if (verifiedLately.Has(id_, signature_)) return true;
  if (!Verify(what_.author, body_, signature_)) return false;
  verifiedLately.Add(id_, signature_);
  return true;
}

std::string Fact::Wire() const {
  std::string wire;
  AppendNetstring(wire, body_);
  AppendNetstring(wire, signature_);
  return wire;
}

}  // namespace exchange
