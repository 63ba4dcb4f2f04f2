#pragma once

#include <cstdarg>

namespace Util {

// Gives back memory that the host handed out.
class MemoryManager {
 public:
  // Called once for each block, never with null.
  virtual void Release(void* block) noexcept = 0;

 protected:
  ~MemoryManager() = default;
};

// The host's runtime support. A host implements it; the module calls it on the user-interface thread.
class Runtime {
 public:
  // printf's rules. Returns a NUL-terminated text that the caller gives back to GetMemoryManager(), or null when the
  // text could not be made.
  virtual char* FormatStringV(const char* pattern, std::va_list arguments) = 0;

  // Takes back the texts of FormatStringV(); the host's own, as long as the host is attached.
  virtual MemoryManager& GetMemoryManager() noexcept = 0;

  // Called when a text does not fit the field it is copied into; the field is left empty. A host that rather stops
  // there does so here.
  virtual void InvalidParameter() {}

 protected:
  ~Runtime() = default;
};

}  // namespace Util
