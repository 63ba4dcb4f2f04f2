#pragma once

#include <cstddef>

#include "MultiEntity/Export.h"
#include "MultiEntityHost/Application.h"

// The message that a host makes with new after it has opened a company file. Its queue delivers it on the
// user-interface thread, where it arms the daily reminder if this company needs one.
class MULTIENTITY_API MultiEntityScheduler : public SequencedAppMsg {
 public:
  MultiEntityScheduler();
  MultiEntityScheduler(const MultiEntityScheduler& other);
  MultiEntityScheduler(MultiEntityScheduler&& other) noexcept;
  MultiEntityScheduler& operator=(const MultiEntityScheduler& other);
  MultiEntityScheduler& operator=(MultiEntityScheduler&& other) noexcept;
  ~MultiEntityScheduler() override;

  void ProcessMsg() override;

  static void* operator new(std::size_t size);
  static void operator delete(void* block) noexcept;
};
