// Where requests of partners are booked without a person who says it for each.
#include <string>
#include <utility>
#include <vector>

#include "standalone/desk/Audit.h"
#include "standalone/desk/Correcting.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/Rules.h"
#include "standalone/desk/Transactions.h"
#include "tests/desk/PairedCompanies.h"

namespace desk {
namespace {

using standalone::InboxState;
using standalone::LineAmount;
using standalone::RequestId;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

// Alder asks Birch to bear half of what it pays.
class TheRule : public PairedCompanies {
 protected:
  struct Bill {
    std::string name = "Hillcrest";
    std::string memo = "Inspection";
    std::string account = "Maintenance";
    std::string amount = "480.00";
  };

  TheRule() : PairedCompanies({"Alder", "Birch"}) {
    PairOverTheFolder();
    AddExpense("Alder", "Lift");
    for (const char* const account : {"Lift", "Roof"}) AddExpense("Birch", account);
    AddNameAt("Alder", "Hillcrest");
    AddNameAt("Alder", "Stone");
  }

  void AddExpense(const std::string& who, const std::string& account) {
    At(who, [&](Company& company) {
      return desk::AddAccount(company, {.name = account, .type = KrEnumerations::kExpense, .number = {}});
    });
  }
  void AddNameAt(const std::string& who, const std::string& name) {
    At(who, [&](Company& company) { return desk::AddName(company, {.name = name, .kind = "vendor"}); });
  }

  RecordedTransaction EnterBill(const Bill& bill) {
    return At("Alder", [&](Company& company) {
      return RecordTransaction(company,
                               {.type = EnteredType::kBill,
                                .date = DateType32{2026, 11, 2},
                                .name = Existing{bill.name},
                                .memo = standalone::Memo(bill.memo),
                                .documentNumber = standalone::DocumentNumber("HL-" + std::to_string(++lastBill_)),
                                .lines = {{.account = bill.account, .amount = LineAmount(bill.amount)}},
                                .shares = {{.partner = "Birch", .share = standalone::ShareText("50%")}},
                                .attachments = {}},
                               Posting::kPost);
    });
  }
  // Once it is in Birch's inbox.
  std::string Ask(const Bill& bill) {
    const RecordedTransaction entered = EnterBill(bill);
    CarryInTurns("Alder", "Birch", 1);
    for (const RecordedLine& line : entered.lines) {
      if (line.partners) return line.partners->requestId;
    }
    ADD_FAILURE() << "no line has a request";
    return {};
  }

  static RuleToAdd For(const std::string& name, const std::string& expense) {
    return {.partner = Partner("Alder"), .name = name, .hint = {}, .memo = {}, .expense = expense};
  }
  Rule Add(const RuleToAdd& rule) {
    return At("Birch", [&](Company& company) { return AddRule(company, rule); });
  }
  std::vector<Rule> Rules() {
    return At("Birch", [](Company& company) { return ListRules(company); });
  }

  void BookUpTo(const std::optional<std::string>& amount) {
    std::optional<LineAmount> upTo;
    if (amount) upTo.emplace(*amount);
    At("Birch", [&](Company& company) { return SetBookedUpTo(company, "Alder", upTo); });
  }
  standalone::TransactionState StateAtAlder(const std::string& request) {
    return At("Alder", [&](Company& company) { return ShowOutbox(company, RequestId(request)).state.value().number; });
  }

  static RequestSelection Only(const std::string& request) {
    return {.requests = {RequestId(request)}, .partner = std::nullopt, .upTo = std::nullopt};
  }
  BookedRequests AcceptAllByRule() {
    return At("Birch", [](Company& company) {
      return AcceptRequests(company, {}, {.expense = std::nullopt, .name = std::nullopt, .date = {}, .byRule = true});
    });
  }
  BookedRequests AcceptAs(const std::string& request, const std::string& expense, const std::string& name) {
    return At("Birch", [&](Company& company) {
      return AcceptRequests(company, Only(request), {.expense = Existing{expense}, .name = Existing{name}, .date = {}});
    });
  }
  InboxRequest Shown(const std::string& request) {
    return At("Birch", [&](Company& company) { return ShowInbox(company, RequestId(request)); });
  }
  // Of the entry that was booked for it.
  IntercompanyLine EntryOf(const InboxRequest& request) {
    return At("Birch",
              [&](Company& company) { return ListIntercompanyLines(company, request.entry.value().txnId).at(0); });
  }
  std::string AccountOf(const BookedRequests& booked) { return EntryOf(booked.booked.at(0).request).account->name; }
  std::vector<AuditedDeed> TrailOf(const std::string& action) {
    return At("Birch", [&](Company& company) {
      return ListAudit(company, {.user = {}, .action = action, .period = {NullDate(), NullDate()}, .txnId = {}});
    });
  }

