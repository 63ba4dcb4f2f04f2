#include "standalone/company/MovingAside.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <system_error>

#include "platform/DiskFiles.h"
#include "standalone/company/FileNames.h"
#include "standalone/storage/sqlite/DraftFile.h"
#include "standalone/storage/sqlite/Journals.h"
#include "standalone/storage/sqlite/SameBytes.h"
#include "standalone/values/Text.h"

namespace standalone {

namespace {

bool IsCopied(const std::filesystem::path& file, const std::filesystem::path& name, const char* suffix) {
  return IsThere(WithSuffix(file, suffix)) && HaveSameBytes(WithSuffix(file, suffix), WithSuffix(name, suffix));
}

// A name that is free, or just this file's because it was on its way there.
bool MayTake(const std::filesystem::path& file, const std::filesystem::path& name) {
  if (IsThere(name)) {
    return !IsThere(file) && std::ranges::all_of(kJournalSuffixes, [&](const char* suffix) {
      return !IsThere(WithSuffix(file, suffix)) || IsCopied(file, name, suffix);
    });
  }
  return std::ranges::all_of(kJournalSuffixes, [&](const char* suffix) {
    return !IsThere(WithSuffix(name, suffix)) || IsCopied(file, name, suffix);
  });
}

[[noreturn]] void ThrowTaken() {
  throw std::system_error(std::make_error_code(std::errc::file_exists));
}

// The standard library's own copy refuses a file that is there on some systems, although it was asked to replace it.
void CopyInto(const std::filesystem::path& original, const std::filesystem::path& copy) {
  std::ifstream from(original, std::ios::binary);
  std::ofstream to(copy, std::ios::binary | std::ios::trunc);
  if (from.peek() != std::ifstream::traits_type::eof()) to << from.rdbuf();
  to.close();
  if (from.bad() || !from.is_open() || !to) {
    throw std::filesystem::filesystem_error("cannot copy file", original, copy,
                                            std::make_error_code(std::errc::io_error));
  }
}

}  // namespace

bool IsAnythingThere(const std::filesystem::path& file) {
  return IsThere(file) || !LeftBeside(file).empty();
}

MovingAside::MovingAside(const std::filesystem::path& file) : file_(file) {
  const std::filesystem::path first = WithSuffix(file, ".damaged");
  name_ = first;
  for (int number = 1; !MayTake(file, name_); ++number) name_ = WithSuffix(first, "." + std::to_string(number));
  for (const char* const suffix : kJournalSuffixes) {
    if (!IsThere(WithSuffix(file, suffix)) || IsCopied(file, name_, suffix)) continue;
    steps_.emplace_back([this, suffix] { CopyOver(suffix); });
  }
  if (IsThere(file)) steps_.emplace_back([this] { Rename(); });
  for (const char* const suffix : kJournalSuffixes) {
    if (!IsThere(WithSuffix(file, suffix))) continue;
    steps_.emplace_back([this, suffix] { platform::Remove(WithSuffix(file_, suffix)); });
  }
}

bool MovingAside::Step() {
  if (next_ == steps_.size()) return false;
  steps_[next_]();
  ++next_;
  return true;
}

void MovingAside::GiveUp() noexcept {
  std::error_code ignored;
  if (!IsThere(file_)) return;
  for (const std::filesystem::path& made : made_) std::filesystem::remove(made, ignored);
}

void MovingAside::CopyOver(const char* suffix) {
  const std::filesystem::path original = WithSuffix(file_, suffix);
  const std::filesystem::path copy = WithSuffix(name_, suffix);
  DraftFile draft(copy);
  CopyInto(original, draft.Path());
  platform::TakeRightsOf(original, draft.Path());
  platform::BringToDisk(draft.Path());
  if (!draft.Publish(copy)) ThrowTaken();
  made_.push_back(copy);
}

void MovingAside::Rename() {
  if (!platform::RenameUnlessTaken(file_, name_)) ThrowTaken();
}

}  // namespace standalone
