#include "bench/AllocationCount.h"

#include <malloc.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <new>

namespace bench {

namespace {

bool isCounting = false;
std::ptrdiff_t live = 0;
std::ptrdiff_t peak = 0;

void NoteAllocated(void* block) noexcept {
  if (!isCounting) return;
  live += static_cast<std::ptrdiff_t>(malloc_usable_size(block));
  peak = std::max(peak, live);
}

void NoteReleased(void* block) noexcept {
  if (isCounting) live -= static_cast<std::ptrdiff_t>(malloc_usable_size(block));
}

}  // namespace

AllocationCount::AllocationCount() noexcept : databaseBefore_(static_cast<std::ptrdiff_t>(sqlite3_memory_used())) {
  sqlite3_memory_highwater(/*resetFlag=*/1);
  live = 0;
  peak = 0;
  isCounting = true;
}

AllocationCount::~AllocationCount() {
  isCounting = false;
}

std::ptrdiff_t AllocationCount::Live() const noexcept {
  return live;
}

std::ptrdiff_t AllocationCount::Peak() const noexcept {
  return peak + static_cast<std::ptrdiff_t>(sqlite3_memory_highwater(/*resetFlag=*/0)) - databaseBefore_;
}

}  // namespace bench

void* operator new(std::size_t size) {
  void* const block = std::malloc(size != 0 ? size : 1);
  if (block == nullptr) throw std::bad_alloc();
  bench::NoteAllocated(block);
  return block;
}

void* operator new[](std::size_t size) {
  return ::operator new(size);
}

void operator delete(void* block) noexcept {
  bench::NoteReleased(block);
  std::free(block);
}

void operator delete[](void* block) noexcept {
  ::operator delete(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
  ::operator delete(block);
}

void operator delete[](void* block, std::size_t /*size*/) noexcept {
  ::operator delete(block);
}