 private:
  int lastBill_ = 0;
};

auto ChangeOf(const std::string& field, const std::string& after) {
  return AllOf(Field(&AuditedChange::field, field), Field(&AuditedChange::after, testing::Optional(HasSubstr(after))));
}

TEST_F(TheRule, ThatFitsSaysWhereARequestIsBooked) {
  const Rule rule = Add(For("Hillcrest", "Lift"));
  const std::string request = Ask({});

  const BookedRequests accepted = AcceptAllByRule();

  ASSERT_THAT(accepted.booked, SizeIs(1)) << accepted.left.at(0).refusal.why;
  EXPECT_EQ(accepted.booked[0].rule, rule.id);
  EXPECT_EQ(accepted.booked[0].request.requestId, request);
  EXPECT_EQ(AccountOf(accepted), "Lift");
  EXPECT_EQ(Shown(request).state, InboxState::kAccepted);
  EXPECT_THAT(TrailOf("inbox.accept").at(0).changes, Contains(ChangeOf("by rule", std::to_string(rule.id))));
}

TEST_F(TheRule, WithoutANameBooksUnderTheOneThatTheRequestTells) {
  Add(For("Hillcrest", "Lift"));
  Ask({});
  Ask({});

  const BookedRequests accepted = AcceptAllByRule();

  ASSERT_THAT(accepted.booked, SizeIs(2)) << accepted.left.at(0).refusal.why;
  const std::vector<Name> names = At("Birch", [](Company& company) { return ListNames(company); });
  EXPECT_THAT(names, ElementsAre(Field(&Name::name, "Hillcrest")));
  EXPECT_EQ(EntryOf(accepted.booked[0].request).memo, "Hillcrest");
}

TEST_F(TheRule, WithANameBooksUnderThat) {
  AddNameAt("Birch", "Hillcrest at Birch");
  RuleToAdd rule = For("Hillcrest", "Lift");
  rule.bookedAs = "Hillcrest at Birch";
  Add(rule);
  Ask({});

  const BookedRequests accepted = AcceptAllByRule();

  ASSERT_THAT(accepted.booked, SizeIs(1)) << accepted.left.at(0).refusal.why;
  EXPECT_EQ(EntryOf(accepted.booked[0].request).memo, "Hillcrest at Birch");
}

TEST_F(TheRule, ThatIsMissingLeavesTheRequestWithTheReason) {
  Add(For("Hillcrest", "Lift"));
  Ask({});
  const std::string other = Ask({.name = "Stone"});

  const BookedRequests accepted = AcceptAllByRule();

  EXPECT_THAT(accepted.booked, SizeIs(1));
  ASSERT_THAT(accepted.left, SizeIs(1));
  EXPECT_EQ(accepted.left[0].request.requestId, other);
  EXPECT_EQ(accepted.left[0].refusal.why, "no rule fits it");
  EXPECT_EQ(accepted.left[0].refusal.remedy, Remedy::kAddARule);
  EXPECT_EQ(Shown(other).state, InboxState::kNew);
}

TEST_F(TheRule, ThatSaysMoreOfTheRequestGoesFirst) {
  Add(For("Hillcrest", "Maintenance"));
  RuleToAdd both = For("Hillcrest", "Lift");
  both.memo = "inspection";
  const Rule more = Add(both);
  Ask({});

  const BookedRequests accepted = AcceptAllByRule();

  ASSERT_THAT(accepted.booked, SizeIs(1));
  EXPECT_EQ(accepted.booked[0].rule, more.id);
  EXPECT_EQ(AccountOf(accepted), "Lift");
}

TEST_F(TheRule, ThatFitsAsWellAsAnotherOneDecidesNothing) {
  RuleToAdd byHint = For("Hillcrest", "Lift");
  byHint.hint = "Maintenance";
  RuleToAdd byMemo = For("Hillcrest", "Roof");
  byMemo.memo = "Inspection";
  const Rule first = Add(byHint);
  const Rule second = Add(byMemo);
  const std::string request = Ask({});

  const BookedRequests accepted = AcceptAllByRule();

  EXPECT_THAT(accepted.booked, IsEmpty());
  ASSERT_THAT(accepted.left, SizeIs(1));
  EXPECT_EQ(accepted.left[0].refusal.why, "the rules " + std::to_string(first.id) + " and " +
                                              std::to_string(second.id) +
                                              " fit it equally well, and say different things");
  EXPECT_EQ(accepted.left[0].refusal.remedy, Remedy::kSeeTheRules);
  EXPECT_EQ(Shown(request).rule, std::nullopt);
  EXPECT_THAT(Shown(request).ruleMark, HasSubstr("equally well"));
}

TEST_F(TheRule, ThatSaysTheSameAsAnotherOneIsNotInItsWay) {
  RuleToAdd byHint = For("Hillcrest", "Lift");
  byHint.hint = "Maintenance";
  RuleToAdd byMemo = For("Hillcrest", "Lift");
  byMemo.memo = "Inspection";
  Add(byHint);
  Add(byMemo);
  Ask({});

  EXPECT_THAT(AcceptAllByRule().booked, SizeIs(1));
}

TEST_F(TheRule, IsLearnedFromARequestThatAPersonSaysAllOf) {
  AddNameAt("Birch", "Hillcrest at Birch");
  ASSERT_THAT(AcceptAs(Ask({}), "Roof", "Hillcrest at Birch").booked, SizeIs(1));
  const std::string next = Ask({});

  const std::vector<Rule> rules = Rules();

  ASSERT_THAT(rules, SizeIs(1));
  EXPECT_TRUE(rules[0].isLearned);
  EXPECT_EQ(rules[0].partner, "Alder");
  EXPECT_EQ(rules[0].name, "Hillcrest");
  EXPECT_EQ(rules[0].hint, "Maintenance");
  EXPECT_EQ(rules[0].memo, "");
  EXPECT_EQ(rules[0].account.name, "Roof");
  EXPECT_EQ(rules[0].bookedAs->name, "Hillcrest at Birch");
  EXPECT_EQ(Shown(next).rule->id, rules[0].id);
  EXPECT_THAT(TrailOf("inbox.accept"), SizeIs(1));
  EXPECT_THAT(TrailOf("inbox.accept")[0].changes,
              Contains(ChangeOf("learned rule " + std::to_string(rules[0].id), "\"Roof\" as \"Hillcrest at Birch\"")));
  EXPECT_EQ(AccountOf(AcceptAllByRule()), "Roof");
}

TEST_F(TheRule, ThatWasLearnedFollowsThePersonsNextChoice) {
  AddNameAt("Birch", "Hillcrest");
  ASSERT_THAT(AcceptAs(Ask({}), "Roof", "Hillcrest").booked, SizeIs(1));
  const std::vector<Rule> before = Rules();

  ASSERT_THAT(AcceptAs(Ask({}), "Lift", "Hillcrest").booked, SizeIs(1));

  const std::vector<Rule> after = Rules();
  ASSERT_THAT(after, SizeIs(1));
  EXPECT_EQ(after[0].id, before.at(0).id);
  EXPECT_EQ(after[0].account.name, "Lift");
}

TEST_F(TheRule, IsLearnedForEachAccountThatThePartnerTells) {
  AddNameAt("Birch", "Hillcrest");

  ASSERT_THAT(AcceptAs(Ask({}), "Roof", "Hillcrest").booked, SizeIs(1));
  ASSERT_THAT(AcceptAs(Ask({.account = "Lift"}), "Lift", "Hillcrest").booked, SizeIs(1));

  EXPECT_THAT(Rules(), ElementsAre(Field(&Rule::hint, "Maintenance"), Field(&Rule::hint, "Lift")));
}

TEST_F(TheRule, IsLearnedFromNothingElse) {
  AddNameAt("Birch", "Hillcrest");
  const std::string first = Ask({});
  Ask({});

  At("Birch", [&](Company& company) {
    return AcceptRequests(company, Only(first), {.expense = Existing{"Roof"}, .name = std::nullopt, .date = {}});
  });
  At("Birch", [](Company& company) {
    return AcceptRequests(company, {}, {.expense = Existing{"Roof"}, .name = Existing{"Hillcrest"}, .date = {}});
  });

  EXPECT_THAT(Rules(), IsEmpty());
}

TEST_F(TheRule, IsNotLearnedWhereNothingIsBooked) {
  const std::string request = Ask({});

  ASSERT_THAT(AcceptAs(request, "Due to Alder", "Nobody").left, SizeIs(1));

  EXPECT_THAT(Rules(), IsEmpty());
}

TEST_F(TheRule, ThatAPersonAddedGoesBeforeOneThatWasLearned) {
  AddNameAt("Birch", "Hillcrest");
  ASSERT_THAT(AcceptAs(Ask({}), "Roof", "Hillcrest").booked, SizeIs(1));
  const Rule added =
      Add({.partner = Partner("Alder"), .name = {}, .hint = {}, .memo = "inspection", .expense = "Lift"});
  Ask({});

  const BookedRequests accepted = AcceptAllByRule();

  ASSERT_THAT(accepted.booked, SizeIs(1));
  EXPECT_EQ(accepted.booked[0].rule, added.id);
}

TEST_F(TheRule, FitsNothingOnceItsAccountIsDeletedAndSaysSo) {
  const Rule rule = Add(For("Hillcrest", "Lift"));
  const std::string request = Ask({});

  At("Birch", [](Company& company) { return desk::DeleteAccount(company, "Lift"); });

  const BookedRequests accepted = AcceptAllByRule();
  ASSERT_THAT(accepted.left, SizeIs(1));
  EXPECT_EQ(accepted.left[0].refusal.why,
            "rule " + std::to_string(rule.id) + " is for it, but the account \"Lift\" is marked deleted");
  EXPECT_EQ(accepted.left[0].refusal.remedy, Remedy::kSeeTheRules);
  EXPECT_EQ(Rules().at(0).unfit, "the account \"Lift\" is marked deleted");
  EXPECT_EQ(Shown(request).rule, std::nullopt);
}

TEST_F(TheRule, LeavesARequestToAPersonOnceItsAccountIsPairedWithAPartner) {
  Add(For("Hillcrest", "Lift"));
  BookUpTo("500");
  At("Birch", [](Company& company) {
    return CreateRelation(company, {.realm = standalone::RealmId("1002"),
                                    .partner = standalone::PartnerName("Cedar"),
                                    .type = 0,
                                    .state = standalone::RelationState::kEstablished,
                                    .accounts = {.dueFrom = "Lift", .dueTo = "Due to Cedar", .ofAnyType = true}});
  });

  const InboxRequest left = Shown(Ask({}));

  EXPECT_EQ(left.state, InboxState::kNew);
  EXPECT_EQ(left.rule, std::nullopt);
  EXPECT_THAT(left.ruleMark, HasSubstr("is for it, but the account \"Lift\" is paired with a partner"));
  EXPECT_EQ(AcceptAllByRule().left.at(0).refusal.remedy, Remedy::kSeeTheRules);
  EXPECT_EQ(Rules().at(0).unfit, "the account \"Lift\" is paired with a partner");
}

TEST_F(TheRule, ThatFitsNothingMoreIsNotInTheWayOfAnotherOne) {
  RuleToAdd both = For("Hillcrest", "Lift");
  both.memo = "inspection";
  Add(both);
  const Rule other = Add(For("Hillcrest", "Roof"));
  Ask({});
  At("Birch", [](Company& company) { return desk::DeleteAccount(company, "Lift"); });

  const BookedRequests accepted = AcceptAllByRule();

  ASSERT_THAT(accepted.booked, SizeIs(1));
  EXPECT_EQ(accepted.booked[0].rule, other.id);
}

TEST_F(TheRule, FollowsItsAccountAndItsNameWhenTheyAreRenamed) {
  AddNameAt("Birch", "Hillcrest at Birch");
  RuleToAdd rule = For("Hillcrest", "Lift");
  rule.bookedAs = "Hillcrest at Birch";
  Add(rule);
  Ask({});
  At("Birch", [](Company& company) { return desk::RenameAccount(company, "Lift", "Elevator"); });
  At("Birch", [](Company& company) { return desk::RenameName(company, "Hillcrest at Birch", "Hillcrest Ltd"); });

  const BookedRequests accepted = AcceptAllByRule();

  EXPECT_EQ(Rules().at(0).account.name, "Elevator");
  EXPECT_EQ(Rules().at(0).bookedAs->name, "Hillcrest Ltd");
  ASSERT_THAT(accepted.booked, SizeIs(1)) << accepted.left.at(0).refusal.why;
  EXPECT_EQ(EntryOf(accepted.booked[0].request).account->name, "Elevator");
  EXPECT_EQ(EntryOf(accepted.booked[0].request).memo, "Hillcrest Ltd");
}

TEST_F(TheRule, KeepsItsNameInTheBooks) {
  AddNameAt("Birch", "Hillcrest at Birch");
  RuleToAdd rule = For("Hillcrest", "Lift");
  rule.bookedAs = "Hillcrest at Birch";
  const Rule added = Add(rule);
  const auto remove = [&] {
    return At("Birch", [](Company& company) { return desk::DeleteName(company, "Hillcrest at Birch"); });
  };

  const Refusal refusal = RefusalOf(remove);

  EXPECT_EQ(refusal.remedy, Remedy::kSeeTheRules);
  EXPECT_THAT(refusal.why, HasSubstr("by rule " + std::to_string(added.id)));
  At("Birch", [&](Company& company) { return RemoveRule(company, added.id); });
  EXPECT_EQ(remove().name, "Hillcrest at Birch");
}

TEST_F(TheRule, IsNotForARequestThatTakesAnEarlierOneBack) {
  Add(For("Hillcrest", "Lift"));
  const RecordedTransaction bill = EnterBill({});
  CarryInTurns("Alder", "Birch", 1);
  ASSERT_THAT(AcceptAllByRule().booked, SizeIs(1));
  CarryInTurns("Birch", "Alder", 1);
  At("Alder", [&](Company& company) { return ReverseTransaction(company, {.txnId = bill.txnId}); });
  CarryInTurns("Alder", "Birch", 1);

  const BookedRequests accepted = AcceptAllByRule();

  ASSERT_THAT(accepted.left, SizeIs(1));
  EXPECT_THAT(accepted.left[0].refusal.why, HasSubstr("it takes back the request "));
}

TEST_F(TheRule, BooksARequestAsSoonAsItComesUpToTheAmountThatIsSaid) {
  const Rule rule = Add(For("Hillcrest", "Lift"));
  BookUpTo("240.00");

  const std::string request = Ask({});
  CarryInTurns("Alder", "Birch", 2);

  const InboxRequest booked = Shown(request);
  EXPECT_EQ(booked.state, InboxState::kAccepted);
  EXPECT_EQ(EntryOf(booked).account->name, "Lift");
  EXPECT_EQ(StateAtAlder(request), standalone::TransactionState::kEstablished);
  const AuditedDeed taken = TrailOf("exchange.take").back();
  EXPECT_EQ(taken.firstTxnId, booked.entry->txnId);
  EXPECT_THAT(taken.changes,
              AllOf(Contains(ChangeOf("by rule", std::to_string(rule.id))),
                    Contains(ChangeOf("request " + request, "accepted")), Contains(ChangeOf("account", "Lift"))));
  EXPECT_THAT(TrailOf("inbox.accept"), IsEmpty());
}

TEST_F(TheRule, TellsTogetherWithTheLettersWhatItHasBooked) {
  const Rule rule = Add(For("Hillcrest", "Lift"));
  BookUpTo("240.00");
  EnterBill({});
  Carry("Alder");

  const std::vector<CarriedWith> carried = Carry("Birch");

  ASSERT_THAT(carried.at(0).taken, SizeIs(1));
  EXPECT_THAT(carried[0].taken[0].done,
              ElementsAre(AllOf(HasSubstr("is booked here by rule " + std::to_string(rule.id) + ", as journal entry 1"),
                                testing::Not(HasSubstr("waits in the inbox")))));
}

TEST_F(TheRule, LeavesARequestOverMoreThanIsSaidToAPerson) {
  Add(For("Hillcrest", "Lift"));
  BookUpTo("239.99");

  EXPECT_EQ(Shown(Ask({})).state, InboxState::kNew);
}

TEST_F(TheRule, LeavesARequestToAPersonWhereNothingElseIsSaid) {
  Add(For("Hillcrest", "Lift"));
  const std::string before = Ask({});
  BookUpTo("500");
  BookUpTo({});

  EXPECT_EQ(Shown(Ask({})).state, InboxState::kNew);
  EXPECT_EQ(Shown(before).state, InboxState::kNew);
}

TEST_F(TheRule, LeavesACreditToAPerson) {
  Add(For("Hillcrest", "Lift"));
  BookUpTo("500");

  EXPECT_EQ(Shown(Ask({.amount = "-480.00"})).state, InboxState::kNew);
}

TEST_F(TheRule, ThatIsMissingLeavesARequestToAPersonWhateverTheAmount) {
  Add(For("Stone", "Lift"));
  BookUpTo("500");

  const InboxRequest request = Shown(Ask({}));

  EXPECT_EQ(request.state, InboxState::kNew);
  EXPECT_EQ(request.mark, "");
}

TEST_F(TheRule, LeavesWhatTheModuleRefusesToAPersonWithTheReason) {
  Add({.partner = Partner("Alder"), .name = "Elsewhere:Hillcrest", .hint = {}, .memo = {}, .expense = "Lift"});
  AddNameAt("Alder", "Elsewhere");
  AddNameAt("Alder", "Elsewhere:Hillcrest");
  BookUpTo("500");

  const std::string request = Ask({.name = "Elsewhere:Hillcrest"});

  const InboxRequest left = Shown(request);
  EXPECT_EQ(left.state, InboxState::kNew);
  EXPECT_THAT(left.mark, HasSubstr("it could not be booked by a rule: "));
  EXPECT_THAT(TrailOf("exchange.take").back().changes, Contains(Field(&AuditedChange::field, "not booked by a rule")));
  EXPECT_THAT(At("Birch", [](Company& company) { return ListNames(company); }), IsEmpty());
  AddNameAt("Birch", "Elsewhere");
  EXPECT_THAT(At("Birch",
                 [&](Company& company) {
                   return AcceptRequests(company, Only(request),
                                         {.expense = {}, .name = {}, .date = {}, .byRule = true});
                 })
                  .booked,
              SizeIs(1));
}

TEST_F(TheRule, BooksUpToAnAmountOfTheCompany) {
  for (const char* const amount : {"0", "-5", "1.234"}) {
    EXPECT_THROW(BookUpTo(amount), standalone::InvalidInput) << amount;
  }
  EXPECT_EQ(Seen("Birch", "Alder").bookedUpTo, std::nullopt);

  BookUpTo("500");

  EXPECT_EQ(Seen("Birch", "Alder").bookedUpTo->minorUnits, 50000);
  EXPECT_THAT(TrailOf("partner.auto"), SizeIs(1));
  EXPECT_THAT(TrailOf("partner.auto")[0].changes, ElementsAre(ChangeOf("booked by rule up to", "500.00")));
}

TEST_F(TheRule, FitsNothingOnceThePairingIsEnded) {
  Add(For("Hillcrest", "Lift"));

  At("Birch", [](Company& company) { return RemovePairing(company, "Alder"); });

  ASSERT_THAT(Rules(), SizeIs(1));
  EXPECT_THAT(Rules()[0].unfit, HasSubstr("is ended"));
}

TEST_F(TheRule, IsAddedOnceForTheSameRequests) {
  const Rule first = Add(For("Hillcrest", "Lift"));

  const Refusal refusal = RefusalOf([&] { Add(For("HILLCREST", "Roof")); });

  EXPECT_EQ(refusal.remedy, Remedy::kSeeTheRules);
  EXPECT_EQ(refusal.why, "there is a rule for the same requests, rule " + std::to_string(first.id) +
                             ": name \"Hillcrest\" to \"Lift\"");
  EXPECT_THAT(Rules(), SizeIs(1));
}

TEST_F(TheRule, NeedsAnAccountThatTakesTheExpense) {
  for (const char* const paired : {"Due to Alder", "Due from Alder"}) {
    EXPECT_EQ(RefusalOf([&] { Add(For("Hillcrest", paired)); }).remedy, Remedy::kNameAnExpenseAccount) << paired;
  }
  EXPECT_THROW(Add(For("Hillcrest", "Elevator")), standalone::InvalidInput);
}

TEST_F(TheRule, SaysSomethingOfTheRequestsThatItIsFor) {
  const auto add = [&](std::optional<std::string> name) {
    Add({.partner = Partner("Alder"), .name = std::move(name), .hint = {}, .memo = {}, .expense = "Lift"});
  };

  EXPECT_THAT(MessageOf<standalone::InvalidInput>([&] { add(std::nullopt); }),
              HasSubstr("says of no request what it is like"));
  EXPECT_THROW(add("  "), standalone::InvalidInput);
  EXPECT_THROW(add(std::string(501, 'x')), standalone::InvalidInput);
  EXPECT_THAT(Rules(), IsEmpty());
}

TEST_F(TheRule, IsOfAPartner) {
  const auto add = [&] {
    RuleToAdd rule = For("Hillcrest", "Lift");
    rule.partner = Partner("Cedar");
    Add(rule);
  };

  EXPECT_EQ(RefusalOf(add).remedy, Remedy::kSeePartners);
}

TEST_F(TheRule, IsGoneOnceItIsRemoved) {
  const Rule rule = Add(For("Hillcrest", "Lift"));
  Ask({});

  const Rule removed = At("Birch", [&](Company& company) { return RemoveRule(company, rule.id); });

  EXPECT_EQ(removed.name, "Hillcrest");
  EXPECT_THAT(Rules(), IsEmpty());
  EXPECT_EQ(AcceptAllByRule().left.at(0).refusal.why, "no rule fits it");
  const auto removeAgain = [&] {
    At("Birch", [&](Company& company) { return RemoveRule(company, rule.id); });
  };
  EXPECT_EQ(RefusalOf(removeAgain).remedy, Remedy::kSeeTheRules);
}

TEST_F(TheRule, StandsInTheAuditTrailFromWhenItIsAddedUntilItIsRemoved) {
  const Rule rule = Add(For("Hillcrest", "Lift"));
  At("Birch", [&](Company& company) { return RemoveRule(company, rule.id); });

  const std::vector<AuditedDeed> trail = TrailOf("rules");

  ASSERT_THAT(trail, SizeIs(2));
  EXPECT_EQ(trail[0].action, "rules.add");
  EXPECT_EQ(trail[0].subject, "rule " + std::to_string(rule.id));
  EXPECT_THAT(trail[0].changes, AllOf(Contains(ChangeOf("partner", "Alder")), Contains(ChangeOf("name", "Hillcrest")),
                                      Contains(ChangeOf("account", "Lift"))));
  EXPECT_EQ(trail[1].action, "rules.remove");
}

TEST_F(TheRule, IsKeptByWhoeverMayBookRequests) {
  const Rule rule = Add(For("Hillcrest", "Lift"));
  At("Birch", [](Company& company) {
    for (const char* const right : {"journal:view", "accounts:create"}) {
      User user{.name = right, .administrator = false, .accountant = false, .rights = {}};
      user.rights.emplace_back(right);
      desk::AddUser(company, user);
    }
  });
  const auto add = [&] {
    At("Birch", [](Company& company) { return AddRule(company, For("Stone", "Lift")); }, "journal:view");
  };
  const auto remove = [&] {
    At("Birch", [&](Company& company) { return RemoveRule(company, rule.id); }, "journal:view");
  };
  const auto list = [&](const std::string& user) {
    return At("Birch", [](Company& company) { return ListRules(company); }, user);
  };

  EXPECT_EQ(RefusalOf(add).remedy, Remedy::kAskForTheRight);
  EXPECT_EQ(RefusalOf(remove).remedy, Remedy::kAskForTheRight);
  EXPECT_THAT(list("journal:view"), SizeIs(1));
  EXPECT_EQ(RefusalOf([&] { list("accounts:create"); }).remedy, Remedy::kAskForTheRight);
}

}  // namespace
}  // namespace desk
