#include "MultiEntityHost/Preferences.h"
#include "standalone/desk/Reminder.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::RealmId;
using standalone::RequestId;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::SizeIs;

class TheAuditOfADesk : public DeskFixture {
 protected:
  static AuditQuery Query() { return {.user = {}, .action = {}, .period = {NullDate(), NullDate()}, .txnId = {}}; }

  // What doing this adds to the trail; everything here adds one line.
  template <typename Ask>
  AuditedDeed DeedOf(Ask&& ask) {
    const std::size_t before = ListAudit(*company_, Query()).size();
    std::forward<Ask>(ask)();
    const std::vector<AuditedDeed> deeds = ListAudit(*company_, Query());
    EXPECT_EQ(deeds.size(), before + 1);
    return deeds.back();
  }

  static auto Changed(const std::string& field, std::optional<std::string> before, std::optional<std::string> after) {
    return AllOf(Field(&AuditedChange::field, field), Field(&AuditedChange::before, before),
                 Field(&AuditedChange::after, after));
  }
};

TEST_F(TheAuditOfADesk, TellsWhoBookedWhatForWhom) {
  RelateBirch();
  std::int32_t txnId = 0;

  const AuditedDeed deed = DeedOf([&] { txnId = RecordJournalEntry(*company_, Entry("request-1")); });

  EXPECT_EQ(deed.action, "journal.record");
  EXPECT_EQ(deed.user, "Admin");
  EXPECT_EQ(deed.subject, "journal entry " + std::to_string(txnId));
  EXPECT_EQ(deed.firstTxnId, txnId);
  EXPECT_EQ(deed.lastTxnId, txnId);
  EXPECT_THAT(deed.changes, Contains(Changed("partner", {}, "Birch Services Company (1001)")));
  EXPECT_THAT(deed.changes, Contains(Changed("request", {}, "request-1")));
  EXPECT_THAT(deed.changes, Contains(Changed("amount", {}, "40.00 USD")));
  EXPECT_THAT(deed.changes, Contains(Changed("account", {}, "Utilities")));
  EXPECT_THAT(deed.changes, Contains(Changed("liability account", {}, "Due to Birch")));
  EXPECT_THAT(deed.changes, Contains(Changed("state", {}, "established")));
}

TEST_F(TheAuditOfADesk, TellsTheMemoOfAnEntryThatNoLineHas) {
  RelateBirch();
  EntryToRecord entry = Entry("request-1");
  entry.memo = standalone::Memo("March share");
  std::int32_t txnId = 0;

  const AuditedDeed recorded = DeedOf([&] { txnId = RecordJournalEntry(*company_, entry); });
  const AuditedDeed removed = DeedOf([&] { RemoveJournalEntry(*company_, txnId); });

  EXPECT_THAT(recorded.changes, Contains(Changed("entry memo", {}, "March share")));
  EXPECT_THAT(removed.changes, Contains(Changed("entry memo", "March share", {})));
}

TEST_F(TheAuditOfADesk, TellsWhatWasRemoved) {
  RelateBirch();
  const std::int32_t txnId = RecordJournalEntry(*company_, Entry("request-1"));

  const AuditedDeed deed = DeedOf([&] { RemoveJournalEntry(*company_, txnId); });

  EXPECT_EQ(deed.action, "journal.remove");
  EXPECT_EQ(deed.firstTxnId, txnId);
  EXPECT_THAT(deed.changes, Contains(Changed("amount", "40.00 USD", {})));
  EXPECT_THAT(deed.changes, Contains(Changed("request", "request-1", {})));
}

TEST_F(TheAuditOfADesk, TellsAStateBeforeAndAfter) {
  RelateBirch();
  ImportMarch();

  const AuditedDeed byRequest = DeedOf([&] {
    SetState(*company_, RealmId("1001"), RequestId("request-bill"), standalone::TransactionState::kEstablished);
  });

  EXPECT_EQ(byRequest.action, "transaction.state");
  EXPECT_EQ(byRequest.subject, "bill 1, line 3, for Birch Services Company (1001), request request-bill, 40.00 USD");
  EXPECT_EQ(byRequest.firstTxnId, 1);
  EXPECT_THAT(byRequest.changes, ElementsAre(Changed("state", "sent", "established")));
}

