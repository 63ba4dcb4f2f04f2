#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace exchange {

// A text with its length before it: the number of its bytes in decimal without leading zeros, a colon, the bytes, a
// comma. "3:abc," is abc, "0:," is empty.
void AppendNetstring(std::string& out, std::string_view bytes);

// Reads netstrings that follow each other without anything between them. What it gives are views into what it reads,
// so that a length that is only claimed costs nothing.
class NetstringReader {
 public:
  // Refusals call the bytes `what`, such as "The fact"; both have to stay for as long as this reads.
  NetstringReader(std::string_view what, std::string_view bytes) : what_(what), bytes_(bytes) {}

  bool AtEnd() const noexcept { return at_ == bytes_.size(); }
  // How many bytes were read.
  std::size_t Position() const noexcept { return at_; }

  // Throws Malformed, which names the place, when no whole netstring follows.
  std::string_view Take();

 private:
  std::size_t TakeLength();
  [[noreturn]] void Refuse(std::string_view why) const;

  std::string_view what_;
  std::string_view bytes_;
  std::size_t at_ = 0;
};

}  // namespace exchange
