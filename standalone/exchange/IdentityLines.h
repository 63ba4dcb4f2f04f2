#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/exchange/Keys.h"
#include "standalone/exchange/Octets.h"

namespace exchange {

// The identity file cannot be used: it is not there, cannot be read or written, or holds what it must not. The message
// names it, and the line.
class IdentityError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The text of a new identity, which the caller wipes, and a line of a fact that left. With one that is made in the
// place of a lost one, the public keys of the company up to then, the last one first, so that books that know no newer
// one are known to be this company's.
std::string NewIdentityText(const KeyPair& keys, std::span<const PublicKey> lost = {});
// The lines of an identity with other keys; those that it has are former ones there. The caller wipes it.
std::string ReplacedIdentityText(std::string_view lines, const KeyPair& before, const KeyPair& now);
std::string LeftLine(const Hash& hash);

// Reads the lines of an identity file, piece by piece, in constant memory.
class IdentityLines {
 public:
  // Is told of each fact that left. Messages call the file `what`.
  IdentityLines(std::string what, std::function<void(const Hash&)> onLeft)
      : what_(std::move(what)), onLeft_(std::move(onLeft)) {}
  IdentityLines(const IdentityLines&) = delete;
  IdentityLines& operator=(const IdentityLines&) = delete;
  ~IdentityLines() { Wipe(begun_); }

  void Add(std::string_view piece);
  // Throws unless what was added is an identity, maybe with the beginning of a line behind it.
  void Finish() const;

  // After Finish().
  const KeyPair& Keys() const { return keys_.value(); }
  // Those that were replaced.
  const std::vector<KeyPair>& FormerKeys() const noexcept { return former_; }
  // Those that are lost.
  const std::vector<PublicKey>& LostKeys() const noexcept { return lost_; }
  std::uint64_t LeftCount() const noexcept { return leftCount_; }
  // The bytes up to the end of the last line; what is behind them is what a crash left of a line.
  std::uint64_t WholeBytes() const noexcept { return wholeBytes_; }

 private:
  void Begin(std::string_view part);
  void TakeLine(std::string_view line);
  std::string_view Digits(std::string_view line, std::string_view word) const;
  [[noreturn]] void Refuse(std::string_view why) const;

  std::string what_;
  std::function<void(const Hash&)> onLeft_;
  std::string begun_;
  std::uint64_t lineBytes_ = 0;
  std::uint64_t line_ = 1;
  std::uint64_t wholeBytes_ = 0;
  std::uint64_t leftCount_ = 0;
  std::optional<KeyPair> keys_;
  std::vector<KeyPair> former_;
  std::vector<PublicKey> lost_;
};

}  // namespace exchange
