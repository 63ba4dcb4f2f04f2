#include <stdexcept>

#include "module/Arrangements.h"

namespace {

using testing::SizeIs;

class KillSwitchTable : public AttachedTest {
 protected:
  static bool IsOn(int key) {
    return MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, static_cast<MEKillSwitchKey>(key));
  }

  std::vector<LogLine> TableLines() const { return host.LinesOf("MultiEntityUtils::IsFeatureEnabled"); }
  std::vector<LogLine> ReadingLines() const {
    return host.LinesOf("MultiEntityUtils::InitializeMEKillSwitchLookUpTable");
  }
};

TEST_F(KillSwitchTable, IsReadInTheOrderOfItsKeysByTheFirstQuestionAndNeverAgain) {
  EXPECT_TRUE(IsOn(1));
  host.switches.TurnOff(kFeatureSection, "ME_FOR_BILLS");
  EXPECT_TRUE(IsOn(1));

  EXPECT_THAT(host.Calls(), InOrder("IsFeatureEnabled(MultiEntityFeature, ME_FOR_ALL)",
                                    "IsFeatureEnabled(MultiEntityFeature, ME_FOR_BILLS)",
                                    "IsFeatureEnabled(MultiEntityFeature, ME_FOR_CHECKS)"));
}

TEST_F(KillSwitchTable, LetsTheGlobalSwitchWinOverTheSwitchOfBills) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");

  EXPECT_FALSE(IsOn(1));

  EXPECT_THAT(TableLines(), InOrder(GlobalFeatureOff()));
}

TEST_F(KillSwitchTable, AnswersNoForEveryKeyWhileTheGlobalSwitchIsOffAndSaysSoEachTime) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");

  EXPECT_FALSE(IsOn(0));
  EXPECT_FALSE(IsOn(2));
  EXPECT_FALSE(IsOn(9));

  EXPECT_THAT(TableLines(), InOrder(GlobalFeatureOff(), GlobalFeatureOff(), GlobalFeatureOff()));
}

TEST_F(KillSwitchTable, AnswersForChecksWithoutALineWhileTheGlobalSwitchIsOn) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_CHECKS");

  EXPECT_FALSE(IsOn(2));
  EXPECT_TRUE(IsOn(0));
  EXPECT_TRUE(IsOn(1));

  EXPECT_THAT(TableLines(), SizeIs(0));
}

TEST_F(KillSwitchTable, AnswersYesForAKeyThatHasNoRow) {
  EXPECT_TRUE(IsOn(3));
  EXPECT_TRUE(IsOn(-1));
}

TEST_F(KillSwitchTable, StaysOpenForGoodWhenASwitchCannotBeReadAlsoForTheSwitchReadBefore) {
  host.switches.TurnOff(kFeatureSection, "ME_FOR_ALL");
  host.ThrowAtNth("IsFeatureEnabled", 2, std::runtime_error("the switches cannot be reached"));

  EXPECT_TRUE(IsOn(0));
  EXPECT_TRUE(IsOn(1));
  EXPECT_TRUE(IsOn(2));

  EXPECT_THAT(ReadingLines(), InOrder(Error("MULTIENTITY_ERROR:killswitchhelper::LookUPTable - Unable to read flag")));
  EXPECT_THAT(TableLines(), SizeIs(0));
  EXPECT_THAT(host.Calls(), InOrder("IsFeatureEnabled(MultiEntityFeature, ME_FOR_ALL)",
                                    "IsFeatureEnabled(MultiEntityFeature, ME_FOR_BILLS)"));
}

TEST_F(KillSwitchTable, StaysOpenWhenTheFirstSwitchCannotBeRead) {
  host.ThrowAt("IsFeatureEnabled", std::runtime_error("the switches cannot be reached"));

  EXPECT_TRUE(IsOn(0));

  EXPECT_THAT(host.Lines(),
              InOrder(FeatureAsked(), Error("MULTIENTITY_ERROR:killswitchhelper::LookUPTable - Unable to read flag")));
}

TEST_F(KillSwitchTable, StaysOpenWhateverIsThrownWhileItIsRead) {
  host.ThrowAtNth("IsFeatureEnabled", 3, 42);

  EXPECT_TRUE(IsOn(2));

  EXPECT_THAT(ReadingLines(), InOrder(Error("MULTIENTITY_ERROR:killswitchhelper::LookUPTable - Unable to read flag")));
}

}  // namespace
