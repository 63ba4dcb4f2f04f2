#include "standalone/values/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <initializer_list>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/values/Errors.h"

namespace standalone {

namespace {

constexpr std::int32_t kLargestRecordNumber = 2'147'483'646;
constexpr std::size_t kQuotedLength = 80;

unsigned char Byte(std::string_view text, std::size_t index) {
  return static_cast<unsigned char>(text[index]);
}

bool IsContinuation(std::string_view text, std::size_t index, unsigned char from = 0x80, unsigned char to = 0xBF) {
  return index < text.size() && Byte(text, index) >= from && Byte(text, index) <= to;
}

// The length of the well-formed sequence that begins at `index`; 0 when there is none.
std::size_t SequenceLength(std::string_view text, std::size_t index) {
  const unsigned char lead = Byte(text, index);
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return IsContinuation(text, index + 1) ? 2 : 0;
  if (lead >= 0xE0 && lead <= 0xEF) {
    const unsigned char from = lead == 0xE0 ? 0xA0 : 0x80;
    const unsigned char to = lead == 0xED ? 0x9F : 0xBF;
    return IsContinuation(text, index + 1, from, to) && IsContinuation(text, index + 2) ? 3 : 0;
  }
  if (lead >= 0xF0 && lead <= 0xF4) {
    const unsigned char from = lead == 0xF0 ? 0x90 : 0x80;
    const unsigned char to = lead == 0xF4 ? 0x8F : 0xBF;
    const bool isWhole =
        IsContinuation(text, index + 1, from, to) && IsContinuation(text, index + 2) && IsContinuation(text, index + 3);
    return isWhole ? 4 : 0;
  }
  return 0;
}

bool IsControl(char character) {
  const auto byte = static_cast<unsigned char>(character);
  return byte < 0x20 || byte == 0x7F;
}

char Lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

std::string HexEscape(unsigned char byte) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return {'\\', 'x', kDigits[byte >> 4U], kDigits[byte & 0xFU]};
}

}  // namespace

bool IsUtf8(std::string_view text) noexcept {
  for (std::size_t index = 0; index < text.size();) {
    const std::size_t length = SequenceLength(text, index);
    if (length == 0) return false;
    index += length;
  }
  return true;
}

bool HasControlCharacters(std::string_view text) noexcept {
  return std::any_of(text.begin(), text.end(), IsControl);
}

std::string_view RequireText(std::string_view what, std::string_view text, std::size_t least, std::size_t most) {
  const auto refuse = [&](const std::string& reason) {
    throw InvalidInput(std::string(what) + " " + Quoted(text) + " " + reason + ".");
  };
  if (text.size() < least && text.empty()) throw InvalidInput(std::string(what) + " is empty; it needs a text.");
  if (text.size() < least) refuse("is too short; it needs " + std::to_string(least) + " characters or more");
  if (text.size() > most) {
    refuse("is too long with " + std::to_string(text.size()) + " bytes; " + std::to_string(most) + " are the most");
  }
  if (!IsUtf8(text)) refuse("is not UTF-8; save it in that encoding");
  if (HasControlCharacters(text)) refuse("holds a control character, such as a tab or a line break; leave it out");
  return text;
}

std::string_view RequireRealmId(std::string_view text) {
  return RequireText("The realm id", text, 1, kRealmIdLength);
}

std::string_view RequireRequestId(std::string_view text) {
  return RequireText("The request id", text, 1, kRequestIdLength);
}

std::string_view RequirePartnerName(std::string_view text) {
  return RequireText("The partner name", text, 1, kPartnerNameLength);
}

std::string_view RequirePartnerTxnId(std::string_view text) {
  return RequireText("The partner's transaction id", text, 1, kPartnerTxnIdLength);
}

std::string_view Trimmed(std::string_view text) noexcept {
  constexpr std::string_view kBlanks = " \t";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (std::size_t index = 0; index < text.size();) {
    if (index >= kQuotedLength) {
      quoted += "...";
      break;
    }
    const std::size_t length = SequenceLength(text, index);
    if (length == 0 || IsControl(text[index])) {
      quoted += HexEscape(Byte(text, index));
      ++index;
    } else {
      quoted += text.substr(index, length);
      index += length;
    }
  }
  return quoted + "\"";
}

std::string PathText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::filesystem::path WithSuffix(std::filesystem::path path, std::string_view suffix) {
  path += suffix;
  return path;
}

bool EqualIgnoringCase(std::string_view left, std::string_view right) noexcept {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char one, char other) { return Lower(one) == Lower(other); });
}

std::optional<std::int32_t> ParseRecordNumber(std::string_view text) noexcept {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  if (number < 1 || number > kLargestRecordNumber) return std::nullopt;
  return number;
}

bool ParseYesNo(std::string_view what, std::string_view text) {
  const auto isOneOf = [text](std::initializer_list<std::string_view> words) {
    return std::any_of(words.begin(), words.end(), [text](std::string_view w) { return EqualIgnoringCase(text, w); });
  };
  if (isOneOf({"yes", "true", "on", "1"})) return true;
  if (isOneOf({"no", "false", "off", "0"})) return false;
  throw InvalidInput(std::string(what) + " is " + Quoted(text) + "; it is yes or no.");
}

}  // namespace standalone
