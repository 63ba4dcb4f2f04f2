#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/exchange/CarrierLock.h"
#include "standalone/exchange/IdentityLines.h"

namespace exchange {

// Who a company is to its partners: its keys, and which of its facts have left. It lies beside the company
// and never in it, so that a copy of the books is no copy of it. All throw IdentityError.
class IdentityFile {
 public:
  // Makes one for its owner only, as a whole; never over one that is there.
  static void Make(const std::filesystem::path& file, const KeyPair& keys);
  // The same in the place of a lost one, of a company that had these keys, the last one first.
  static void MakeForLost(const std::filesystem::path& file, const KeyPair& keys, std::span<const PublicKey> lost);
  // Puts other keys in the place of those of now, which are former ones from then on; what left stays. The file has
  // either all of that or is as it was. The lock is that of this company.
  static void Replace(const CarrierLock& lock, const std::filesystem::path& file, const KeyPair& keys);
  static void RequireNone(const std::filesystem::path& file);
  // The same from lines that were checked.
  static void MakeFrom(const std::filesystem::path& file, std::string_view text);

  // Looks through the whole file, which holds nothing else than it may.
  explicit IdentityFile(std::filesystem::path file);

  const KeyPair& Keys() const { return keys_.value(); }
  // Those that were replaced.
  const std::vector<KeyPair>& FormerKeys() const noexcept { return former_; }
  // Those that the company had before and whose identity was lost; nobody knows which facts had left by then.
  const std::vector<PublicKey>& LostKeys() const noexcept { return lost_; }

  // How many facts have left, by their lines; a fact may have several.
  std::uint64_t LeftCount() const noexcept { return leftCount_; }
  // Tells of each in the order in which they left, in constant memory, as the file is now.
  void ForEachLeft(const std::function<void(const Hash&)>& take) const;

  // Adds facts that are about to leave: they are on the disk when this returns, by one flush for all. After a failure
  // the file is as it was. The lock is that of this company.
  void AddLeft(const CarrierLock& lock, std::span<const Hash> hashes);

  // The lines, without what a crash left of one. The caller wipes them.
  std::string Text() const;

 private:
  void Scan(IdentityLines& lines) const;
  void Look();
  void LookAgain();
  void Append(std::string_view lines) const;

  std::filesystem::path file_;
  std::optional<KeyPair> keys_;
  std::vector<KeyPair> former_;
  std::vector<PublicKey> lost_;
  std::uint64_t leftCount_ = 0;
  std::uint64_t wholeBytes_ = 0;
};

}  // namespace exchange
