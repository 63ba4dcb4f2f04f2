#include <functional>
#include <vector>

#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::RealmId;
using standalone::RelationState;
using standalone::RequestId;

// Birch is related; it has sent request-1, which is booked, and request-2, which was rejected. Cedar's relation is
// pending. The company's own realm is 9130.
class WhatIsRefused : public DeskFixture {
 protected:
  using Ask = std::function<void()>;

  WhatIsRefused() {
    RelateBirch();
    ImportMarch();
    booked_ = RecordJournalEntry(*company_, Entry("request-1"));
    SaveRejectionOf("request-2");
    RelateCedar();
    UpdateRelation(*company_, {.partner = RealmId("1002"), .state = RelationState::kPending, .accounts = {}});
    RememberRealm(*company_, RealmId("9130"));
  }

  // A booking to an account and a name that are both new, but for what `change` says.
  Ask Booking(const std::function<void(EntryToRecord& entry)>& change) {
    EntryToRecord entry = Entry("request-3");
    entry.expense = Made("Lift", KrEnumerations::kExpense);
    entry.name = NewVendor{standalone::NewListName("Cold Spring Elevator")};
    change(entry);
    return [this, entry] {
      RecordJournalEntry(*company_, entry);
    };
  }
  static NewAccount Made(std::string_view name, std::int16_t type) {
    return {.name = standalone::NewAccountName(name), .type = type};
  }
  Ask Relating(std::string_view realm, const RelationAccounts& accounts) {
    const NewRelation relation{.realm = RealmId(realm),
                               .partner = standalone::PartnerName("Dogwood Repairs"),
                               .type = 0,
                               .state = RelationState::kEstablished,
                               .accounts = accounts};
    return [this, relation] {
      CreateRelation(*company_, relation);
    };
  }
  Ask Changing(std::string_view realm, const RelationAccounts& accounts) {
    const RelationChange change{.partner = RealmId(realm), .state = RelationState::kDeactivated, .accounts = accounts};
    return [this, change] {
      UpdateRelation(*company_, change);
    };
  }

  // Each is refused and leaves every row and every number as it was.
  void ExpectNothingLeft(const std::vector<Ask>& asked) {
    const std::string before = WholeFile();
    for (std::size_t number = 0; number < asked.size(); ++number) {
      SCOPED_TRACE("refusal " + std::to_string(number));
      RefusalOf(asked[number]);
      EXPECT_EQ(WholeFile(), before);
    }
  }

  // The next ones have the numbers that follow.
  void ExpectNoGap(std::int32_t lastAccount, std::int32_t lastName) {
    const std::int32_t txnId = RecordJournalEntry(*company_, [] {
      EntryToRecord entry = Entry("request-9");
      entry.expense = Made("Elevator", KrEnumerations::kExpense);
      entry.name = NewVendor{standalone::NewListName("Stone Insurance")};
      return entry;
    }());

    EXPECT_EQ(txnId, booked_ + 1);
    EXPECT_EQ(AccountId("Elevator"), lastAccount + 1);
    EXPECT_EQ(NameId("Stone Insurance"), lastName + 1);
    constexpr std::int32_t kLinesOfAnEntry = 2;
    EXPECT_EQ(ListIntercompanyLines(*company_, txnId).at(0).lineId,
              ListIntercompanyLines(*company_, booked_).at(0).lineId + kLinesOfAnEntry);
  }

  std::int32_t booked_ = 0;
};

TEST_F(WhatIsRefused, ByTheDeskLeavesNothingInTheCompanyFile) {
  answers_.clear();

  ExpectNothingLeft({
      Booking([](EntryToRecord& entry) { entry.amount = standalone::LineAmount("0"); }),
      Booking([](EntryToRecord& entry) { entry.request = RequestId("  "); }),
      Booking([](EntryToRecord& entry) { entry.request = RequestId("request-2"); }),
      Booking([](EntryToRecord& entry) { entry.request = RequestId("request-1 "); }),
      Booking([](EntryToRecord& entry) { entry.request = RequestId(" request-2"); }),
      Booking([](EntryToRecord& entry) { entry.request = RequestId("Request-1"); }),
      Booking([](EntryToRecord& entry) { entry.request = RequestId("REQUEST-2"); }),
      Booking([](EntryToRecord& entry) { entry.request = RequestId("request-bill"); }),
      Booking([](EntryToRecord& entry) { entry.partner = RealmId("1009"); }),
      Booking([](EntryToRecord& entry) { entry.partner = RealmId("1002"); }),
      Booking([](EntryToRecord& entry) { entry.dueTo = "Due to Cedar"; }),
      Booking([](EntryToRecord& entry) { entry.expense = Existing{"Due to Birch"}; }),
      Relating("9130", {}),
      Relating("2003", {.dueFrom = "Utilities", .dueTo = "Utilities"}),
      Relating("2003", {.dueFrom = "Utilities", .dueTo = "Due to Cedar"}),
      Relating("2003", {.dueFrom = "Due from Cedar", .dueTo = "Checking"}),
      Changing("9130", {}),
      Changing("1002", {.dueFrom = "Checking", .dueTo = {}}),
      Changing("1001", {.dueFrom = "Checking", .dueTo = "Checking"}),
      Changing("1001", {.dueFrom = "Utilities", .dueTo = "Due to Birch"}),
      Changing("1001", {.dueFrom = "Due from Birch", .dueTo = "Checking"}),
      Changing("1001", {.dueFrom = "Due from Cedar", .dueTo = "Due to Birch"}),
      Changing("1001", {.dueFrom = "Due from Birch", .dueTo = "Payables"}),
      [this] { RememberRealm(*company_, RealmId("1002")); },
      [this] { RemoveJournalEntry(*company_, 1); },
      [this] { RemoveJournalEntry(*company_, 4711); },
      [this] { DeleteRejection(*company_, RealmId("1009"), RequestId("request-2")); },
  });

  EXPECT_THAT(answers_, testing::IsEmpty());
  ExpectNoGap(AccountId("Old Rent"), NameId("Walker:Depot"));
}

