#include "standalone/app/TextInput.h"

#include <fmt/format.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <functional>

#include "standalone/app/Values.h"
#include "standalone/app/terminal/Terminal.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

// Up to so many bytes, 0 at the end.
using ReadBytes = std::function<std::size_t(char* into, std::size_t most)>;

std::string ReadAll(std::string_view what, const std::string& from, std::size_t most, const ReadBytes& read) {
  std::string text;
  std::array<char, 16384> part{};
  for (std::size_t count = read(part.data(), part.size()); count != 0; count = read(part.data(), part.size())) {
    text.append(part.data(), count);
    if (text.size() > most) {
      throw standalone::InvalidInput(
          fmt::format("{} has more than {} bytes, which no {} has", standalone::Quoted(from), most, what));
    }
  }
  return text;
}

[[noreturn]] void ThrowUnreadable(std::string_view what, const std::string& file) {
  throw standalone::InvalidInput(
      fmt::format("{} cannot be read; give the file with the {}", standalone::Quoted(file), what));
}

std::string ReadFile(std::string_view what, const std::string& file, std::size_t most) {
  const std::filesystem::path path = FilePath(file);
  std::ifstream stream(path, std::ios::binary);
  std::error_code ignored;
  if (!stream || std::filesystem::is_directory(path, ignored)) ThrowUnreadable(what, file);
  return ReadAll(what, file, most, [&](char* into, std::size_t room) {
    stream.read(into, static_cast<std::streamsize>(room));
    if (stream.bad()) ThrowUnreadable(what, file);
    return static_cast<std::size_t>(stream.gcount());
  });
}

}  // namespace

std::string ReadText(std::string_view what, const std::string& file, std::size_t most) {
  if (file == kStandardInput) return ReadAll(what, "standard input", most, ReadInput);
  return ReadFile(what, file, most);
}

}  // namespace app
