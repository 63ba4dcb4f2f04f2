#include "standalone/exchange/IdentityLines.h"

#include <algorithm>

namespace exchange {

namespace {

constexpr std::string_view kFirstLine = "multientity-identity 1";
constexpr std::string_view kFirstWord = "multientity-identity ";
constexpr std::string_view kSeed = "seed ";
constexpr std::string_view kLeft = "left ";
constexpr std::string_view kFormer = "former ";
constexpr std::string_view kLost = "lost ";
constexpr std::size_t kDigitsOfLines = 64;
constexpr std::size_t kLongestLine = kFormer.size() + kDigitsOfLines;
// Each was replaced by a person.
constexpr std::size_t kMostFormer = 1'000;

constexpr std::uint64_t kLineOfTheSeed = 2;
constexpr std::size_t kBytesToTheSeed = kFirstLine.size() + 1 + kSeed.size() + kDigitsOfLines + 1;

}  // namespace

std::string NewIdentityText(const KeyPair& keys, std::span<const PublicKey> lost) {
  std::string digits = keys.HexSeed();
  std::string text;
  // At once, so that no seed is left in what is given up when it grows.
  text.reserve(kBytesToTheSeed + lost.size() * (kLost.size() + kDigitsOfLines + 1));
  text.append(kFirstLine).append(1, '\n').append(kSeed).append(digits).append(1, '\n');
  for (const PublicKey& key : lost) text.append(kLost).append(key.Hex()).append(1, '\n');
  Wipe(digits);
  return text;
}

std::string ReplacedIdentityText(std::string_view lines, const KeyPair& before, const KeyPair& now) {
  std::string head = NewIdentityText(now);
  std::string digits = before.HexSeed();
  const std::string_view rest = lines.substr(kBytesToTheSeed);
  std::string text;
  text.reserve(head.size() + kLongestLine + 1 + rest.size());
  text.append(head).append(kFormer).append(digits).append(1, '\n').append(rest);
  Wipe(digits);
  Wipe(head);
  return text;
}

std::string LeftLine(const Hash& hash) {
  return std::string(kLeft) + hash.Hex() + '\n';
}

void IdentityLines::Add(std::string_view piece) {
  while (!piece.empty()) {
    const std::size_t end = piece.find('\n');
    Begin(piece.substr(0, end));
    if (end == std::string_view::npos) return;
    if (lineBytes_ > begun_.size()) Refuse("is too long");
    TakeLine(begun_);
    wholeBytes_ += lineBytes_ + 1;
    begun_.clear();
    lineBytes_ = 0;
    ++line_;
    piece.remove_prefix(end + 1);
  }
}

// Behind what a crash left of a line some file systems leave zeros.
void IdentityLines::Begin(std::string_view part) {
  // At once, so that a seed is not left in what is given up when it grows.
  begun_.reserve(kLongestLine);
  const std::size_t room = kLongestLine - begun_.size();
  const bool isTooLong = part.size() > room && part.find_first_not_of('\0', room) != std::string_view::npos;
  if (isTooLong) Refuse("is too long");
  begun_ += part.substr(0, room);
  lineBytes_ += part.size();
}

void IdentityLines::TakeLine(std::string_view line) {
  if (line_ == 1) {
    if (line == kFirstLine) return;
    if (line.starts_with(kFirstWord)) Refuse("names another version than 1; a newer program can read it");
    Refuse("is not that of an identity");
  }
  if (line_ == kLineOfTheSeed) {
    keys_ = KeyPair::FromHexSeed(Digits(line, kSeed));
  } else if (line.starts_with(kFormer)) {
    if (former_.size() == kMostFormer) Refuse("is one of too many former keys");
    former_.push_back(KeyPair::FromHexSeed(Digits(line, kFormer)));
  } else if (line.starts_with(kLost)) {
    if (lost_.size() == kMostFormer) Refuse("is one of too many lost keys");
    lost_.push_back(PublicKey::FromHex(Digits(line, kLost)));
  } else {
    const Hash hash = Hash::FromHex(Digits(line, kLeft));
    ++leftCount_;
    if (onLeft_) onLeft_(hash);
  }
}

void IdentityLines::Finish() const {
  if (line_ <= kLineOfTheSeed) Refuse("is missing or not complete");
}

std::string_view IdentityLines::Digits(std::string_view line, std::string_view word) const {
  const std::string_view digits = line.starts_with(word) ? line.substr(word.size()) : std::string_view();
  const bool isHex =
      digits.size() == kDigitsOfLines && digits.find_first_not_of("0123456789abcdef") == std::string_view::npos;
  if (!isHex) Refuse("is not \"" + std::string(word) + "\" and 64 hexadecimal digits in small letters");
  return digits;
}

void IdentityLines::Refuse(std::string_view why) const {
  throw IdentityError(what_ + " is not used: its line " + std::to_string(line_) + ' ' + std::string(why) +
                      ". Take it from where you keep a copy of it.");
}

}  // namespace exchange
