#pragma once

#include <sodium.h>

#include <stdexcept>
#include <string>
#include <string_view>

// What calling libsodium takes everywhere in this room.
namespace exchange {

inline const unsigned char* BytesOf(std::string_view text) {
  return reinterpret_cast<const unsigned char*>(text.data());
}

inline unsigned char* BytesOf(std::string& text) {
  return reinterpret_cast<unsigned char*>(text.data());
}

// Throws std::runtime_error.
inline void RequireRandomNumbers() {
  if (sodium_init() < 0) throw std::runtime_error("this machine gives no random numbers");
}

}  // namespace exchange
