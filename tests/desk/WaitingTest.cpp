// What waits for a person of a company that is paired: what the reminder and the bridge speak of, and what is shown
// then.
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "standalone/company/CompanyFile.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Reminder.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Work.h"
#include "tests/desk/DayOfACompany.h"
#include "tests/desk/PairedCompanies.h"

namespace desk {
namespace {

using standalone::LineAmount;
using standalone::RequestId;
using standalone::WaitingWork;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class WhatNeedsAttention : public PairedCompanies {
 protected:
  WhatNeedsAttention() : PairedCompanies({"Alder", "Birch"}) {
    standalone::WriteFile(standalone::CompanyFile::RemotePath(FileOf("Birch")),
                          "[values.MultiEntity]\nInitialDelayInSeconds = \"0\"\nHoursToLaunchDay = \"0\"\n");
    for (const char* const who : {"Alder", "Birch"}) {
      At(who, [](Company& company) { return AddName(company, {.name = "Hillcrest", .kind = "vendor"}); });
    }
  }

  // Alder's bill of 480.00, half of which is Birch's, in Birch's inbox.
  std::string AskBirch(const std::string& document = "HL-1") {
    const RecordedTransaction bill = At("Alder", [&](Company& company) {
      return RecordTransaction(company,
                               {.type = EnteredType::kBill,
                                .date = DateType32{2026, 11, 2},
                                .name = Existing{"Hillcrest"},
                                .memo = standalone::Memo(""),
                                .documentNumber = standalone::DocumentNumber(document),
                                .lines = {{.account = "Maintenance", .amount = LineAmount("480.00")}},
                                .shares = {{.partner = "Birch", .share = standalone::ShareText("50%")}},
                                .attachments = {}},
                               Posting::kPost);
    });
    CarryInTurns("Alder", "Birch", 1);
    for (const RecordedLine& line : bill.lines) {
      if (line.partners) return line.partners->requestId;
    }
    ADD_FAILURE() << "no line has a request";
    return {};
  }
  static RequestSelection Only(const std::string& request) {
    return {.requests = {RequestId(request)}, .partner = std::nullopt, .upTo = std::nullopt};
  }
  void AcceptAtBirch(const std::string& request) {
    At("Birch", [&](Company& company) {
      return AcceptRequests(company, Only(request),
                            {.expense = Existing{"Maintenance"}, .name = std::nullopt, .date = std::nullopt});
    });
  }
  // Until it is undone, nothing that letters bring is applied.
  void TakeTheRightsOfTheExchangeUserAt(const std::string& who) {
    At(who, [](Company& company) {
      return ChangeUser(company, {.name = "Exchange", .administrator = false, .accountant = true, .rights = {}});
    });
  }

  void SayWhatALaterVersionDoes(const std::string& who) {
    At(who, [](Company& company) {
      Work work(company.Opened(), UseCase::kExchange);
      work.Write([&] {
        const standalone::Pairing pairing = work.Host().Pairings().List().at(0);
        const exchange::KeyPair keys = RequireKeys(work);
        Keep(work, pairing,
             exchange::Fact::Signed({.pairing = pairing.pairingId,
                                     .author = keys.Public(),
                                     .kind = "greeting",
                                     .name = "1",
                                     .month = "2026-11",
                                     .fields = {{"text", "Hello"}}},
                                    keys),
             standalone::FactOrigin::kMade);
      });
    });
  }

  WaitingWork WaitingAt(const std::string& who) {
    return At(who, [](Company& company) { return ShowReminder(company).waiting; });
  }
  SyncNeed NeedAt(const std::string& who) {
    standalone::StandaloneHost host(FileOf(who));
    return host.Pending().Need();
  }
};

TEST_F(WhatNeedsAttention, IsNothingOnceBothHaveTheSame) {
  PairOverTheFolder();

  EXPECT_EQ(WaitingAt("Alder"), WaitingWork());
  EXPECT_EQ(NeedAt("Birch"), kNothingWaits);
}

TEST_F(WhatNeedsAttention, IsARequestOfAPartnerUntilItIsDecided) {
  PairOverTheFolder();
  const std::string request = AskBirch();

  EXPECT_EQ(WaitingAt("Birch"), WaitingWork{.requests = 1});
  EXPECT_EQ(NeedAt("Birch"), kTransactionsWait);
  EXPECT_EQ(NeedAt("Alder"), kNothingWaits);
  AcceptAtBirch(request);
  EXPECT_EQ(NeedAt("Birch"), kNothingWaits);
}

TEST_F(WhatNeedsAttention, IsARequestThatCameBack) {
  PairOverTheFolder();
  const std::string request = AskBirch();
  At("Birch", [&](Company& company) { return RejectRequests(company, Only(request), standalone::Memo("not ours")); });

  CarryInTurns("Birch", "Alder", 1);

  EXPECT_EQ(WaitingAt("Alder"), WaitingWork{.cameBack = 1});
  EXPECT_EQ(NeedAt("Alder"), kTransactionsWait);
}

TEST_F(WhatNeedsAttention, IsAPartnerWhoHasAcceptedUntilAPersonHasConfirmed) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));
  CarryInTurns("Birch", "Alder", 1);

  EXPECT_EQ(WaitingAt("Alder"), WaitingWork{.partners = 1});
  EXPECT_EQ(NeedAt("Alder"), kTransactionsWait);
  EXPECT_EQ(WaitingAt("Birch"), WaitingWork{.relations = 1});
  EXPECT_EQ(NeedAt("Birch"), kRelationsWait);
  Confirm("Alder", "Birch");
  EXPECT_EQ(NeedAt("Alder"), kNothingWaits);
}

