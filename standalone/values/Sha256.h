#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace standalone {

// The SHA-256 of what is added, one piece after the other.
class Sha256 {
 public:
  Sha256();
  Sha256(const Sha256&) = delete;
  Sha256& operator=(const Sha256&) = delete;
  ~Sha256();

  void Add(std::string_view bytes);
  // 64 hexadecimal digits in small letters; nothing is added afterwards.
  std::string Finish();

 private:
  struct State;

  std::unique_ptr<State> state_;
};

inline constexpr std::size_t kSha256Digits = 64;

std::string Sha256Of(std::string_view bytes);

}  // namespace standalone