TEST_F(TheAuditOfADesk, TellsAStateOfBeforeInItsOldWords) {
  RelateBirch();
  ImportMarch();
  {
    standalone::StandaloneHost other(path_);
    standalone::FileOf(other).Execute("UPDATE me_transaction SET of_before = 1");
  }

  const AuditedDeed deed =
      DeedOf([&] { SetState(*company_, RealmId("1001"), RequestId("request-bill"), standalone::TransactionState{5}); });

  EXPECT_THAT(deed.changes, ElementsAre(Changed("state", "pending (before)", "deactivated (before)")));
}

TEST_F(TheAuditOfADesk, TellsOfRelations) {
  const AuditedDeed created = DeedOf([&] { RelateBirch(); });
  const AuditedDeed updated = DeedOf([&] {
    UpdateRelation(*company_, {.partner = RealmId("1001"),
                               .state = standalone::RelationState::kPending,
                               .accounts = {.dueFrom = "Due from Cedar", .dueTo = "Due to Birch"}});
  });
  const AuditedDeed deleted = DeedOf([&] { DeleteRelation(*company_, RealmId("1001"), /*force=*/true); });

  EXPECT_EQ(created.action, "relation.create");
  EXPECT_EQ(created.subject, "the relation with Birch Services Company (1001)");
  EXPECT_THAT(created.changes, Contains(Changed("due from", {}, "Due from Birch")));
  EXPECT_EQ(updated.action, "relation.update");
  EXPECT_THAT(updated.changes, ElementsAre(Changed("state", "established", "pending"),
                                           Changed("due from", "Due from Birch", "Due from Cedar")));
  EXPECT_EQ(deleted.action, "relation.delete");
  EXPECT_THAT(deleted.changes, Contains(Changed("due from", "Due from Cedar", {})));
}

TEST_F(TheAuditOfADesk, TellsOfRejectedRequests) {
  RelateBirch();

  const AuditedDeed saved = DeedOf([&] {
    SaveRejection(*company_, {.partner = RealmId("1001"),
                              .request = RequestId("request-1"),
                              .type = standalone::RejectableType::kBill,
                              .amount = standalone::RejectedAmount("1,234.50"),
                              .partnerTxnId = standalone::PartnerTxnId("B-77")});
  });
  const AuditedDeed deleted = DeedOf([&] { DeleteRejection(*company_, RealmId("1001"), RequestId("request-1")); });

  EXPECT_EQ(saved.action, "rejected.save");
  EXPECT_EQ(saved.subject, "request request-1 of Birch Services Company (1001)");
  EXPECT_THAT(saved.changes, Contains(Changed("amount", {}, "1,234.50")));
  EXPECT_EQ(deleted.action, "rejected.delete");
  EXPECT_THAT(deleted.changes, Contains(Changed("amount", "1,234.50", {})));
}

TEST_F(TheAuditOfADesk, TellsOfUsersAndTheirRights) {
  const AuditedDeed added = DeedOf([&] { AddUser(*company_, UserWith("Robin", {"bills:view"})); });
  const AuditedDeed changed = DeedOf([&] { ChangeUser(*company_, UserWith("Robin", {"checks:view"})); });
  const AuditedDeed removed = DeedOf([&] { RemoveUser(*company_, "Robin"); });

  EXPECT_EQ(added.subject, "the user Robin");
  EXPECT_THAT(added.changes, Contains(Changed("rights", {}, "bills:view")));
  EXPECT_THAT(changed.changes, ElementsAre(Changed("rights", "bills:view", "checks:view")));
  EXPECT_EQ(removed.action, "user.remove");
}

