#include "standalone/values/Text.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>

#include "MultiEntityHost/MultiEntityRows.h"
#include "standalone/values/Characters.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Errors.h"

namespace standalone {

namespace {

constexpr std::size_t kQuotedLength = 80;

// The first character that is not plain.
std::optional<Character> FirstOdd(std::string_view text) noexcept {
  if (IsPrintableAscii(text)) return std::nullopt;
  while (!text.empty()) {
    const Character character = FirstCharacter(text);
    if (character.kind != CharacterKind::kPlain) return character;
    text.remove_prefix(character.length);
  }
  return std::nullopt;
}

std::string NameOf(const Character& odd) {
  std::string name = odd.kind == CharacterKind::kControl         ? "the control character U+"
                     : odd.kind == CharacterKind::kLineSeparator ? "the line separator U+"
                                                                 : "the direction mark U+";
  AppendNumberInHex(name, odd.number);
  return name;
}

// Who types other letters than those of ASCII sees fewer of them than they take.
std::string LengthOf(std::string_view text) {
  std::string length = std::to_string(text.size()) + " bytes";
  if (IsPrintableAscii(text)) return length;
  std::size_t characters = 0;
  for (std::string_view left = text; !left.empty(); left.remove_prefix(FirstCharacter(left).length)) ++characters;
  return length + " in " + std::to_string(characters) + " characters";
}

// Plain characters stand for themselves. What goes beyond `most` bytes is left out, told by three dots.
void AppendShown(std::string& out, std::string_view text, std::size_t most) {
  const std::size_t whole = text.size();
  while (!text.empty()) {
    if (whole - text.size() >= most) {
      out += "...";
      return;
    }
    const Character character = FirstCharacter(text);
    if (character.kind == CharacterKind::kPlain) {
      out += text.substr(0, character.length);
    } else {
      AppendBytesInHex(out, text.substr(0, character.length));
    }
    text.remove_prefix(character.length);
  }
}

}  // namespace

bool IsUtf8(std::string_view text) noexcept {
  if (IsPrintableAscii(text)) return true;
  while (!text.empty()) {
    const Character character = FirstCharacter(text);
    if (character.kind == CharacterKind::kNoText) return false;
    text.remove_prefix(character.length);
  }
  return true;
}

std::string_view RequireText(std::string_view what, std::string_view text, std::size_t least, std::size_t most) {
  const auto refuse = [&](const std::string& reason) {
    throw InvalidInput(std::string(what) + " " + Quoted(text) + " " + reason + ".");
  };
  if (text.size() < least && text.empty()) throw InvalidInput(std::string(what) + " is empty; it needs a text.");
  if (text.size() < least) {
    refuse("is too short with " + LengthOf(text) + "; " + std::to_string(least) + " bytes are the least");
  }
  if (text.size() > most) {
    refuse("is too long with " + LengthOf(text) + "; " + std::to_string(most) + " bytes are the most");
  }
  if (!IsUtf8(text)) refuse("is not UTF-8; save it in that encoding");
  if (const std::optional<Character> odd = FirstOdd(text)) refuse("holds " + NameOf(*odd) + "; leave it out");
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

std::string_view RequireMemo(std::string_view text) {
  return RequireText("The memo", Trimmed(text), 0, kMemoLength);
}

std::string_view RequireRemark(std::string_view text) {
  return RequireText("The text", Trimmed(text), 1, kMemoLength);
}

std::string_view RequireDocumentNumber(std::string_view text) {
  return RequireText("The document number", Trimmed(text), 0, kDocumentNumberLength);
}

std::string_view RequireAttachment(std::string_view text) {
  return RequireText("The attachment", text, 1, kAttachmentLength);
}

std::string_view Trimmed(std::string_view text) noexcept {
  constexpr std::string_view kBlanks = " \t";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  AppendShown(quoted, text, kQuotedLength);
  return quoted + "\"";
}

std::string Shown(std::string_view text) {
  if (IsPrintableAscii(text)) return std::string(text);
  std::string shown;
  AppendShown(shown, text, text.size());
  return shown;
}

std::string ShownLines(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    shown += Shown(text.substr(0, end));
    text.remove_prefix(end);
    if (text.empty()) break;
    shown += '\n';
    text.remove_prefix(1);
  }
  return shown;
}

std::string PathText(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::filesystem::path PathOfText(std::string_view text) {
  return {std::u8string(text.begin(), text.end())};
}

std::filesystem::path WithSuffix(std::filesystem::path path, std::string_view suffix) {
  path += suffix;
  return path;
}

bool EqualIgnoringCase(std::string_view left, std::string_view right) noexcept {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char one, char other) { return LowerAscii(one) == LowerAscii(other); });
}

std::optional<std::int32_t> ParseRecordNumber(std::string_view text) noexcept {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  if (number < 1 || number > kLargestRecordNumber) return std::nullopt;
  return number;
}

std::optional<std::int32_t> ParseMarkedRecordNumber(std::string_view text) noexcept {
  if (!text.starts_with('#')) return std::nullopt;
  return ParseRecordNumber(text.substr(1));
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
