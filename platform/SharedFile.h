#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>

namespace platform {

// A file that several programs have open at a time and that any of them may rename meanwhile. What is no regular file,
// such as a folder, a pipe or a device, is not opened and never waited for. All throw std::system_error unless they say
// otherwise.
class SharedFile {
 public:
  static SharedFile OpenToRead(const std::filesystem::path& file);
  // Makes it for its owner only unless it is there; on Windows the rights of its folder hold.
  static SharedFile OpenToAppend(const std::filesystem::path& file);

  SharedFile(const SharedFile&) = delete;
  SharedFile& operator=(const SharedFile&) = delete;
  SharedFile(SharedFile&& other) noexcept;
  SharedFile& operator=(SharedFile&& other) noexcept;
  // Closes it, which also unlocks it.
  ~SharedFile();

  std::uint64_t Size() const;
  // Whether a name leads to this file.
  bool HasName(const std::filesystem::path& name) const noexcept;

  // Fills `bytes` from an offset on, as far as the file goes; how many there were.
  std::size_t Read(std::uint64_t offset, std::span<char> bytes) const;
  // Behind all that is there, at once.
  void Append(std::string_view bytes);

  // Whether the lock is this one's now: not while another one has it, whether in this program or in another.
  bool TryLock() noexcept;
  void Unlock() noexcept;

 private:
  explicit SharedFile(std::intptr_t handle) noexcept : handle_(handle) {}
  // Closes it when it is no regular file.
  void RequireRegular(const std::filesystem::path& file) const;

  std::intptr_t handle_;
};

}  // namespace platform
