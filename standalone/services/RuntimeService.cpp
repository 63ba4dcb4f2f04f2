#include "standalone/services/RuntimeService.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace standalone {

namespace {

constexpr std::size_t kMostTexts = 3;

// How many texts a pattern of %s and nothing else joins; 0 when it is another pattern.
std::size_t TextsJoinedBy(const char* pattern) {
  std::size_t texts = 0;
  for (; pattern[0] == '%' && pattern[1] == 's' && texts < kMostTexts; pattern += 2) ++texts;
  return pattern[0] == '\0' ? texts : 0;
}

}  // namespace

char* RuntimeService::FormatStringV(const char* pattern, std::va_list arguments) {
  // A listing joins its names like this, line by line.
  if (const std::size_t texts = TextsJoinedBy(pattern); texts != 0) return JoinTexts(texts, arguments);
  std::va_list measured;
  va_copy(measured, arguments);
  const int length = std::vsnprintf(nullptr, 0, pattern, measured);
  va_end(measured);
  if (length < 0) return nullptr;
  const auto size = static_cast<std::size_t>(length) + 1;
  char* const text = Take(size);
  if (text != nullptr) std::vsnprintf(text, size, pattern, arguments);
  return text;
}

char* RuntimeService::JoinTexts(std::size_t count, std::va_list arguments) {
  std::array<std::string_view, kMostTexts> texts;
  std::size_t size = 1;
  for (std::size_t index = 0; index < count; ++index) {
    const char* const text = va_arg(arguments, const char*);
    texts[index] = text != nullptr ? text : "(null)";
    size += texts[index].size();
  }
  char* const joined = Take(size);
  if (joined == nullptr) return nullptr;
  char* end = joined;
  for (std::size_t index = 0; index < count; ++index) {
    std::memcpy(end, texts[index].data(), texts[index].size());
    end += texts[index].size();
  }
  *end = '\0';
  return joined;
}

// Mostly one text is out at a time, and given back before the next one is asked for.
char* RuntimeService::Take(std::size_t size) {
  if (isTextOut_ || size > text_.size()) return static_cast<char*>(std::malloc(size));
  isTextOut_ = true;
  return text_.data();
}

void RuntimeService::Release(void* block) noexcept {
  if (block == text_.data()) {
    isTextOut_ = false;
  } else {
    std::free(block);
  }
}

}  // namespace standalone
