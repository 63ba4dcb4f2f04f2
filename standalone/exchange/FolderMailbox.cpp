#include "standalone/exchange/FolderMailbox.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <initializer_list>
#include <system_error>
#include <utility>

#include "platform/DiskFiles.h"
#include "platform/SharedFile.h"
#include "standalone/exchange/EnvelopeFile.h"
#include "standalone/values/Text.h"
#include "standalone/values/Uuid.h"

namespace exchange {

namespace {

using standalone::EqualIgnoringCase;
using standalone::PathText;
using standalone::WithSuffix;

// For which a file that is not complete counts as one that is being written, by a disk whose clock need not be right.
constexpr std::chrono::minutes kWritingTime{10};
constexpr std::chrono::hours kDraftTime{24};

// Elsewhere they are texts.
constexpr bool kNamesAreBytes = sizeof(std::filesystem::path::value_type) == 1;

bool EndsWith(std::string_view text, std::string_view end) noexcept {
  return text.size() >= end.size() && EqualIgnoringCase(text.substr(text.size() - end.size()), end);
}

// One as Put() gives them, rather than that of a copy, or what a mail program has made of it.
bool IsGivenHere(std::string_view name) {
  constexpr std::size_t kUuidBytes = 36;
  constexpr std::size_t kBefore = kAddressDigits + 1;
  return name.size() == kBefore + kUuidBytes + std::string_view(kEnvelopeSuffix).size() &&
         name.substr(kBefore, kUuidBytes).find_first_not_of("0123456789abcdefABCDEF-") == std::string_view::npos;
}

bool IsNameOfADraft(std::string_view name) {
  return name.starts_with('.') && IsAddress(name.substr(1, kAddressDigits)) &&
         EndsWith(name, std::string(kEnvelopeSuffix) + kDraftSuffix);
}

bool IsGone(const std::error_code& error) noexcept {
  return error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
}

bool IsThere(const std::filesystem::path& file) {
  std::error_code ignored;
  return std::filesystem::exists(std::filesystem::symlink_status(file, ignored));
}

// For whoever may read the folder, unlike what belongs to a company.
void WriteWhole(const std::filesystem::path& file, std::initializer_list<std::string_view> pieces) {
  errno = 0;
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  for (const std::string_view piece : pieces) stream.write(piece.data(), static_cast<std::streamsize>(piece.size()));
  stream.close();
  if (!stream) throw std::system_error(errno != 0 ? errno : EIO, std::generic_category());
  platform::BringToDisk(file);
}

// False when the name is taken.
bool Move(const std::filesystem::path& file, const std::filesystem::path& name) {
  try {
    return platform::RenameUnlessTaken(file, name);
  } catch (const std::system_error&) {
    // Some disks of other machines cannot do that in one step.
    if (IsThere(name)) return false;
    std::filesystem::rename(file, name);
    return true;
  }
}

// Removed unless it has got its name.
class EnvelopeDraft {
 public:
  explicit EnvelopeDraft(std::filesystem::path path) : path_(std::move(path)) {}
  EnvelopeDraft(const EnvelopeDraft&) = delete;
  EnvelopeDraft& operator=(const EnvelopeDraft&) = delete;
  ~EnvelopeDraft() {
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
  }

  const std::filesystem::path& Path() const noexcept { return path_; }

