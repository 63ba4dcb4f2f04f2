#include <stdexcept>
#include <string>

#include "MultiEntityUtils/MultiEntityUtils.h"
#include "module/Arrangements.h"

namespace {

using testing::IsEmpty;

class RealmResetSetting : public AttachedTest, public testing::WithParamInterface<const char*> {};

TEST_F(RealmResetSetting, OfZeroSwitchesTheCheckOff) {
  host.values.values[{"MultiEntity", "CheckForRealmReset"}] = "0";

  EXPECT_FALSE(MultiEntityUtils::NeedToCheckForMERealmReset());

  EXPECT_THAT(host.Calls(), InOrder("GetValue2(MultiEntity, CheckForRealmReset)"));
  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RealmResetSetting, MayBeMissing) {
  EXPECT_TRUE(MultiEntityUtils::NeedToCheckForMERealmReset());

  EXPECT_THAT(host.Lines(), IsEmpty());
}

TEST_F(RealmResetSetting, ThatCannotBeReadLeavesTheCheckOn) {
  host.ThrowAt("GetValue2", std::runtime_error("the values cannot be reached"));

  EXPECT_TRUE(MultiEntityUtils::NeedToCheckForMERealmReset());

  EXPECT_THAT(host.Lines(), InOrder(Error("DCE check failed for NeedToCheckForMERealmReset")));
  EXPECT_THAT(host.Lines().front(), ComesFrom("Src/MultiEntityUtils", "MultiEntityUtils::NeedToCheckForMERealmReset",
                                              "bool __cdecl MultiEntityUtils::NeedToCheckForMERealmReset(void)"));
}

TEST_F(RealmResetSetting, ThatThrowsAnythingLeavesTheCheckOn) {
  host.ThrowAt("GetValue2", 42);

  EXPECT_TRUE(MultiEntityUtils::NeedToCheckForMERealmReset());
}

TEST_P(RealmResetSetting, OfAnythingElseLeavesTheCheckOn) {
  host.values.values[{"MultiEntity", "CheckForRealmReset"}] = GetParam();

  EXPECT_TRUE(MultiEntityUtils::NeedToCheckForMERealmReset());

  EXPECT_THAT(host.Lines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Every, RealmResetSetting, testing::Values("", "1", "00", "0x", " 0", "0 ", "-0", "false"));

}  // namespace
