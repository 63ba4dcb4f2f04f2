#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::ElementsAre;
using testing::Eq;
using testing::Field;
using testing::IsEmpty;
using testing::Optional;

// For requests of two partners; within one unit of work.
class TheRules : public CompanyFixture {
 protected:
  std::int32_t PairWith(std::string_view partner) {
    return host_.Pairings().Add({.pairingId = std::string(31, '0') + std::string(partner.substr(0, 1)),
                                 .invitedByUs = true,
                                 .partnerName = std::string(partner),
                                 .partnerRealm = {},
                                 .partnerKey = {},
                                 .relationId = {},
                                 .relationStateBefore = {},
                                 .dueFromAccountId = power_,
                                 .dueToAccountId = water_,
                                 .folder = {}});
  }
  std::int32_t AddAccount(std::string_view name) {
    return host_.Accounts().Create({.fullName = std::string(name), .type = KrEnumerations::kExpense}).id;
  }
  RuleRow Such(std::string_view name, std::string_view hint = "", std::string_view memo = "") const {
    return {.pairing = birch_,
            .name = std::string(name),
            .hint = std::string(hint),
            .memo = std::string(memo),
            .accountId = power_};
  }
  std::vector<RuleRow> For(const RequestTold& request) { return host_.Rules().ListFor(birch_, request); }

  StandaloneHost host_{path_};
  UnitOfWork unit_{host_.Data(), Access::kWrite};
  const std::int32_t power_ = AddAccount("Power");
  const std::int32_t water_ = AddAccount("Water");
  const std::int32_t birch_ = PairWith("Birch");
  const std::int32_t cedar_ = PairWith("Cedar");
};

TEST_F(TheRules, AreKeptAsTheyWereAdded) {
  RuleRow rule = Such("Hillcrest", "Lift", "inspection");
  rule.nameId = host_.Names().Create("Hillcrest at Birch", NameKind::kVendor).id;

  rule.id = host_.Rules().Add(rule);

  EXPECT_THAT(host_.Rules().Find(rule.id), Optional(Eq(rule)));
  EXPECT_THAT(host_.Rules().List(birch_), ElementsAre(rule));
  EXPECT_THAT(host_.Rules().List(cedar_), IsEmpty());
  EXPECT_THAT(host_.Rules().FindOfName(*rule.nameId), Optional(Eq(rule)));
  EXPECT_EQ(host_.Rules().FindOfName(*rule.nameId + 1), std::nullopt);
}

TEST_F(TheRules, AreForRequestsThatAreSuchInAllThatTheySay) {
  const std::int32_t name = host_.Rules().Add(Such("Hillcrest"));
  const std::int32_t hint = host_.Rules().Add(Such("", "Lift"));
  const std::int32_t memo = host_.Rules().Add(Such("", "", "inspection"));
  const std::int32_t all = host_.Rules().Add(Such("Hillcrest", "Lift", "inspection"));
  const auto ids = [](const std::vector<RuleRow>& rules) {
    std::vector<std::int32_t> numbers;
    for (const RuleRow& rule : rules) numbers.push_back(rule.id);
    return numbers;
  };

  EXPECT_THAT(ids(For({.name = "Hillcrest", .hint = "Lift", .memo = "Yearly inspection"})),
              ElementsAre(name, hint, memo, all));
  EXPECT_THAT(ids(For({.name = "Hillcrest", .hint = "Roof", .memo = "Yearly"})), ElementsAre(name));
  EXPECT_THAT(ids(For({.name = "Hill", .hint = "Lift", .memo = ""})), ElementsAre(hint));
  EXPECT_THAT(ids(For({.name = "", .hint = "", .memo = "inspection"})), ElementsAre(memo));
  EXPECT_THAT(ids(For({.name = "", .hint = "", .memo = ""})), IsEmpty());
}

TEST_F(TheRules, DoNotLookAtTheCaseOfLetters) {
  host_.Rules().Add(Such("Hillcrest", "Lift", "Inspection"));

  EXPECT_EQ(For({.name = "HILLCREST", .hint = "lift", .memo = "the INSPECTION of May"}).size(), 1U);
}

TEST_F(TheRules, AreThoseOfOnePartner) {
  host_.Rules().Add(Such("Hillcrest"));

  EXPECT_THAT(host_.Rules().ListFor(cedar_, {.name = "Hillcrest", .hint = "", .memo = ""}), IsEmpty());
}

TEST_F(TheRules, HaveOneForTheSameRequestsThatWasAddedAndOneThatWasLearned) {
  RuleRow learned = Such("hillcrest");
  learned.learned = true;
  const std::int32_t added = host_.Rules().Add(Such("Hillcrest"));

  EXPECT_EQ(host_.Rules().FindAlike(learned), std::nullopt);
  learned.id = host_.Rules().Add(learned);

  EXPECT_THAT(host_.Rules().FindAlike(learned), Optional(Eq(learned)));
  EXPECT_THAT(host_.Rules().FindAlike(Such("HILLCREST")), Optional(Field(&RuleRow::id, added)));
  EXPECT_THROW(host_.Rules().Add(Such("HILLCREST")), ConstraintViolation);
}

TEST_F(TheRules, BookElsewhereOnceTheyAreToldTo) {
  const std::int32_t nameId = host_.Names().Create("Hillcrest", NameKind::kVendor).id;
  const std::int32_t id = host_.Rules().Add(Such("Hillcrest"));

  host_.Rules().SetTarget(id, water_, nameId);

  EXPECT_EQ(host_.Rules().Find(id)->accountId, water_);
  EXPECT_EQ(host_.Rules().Find(id)->nameId, nameId);
}

TEST_F(TheRules, AreGoneOnceTheyAreRemovedAndTheirNumbersAreNotGivenAgain) {
  const std::int32_t id = host_.Rules().Add(Such("Hillcrest"));

  host_.Rules().Remove(id);

  EXPECT_EQ(host_.Rules().Find(id), std::nullopt);
  EXPECT_GT(host_.Rules().Add(Such("Hillcrest")), id);
}

TEST_F(TheRules, SaySomethingOfTheRequestsThatTheyAreFor) {
  EXPECT_THROW(host_.Rules().Add(Such("")), ConstraintViolation);
}

TEST_F(TheRules, KeepTheNameUnderWhichTheyBook) {
  RuleRow rule = Such("Hillcrest");
  rule.nameId = host_.Names().Create("Hillcrest", NameKind::kVendor).id;
  host_.Rules().Add(rule);

  EXPECT_THROW(host_.Names().Delete(*rule.nameId), ConstraintViolation);
}

}  // namespace
}  // namespace standalone
