#include "standalone/desk/Attachments.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/Reports.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::Attachment;
using testing::ElementsAre;
using testing::IsEmpty;

// A bill (1), a check (2) and an entry of a partner's request (3), all of March 2024.
class Papers : public DeskFixture {
 protected:
  Papers() {
    RelateBirch();
    ImportMarch();
  }

  static constexpr std::int32_t kBill = 1;
  static constexpr std::int32_t kCheck = 2;
  static constexpr std::int32_t kPartnersEntry = 3;

  ChangedAttachments Attach(std::int32_t txnId, const std::vector<std::string>& papers) {
    return AttachTo(*company_, txnId, {papers.begin(), papers.end()});
  }
  ChangedAttachments Detach(std::int32_t txnId, const std::vector<std::string>& papers) {
    return DetachFrom(*company_, txnId, papers);
  }
  std::vector<std::string> PapersOf(std::int32_t txnId) { return ShowTransaction(*company_, txnId).attachments; }

  template <typename Ask>
  Refusal RefusalThatLeavesAll(Ask&& ask) {
    const std::string before = WholeFile();
    Refusal refusal = RefusalOf(std::forward<Ask>(ask));
    EXPECT_EQ(WholeFile(), before);
    return refusal;
  }
  // Of attaching a paper, and of detaching one.
  std::vector<Refusal> RefusalsOfBoth(std::int32_t txnId) {
    return {RefusalThatLeavesAll([&] { Attach(txnId, {"a.pdf"}); }),
            RefusalThatLeavesAll([&] { Detach(txnId, {"a.pdf"}); })};
  }

  std::vector<AuditedDeed> TrailOf(std::int32_t txnId) {
    return ListAudit(*company_, {.user = {}, .action = {}, .period = {NullDate(), NullDate()}, .txnId = txnId});
  }
  // "field, before, after" of each value that the last deed about the transaction has changed.
  std::vector<std::string> LastChangesOf(std::int32_t txnId) {
    std::vector<std::string> texts;
    const std::vector<AuditedDeed> trail = TrailOf(txnId);
    for (const AuditedChange& change : trail.back().changes) {
      texts.push_back(change.field + ", " + change.before.value_or("none") + ", " + change.after.value_or("none"));
    }
    return texts;
  }
};

TEST_F(Papers, AreAttachedToWhatIsInTheBooksAlready) {
  Attach(kBill, {"scans/np-7.pdf"});

  const ChangedAttachments changed = Attach(kBill, {"https://papers/7", "scans/np-7b.pdf"});

  EXPECT_EQ(changed.type, EnteredType::kBill);
  EXPECT_THAT(changed.changed, ElementsAre("https://papers/7", "scans/np-7b.pdf"));
  EXPECT_THAT(changed.attachments, ElementsAre("scans/np-7.pdf", "https://papers/7", "scans/np-7b.pdf"));
  EXPECT_EQ(PapersOf(kBill), changed.attachments);
  EXPECT_THAT(PapersOf(kCheck), IsEmpty());
}

TEST_F(Papers, ThatAreAttachedAreInTheTrailByOneLine) {
  const std::size_t before = TrailOf(kBill).size();

  Attach(kBill, {"a.pdf", "b.pdf"});

  const std::vector<AuditedDeed> trail = TrailOf(kBill);
  ASSERT_EQ(trail.size(), before + 1);
  EXPECT_EQ(trail.back().action, "transaction.attach");
  EXPECT_EQ(trail.back().subject, "bill 1");
  EXPECT_THAT(LastChangesOf(kBill), ElementsAre("attachment, none, a.pdf", "attachment, none, b.pdf"));
}

TEST_F(Papers, AreNotAttachedASecondTime) {
  Attach(kBill, {"a.pdf"});

  EXPECT_THAT(Attach(kBill, {"a.pdf", "b.pdf", "b.pdf"}).changed, ElementsAre("b.pdf"));
  EXPECT_THAT(PapersOf(kBill), ElementsAre("a.pdf", "b.pdf"));
}

TEST_F(Papers, ThatAreThereAlreadyLeaveNoLineInTheTrail) {
  Attach(kBill, {"a.pdf"});
  const std::string before = WholeFile();

  EXPECT_THAT(Attach(kBill, {"a.pdf"}).changed, IsEmpty());

  EXPECT_EQ(WholeFile(), before);
}

