#pragma once

#include <functional>
#include <utility>

#include "MultiEntityHost/Application.h"

namespace standalone {

// A message that does what it is told.
class QueuedMessage final : public AppMsg {
 public:
  explicit QueuedMessage(
      std::function<void()> process, std::function<void()> destroyed = [] {})
      : process_(std::move(process)), destroyed_(std::move(destroyed)) {}
  QueuedMessage(const QueuedMessage&) = delete;
  QueuedMessage& operator=(const QueuedMessage&) = delete;
  ~QueuedMessage() override { destroyed_(); }

  void ProcessMsg() override { process_(); }

 private:
  std::function<void()> process_;
  std::function<void()> destroyed_;
};

}  // namespace standalone
