#include <cstdint>

#include "Frame/OperationLog.h"
#include "module/Arrangements.h"

namespace {

using testing::IsEmpty;

constexpr Operation kOperation{"Books::Close", "void __cdecl Books::Close(void)", "Src/Books"};

class OperationsLogLine : public AttachedTest {
 protected:
  OperationLog log{kOperation};
};

TEST_F(OperationsLogLine, BearsItsKindsLevelAndEventType) {
  log.Note("a note");
  log.Notice("a notice");
  log.Warning("a warning");
  log.Error("an error");

  EXPECT_THAT(host.Lines(), InOrder(Trace("a note"), Gate("a notice"), Warning("a warning"), Error("an error")));
}

TEST_F(OperationsLogLine, SaysWhereItComesFrom) {
  log.Error("an error");

  ASSERT_EQ(host.Lines().size(), 1U);
  EXPECT_THAT(host.Lines().front(), ComesFrom("Src/Books", "Books::Close", "void __cdecl Books::Close(void)"));
}

TEST_F(OperationsLogLine, BearsTheSourceLineThatWritesIt) {
  const std::int32_t next = __LINE__ + 1;
  log.Error("an error");

  ASSERT_EQ(host.Lines().size(), 1U);
  EXPECT_EQ(host.Lines().front().sourceLine, next);
}

TEST_F(OperationsLogLine, NamesTheOperationOnEntryAndExit) {
  log.Entering();
  log.Exiting();

  EXPECT_THAT(host.Lines(), InOrder(Entering("Books::Close"), Exiting("Books::Close")));
}

TEST_F(OperationsLogLine, PutsTextsAndNumbersIn) {
  log.Error("realm [%s], accnt1 [%d], accnt2 [%d]", "9130", std::int32_t{-1}, std::int32_t{12});

  EXPECT_THAT(host.Lines(), InOrder(Error("realm [9130], accnt1 [-1], accnt2 [12]")));
}

TEST_F(OperationsLogLine, TakesATextThatIsLongerThanUsual) {
  const std::string text(5000, 'x');

  log.Error("realm [%s]", text.c_str());

  EXPECT_THAT(host.Lines(), InOrder(Error("realm [" + text + "]")));
}

TEST_F(OperationsLogLine, LeavesAPercentSignInATextAlone) {
  log.Error("realm [%s]", "100%s%d");

  EXPECT_THAT(host.Lines(), InOrder(Error("realm [100%s%d]")));
}

TEST_F(OperationsLogLine, IsNotWrittenWhenTheHostDoesNotWantItsLevel) {
  host.ops.unwantedLevels = {Util::Ops::Level::kTrace, Util::Ops::Level::kNotice};

  log.Note("a note");
  log.Notice("a notice");
  log.Warning("a warning");

  EXPECT_THAT(host.Lines(), InOrder(Warning("a warning")));
}

TEST(OperationsLogText, FitsArgumentsWhoseConversionsItHasInTheirOrder) {
  EXPECT_TRUE(HasConversions("no argument", {}));
  EXPECT_TRUE(HasConversions("%s", {"%s"}));
  EXPECT_TRUE(HasConversions("realm [%s], accnt [%d], %lu seconds", {"%s", "%d", "%lu"}));
  EXPECT_TRUE(HasConversions("%d%d", {"%d", "%d"}));
}

TEST(OperationsLogText, FitsNeitherFewerNorMoreNorOtherArguments) {
  EXPECT_FALSE(HasConversions("realm [%s]", {}));
  EXPECT_FALSE(HasConversions("realm [%s]", {"%s", "%s"}));
  EXPECT_FALSE(HasConversions("realm [%s], accnt [%d]", {"%d", "%s"}));
  EXPECT_FALSE(HasConversions("%d", {"%s"}));
}

TEST(OperationsLogWithoutAHost, TakesALineAndWritesNone) {
  ScriptedHost host;

  OperationLog{kOperation}.Error("an error");

  EXPECT_THAT(host.Lines(), IsEmpty());
}

}  // namespace