TEST_F(TheAuditOfADesk, TellsOfSettingsAndTheRealm) {
  const AuditedDeed setting = DeedOf([&] { ChangeSetting(*company_, "company-name", "Alder Limited"); });
  const AuditedDeed realm = DeedOf([&] { RememberRealm(*company_, RealmId("9001")); });

  EXPECT_THAT(setting.changes, ElementsAre(Changed("company-name", "Alder Supply Company", "Alder Limited")));
  EXPECT_EQ(realm.action, "realm.remember");
  EXPECT_THAT(realm.changes, ElementsAre(Changed("realm id", {}, "9001")));
}

TEST_F(TheAuditOfADesk, TellsOfARealmThatACheckHasRemembered) {
  const AuditedDeed realm = DeedOf([&] { CheckRealm(*company_, RealmId("9001"), {}); });

  EXPECT_THAT(realm.changes, ElementsAre(Changed("realm id", {}, "9001")));
}

TEST_F(TheAuditOfADesk, TellsOfAReminderThatWasReset) {
  {
    standalone::StandaloneHost other(path_);
    other.Request(standalone::Access::kWrite, [&] { other.Preferences().Set(kLaunchDatePreference, "21000102"); });
  }

  const AuditedDeed reset = DeedOf([&] { ResetReminder(*company_); });

  EXPECT_EQ(reset.action, "reminder.reset");
  EXPECT_THAT(reset.changes, ElementsAre(Changed("day", "21000102", {})));
}

TEST_F(TheAuditOfADesk, TellsWhatAnImportAdded) {
  RelateBirch();

  const AuditedDeed deed = DeedOf([&] { ImportMarch(); });

  EXPECT_EQ(deed.action, "import");
  EXPECT_EQ(deed.subject, "rows.csv");
  EXPECT_THAT(deed.changes, Contains(Changed("transactions", {}, "3")));
}

TEST_F(TheAuditOfADesk, SaysNothingOfWhatOnlyReads) {
  RelateBirch();
  ImportMarch();
  const std::size_t before = ListAudit(*company_, Query()).size();

  ListIntercompanyLines(*company_, Period(NullDate(), NullDate()));
  ListRelations(*company_);
  CheckPlugin(*company_, {});

  EXPECT_THAT(ListAudit(*company_, Query()), SizeIs(before));
}

TEST_F(TheAuditOfADesk, SaysNothingOfWhatTheModuleRefuses) {
  RelateBirch();
  RecordJournalEntry(*company_, Entry("request-1"));
  const std::size_t before = ListAudit(*company_, Query()).size();

  RefusalOf([&] { RecordJournalEntry(*company_, Entry("request-1")); });
  RefusalOf([&] { RelateBirch(); });
  RefusalOf([&] { DeleteRelation(*company_, RealmId("2002"), /*force=*/false); });

  EXPECT_THAT(ListAudit(*company_, Query()), SizeIs(before));
}

TEST_F(TheAuditOfADesk, IsWholeAfterADay) {
  RelateBirch();
  ImportMarch();
  RecordJournalEntry(*company_, Entry("request-1"));

  const AuditVerdict verdict = VerifyAudit(*company_);

  EXPECT_FALSE(verdict.breakAt.has_value());
  EXPECT_EQ(static_cast<std::size_t>(verdict.lines), ListAudit(*company_, Query()).size());
  EXPECT_THAT(verdict.head, SizeIs(64));
}

TEST_F(TheAuditOfADesk, IsForAdministratorsAndAccountants) {
  AddUser(*company_, UserWith("Robin", {"journal:view"}));
  User accountant = UserWith("Ines", {});
  accountant.accountant = true;
  AddUser(*company_, accountant);

  Open("Robin");
  EXPECT_THAT(RefusalOf([&] { ListAudit(*company_, Query()); }), IsForAdministrators());
  EXPECT_THAT(RefusalOf([&] { VerifyAudit(*company_); }), IsForAdministrators());
  Open("Ines");
  EXPECT_THAT(ListAudit(*company_, Query()), testing::Not(IsEmpty()));
}

}  // namespace
}  // namespace desk
