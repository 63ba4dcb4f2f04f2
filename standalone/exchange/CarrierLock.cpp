#include "standalone/exchange/CarrierLock.h"

#include <array>
#include <cstdio>
#include <system_error>
#include <utility>

#include "platform/SystemUser.h"
#include "standalone/exchange/IdentityLines.h"
#include "standalone/values/Text.h"

namespace exchange {

namespace {

constexpr std::size_t kLongestHolder = 200;
constexpr const char* kSomebody = "another program";

std::string Moment(platform::Clock::TimePoint moment) {
  const std::tm local = platform::LocalTimeOf(moment);
  std::array<char, sizeof "2026-11-22 21:50:00"> text{};
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
  return text.data();
}

std::filesystem::path LockOf(const std::filesystem::path& identity) {
  return standalone::WithSuffix(identity, kLockSuffix);
}

// It only helps people: who has the lock is said by the system.
void Note(const std::filesystem::path& lock, platform::SharedFile& file, platform::Clock& clock) {
  try {
    std::filesystem::resize_file(lock, 0);
    file.Append(platform::SystemUserName() + ", since " + Moment(clock.Now()) + '\n');
  } catch (const std::system_error&) {
  }
}

}  // namespace

std::optional<CarrierLock> CarrierLock::TryTake(const std::filesystem::path& identity, platform::Clock& clock) {
  const std::filesystem::path lock = LockOf(identity);
  try {
    platform::SharedFile file = platform::SharedFile::OpenToAppend(lock);
    // Where the file was removed meanwhile, somebody else may lock the new one.
    if (!file.TryLock() || !file.HasName(lock)) return std::nullopt;
    Note(lock, file, clock);
    return CarrierLock(identity, std::move(file));
  } catch (const std::system_error& error) {
    throw IdentityError(standalone::Shown(standalone::PathText(lock)) + " cannot be locked (" + error.code().message() +
                        "). Check that you may write in its folder.");
  }
}

std::string CarrierLock::Holder(const std::filesystem::path& identity) {
  try {
    std::string text(kLongestHolder, '\0');
    text.resize(platform::SharedFile::OpenToRead(LockOf(identity)).Read(0, text));
    if (!text.ends_with('\n') || text.size() == 1) return kSomebody;
    text.pop_back();
    return standalone::Shown(text);
  } catch (const std::system_error&) {
    return kSomebody;
  }
}

}  // namespace exchange