TEST_F(WhatIsRefused, ByTheModuleLeavesNothingInTheCompanyFile) {
  answers_.clear();

  ExpectNothingLeft({
      Booking([](EntryToRecord& entry) { entry.request = RequestId("request-1"); }),
      Booking([](EntryToRecord& entry) { entry.expense = Made("Utilities", KrEnumerations::kExpense); }),
      Booking([](EntryToRecord& entry) { entry.expense = Made("Nowhere:Lift", KrEnumerations::kExpense); }),
      Booking([](EntryToRecord& entry) { entry.expense = Made("Orders", KrEnumerations::kNonPosting); }),
      Booking([](EntryToRecord& entry) { entry.name = NewVendor{standalone::NewListName("Walker")}; }),
      Booking([](EntryToRecord& entry) { entry.name = NewVendor{standalone::NewListName("Nobody:Depot")}; }),
      Relating("2003", {}),
      Relating("2003", {.dueFrom = "Due from Cedar", .dueTo = "Due to Cedar"}),
      Relating("2003", {.dueFrom = "Receivables", .dueTo = "Payables"}),
      Relating("1001", {.dueFrom = "Due from Birch", .dueTo = "Due to Birch"}),
      Changing("1002", {.dueFrom = "Due from Birch", .dueTo = "Due to Birch"}),
      Changing("1002", {.dueFrom = "Receivables", .dueTo = "Payables"}),
      Changing("2003", {}),
      [this] { DeleteRelation(*company_, RealmId("1002"), /*force=*/false); },
      [this] { DeleteRelation(*company_, RealmId("2003"), /*force=*/true); },
      [this] {
        SetState(*company_, RealmId("1001"), RequestId("request-none"), standalone::TransactionState::kEstablished);
      },
      [this] { SetState(*company_, 1, 4711, standalone::TransactionState::kEstablished); },
      [this] { DeleteRejection(*company_, RealmId("1001"), RequestId("request-1")); },
      [this] {
        SaveRejection(*company_, {.partner = RealmId("2003"),
                                  .request = RequestId("request-3"),
                                  .type = standalone::RejectableType::kBill,
                                  .amount = standalone::RejectedAmount("1"),
                                  .partnerTxnId = standalone::PartnerTxnId("B-1")});
      },
  });

  EXPECT_THAT(answers_, testing::ElementsAre(0, 5, 6, 0, 16, 17, 12, 13, 28, 13, 13, 28, 12, 9, 12, 12, 12, 0, 12));
  ExpectNoGap(AccountId("Old Rent"), NameId("Walker:Depot"));
}

TEST_F(WhatIsRefused, ForWantOfARightLeavesNothingInTheCompanyFile) {
  OpenFor("Robin", {"accounts:modify"});
  answers_.clear();

  ExpectNothingLeft({
      Booking([](EntryToRecord&) {}),
      Relating("2003", {.dueFrom = "Checking", .dueTo = "Due to Cedar"}),
      Changing("1001", {}),
      [this] { DeleteRelation(*company_, RealmId("1001"), /*force=*/true); },
      [this] { RemoveJournalEntry(*company_, booked_); },
      [this] {
        SetState(*company_, RealmId("1001"), RequestId("request-bill"), standalone::TransactionState::kEstablished);
      },
      [this] { SetState(*company_, 1, 3, standalone::TransactionState::kEstablished); },
      [this] { DeleteRejection(*company_, RealmId("1001"), RequestId("request-2")); },
      [this] { SaveRejectionOf("request-3"); },
  });

  EXPECT_THAT(answers_, testing::AllOf(testing::SizeIs(7), testing::Each(3)));
  Open();
  ExpectNoGap(AccountId("Old Rent"), NameId("Walker:Depot"));
}

}  // namespace
}  // namespace desk
