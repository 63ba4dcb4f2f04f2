#pragma once

#include <array>
#include <cstdarg>
#include <cstddef>

#include "MultiEntityHost/Runtime.h"

namespace standalone {

class RuntimeService final : public Util::Runtime, private Util::MemoryManager {
 public:
  char* FormatStringV(const char* pattern, std::va_list arguments) override;
  Util::MemoryManager& GetMemoryManager() noexcept override { return *this; }

 private:
  void Release(void* block) noexcept override;
  char* JoinTexts(std::size_t count, std::va_list arguments);
  char* Take(std::size_t size);

  std::array<char, 512> text_{};
  bool isTextOut_ = false;
};

}  // namespace standalone
