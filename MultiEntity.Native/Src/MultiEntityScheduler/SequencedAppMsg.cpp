#include <new>
#include <utility>

#include "Frame/AttachedHost.h"

namespace {

// The heap block of the message that is being constructed; a message elsewhere never has its address.
void* blockUnderConstruction = nullptr;

}  // namespace

void* SequencedAppMsg::operator new(std::size_t size) {
  blockUnderConstruction = ::operator new(size);
  return blockUnderConstruction;
}

void SequencedAppMsg::operator delete(void* block) noexcept {
  if (blockUnderConstruction == block) blockUnderConstruction = nullptr;
  ::operator delete(block);
}

SequencedAppMsg::SequencedAppMsg() {
  if (std::exchange(blockUnderConstruction, nullptr) == this) Host().application.Enqueue(this);
}

SequencedAppMsg::SequencedAppMsg(const SequencedAppMsg& other) : AppMsg(other) {
  blockUnderConstruction = nullptr;
}

SequencedAppMsg::SequencedAppMsg(SequencedAppMsg&& other) noexcept : AppMsg(std::move(other)) {
  blockUnderConstruction = nullptr;
}

SequencedAppMsg& SequencedAppMsg::operator=(const SequencedAppMsg& other) = default;
SequencedAppMsg& SequencedAppMsg::operator=(SequencedAppMsg&& other) noexcept = default;
SequencedAppMsg::~SequencedAppMsg() = default;
