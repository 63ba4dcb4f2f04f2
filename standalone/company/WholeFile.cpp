#include "standalone/company/WholeFile.h"

#include <string>
#include <system_error>

#include "platform/DiskFiles.h"
#include "standalone/company/FileNames.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

constexpr std::string_view kNoRoom = "Check that its disk has room.";

void RequireNotOfTheCompany(const std::filesystem::path& name, const std::filesystem::path& company) {
  std::error_code ignored;
  if (!std::filesystem::equivalent(name, company, ignored) && !IsBesideCompany(name, company)) return;
  throw InvalidInput(PathText(name) + " is the company " + PathText(company) +
                     " or belongs to it; choose another name for the file.");
}

}  // namespace

WholeFile::WholeFile(const std::filesystem::path& name, const std::filesystem::path& company)
    : name_(BehindItsLinks(RequireFileName(name))) {
  RequireNotOfTheCompany(name_, company);
}

bool WholeFile::IsTaken() const {
  if (!IsThere(name_)) return false;
  if (std::filesystem::is_regular_file(name_)) return true;
  throw InvalidInput(PathText(name_) + " is no file and is not replaced; choose another name.");
}

void WholeFile::Begin() {
  try {
    draft_.emplace(name_);
  } catch (const std::system_error& error) {
    ThrowNotWritten("Check that its folder exists and that you may write there (" + error.code().message() + ").");
  }
  stream_.open(draft_->Path(), std::ios::binary);
}

void WholeFile::Write(std::string_view bytes) {
  if (!draft_) Begin();
  if (!stream_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()))) ThrowNotWritten(kNoRoom);
  bytes_ += bytes.size();
}

bool WholeFile::Publish(bool replaces) {
  if (!draft_) Begin();
  stream_.close();
  if (!stream_) ThrowNotWritten(kNoRoom);
  try {
    platform::BringToDisk(draft_->Path());
    if (!replaces || !IsTaken()) return draft_->Publish(name_);
    platform::TakeRightsOf(name_, draft_->Path());
    std::filesystem::rename(draft_->Path(), name_);
    return true;
  } catch (const std::system_error& error) {
    ThrowNotWritten("(" + error.code().message() + ")");
  }
}

void WholeFile::ThrowNotWritten(std::string_view reason) const {
  throw std::runtime_error(PathText(name_) + " was not written. " + std::string(reason));
}

}  // namespace standalone
