// The user as whom is done what nobody names: what comes of letters, and what is sent by itself.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "standalone/desk/Audit.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/Rules.h"
#include "tests/desk/PairedCompanies.h"
#include "tests/support/Thrown.h"

namespace desk {
namespace {

using standalone::InboxState;
using standalone::LineAmount;
using standalone::RequestId;
using standalone::TransactionState;
using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

constexpr const char* kCarrying = "Exchange";

class TheExchangeUser : public PairedCompanies {
 protected:
  TheExchangeUser() : PairedCompanies({"Alder", "Birch"}) {
    for (const char* const who : {"Alder", "Birch"}) {
      At(who, [](Company& company) { return AddName(company, {.name = "Hillcrest", .kind = "vendor"}); });
    }
  }

  std::vector<std::string> UsersOf(const std::string& who) {
    std::vector<std::string> names;
    for (const User& user : At(who, [](Company& company) { return ListUsers(company); })) names.push_back(user.name);
    return names;
  }
  User UserAt(const std::string& who, const std::string& name) {
    for (User& user : At(who, [](Company& company) { return ListUsers(company); })) {
      if (user.name == name) return std::move(user);
    }
    ADD_FAILURE() << who << " has no user " << name;
    return {};
  }
  // Marks and rights of that company's exchange user.
  void Allow(const std::string& who, bool accountant, const std::vector<std::string>& rights) {
    User user{.name = kCarrying, .administrator = false, .accountant = accountant, .rights = {}};
    for (const std::string& right : rights) user.rights.emplace_back(right);
    At(who, [&](Company& company) { return ChangeUser(company, user); });
  }
  void AllowAgain(const std::string& who) {
    Allow(who, /*accountant=*/true, {"bills:modify", "checks:modify", "journal:create", "journal:modify"});
  }
  // As a company is that was paired before there was such a user.
  void Forget(const std::string& who) {
    standalone::StandaloneHost host(FileOf(who));
    host.Request(standalone::Access::kWrite, [&] {
      host.Users().Remove(kCarrying);
      host.Preferences().Forget("ExchangeUser");
    });
  }

  std::string EnterBill() {
    const RecordedTransaction bill = At("Alder", [&](Company& company) {
      return RecordTransaction(company,
                               {.type = EnteredType::kBill,
                                .date = DateType32{2026, 11, 2},
                                .name = Existing{"Hillcrest"},
                                .memo = standalone::Memo("Inspection"),
                                .documentNumber = standalone::DocumentNumber("HL-" + std::to_string(++lastBill_)),
                                .lines = {{.account = "Maintenance", .amount = LineAmount("480.00")}},
                                .shares = {{.partner = "Birch", .share = standalone::ShareText("50%")}},
                                .attachments = {}},
                               Posting::kPost);
    });
    for (const RecordedLine& line : bill.lines) {
      if (line.partners) return line.partners->requestId;
    }
    ADD_FAILURE() << "no line has a request";
    return {};
  }
  void AcceptAtBirch(const std::string& request) {
    At("Birch", [&](Company& company) {
      return AcceptRequests(company, {.requests = {RequestId(request)}, .partner = std::nullopt, .upTo = std::nullopt},
                            {.expense = Existing{"Maintenance"}, .name = std::nullopt, .date = std::nullopt});
    });
  }
  void BookAtOnceAtBirch() {
    At("Birch", [](Company& company) {
      AddRule(company,
              {.partner = Partner("Alder"), .name = "Hillcrest", .hint = {}, .memo = {}, .expense = "Maintenance"});
      SetBookedUpTo(company, "Alder", LineAmount("500.00"));
    });
  }
  InboxRequest ShownAtBirch(const std::string& request) {
    return At("Birch", [&](Company& company) { return ShowInbox(company, RequestId(request)); });
  }
  TransactionState StateAtAlder(const std::string& request) {
    return At("Alder", [&](Company& company) { return ShowOutbox(company, RequestId(request)).state.value().number; });
  }
  std::vector<AuditedDeed> TrailOf(const std::string& who, const std::string& action) {
    return At(who, [&](Company& company) {
      return ListAudit(company, {.user = {}, .action = action, .period = {NullDate(), NullDate()}, .txnId = {}});
    });
  }
  static auto DoneBy(const std::string& user) { return Field(&AuditedDeed::user, user); }

