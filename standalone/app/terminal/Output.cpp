#include "standalone/app/terminal/Output.h"

#include <cerrno>
#include <cstdio>
#include <exception>
#include <system_error>

#include "standalone/app/terminal/Terminal.h"
#include "standalone/values/Characters.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

// JSON in which what would steer a terminal is \uXXXX, which programs read as the same character.
std::string ForTerminals(std::string json) {
  if (standalone::IsPrintableAscii(json)) return json;
  std::string escaped;
  for (std::string_view rest = json; !rest.empty();) {
    const standalone::Character character = standalone::FirstCharacter(rest);
    if (character.kind == standalone::CharacterKind::kPlain) {
      escaped += rest.substr(0, character.length);
    } else {
      escaped += "\\u";
      standalone::AppendNumberInHex(escaped, character.number);
    }
    rest.remove_prefix(character.length);
  }
  return escaped;
}

std::string Compact(const Json& value) {
  return ForTerminals(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

std::string ElementPerLine(const Json& list) {
  if (list.empty()) return "[]";
  std::string text = "[\n";
  for (const Json& element : list) {
    if (&element != &list.front()) text += ",\n";
    text += Compact(element);
  }
  return text + "\n]";
}

[[noreturn]] void ThrowNotWritten(int error) {
  throw OutputFailed("standard output cannot be written: " + std::generic_category().message(error));
}

bool nobodyReads = false;

void CheckWritten(bool written) {
  if (written) return;
  if (!ReaderHasGone()) ThrowNotWritten(errno);
  nobodyReads = true;
}

}  // namespace

std::string JsonText(const Json& object) {
  std::string text = "{";
  for (const auto& [key, value] : object.items()) {
    if (text.size() > 1) text += ',';
    text += Compact(Json(key)) + ':' + (value.is_array() ? ElementPerLine(value) : Compact(value));
  }
  return text + "}\n";
}

std::string JsonLine(const Json& object) {
  return Compact(object) + '\n';
}

void Print(std::string_view text) {
  PrintData(standalone::ShownLines(text));
}

void PrintData(std::string_view bytes) {
  if (nobodyReads) return;
  CheckWritten(std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size());
}

void FinishPrinting() {
  if (nobodyReads) return;
  CheckWritten(std::fflush(stdout) == 0);
}

void RequireAReader() {
  if (nobodyReads) throw OutputFailed("standard output cannot be written: nobody reads it any more");
}

void PrintError(std::string_view text) noexcept {
  try {
    const std::string shown = standalone::ShownLines(text);
    std::fwrite(shown.data(), 1, shown.size(), stderr);
  } catch (const std::exception&) {
    std::fputs("multientity: there is no memory left to tell what happened\n", stderr);
  }
  std::fflush(stderr);
}

}  // namespace app