 private:
  std::filesystem::path path_;
};

TakenEnvelope TooLarge(std::uintmax_t bytes, std::size_t most) {
  return {
      .finding = Finding::kTooLarge,
      .bytes = {},
      .reason = "It has " + std::to_string(bytes) + " bytes; an envelope has at most " + std::to_string(most) + "."};
}

TakenEnvelope Unfinished() {
  return {.finding = Finding::kUnfinished, .bytes = {}, .reason = "It is still being written."};
}

}  // namespace

std::string NameOfFile(const std::filesystem::path& file) {
  try {
    return PathText(file.filename());
  } catch (const std::system_error&) {
    return {};
  }
}

bool IsEnvelopeNameFor(std::string_view name, std::string_view address) {
  return name.size() > address.size() && name[address.size()] == '-' &&
         EqualIgnoringCase(name.substr(0, address.size()), address) && EndsWith(name, kEnvelopeSuffix);
}

FolderMailbox::FolderMailbox(std::filesystem::path folder, platform::Clock& clock)
    : folder_(std::move(folder)), clock_(clock) {}

std::string FolderMailbox::Put(std::string_view address, std::string_view bytes) {
  std::string name = std::string(address) + '-' + standalone::MakeUuid(Now()) + kEnvelopeSuffix;
  try {
    const EnvelopeDraft draft(folder_ / standalone::PathOfText('.' + name + kDraftSuffix));
    WriteWhole(draft.Path(), {HeadOf(bytes.size()), bytes, std::string_view(&kTail, 1)});
    // Only a disk that does things twice has a file of that name already, which is this one.
    Move(draft.Path(), PathOf(name));
    return name;
  } catch (const std::system_error& error) {
    RequireFolder();
    ThrowFailure("An envelope cannot be put into it", error.code());
  }
}

std::vector<std::string> FolderMailbox::List(std::string_view address) {
  std::vector<std::string> names;
  std::error_code error;
  std::filesystem::directory_iterator entries(folder_, error);
  for (; !error && entries != std::filesystem::directory_iterator(); entries.increment(error)) {
    std::string name = NameOfFile(entries->path());
    if (IsNameOfADraft(name)) RemoveOldDraft(*entries);
    if (IsEnvelopeNameFor(name, address)) names.push_back(std::move(name));
  }
  if (error) ThrowFailure("It cannot be listed", error);
  std::ranges::sort(names, {}, [](const std::string& name) { return std::pair(IsGivenHere(name), name); });
  return names;
}

void FolderMailbox::RemoveOldDraft(const std::filesystem::directory_entry& entry) const {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(entry.symlink_status(ignored))) return;
  if (AgeOf(entry.path()) >= kDraftTime) std::filesystem::remove(entry.path(), ignored);
}

TakenEnvelope FolderMailbox::Take(std::string_view name, std::size_t most) {
  const std::filesystem::path file = PathOf(name);
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::symlink_status(file, error);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    return {.finding = Finding::kNoFile, .bytes = {}, .reason = "It is no file, but a folder, a link or a device."};
  }
  try {
    return ReadWhole(file, most);
  } catch (const std::system_error& failure) {
    if (!IsGone(failure.code())) return Unreadable(file, failure.code());
  }
  RequireFolder();
  return {.finding = Finding::kGone, .bytes = {}, .reason = "It is not there any more."};
}

TakenEnvelope FolderMailbox::ReadWhole(const std::filesystem::path& file, std::size_t most) const {
  const platform::SharedFile opened = platform::SharedFile::OpenToRead(file);
  const std::uint64_t size = opened.Size();
  if (size > most + kMostAround) return TooLarge(size, most);
  std::string content(static_cast<std::size_t>(size), '\0');
  content.resize(opened.Read(0, content));
  const EnvelopeFile read = ReadEnvelopeFile(content);
  if (read.completeness == Completeness::kComplete) {
    if (read.bytes.size() > most) return TooLarge(read.bytes.size(), most);
    return {.finding = Finding::kWhole, .bytes = std::string(read.bytes), .reason = {}};
  }
  if (read.completeness == Completeness::kNever) {
    return {.finding = Finding::kBroken, .bytes = {}, .reason = "It is no envelope, or not as it was put."};
  }
  if (IsBeingWritten(file)) return Unfinished();
  return {.finding = Finding::kBroken, .bytes = {}, .reason = "Its end is missing."};
}

// Some systems keep others from a file that is being written.
TakenEnvelope FolderMailbox::Unreadable(const std::filesystem::path& file, const std::error_code& error) const {
  if (IsBeingWritten(file)) return Unfinished();
  return {.finding = Finding::kUnreadable, .bytes = {}, .reason = "It cannot be read (" + error.message() + ")."};
}

// Not brought to the disk: one that comes back is taken again, which changes nothing.
void FolderMailbox::Acknowledge(std::string_view name) {
  std::error_code error;
  if (std::filesystem::remove(PathOf(name), error)) return;
  RequireFolder();
  if (error && !IsGone(error)) ThrowFailure(standalone::Shown(name) + " cannot be removed", error);
}