 private:
  int lastBill_ = 0;
};

TEST_F(TheExchangeUser, IsMadeOnBothSidesWithTheFirstPairingAndMayDoNoMoreThanCarryingTakes) {
  PairOverTheFolder();

  for (const char* const who : {"Alder", "Birch"}) {
    EXPECT_THAT(UsersOf(who), ElementsAre(kFirstUser, kCarrying));
    const User made = UserAt(who, kCarrying);
    EXPECT_FALSE(made.administrator);
    EXPECT_TRUE(made.accountant);
    EXPECT_THAT(made.rights, SizeIs(4));
  }
  EXPECT_THAT(TrailOf("Alder", "user"), IsEmpty());
  EXPECT_THAT(TrailOf("Alder", "partner.invite").at(0).changes,
              Contains(AllOf(Field(&AuditedChange::field, "user who carries letters"),
                             Field(&AuditedChange::after, kCarrying))));
}

TEST_F(TheExchangeUser, HasAnotherNameWhereAPersonHasThatOne) {
  At("Alder", [](Company& company) { return AddUser(company, {.name = "EXCHANGE", .rights = {}}); });

  Invite("Alder", "Birch");

  EXPECT_THAT(UsersOf("Alder"), ElementsAre(kFirstUser, "EXCHANGE", "Exchange 2"));
}

TEST_F(TheExchangeUser, IsTheSameForAllPartners) {
  Make("Cedar", "USD");
  PairOverTheFolder();

  Invite("Alder", "Cedar");

  EXPECT_THAT(UsersOf("Alder"), ElementsAre(kFirstUser, kCarrying));
}

TEST_F(TheExchangeUser, IsMadeWithTheNextCarryingInACompanyThatWasPairedBefore) {
  PairOverTheFolder();
  Forget("Alder");
  EnterBill();

  Carry("Alder");
  Carry("Alder");

  EXPECT_THAT(UsersOf("Alder"), ElementsAre(kFirstUser, kCarrying));
  EXPECT_THAT(TrailOf("Alder", "user.add"), ElementsAre(DoneBy(kFirstUser)));
  EXPECT_THAT(TrailOf("Alder", "exchange.send"), ElementsAre(DoneBy(kCarrying)));
}

TEST_F(TheExchangeUser, DidWhatNobodyNamedAndPersonsWhatTheyNamed) {
  PairOverTheFolder();
  const std::string byItself = EnterBill();
  Carry("Alder");
  const std::string named = EnterBill();
  At("Alder", [&](Company& company) {
    return SendRequests(company, {.requests = {RequestId(named)}, .partner = std::nullopt, .upTo = std::nullopt});
  });
  CarryInTurns("Alder", "Birch", 1);
  AcceptAtBirch(byItself);
  CarryInTurns("Birch", "Alder", 1);

  EXPECT_THAT(TrailOf("Alder", "exchange.send"), ElementsAre(DoneBy(kCarrying), DoneBy(kFirstUser)));
  EXPECT_THAT(TrailOf("Alder", "exchange.take"), AllOf(Not(IsEmpty()), Each(DoneBy(kCarrying))));
  EXPECT_THAT(TrailOf("Birch", "exchange.take"), AllOf(Not(IsEmpty()), Each(DoneBy(kCarrying))));
  EXPECT_THAT(TrailOf("Birch", "inbox.accept"), ElementsAre(DoneBy(kFirstUser)));
  EXPECT_EQ(TrailOf("Birch", "exchange.take").at(0).systemUser, TrailOf("Birch", "inbox.accept").at(0).systemUser);
  EXPECT_EQ(StateAtAlder(byItself), TransactionState::kEstablished);
}

TEST_F(TheExchangeUser, TakesLettersThatComeByMailAndSendsWithThoseThatGoByIt) {
  PairOverTheFolder();
  EnterBill();

  SendByMail("Alder", "Birch");

  EXPECT_THAT(TrailOf("Alder", "exchange.send"), ElementsAre(DoneBy(kCarrying)));
  EXPECT_THAT(TrailOf("Birch", "exchange.take"), AllOf(Not(IsEmpty()), Each(DoneBy(kCarrying))));
}

TEST_F(TheExchangeUser, DoesWhatWhoeverStartsItCouldNotDo) {
  PairOverTheFolder();
  BookAtOnceAtBirch();
  for (const char* const who : {"Alder", "Birch"}) {
    At(who, [](Company& company) {
      return AddUser(company, {.name = "Robin", .administrator = false, .accountant = true, .rights = {}});
    });
  }
  const std::string request = EnterBill();

  for (int round = 0; round < 2; ++round) {
    for (const char* const who : {"Alder", "Birch"}) {
      At(who, [](Company& company) { return RunExchange(company); }, "Robin");
    }
  }
  At("Alder", [](Company& company) { return RunExchange(company); }, "Robin");

  EXPECT_EQ(ShownAtBirch(request).state, InboxState::kAccepted);
  EXPECT_EQ(StateAtAlder(request), TransactionState::kEstablished);
}

TEST_F(TheExchangeUser, IsNoWayRoundTheRightToStartCarrying) {
  PairOverTheFolder();
  At("Alder", [](Company& company) { return AddUser(company, {.name = "Kim", .rights = {}}); });

  EXPECT_THROW(At("Alder", [](Company& company) { return RunExchange(company); }, "Kim"), Refused);
}

TEST_F(TheExchangeUser, ActsOnlyWhileLettersAreCarried) {
  PairOverTheFolder();
  Allow("Alder", /*accountant=*/false, {});

  At("Alder", [](Company& company) {
    RunExchange(company);
    EXPECT_EQ(company.UserName(), kFirstUser);
    ChangeSetting(company, "closing-date", "2026-01-31");
  });

  EXPECT_THAT(TrailOf("Alder", "settings.change"), ElementsAre(DoneBy(kFirstUser)));
}

TEST_F(TheExchangeUser, SendsNothingByItselfWithoutTheRightAndSaysWhoLacksIt) {
  PairOverTheFolder();
  const std::string request = EnterBill();
  Allow("Alder", /*accountant=*/true, {"checks:modify", "journal:create", "journal:modify"});

  const std::vector<CarriedWith> without = Carry("Alder");
  AllowAgain("Alder");
  const std::vector<CarriedWith> with = Carry("Alder");

  EXPECT_EQ(without.at(0).sent, 0U);
  EXPECT_THAT(without.at(0).notSent,
              ElementsAre(AllOf(HasSubstr(request), HasSubstr("the user \"Exchange\" has no right"))));
  EXPECT_THAT(without.at(0).remedies, ElementsAre(Remedy::kAskForTheRight));
  EXPECT_EQ(with.at(0).sent, 1U);
  EXPECT_THAT(with.at(0).remedies, IsEmpty());
  EXPECT_EQ(StateAtAlder(request), TransactionState::kSent);
}

TEST_F(TheExchangeUser, LeavesAnAnswerOutstandingWithoutTheRightAndAppliesItWithIt) {
  PairOverTheFolder();
  const std::string request = EnterBill();
  CarryInTurns("Alder", "Birch", 1);
  AcceptAtBirch(request);
  Allow("Alder", /*accountant=*/true, {});

  CarryInTurns("Birch", "Alder", 1);

  EXPECT_EQ(StateAtAlder(request), TransactionState::kSent);
  EXPECT_THAT(Seen("Alder", "Birch").outstanding,
              ElementsAre(AllOf(HasSubstr("answer"), HasSubstr("the user \"Exchange\" has no right"))));
  AllowAgain("Alder");
  Carry("Alder");
  EXPECT_EQ(StateAtAlder(request), TransactionState::kEstablished);
  EXPECT_THAT(Seen("Alder", "Birch").outstanding, IsEmpty());
}

TEST_F(TheExchangeUser, LeavesARequestInTheInboxWithoutTheRightToBookIt) {
  PairOverTheFolder();
  BookAtOnceAtBirch();
  Allow("Birch", /*accountant=*/true, {"journal:modify"});
  const std::string request = EnterBill();

  CarryInTurns("Alder", "Birch", 1);

  EXPECT_EQ(ShownAtBirch(request).state, InboxState::kNew);
  EXPECT_THAT(ShownAtBirch(request).mark, HasSubstr("the user \"Exchange\" has no right journal:create"));
}

TEST_F(TheExchangeUser, LeavesAConfirmationOutstandingWithoutTheRightToManageRelations) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));
  CarryInTurns("Birch", "Alder", 1);
  Confirm("Alder", "Birch");
  Allow("Birch", /*accountant=*/false, {});

  CarryInTurns("Alder", "Birch", 1);

  EXPECT_EQ(Seen("Birch", "Alder").state, standalone::PairingState::kAccepted);
  EXPECT_THAT(Seen("Birch", "Alder").outstanding,
              ElementsAre(HasSubstr("the user \"Exchange\" has no right to manage relations")));
  AllowAgain("Birch");
  Carry("Birch");
  EXPECT_EQ(Seen("Birch", "Alder").state, standalone::PairingState::kEstablished);
}

TEST_F(TheExchangeUser, StaysAsLongAsTheCompanyIsPairedWithAnybody) {
  PairOverTheFolder();

  EXPECT_THAT(MessageOf<standalone::InvalidInput>(
                  [&] { At("Alder", [](Company& company) { RemoveUser(company, kCarrying); }); }),
              AllOf(HasSubstr("\"Exchange\""), HasSubstr("users change")));
  EXPECT_THAT(UsersOf("Alder"), ElementsAre(kFirstUser, kCarrying));

  At("Alder", [](Company& company) {
    RemovePairing(company, "Birch");
    RemoveUser(company, kCarrying);
  });
  EXPECT_THAT(UsersOf("Alder"), ElementsAre(kFirstUser));
}

}  // namespace
}  // namespace desk
