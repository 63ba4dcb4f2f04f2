#include "standalone/exchange/IdentityFile.h"

#include <random>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

#include "platform/DiskFiles.h"
#include "platform/SharedFile.h"
#include "standalone/values/Text.h"

namespace exchange {

namespace {

constexpr std::size_t kPieceBytes = 64 << 10;

std::string Name(const std::filesystem::path& file) {
  return "The identity " + standalone::Shown(standalone::PathText(file));
}

[[noreturn]] void ThrowFailure(const std::filesystem::path& file, std::string_view what, const std::error_code& error,
                               std::string_view remedy) {
  throw IdentityError(Name(file) + ' ' + std::string(what) + " (" + error.message() + "). " + std::string(remedy));
}

[[noreturn]] void ThrowExists(const std::filesystem::path& file) {
  throw IdentityError(Name(file) + " exists already and is not replaced.");
}

// A file of its owner's beside its final name until it is complete.
class IdentityDraft {
 public:
  explicit IdentityDraft(const std::filesystem::path& name)
      : path_(standalone::WithSuffix(name, '.' + std::to_string(std::random_device{}()) + ".new")) {
    platform::MakeFile(path_);
  }
  IdentityDraft(const IdentityDraft&) = delete;
  IdentityDraft& operator=(const IdentityDraft&) = delete;
  ~IdentityDraft() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  void Write(std::string_view text) const {
    platform::SharedFile::OpenToAppend(path_).Append(text);
    platform::BringToDisk(path_);
  }
  const std::filesystem::path& Path() const noexcept { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace

void IdentityFile::Make(const std::filesystem::path& file, const KeyPair& keys) {
  MakeForLost(file, keys, {});
}

void IdentityFile::MakeForLost(const std::filesystem::path& file, const KeyPair& keys,
                               std::span<const PublicKey> lost) {
  std::string text = NewIdentityText(keys, lost);
  MakeFrom(file, text);
  Wipe(text);
}

void IdentityFile::Replace(const CarrierLock& lock, const std::filesystem::path& file, const KeyPair& keys) {
  if (!lock.IsOf(file)) throw std::logic_error("the lock is that of another company");
  const IdentityFile before(file);
  std::string lines = before.Text();
  std::string text = ReplacedIdentityText(lines, before.Keys(), keys);
  Wipe(lines);
  try {
    // Where it is a link, that stays.
    const std::filesystem::path place = std::filesystem::canonical(file);
    const IdentityDraft draft(place);
    platform::TakeRightsOf(place, draft.Path());
    draft.Write(text);
    platform::RenameOver(draft.Path(), place);
  } catch (const std::system_error& error) {
    Wipe(text);
    ThrowFailure(file, "cannot be replaced", error.code(),
                 "Check that you may write in its folder and that there is room.");
  }
  Wipe(text);
}

void IdentityFile::RequireNone(const std::filesystem::path& file) {
  std::error_code ignored;
  if (std::filesystem::exists(std::filesystem::symlink_status(file, ignored))) ThrowExists(file);
}

void IdentityFile::MakeFrom(const std::filesystem::path& file, std::string_view text) {
  try {
    RequireNone(file);
    const IdentityDraft draft(file);
    draft.Write(text);
    if (!platform::RenameUnlessTaken(draft.Path(), file)) ThrowExists(file);
  } catch (const std::system_error& error) {
    ThrowFailure(file, "cannot be made", error.code(),
                 "Check that you may write in its folder and that there is room.");
  }
}

IdentityFile::IdentityFile(std::filesystem::path file) : file_(std::move(file)) {
  Look();
}

void IdentityFile::Look() {
  IdentityLines lines(Name(file_), nullptr);
  Scan(lines);
  keys_ = lines.Keys();
  former_ = lines.FormerKeys();
  lost_ = lines.LostKeys();
  leftCount_ = lines.LeftCount();
  wholeBytes_ = lines.WholeBytes();
}

void IdentityFile::Scan(IdentityLines& lines) const {
  try {
    const platform::SharedFile file = platform::SharedFile::OpenToRead(file_);
    std::string piece(kPieceBytes, '\0');
    std::uint64_t at = 0;
    for (std::size_t count = file.Read(at, piece); count > 0; count = file.Read(at, piece)) {
      lines.Add(std::string_view(piece).substr(0, count));
      at += count;
    }
    Wipe(piece);
  } catch (const std::system_error& error) {
    ThrowFailure(file_, "cannot be read", error.code(), "Check that it is there, and that you may read it.");
  }
  lines.Finish();
}

void IdentityFile::ForEachLeft(const std::function<void(const Hash&)>& take) const {
  IdentityLines lines(Name(file_), take);
  Scan(lines);
}

void IdentityFile::AddLeft(const CarrierLock& lock, std::span<const Hash> hashes) {
  if (!lock.IsOf(file_)) throw std::logic_error("the lock is that of another company");
  if (hashes.empty()) return;
  std::string lines;
  for (const Hash& hash : hashes) lines += LeftLine(hash);
  try {
    LookAgain();
    Append(lines);
  } catch (const std::system_error& error) {
    ThrowFailure(file_, "cannot be written", error.code(), "Check that its disk has room and that you may write it.");
  }
  wholeBytes_ += lines.size();
  leftCount_ += hashes.size();
}

// Somebody else may have carried since this was opened, and have been killed.
void IdentityFile::LookAgain() {
  const platform::SharedFile file = platform::SharedFile::OpenToRead(file_);
  if (file.Size() != wholeBytes_) Look();
  if (file.Size() != wholeBytes_) std::filesystem::resize_file(file_, wholeBytes_);
}

void IdentityFile::Append(std::string_view lines) const {
  platform::SharedFile file = platform::SharedFile::OpenToAppend(file_);
  try {
    file.Append(lines);
    platform::BringToDisk(file_);
  } catch (const std::system_error&) {
    std::error_code ignored;
    std::filesystem::resize_file(file_, wholeBytes_, ignored);
    throw;
  }
}

std::string IdentityFile::Text() const {
  try {
    const platform::SharedFile file = platform::SharedFile::OpenToRead(file_);
    std::string text(wholeBytes_, '\0');
    text.resize(file.Read(0, text));
    return text;
  } catch (const std::system_error& error) {
    ThrowFailure(file_, "cannot be read", error.code(), "Check that it is there, and that you may read it.");
  }
}

}  // namespace exchange
