#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include "standalone/app/terminal/TypedLines.h"

namespace app {
namespace {

TEST(LinesThatAPersonTypes, AnswerAQuestionFromTheMomentItIsShown) {
  TypedLines lines;

  EXPECT_EQ(lines.AnswerTo([&] { lines.Put("yes"); }), "yes");
}

TEST(LinesThatAPersonTypes, ReachWhoAsks) {
  TypedLines lines;
  std::future<std::optional<std::string>> answer =
      std::async(std::launch::async, [&] { return lines.AnswerTo([] {}); });

  while (answer.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready) lines.Put("yes");

  EXPECT_EQ(answer.get(), "yes");
}

TEST(LinesThatAPersonTypes, AnswerNoLaterQuestion) {
  TypedLines lines;
  lines.Put("yes");
  lines.End();

  EXPECT_EQ(lines.AnswerTo([] {}), std::nullopt);
}

TEST(LinesThatAPersonTypes, EndForWhoeverWaits) {
  TypedLines lines;
  std::future<std::optional<std::string>> answer =
      std::async(std::launch::async, [&] { return lines.AnswerTo([] {}); });

  lines.End();

  EXPECT_EQ(answer.get(), std::nullopt);
}

}  // namespace
}  // namespace app