TEST_F(WhatNeedsAttention, IsWhatCouldNotBeApplied) {
  PairOverTheFolder();
  AcceptAtBirch(AskBirch());
  TakeTheRightsOfTheExchangeUserAt("Alder");

  CarryInTurns("Birch", "Alder", 1);

  EXPECT_EQ(WaitingAt("Alder"), WaitingWork{.outstanding = 1});
  EXPECT_EQ(NeedAt("Alder"), kTransactionsWait);
}

TEST_F(WhatNeedsAttention, IsNothingThatOnlyALaterVersionUnderstands) {
  PairOverTheFolder();
  SayWhatALaterVersionDoes("Alder");

  CarryInTurns("Alder", "Birch", 1);

  EXPECT_EQ(WaitingAt("Birch"), WaitingWork());
  EXPECT_EQ(At("Birch", [](Company& company) { return company.Opened().Host().Pending().Need(); }), kNothingWaits);
  EXPECT_THAT(Seen("Birch", "Alder").outstanding, IsEmpty());
  EXPECT_THAT(Seen("Birch", "Alder").notUnderstood, ElementsAre(HasSubstr("greeting: ")));
}

TEST_F(WhatNeedsAttention, IsNothingOfAPartnerWithWhomThePairingIsEnded) {
  PairOverTheFolder();
  AskBirch();

  At("Birch", [](Company& company) { RemovePairing(company, "Alder"); });

  EXPECT_EQ(NeedAt("Birch"), kNothingWaits);
}

TEST_F(WhatNeedsAttention, IsSaidByTheReminderAndShownToWhoWantsToSeeIt) {
  PairOverTheFolder();
  AcceptAtBirch(AskBirch());
  const std::string request = AskBirch("HL-2");
  std::vector<Question> asked;
  std::vector<PluginScreen> shown;
  Person person{.answer =
                    [&asked](const Question& question) {
                      asked.push_back(question);
                      return true;
                    },
                .show =
                    [&shown](std::string_view, const PluginScreen& screen) {
                      shown.push_back(screen);
                    }};

  At("Birch", [&](Company& company) { return KeepOpen(company, std::move(person), /*timesArmed=*/2); });

  ASSERT_THAT(asked, SizeIs(1));
  EXPECT_EQ(asked[0].text, "Waiting for you: 1 request of partners to answer. Do you want to look at it now?");
  const auto& screen = std::get<PendingWork>(shown.at(0));
  ASSERT_THAT(screen.requests, SizeIs(1));
  EXPECT_EQ(screen.requests[0].requestId, request);
  EXPECT_EQ(screen.requests[0].partner, "Alder");
  EXPECT_EQ(screen.requests[0].amount.minorUnits, 24000);
  EXPECT_THAT(screen.partners, IsEmpty());
}

TEST_F(WhatNeedsAttention, IsShownWithThePartnerOfWhomSomethingIsOutstandingAndWhy) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));
  CarryInTurns("Birch", "Alder", 1);
  Confirm("Alder", "Birch");
  At("Birch", [](Company& company) {
    return ChangeUser(company, {.name = "Exchange", .administrator = false, .accountant = false, .rights = {}});
  });
  CarryInTurns("Alder", "Birch", 1);
  std::vector<PluginScreen> shown;
  Person person{.answer = [](const Question&) { return true; },
                .show =
                    [&shown](std::string_view, const PluginScreen& screen) {
                      shown.push_back(screen);
                    }};

  At("Birch", [&](Company& company) { return KeepOpen(company, std::move(person), /*timesArmed=*/2); });

  const auto& screen = std::get<PendingWork>(shown.at(0));
  ASSERT_THAT(screen.partners, ElementsAre(Field(&PairedPartner::name, "Alder")));
  EXPECT_THAT(screen.partners[0].outstanding, ElementsAre(HasSubstr("no right to manage relations")));
}

}  // namespace
}  // namespace desk