TEST_F(Papers, AreDetachedAndTheTrailKeepsThem) {
  Attach(kBill, {"a.pdf", "b.pdf", "c.pdf"});

  const ChangedAttachments changed = Detach(kBill, {"c.pdf", "a.pdf"});

  EXPECT_THAT(changed.changed, ElementsAre("c.pdf", "a.pdf"));
  EXPECT_THAT(changed.attachments, ElementsAre("b.pdf"));
  EXPECT_THAT(PapersOf(kBill), ElementsAre("b.pdf"));
  EXPECT_EQ(TrailOf(kBill).back().action, "transaction.detach");
  EXPECT_THAT(LastChangesOf(kBill), ElementsAre("attachment, c.pdf, none", "attachment, a.pdf, none"));
}

TEST_F(Papers, ThatWereGivenTwiceWhenTheBillWasEnteredAreDetachedAtOnce) {
  const std::int32_t txnId =
      RecordTransaction(*company_,
                        {.type = EnteredType::kBill,
                         .name = Existing{"Northern Power"},
                         .lines = {{.account = "Utilities", .amount = standalone::LineAmount("8.00")}},
                         .shares = {},
                         .attachments = {Attachment("a.pdf"), Attachment("a.pdf")}},
                        Posting::kPost)
          .txnId;

  EXPECT_THAT(Detach(txnId, {"a.pdf", "a.pdf"}).changed, ElementsAre("a.pdf"));
  EXPECT_THAT(PapersOf(txnId), IsEmpty());
}

TEST_F(Papers, ThatAreNotAttachedAreNotDetached) {
  Attach(kBill, {"a.pdf"});
  Attach(kCheck, {"b.pdf"});

  const Refusal refusal = RefusalThatLeavesAll([&] { Detach(kBill, {"a.pdf", "b.pdf"}); });

  EXPECT_EQ(refusal.why, "bill 1 has no attachment \"b.pdf\"");
  EXPECT_EQ(refusal.remedy, Remedy::kSeeTheAttachments);
}

TEST_F(Papers, AreThoseOfATransactionThatIsThere) {
  for (const Refusal& refusal : RefusalsOfBoth(77)) {
    EXPECT_EQ(refusal.why, "there is no transaction 77");
    EXPECT_EQ(refusal.remedy, Remedy::kSeeTransactions);
  }
}

TEST_F(Papers, NeedTheRightToModifyTransactionsOfTheType) {
  OpenFor("Robin", {"bills:modify", "checks:create", "checks:view", "bills:view"});

  EXPECT_NO_THROW(Attach(kBill, {"a.pdf"}));
  EXPECT_NO_THROW(Detach(kBill, {"a.pdf"}));
  for (const Refusal& refusal : RefusalsOfBoth(kCheck)) {
    EXPECT_EQ(refusal.why, "The user \"Robin\" has no right checks:modify.");
    EXPECT_EQ(refusal.remedy, Remedy::kAskForTheRight);
  }
}

TEST_F(Papers, AreNoWayToLearnWhatThereIsForWhoMayModifyNothing) {
  OpenFor("Robin", {"bills:create", "bills:view"});

  for (const Refusal& refusal : RefusalsOfBoth(77)) {
    EXPECT_EQ(refusal.why, "The user \"Robin\" needs bills:modify, or checks:modify, or journal:modify.");
  }
}

TEST_F(Papers, OfAClosedDayStillComeAndGoAsTheyAreNotBooked) {
  ChangeSetting(*company_, "closing-date", "2024-12-31");

  Attach(kBill, {"a.pdf", "b.pdf"});
  Detach(kBill, {"a.pdf"});

  EXPECT_THAT(PapersOf(kBill), ElementsAre("b.pdf"));
}

TEST_F(Papers, OfAPartnersRequestGoWithItsEntryWhichTheTrailTells) {
  Attach(kPartnersEntry, {"birch.pdf"});

  RemoveJournalEntry(*company_, kPartnersEntry);

  EXPECT_THAT(LastChangesOf(kPartnersEntry), testing::Contains("attachment, birch.pdf, none"));
  standalone::StandaloneHost other(path_);
  EXPECT_EQ(standalone::Count(other, "SELECT count(*) FROM txn_attachment"), 0);
}

TEST_F(Papers, AreToldToPrograms) {
  EXPECT_EQ(JsonOf(Attach(kBill, {"a.pdf"})).dump(),
            R"({"transaction":1,"type":"bill","typeNumber":9,"attachments":["a.pdf"]})");
}

}  // namespace
}  // namespace desk
