#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace standalone {

inline constexpr std::size_t kCompanyNameLength = 59;
// Of one part of a colon-separated name, and of the whole.
inline constexpr std::size_t kListNameLength = 100;
inline constexpr std::size_t kListFullNameLength = 500;
inline constexpr std::size_t kUserNameLength = 60;
inline constexpr std::size_t kMemoLength = 4000;
inline constexpr std::size_t kDocumentNumberLength = 100;
inline constexpr std::size_t kAttachmentLength = 4000;
inline constexpr std::size_t kPreferenceKeyLength = 200;

// Whether the bytes are well-formed UTF-8 (no overlong forms, no surrogates, nothing above U+10FFFF).
bool IsUtf8(std::string_view text) noexcept;

// Returns `text` when it is UTF-8 of plain characters (Characters.h) and has `least` to `most` bytes; throws
// InvalidInput that calls the value `what` otherwise.
std::string_view RequireText(std::string_view what, std::string_view text, std::size_t least, std::size_t most);

// 1 to 19 bytes.
std::string_view RequireRealmId(std::string_view text);
// 1 to 36 bytes.
std::string_view RequireRequestId(std::string_view text);
// 1 to 59 bytes.
std::string_view RequirePartnerName(std::string_view text);
// The partner's own id of a transaction, 1 to 36 bytes.
std::string_view RequirePartnerTxnId(std::string_view text);
// 0 to 4000 bytes; returns it without blanks at its ends.
std::string_view RequireMemo(std::string_view text);
// What is said about a request, 1 to 4000 bytes; returns it without blanks at its ends.
std::string_view RequireRemark(std::string_view text);
// What the paper of a transaction calls it, 0 to 100 bytes; returns it without blanks at its ends.
std::string_view RequireDocumentNumber(std::string_view text);
// Where the paper is, 1 to 4000 bytes.
std::string_view RequireAttachment(std::string_view text);

// Without blanks and tabs at both ends.
std::string_view Trimmed(std::string_view text) noexcept;

// The text as messages show it: quoted, what is not plain as \xNN, long texts shortened.
std::string Quoted(std::string_view text);

// The text as it may stand in a line on a screen: the bytes of what is not plain as \xNN, so that no text moves the
// cursor, colours what follows, ends the line or turns the direction of its neighbours.
std::string Shown(std::string_view text);
// The same for each of several lines, which end with a line feed.
std::string ShownLines(std::string_view text);

// The path in UTF-8, and the path of such a text.
std::string PathText(const std::filesystem::path& path);
std::filesystem::path PathOfText(std::string_view text);

// The path with a suffix to its last part, as of what lies beside a company file.
std::filesystem::path WithSuffix(std::filesystem::path path, std::string_view suffix);

// Whether the texts are equal but for the case of ASCII letters, as the company file compares names.
bool EqualIgnoringCase(std::string_view left, std::string_view right) noexcept;

// "yes", "no", "true", "false", "on", "off", "1", "0" in any case; throws InvalidInput that calls the value `what`.
bool ParseYesNo(std::string_view what, std::string_view text);
// "yes" or "no", which ParseYesNo() reads back.
constexpr const char* YesOrNo(bool value) noexcept {
  return value ? "yes" : "no";
}

// For maps by text that are asked with views.
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>()(text); }
};

// The number after the largest one is a number, too.
inline constexpr std::int32_t kLargestRecordNumber = 2'147'483'646;
// A record number that a person typed: digits only, 1 to the largest one. Empty when the text is none.
std::optional<std::int32_t> ParseRecordNumber(std::string_view text) noexcept;
// The same behind a "#", which tells it from any other number, such as #12.
std::optional<std::int32_t> ParseMarkedRecordNumber(std::string_view text) noexcept;

}  // namespace standalone
