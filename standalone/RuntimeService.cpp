#include "standalone/RuntimeService.h"

#include <cstdio>
#include <cstdlib>

namespace standalone {

char* RuntimeService::FormatStringV(const char* pattern, std::va_list arguments) {
  std::va_list measured;
  va_copy(measured, arguments);
  const int length = std::vsnprintf(nullptr, 0, pattern, measured);
  va_end(measured);
  if (length < 0) return nullptr;
  const auto size = static_cast<std::size_t>(length) + 1;
  auto* text = static_cast<char*>(std::malloc(size));
  if (text != nullptr) std::vsnprintf(text, size, pattern, arguments);
  return text;
}

void RuntimeService::Release(void* block) noexcept {
  std::free(block);
}

}  // namespace standalone
