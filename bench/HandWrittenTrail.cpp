#include "bench/HandWrittenTrail.h"

#include <fmt/format.h>
#include <sodium.h>
#include <sqlite3.h>

#include <array>
#include <fstream>
#include <stdexcept>
#include <vector>

namespace bench {

namespace {

constexpr int kAuditColumns = 11;

void AppendQuoted(std::string& text, std::string_view value) {
  text += '"';
  for (const char letter : value) {
    if (letter == '"' || letter == '\\') {
      text += '\\';
      text += letter;
    } else if (static_cast<unsigned char>(letter) < 0x20) {
      text += fmt::format("\\u{:04x}", static_cast<unsigned>(letter));
    } else {
      text += letter;
    }
  }
  text += '"';
}

std::string DigitsOf(crypto_hash_sha256_state& state) {
  std::array<unsigned char, crypto_hash_sha256_BYTES> digest{};
  crypto_hash_sha256_final(&state, digest.data());
  std::array<char, 2 * crypto_hash_sha256_BYTES + 1> digits{};
  sodium_bin2hex(digits.data(), digits.size(), digest.data(), digest.size());
  return digits.data();
}

}  // namespace

void ChangesText::Begin(std::string_view field) {
  text_ += text_.size() == 1 ? "{" : ",{";
  AppendQuoted(text_, "field");
  text_ += ':';
  AppendQuoted(text_, field);
}

void ChangesText::Append(std::string_view key, std::string_view value) {
  text_ += ',';
  AppendQuoted(text_, key);
  text_ += ':';
  AppendQuoted(text_, value);
}

void ChangesText::Add(std::string_view field, std::string_view after) {
  Begin(field);
  Append("after", after);
  text_ += '}';
}

void ChangesText::Change(std::string_view field, std::string_view before, std::string_view after) {
  Begin(field);
  Append("before", before);
  Append("after", after);
  text_ += '}';
}

void ChangesText::Remove(std::string_view field, std::string_view before) {
  Begin(field);
  Append("before", before);
  text_ += '}';
}

std::string_view ChangesText::End() {
  text_ += ']';
  return text_;
}

std::string DigestOfLine(sqlite3_stmt* line) {
  std::string netstrings;
  for (int column = 0; column < kAuditColumns; ++column) {
    const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(line, column));
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(line, column));
    netstrings += std::to_string(length);
    netstrings += ':';
    if (text != nullptr) netstrings.append(text, length);
    netstrings += ',';
  }
  crypto_hash_sha256_state state;
  crypto_hash_sha256_init(&state);
  crypto_hash_sha256_update(&state, reinterpret_cast<const unsigned char*>(netstrings.data()), netstrings.size());
  return DigitsOf(state);
}

std::string DigestOfFile(const std::filesystem::path& file) {
  constexpr std::size_t kPiece = std::size_t{64} * 1024;
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read " + file.string());
  std::vector<char> piece(kPiece);
  crypto_hash_sha256_state state;
  crypto_hash_sha256_init(&state);
  do {
    in.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    crypto_hash_sha256_update(&state, reinterpret_cast<const unsigned char*>(piece.data()),
                              static_cast<unsigned long long>(in.gcount()));
  } while (in);
  return DigitsOf(state);
}

std::string PlainAmount(std::int64_t minorUnits) {
  const std::int64_t magnitude = minorUnits < 0 ? -minorUnits : minorUnits;
  return fmt::format("{}{}.{:02}", minorUnits < 0 ? "-" : "", magnitude / 100, magnitude % 100);
}

std::string IsoDate(std::uint32_t date) {
  return fmt::format("{:04}-{:02}-{:02}", date >> 16U, date >> 8U & 0xFFU, date & 0xFFU);
}

}  // namespace bench
