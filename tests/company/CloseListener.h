#pragma once

#include <functional>
#include <utility>

#include "MultiEntityHost/Application.h"

namespace standalone {

// Calls `told` when the company is closed. Subscribed by whoever makes it.
class CloseListener final : public CNotify<CNotifyDataCloseSystem> {
 public:
  explicit CloseListener(std::function<void()> told) : told_(std::move(told)) {}
  void HandleNotification(const CNotifyDataCloseSystem& /*data*/) override { told_(); }

 private:
  std::function<void()> told_;
};

}  // namespace standalone
