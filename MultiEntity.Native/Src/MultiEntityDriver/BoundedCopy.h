#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "Frame/AttachedHost.h"
#include "MultiEntityHost/TString.h"

// Clears a row's text field over its full width and copies the text in. A text that does not fit with its NUL leaves
// the field empty and is told to the host.
inline void BoundedCopy(char* field, std::size_t width, const Util::TString& text) {
  std::fill_n(field, width, '\0');
  const std::size_t length = std::strlen(text.c_str());
  if (length >= width) {
    Host().runtime.InvalidParameter();
    return;
  }
  std::copy_n(text.c_str(), length, field);
}

template <std::size_t kWidth>
void BoundedCopy(char (&field)[kWidth], const Util::TString& text) {
  BoundedCopy(field, kWidth, text);
}

// The text of a row's field.
template <std::size_t kWidth>
std::string_view FieldText(const char (&field)[kWidth]) noexcept {
  const void* const end = std::memchr(field, '\0', kWidth);
  return {field, end != nullptr ? static_cast<std::size_t>(static_cast<const char*>(end) - field) : kWidth};
}
