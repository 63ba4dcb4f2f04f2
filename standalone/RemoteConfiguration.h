#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "host/Switches.h"
#include "standalone/Database.h"

namespace standalone {

// The remote switches and values, kept in a TOML file beside the company file:
//
//   [switches.MultiEntityFeature]
//   ME_FOR_ALL = false
//
//   [values.MultiEntity]
//   InitialDelayInSeconds = "5"
//
// A flag that is not there is on, a value that is not there leaves the caller's as it is, and so does a missing file. A
// file that cannot be read, or a switch or value of another type, throws std::runtime_error that names the file.
// Changes of the file count from the next question on, for whoever works in units of work from the next unit on.
class RemoteConfiguration final : public KillSwitchHelper, public FileSystem::DCE {
 public:
  // With a database, the file is looked at once in each of its units of work.
  explicit RemoteConfiguration(std::filesystem::path file, const Database* database = nullptr);
  RemoteConfiguration(const RemoteConfiguration&) = delete;
  RemoteConfiguration& operator=(const RemoteConfiguration&) = delete;
  ~RemoteConfiguration();

  bool IsFeatureEnabled(const char* section, const char* flag) override;
  bool GetValue2(Util::TString section, Util::TString key, Util::TString& value) override;

 private:
  struct Document;

  const Document& Current();
  void LookAtFile();
  bool WasLookedAtInThisUnit() const noexcept;

  std::filesystem::path file_;
  const Database* database_;
  std::unique_ptr<Document> document_;
  std::uint64_t lookedAtInUnit_ = 0;
};

}  // namespace standalone
