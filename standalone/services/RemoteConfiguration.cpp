#include "standalone/services/RemoteConfiguration.h"

#include <toml++/toml.h>

#include <array>
#include <chrono>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "standalone/values/Text.h"

namespace standalone {

namespace {

using std::filesystem::file_time_type;

// A second change within the granularity of file times leaves time and size as they were; a file that is younger than
// this is read again.
constexpr std::chrono::seconds kSettledAfter{2};

// Switches and values are some hundred bytes; a file that was put there by mistake takes no memory.
constexpr std::uintmax_t kMostBytes = std::uintmax_t{1} << 20U;

struct Stamp {
  bool exists = false;
  file_time_type time;
  std::uintmax_t size = 0;

  friend bool operator==(const Stamp&, const Stamp&) = default;
};

[[noreturn]] void ThrowUnreadable(const std::filesystem::path& file, const std::string& reason) {
  throw std::runtime_error("The file of remote switches " + PathText(file) + " cannot be used: " + reason + ".");
}

Stamp StampOf(const std::filesystem::path& file) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file, error);
  if (status.type() == std::filesystem::file_type::not_found) return {};
  if (status.type() != std::filesystem::file_type::regular) ThrowUnreadable(file, "it is not a readable file");
  const file_time_type time = std::filesystem::last_write_time(file, error);
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (error) ThrowUnreadable(file, error.message());
  if (size > kMostBytes) {
    ThrowUnreadable(
        file, "it has " + std::to_string(size) + " bytes, and at most " + std::to_string(kMostBytes) + " are read");
  }
  return {true, time, size};
}

std::string ReadAll(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) ThrowUnreadable(file, "it cannot be read");
  std::string text;
  std::array<char, 4096> piece;
  while (stream.read(piece.data(), piece.size()), stream.gcount() > 0) {
    text.append(piece.data(), static_cast<std::size_t>(stream.gcount()));
    // It may have grown since it was looked at.
    if (text.size() > kMostBytes) ThrowUnreadable(file, "it grows while it is read");
  }
  if (stream.bad()) ThrowUnreadable(file, "it cannot be read");
  return text;
}

toml::table Parse(const std::filesystem::path& file, const std::string& text) {
  try {
    return toml::parse(text, PathText(file));
  } catch (const toml::parse_error& error) {
    ThrowUnreadable(file,
                    "line " + std::to_string(error.source().begin.line) + ": " + std::string(error.description()));
  }
}

// The entry under `group`.`section`.`key`; null when it, its section or its group is missing.
const toml::node* Find(const std::filesystem::path& file, const toml::table& document, std::string_view group,
                       std::string_view section, std::string_view key) {
  const toml::node* node = &document;
  for (const std::string_view name : {group, section, key}) {
    const toml::table* table = node->as_table();
    if (table == nullptr) {
      ThrowUnreadable(file, std::string(group) + "." + std::string(section) + " is not a table of entries");
    }
    node = table->get(name);
    if (node == nullptr) return nullptr;
  }
  return node;
}

std::string EntryText(std::string_view group, std::string_view section, std::string_view key) {
  return std::string(group) + "." + std::string(section) + "." + std::string(key);
}

}  // namespace

struct RemoteConfiguration::Document {
  Stamp stamp;
  bool isSettled = false;
  toml::table entries;
};

RemoteConfiguration::RemoteConfiguration(std::filesystem::path file, Database& database)
    : UnitBound(database), file_(std::move(file)) {}

RemoteConfiguration::~RemoteConfiguration() = default;

bool RemoteConfiguration::IsFeatureEnabled(const char* section, const char* flag) {
  const toml::node* entry = Find(file_, Current().entries, "switches", section, flag);
  if (entry == nullptr) return true;
  if (const auto* value = entry->as_boolean()) return value->get();
  ThrowUnreadable(file_, EntryText("switches", section, flag) + " is neither true nor false");
}

bool RemoteConfiguration::GetValue2(Util::TString section, Util::TString key, Util::TString& value) {
  const toml::node* entry = Find(file_, Current().entries, "values", section.view(), key.view());
  if (entry == nullptr) return false;
  const auto* text = entry->as_string();
  if (text == nullptr) {
    ThrowUnreadable(file_, EntryText("values", section.view(), key.view()) + " is not a text in quotes");
  }
  value = std::string_view(text->get());
  return true;
}

const RemoteConfiguration::Document& RemoteConfiguration::Current() {
  if (isDocumentCurrent_) return *document_;
  LookAtFile();
  isDocumentCurrent_ = Data().InUnit();
  return *document_;
}

void RemoteConfiguration::LookAtFile() {
  const Stamp stamp = StampOf(file_);
  if (document_ != nullptr && document_->isSettled && document_->stamp == stamp) return;
  auto document = std::make_unique<Document>();
  document->stamp = stamp;
  if (stamp.exists) {
    document->isSettled = file_time_type::clock::now() - stamp.time > kSettledAfter;
    document->entries = Parse(file_, ReadAll(file_));
  }
  document_ = std::move(document);
}

}  // namespace standalone