void FolderMailbox::SetAside(std::string_view name, std::string_view reason) {
  const std::filesystem::path file = PathOf(name);
  if (!LiesThere(name)) return;
  try {
    const std::filesystem::path aside = MakeSetAsideFolder() / file.filename();
    if (MoveAside(file, aside, reason) != Place::kTaken) return;
    MoveAside(file, WithSuffix(aside, '.' + standalone::MakeUuid(Now())), reason);
  } catch (const std::system_error& error) {
    RequireFolder();
    ThrowFailure(standalone::Shown(name) + " cannot be set aside", error.code());
  }
}

std::filesystem::path FolderMailbox::MakeSetAsideFolder() const {
  std::filesystem::path folder = folder_ / kSetAsideFolder;
  std::error_code ignored;
  std::filesystem::create_directory(folder, ignored);
  // Not one to which a link leads: whoever puts envelopes does not say where files go.
  if (std::filesystem::is_directory(std::filesystem::symlink_status(folder))) return folder;
  throw std::system_error(std::make_error_code(std::errc::not_a_directory));
}

// Under a name that nobody can have taken before: a link of that name would lead what is written elsewhere.
void FolderMailbox::WriteReason(const std::filesystem::path& file, std::string_view reason) const {
  const EnvelopeDraft draft(file.parent_path() / ('.' + standalone::MakeUuid(Now()) + kDraftSuffix));
  WriteWhole(draft.Path(), {standalone::Shown(reason), "\n"});
  std::filesystem::rename(draft.Path(), file);
}

// The reason is there first, so that nothing lies there without one.
FolderMailbox::Place FolderMailbox::MoveAside(const std::filesystem::path& file, const std::filesystem::path& name,
                                              std::string_view reason) const {
  if (IsThere(name)) return Place::kTaken;
  const std::filesystem::path why = WithSuffix(name, kReasonSuffix);
  WriteReason(why, reason);
  try {
    return Move(file, name) ? Place::kMoved : Place::kTaken;
  } catch (const std::system_error& error) {
    std::error_code ignored;
    std::filesystem::remove(why, ignored);
    if (!IsGone(error.code())) throw;
    RequireFolder();
    return Place::kGone;
  }
}

bool FolderMailbox::LiesThere(std::string_view name) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::symlink_status(PathOf(name), error);
  if (status.type() == std::filesystem::file_type::none) ThrowFailure("It cannot be looked into", error);
  if (std::filesystem::exists(status)) return true;
  RequireFolder();
  return false;
}

// Names come from here, and whoever keeps one may have it changed: none leads out of the folder.
std::filesystem::path FolderMailbox::PathOf(std::string_view name) const {
  if (!standalone::IsUtf8(name) && !kNamesAreBytes) throw MailboxError(standalone::Quoted(name) + " is no name here.");
  const std::filesystem::path file = standalone::PathOfText(name);
  const bool isName = name.size() > kAddressDigits && IsEnvelopeNameFor(name, name.substr(0, kAddressDigits)) &&
                      name.find('\0') == std::string_view::npos && file == file.filename() &&
                      !platform::NamesAStream(file);
  if (!isName) throw MailboxError(standalone::Quoted(name) + " is the name of no envelope.");
  return folder_ / file;
}

std::chrono::sys_time<std::chrono::milliseconds> FolderMailbox::Now() const {
  return std::chrono::floor<std::chrono::milliseconds>(clock_.Now());
}

bool FolderMailbox::IsBeingWritten(const std::filesystem::path& file) const {
  return AgeOf(file) < kWritingTime;
}

// By both clocks, of which either may be ahead.
std::chrono::seconds FolderMailbox::AgeOf(const std::filesystem::path& file) const {
  std::error_code error;
  const auto changed = std::filesystem::last_write_time(file, error);
  if (error) return std::chrono::seconds(0);
  const auto age = std::chrono::file_clock::from_sys(clock_.Now()) - changed;
  return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::abs(age));
}

void FolderMailbox::RequireFolder() const {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(folder_, error);
  if (std::filesystem::is_directory(status)) return;
  ThrowFailure("It is not there", error ? error : std::make_error_code(std::errc::not_a_directory));
}

void FolderMailbox::ThrowFailure(std::string_view what, const std::error_code& error) const {
  throw MailboxError("The mailbox " + standalone::Shown(PathText(folder_)) + ": " + std::string(what) + " (" +
                     error.message() +
                     "). Check that its disk or share is connected and has room, and that you may write there.");
}

}  // namespace exchange
