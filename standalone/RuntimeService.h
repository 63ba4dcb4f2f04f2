#pragma once

#include "host/Runtime.h"

namespace standalone {

class RuntimeService final : public Util::Runtime, private Util::MemoryManager {
 public:
  char* FormatStringV(const char* pattern, std::va_list arguments) override;
  Util::MemoryManager& GetMemoryManager() noexcept override { return *this; }

 private:
  void Release(void* block) noexcept override;
};

}  // namespace standalone
