#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/Clock.h"
#include "standalone/exchange/Mailbox.h"

namespace exchange {

inline constexpr const char* kEnvelopeSuffix = ".envelope";
// Of a file that is being put, whose name begins with a point.
inline constexpr const char* kDraftSuffix = ".tmp";
inline constexpr const char* kSetAsideFolder = "set-aside";
// Behind the name of what was set aside.
inline constexpr const char* kReasonSuffix = ".why.txt";

// Of a file, in UTF-8; empty where its name is not even that of a text.
std::string NameOfFile(const std::filesystem::path& file);
// Whether a file of that name is an envelope for that address, also where a disk has changed the case of its letters.
bool IsEnvelopeNameFor(std::string_view name, std::string_view address);

// A folder that several machines share or that a program fills: one file per envelope, of one netstring of its bytes,
// named ADDRESS-ID.envelope. Files of other names are left alone. The folder is never made: a share that is not
// connected is no empty mailbox.
class FolderMailbox final : public Mailbox {
 public:
  // The clock dates names and tells how old files are; it outlives this.
  FolderMailbox(std::filesystem::path folder, platform::Clock& clock);

  // Listing also removes drafts of a day ago, which a program that was killed has left.
  std::string Put(std::string_view address, std::string_view bytes) override;
  std::vector<std::string> List(std::string_view address) override;
  TakenEnvelope Take(std::string_view name, std::size_t most) override;
  void Acknowledge(std::string_view name) override;
  void SetAside(std::string_view name, std::string_view reason) override;
  bool LiesThere(std::string_view name) override;

 private:
  enum class Place { kTaken, kMoved, kGone };

  std::chrono::sys_time<std::chrono::milliseconds> Now() const;
  std::filesystem::path PathOf(std::string_view name) const;
  std::chrono::seconds AgeOf(const std::filesystem::path& file) const;
  bool IsBeingWritten(const std::filesystem::path& file) const;
  void RemoveOldDraft(const std::filesystem::directory_entry& entry) const;
  TakenEnvelope ReadWhole(const std::filesystem::path& file, std::size_t most) const;
  TakenEnvelope Unreadable(const std::filesystem::path& file, const std::error_code& error) const;
  std::filesystem::path MakeSetAsideFolder() const;
  void WriteReason(const std::filesystem::path& file, std::string_view reason) const;
  Place MoveAside(const std::filesystem::path& file, const std::filesystem::path& name, std::string_view reason) const;
  void RequireFolder() const;
  [[noreturn]] void ThrowFailure(std::string_view what, const std::error_code& error) const;

  std::filesystem::path folder_;
  platform::Clock& clock_;
};

}  // namespace exchange
