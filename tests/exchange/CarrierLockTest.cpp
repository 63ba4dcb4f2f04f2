#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <utility>

#include "platform/SystemUser.h"
#include "standalone/exchange/CarrierLock.h"
#include "standalone/exchange/IdentityLines.h"
#include "support/TemporaryFolder.h"
#include "support/Thrown.h"

namespace exchange {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class TheCarriersLock : public ::testing::Test {
 protected:
  std::optional<CarrierLock> Try() const { return CarrierLock::TryTake(identity_, platform::SystemClock()); }

  const standalone::TemporaryFolder folder_;
  const std::filesystem::path identity_ = folder_ / "alder.company.identity";
};

TEST_F(TheCarriersLock, IsHadByOneAtATime) {
  std::optional<CarrierLock> one = Try();
  const bool hasOther = Try().has_value();

  one.reset();

  EXPECT_FALSE(hasOther);
  EXPECT_TRUE(Try().has_value());
}

TEST_F(TheCarriersLock, StaysWithWhoItIsHandedTo) {
  std::optional<CarrierLock> one = Try();
  const CarrierLock other = std::move(*one);
  one.reset();

  EXPECT_FALSE(Try().has_value());
}

TEST_F(TheCarriersLock, IsThatOfOneCompany) {
  const std::optional<CarrierLock> alders = Try();

  const std::optional<CarrierLock> birchs =
      CarrierLock::TryTake(folder_ / "birch.company.identity", platform::SystemClock());

  ASSERT_TRUE(birchs.has_value());
  EXPECT_TRUE(alders->IsOf(identity_));
  EXPECT_FALSE(birchs->IsOf(identity_));
}

TEST_F(TheCarriersLock, TellsOthersWhoHasItSinceWhen) {
  const std::optional<CarrierLock> one = Try();

  const std::string holder = CarrierLock::Holder(identity_);

  EXPECT_THAT(holder, StartsWith(platform::SystemUserName() + ", since 2"));
}

TEST_F(TheCarriersLock, TellsWhoHasItNowAndNobodyFromBefore) {
  standalone::WriteFile(folder_ / "alder.company.identity.lock",
                        "somebody with a long name, since 1999-12-31 23:59:59\n");

  const std::optional<CarrierLock> one = Try();

  EXPECT_THAT(CarrierLock::Holder(identity_), StartsWith(platform::SystemUserName() + ", since 2"));
}

TEST_F(TheCarriersLock, NamesNobodyWhereItsFileHoldsSomethingElse) {
  for (const std::string& text : {std::string(), std::string("\n"), std::string("no line"), std::string(1'000, 'a')}) {
    standalone::WriteFile(folder_ / "alder.company.identity.lock", text);

    EXPECT_EQ(CarrierLock::Holder(identity_), "another program") << text;
  }
  std::filesystem::remove(folder_ / "alder.company.identity.lock");
  EXPECT_EQ(CarrierLock::Holder(identity_), "another program");
}

TEST_F(TheCarriersLock, ThatCannotBeAskedForIsTold) {
  std::filesystem::create_directory(folder_ / "alder.company.identity.lock");

  EXPECT_THAT(MessageOf<IdentityError>([this] { Try(); }), HasSubstr("alder.company.identity.lock cannot be locked"));
}

}  // namespace
}  // namespace exchange
