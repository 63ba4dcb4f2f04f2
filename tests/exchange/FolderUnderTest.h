#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "standalone/exchange/FolderMailbox.h"
#include "support/TemporaryFolder.h"

namespace exchange {

// A clock that shows what the test sets.
class SetClock final : public platform::Clock {
 public:
  TimePoint Now() override { return now; }

  TimePoint now = std::chrono::system_clock::now();
};

// A folder that is a mailbox.
struct FolderOfEnvelopes {
  FolderOfEnvelopes() { std::filesystem::create_directory(path); }

  // Of a file for Birch that others put there.
  static std::string NameFor(std::string_view middle) { return kBirch + ('-' + std::string(middle)) + ".envelope"; }
  std::string WriteEnvelope(std::string_view middle, std::string_view content) const {
    std::string name = NameFor(middle);
    standalone::WriteFile(path / name, content);
    return name;
  }
  std::vector<std::string> FilesIn(const std::filesystem::path& folder) const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }

  static constexpr const char* kBirch = "0123456789abcdef";
  static constexpr std::size_t kMost = 1'000;

  const standalone::TemporaryFolder parent;
  const std::filesystem::path path = parent / "mail";
  const std::filesystem::path aside = path / "set-aside";
  SetClock clock;
  FolderMailbox mailbox{path, clock};
};

}  // namespace exchange
