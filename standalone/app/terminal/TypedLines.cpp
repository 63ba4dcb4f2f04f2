#include "standalone/app/terminal/TypedLines.h"

#include <utility>

namespace app {

void TypedLines::Put(std::string line) {
  const std::lock_guard lock(mutex_);
  if (!isAwaited_ || line_) return;
  line_ = std::move(line);
  changed_.notify_one();
}

void TypedLines::End() {
  const std::lock_guard lock(mutex_);
  isEnded_ = true;
  changed_.notify_one();
}

std::optional<std::string> TypedLines::AnswerTo(const std::function<void()>& showQuestion) {
  {
    const std::lock_guard lock(mutex_);
    line_.reset();
    isAwaited_ = true;
  }
  showQuestion();
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return line_ || isEnded_; });
  isAwaited_ = false;
  return std::exchange(line_, std::nullopt);
}

}  // namespace app
