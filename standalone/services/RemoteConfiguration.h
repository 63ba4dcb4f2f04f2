#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "MultiEntityHost/Switches.h"
#include "standalone/storage/Database.h"

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
// file that cannot be read or has more than a MiB, or a switch or value of another type, throws std::runtime_error that
// names the file. The file is looked at once in a unit of work, and for every question outside of one.
class RemoteConfiguration final : public KillSwitchHelper, public FileSystem::DCE, private UnitBound {
 public:
  RemoteConfiguration(std::filesystem::path file, Database& database);
  RemoteConfiguration(const RemoteConfiguration&) = delete;
  RemoteConfiguration& operator=(const RemoteConfiguration&) = delete;
  ~RemoteConfiguration();

  bool IsFeatureEnabled(const char* section, const char* flag) override;
  bool GetValue2(Util::TString section, Util::TString key, Util::TString& value) override;

 private:
  struct Document;

  const Document& Current();
  void LookAtFile();
  void Drop() noexcept override { isDocumentCurrent_ = false; }

  std::filesystem::path file_;
  std::unique_ptr<Document> document_;
  bool isDocumentCurrent_ = false;  // for the rest of the unit of work
};

}  // namespace standalone
