#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <string>

namespace app {

// Hands the lines that a person types from the thread that reads them to the one that asks. A line that is typed while
// nobody asks is passed over, so that it answers no later question.
class TypedLines {
 public:
  // On the reading thread.
  void Put(std::string line);
  // No more lines will come; from any thread, and for good.
  void End();

  // Shows a question and waits for the next line, which may come as soon as the question is seen; nothing once there
  // will be none.
  std::optional<std::string> AnswerTo(const std::function<void()>& showQuestion);

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool isAwaited_ = false;
  bool isEnded_ = false;
  std::optional<std::string> line_;
};

}  // namespace app
