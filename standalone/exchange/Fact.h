#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "standalone/exchange/Keys.h"
#include "standalone/exchange/Octets.h"

namespace exchange {

inline constexpr std::size_t kMostBodyBytes = 65'536;
inline constexpr std::size_t kMostFields = 64;
// Of a kind and of a field's name: small letters and hyphens.
inline constexpr std::size_t kMostTermBytes = 32;
inline constexpr std::size_t kMostNameBytes = 64;

// Whether the text is 32 hexadecimal digits in small letters, as a pairing id and a word are.
bool IsPairingId(std::string_view text) noexcept;
// Whether the text is a month from 1900-01 to 9999-12.
bool IsMonth(std::string_view text) noexcept;

// By their names, in ascending order of bytes. Values are any bytes.
using Fields = std::map<std::string, std::string, std::less<>>;

// What is said, by whom and to which partner.
struct Statement {
  std::string pairing;  // the pairing id
  PublicKey author;
  std::string kind;
  std::string name;   // 1 to 64 bytes of plain characters: a request id, or what else the kind is named by
  std::string month;  // YYYY-MM, by which companies compare what they hold; empty for facts of the pairing itself
  Fields fields;

  friend bool operator==(const Statement&, const Statement&) = default;
};

// The one form in which the statement is signed; throws Malformed when a part of it is out of its range.
std::string BodyOf(const Statement& statement);
// Reads exactly what BodyOf() writes; throws Malformed.
Statement StatementOf(std::string_view body);

// A statement with its author's signature. It never changes.
class Fact {
 public:
  // Throws Malformed when a part of the statement is out of its range, std::invalid_argument when the author is another
  // one than the owner of the keys.
  static Fact Signed(const Statement& statement, const KeyPair& author);
  // Reads a fact as the books keep it; throws Malformed unless the body is one and the signature has 64 bytes. Whether
  // the author signed it only IsVerified() tells.
  Fact(std::string_view body, std::string_view signature);
  // Reads a fact as it travels, the netstrings of the body and of the signature; throws Malformed as above, and for
  // what follows.
  static Fact FromWire(std::string_view wire);
  // The same, and throws Malformed unless the author signed it.
  static Fact VerifiedFromWire(std::string_view wire);

  const Statement& What() const noexcept { return what_; }
  const std::string& Body() const noexcept { return body_; }
  const std::string& Signature() const noexcept { return signature_; }
  // Of the body: what it says identifies a fact, not how it was signed.
  const Hash& Id() const noexcept { return id_; }
  std::string Wire() const;

  bool IsVerified() const noexcept;

  friend bool operator==(const Fact& left, const Fact& right) {
    return left.body_ == right.body_ && left.signature_ == right.signature_;
  }

 private:
  Statement what_;
  std::string body_;
  std::string signature_;
  Hash id_;
};

}  // namespace exchange
