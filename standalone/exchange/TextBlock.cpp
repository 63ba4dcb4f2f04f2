#include "standalone/exchange/TextBlock.h"

#include <sodium.h>

#include <algorithm>

#include "standalone/exchange/Errors.h"
#include "standalone/values/Text.h"

namespace exchange {

namespace {

constexpr std::size_t kLineLength = 64;
constexpr int kBase64 = sodium_base64_VARIANT_ORIGINAL;

std::string MarkLine(std::string_view what, std::string_view label) {
  return "-----" + std::string(what) + " " + std::string(label) + "-----";
}

// Takes the text before the next line feed, without blanks at its ends.
std::string_view TakeLine(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('\n'), rest.size());
  std::string_view line = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return standalone::Trimmed(line);
}

// What follows the first line that is the mark; throws when there is none.
std::string_view Behind(const std::string& mark, std::string_view text) {
  while (!text.empty()) {
    if (TakeLine(text) == mark) return text;
  }
  throw Malformed("The text has no line " + mark + ".");
}

std::string Decoded(const std::string& digits, const std::string& begin) {
  std::string bytes(digits.size() / 4 * 3, '\0');
  std::size_t length = 0;
  if (sodium_base642bin(reinterpret_cast<unsigned char*>(bytes.data()), bytes.size(), digits.data(), digits.size(),
                        nullptr, &length, nullptr, kBase64) != 0) {
    throw Malformed("What stands behind " + begin +
                    " is no base64; copy the block again, from its first line to its last.");
  }
  bytes.resize(length);
  return bytes;
}

}  // namespace

std::string TextBlockOf(std::string_view label, std::string_view bytes) {
  std::string digits(sodium_base64_ENCODED_LEN(bytes.size(), kBase64), '\0');
  sodium_bin2base64(digits.data(), digits.size(), reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(),
                    kBase64);
  digits.pop_back();
  std::string block = MarkLine("BEGIN", label) + "\n";
  for (std::size_t at = 0; at < digits.size(); at += kLineLength) block.append(digits, at, kLineLength) += '\n';
  return block + MarkLine("END", label) + "\n";
}

std::string BytesOfTextBlock(std::string_view label, std::string_view text, std::size_t most) {
  if (text.size() > most) throw Malformed("The text is larger than " + std::to_string(most >> 20U) + " MiB.");
  const std::string begin = MarkLine("BEGIN", label);
  const std::string end = MarkLine("END", label);
  std::string_view rest = Behind(begin, text);
  std::string digits;
  bool hasEnded = false;
  while (!rest.empty() && !hasEnded) {
    const std::string_view line = TakeLine(rest);
    hasEnded = line == end;
    if (!hasEnded) digits += line;
  }
  if (!hasEnded) throw Malformed("The text has no line " + end + " behind " + begin + ".");
  while (!rest.empty()) {
    if (TakeLine(rest) == begin) throw Malformed("The text has two lines " + begin + "; hand in one of them.");
  }
  return Decoded(digits, begin);
}

}  // namespace exchange
