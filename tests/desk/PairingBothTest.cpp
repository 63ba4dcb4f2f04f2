#include <string>

#include "standalone/desk/PairingBoth.h"
#include "tests/desk/PairedCompanies.h"

namespace desk {
namespace {

using standalone::PairingState;
using standalone::RelationState;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class PairingBoth : public PairedCompanies {
 protected:
  CompaniesToPair Both(const std::string& one, const std::string& other) const {
    return {.one = Place(one, other), .other = Place(other, one), .folder = Folder()};
  }
  CompanyToPair Place(const std::string& name, const std::string& partner) const {
    return {.file = FileOf(name), .options = {}, .accounts = AccountsFor(partner)};
  }

  // Each company calls the other one as that calls itself.
  PairedPartner SeenBy(const std::string& by, const std::string& whom) { return Seen(by, whom + " Company"); }
  void ExpectPaired() {
    for (const auto& [by, whom] : {std::pair("Alder", "Birch"), std::pair("Birch", "Alder")}) {
      const std::vector<PairedPartner> partners = At(by, [](Company& company) { return ListPairedPartners(company); });
      ASSERT_THAT(partners, SizeIs(1)) << by;
      EXPECT_EQ(partners[0].state, PairingState::kEstablished) << by;
      EXPECT_FALSE(partners[0].hasLetterToSend) << by;
      EXPECT_EQ(partners[0].realm, RealmOf(whom)) << by;
      EXPECT_EQ(partners[0].folder, Folder()) << by;
      ASSERT_THAT(RelationsOf(by), SizeIs(1)) << by;
      EXPECT_EQ(RelationsOf(by)[0].state, RelationState::kEstablished) << by;
    }
  }
  // As by hand, under the names that the companies give themselves.
  std::string InviteByHand(const std::string& who, const std::string& whom) {
    return At(who, [&](Company& company) {
      return InvitePartner(
                 company,
                 {.partner = standalone::PartnerName(whom + " Company"), .accounts = AccountsFor(whom), .folder = {}})
          .text;
    });
  }
  void AcceptByHand(const std::string& who, const std::string& whose, const std::string& invitation) {
    At(who, [&](Company& company) {
      AcceptInvitation(company,
                       {.invitation = invitation, .partner = {}, .accounts = AccountsFor(whose), .folder = {}});
    });
  }
  void RelateByHand(const std::string& who, const std::string& whom, const std::string& realm) {
    At(who, [&](Company& company) {
      CreateRelation(company, {.realm = standalone::RealmId(realm),
                               .partner = standalone::PartnerName(whom),
                               .type = 0,
                               .state = RelationState::kEstablished,
                               .accounts = AccountsFor(whom)});
    });
  }
  void HaveRealm(const std::string& who, const std::string& realm) {
    At(who, [&](Company& company) { RememberRealm(company, standalone::RealmId(realm)); });
  }

  // What both are, byte by byte, and what lies beside them.
  std::string All() const {
    std::string all;
    for (const char* name : {"Alder", "Birch"}) {
      all += Books(name) + (std::filesystem::exists(FileOf(name).string() + ".identity") ? "identity" : "none");
    }
    return all;
  }
};

TEST_F(PairingBoth, EstablishesTheRelationOnBothSidesInOneGo) {
  const PairedBoth paired = PairBoth(Both("Alder", "Birch"));

  ExpectPaired();
  EXPECT_EQ(paired.one.name, "Alder Company");
  EXPECT_EQ(paired.one.partner.name, "Birch Company");
  EXPECT_EQ(paired.one.partner.state, PairingState::kEstablished);
  EXPECT_EQ(paired.one.newRealm, RealmOf("Alder"));
  EXPECT_EQ(paired.other.newRealm, RealmOf("Birch"));
  EXPECT_EQ(paired.other.partner.fingerprint, paired.one.fingerprint);
  EXPECT_EQ(paired.one.partner.fingerprint, paired.other.fingerprint);
  EXPECT_NE(paired.one.fingerprint, paired.other.fingerprint);
}

TEST_F(PairingBoth, KeepsTheRealmsThatTheyHave) {
  HaveRealm("Alder", "5120774003618");

  const PairedBoth paired = PairBoth(Both("Alder", "Birch"));

  EXPECT_EQ(paired.one.newRealm, std::nullopt);
  EXPECT_EQ(SeenBy("Birch", "Alder").realm, "5120774003618");
}

TEST_F(PairingBoth, LeavesNothingToBeCarriedByTheFolder) {
  PairBoth(Both("Alder", "Birch"));

  CarryInTurns("Alder", "Birch", 2);

  ExpectPaired();
}

TEST_F(PairingBoth, IsToldInTheAuditTrailsLikeOneStepAfterTheOther) {
  PairBoth(Both("Alder", "Birch"));

  const auto actions = [this](const std::string& name) {
    std::vector<std::string> found;
    At(name, [&](Company& company) {
      for (const AuditedDeed& deed : ListAudit(
               company, {.user = {}, .action = "partner", .period = Period(NullDate(), NullDate()), .txnId = {}})) {
        found.push_back(deed.action);
      }
    });
    return found;
  };
  EXPECT_THAT(actions("Alder"), ElementsAre("partner.invite", "partner.confirm"));
  EXPECT_THAT(actions("Birch"), ElementsAre("partner.accept"));
}

TEST_F(PairingBoth, IsRefusedOnceBothArePaired) {
  PairBoth(Both("Alder", "Birch"));
  const std::string before = All();

  EXPECT_THAT(RefusalOf([&] { PairBoth(Both("Alder", "Birch")); }).why,
              AllOf(HasSubstr("Alder.company"), HasSubstr("Birch.company are paired already")));
  EXPECT_THAT(RefusalOf([&] { PairBoth(Both("Birch", "Alder")); }).why, HasSubstr("are paired already"));

  EXPECT_EQ(All(), before);
}

TEST_F(PairingBoth, IsOfTwoCompanies) {
  EXPECT_THROW(PairBoth(Both("Alder", "Alder")), standalone::InvalidInput);
}

TEST_F(PairingBoth, LeavesNothingBehindAtTheOneWhenTheOtherRefuses) {
  Make("Dogwood", "EUR");
  At("Birch", [](Company& company) {
    AddUser(company, {.name = "Kim", .administrator = false, .accountant = false, .rights = {}});
  });
  CompaniesToPair withAnotherAccount = Both("Alder", "Birch");
  withAnotherAccount.other.accounts.dueTo = "Due to Aldor";
  CompaniesToPair withoutAccounts = Both("Alder", "Birch");
  withoutAccounts.other.accounts = {};
  CompaniesToPair withoutRight = Both("Alder", "Birch");
  withoutRight.other.options.user = "Kim";
  CompaniesToPair withOtherCurrency = Both("Alder", "Dogwood");
  withOtherCurrency.one.accounts = AccountsFor("Birch");
  const std::string before = All();

  EXPECT_THAT([&] { PairBoth(withAnotherAccount); },
              testing::ThrowsMessage<standalone::InvalidInput>(
                  AllOf(HasSubstr("Birch.company: "), HasSubstr("There is no account \"Due to Aldor\""))));
  EXPECT_THAT(RefusalOf([&] { PairBoth(withoutAccounts); }).why, HasSubstr("Birch.company: a pairing needs"));
  const Refusal refusal = RefusalOf([&] { PairBoth(withoutRight); });
  EXPECT_EQ(refusal.status, MEStatusPermissionDenied);
  EXPECT_THAT(refusal.why, HasSubstr("Birch.company: "));
  EXPECT_THAT(RefusalOf([&] { PairBoth(withOtherCurrency); }).why,
              AllOf(HasSubstr("Alder.company: "), HasSubstr("its books are in EUR")));

  EXPECT_EQ(All(), before);
}

TEST_F(PairingBoth, LeavesNothingBehindWhenTheOtherHasPromisedItsAccounts) {
  Invite("Birch", "Alder");
  const std::string before = All();

  CompaniesToPair both = Both("Alder", "Birch");
  EXPECT_THAT(RefusalOf([&] { PairBoth(both); }).why, HasSubstr("Birch.company: "));

  EXPECT_EQ(All(), before);
}

TEST_F(PairingBoth, NeedsTheFeatureOfTheOtherOneToo) {
  standalone::WriteFile(folder_ / "Birch.company.remote.toml", "[switches.MultiEntityFeature]\nME_FOR_ALL = false\n");
  const std::string before = All();

  const Refusal refusal = RefusalOf([&] { PairBoth(Both("Alder", "Birch")); });

  EXPECT_EQ(refusal.status, MEStatusFeatureDisabled);
  EXPECT_THAT(refusal.why, HasSubstr("Birch.company: "));
  EXPECT_EQ(All(), before);
}

TEST_F(PairingBoth, IsRefusedWhereTheOneIsBlocked) {
  PairBoth(Both("Alder", "Birch"));
  At("Birch", [](Company& company) { BlockPartner(company, "Alder Company"); });

  EXPECT_THAT(RefusalOf([&] { PairBoth(Both("Alder", "Birch")); }).why,
              AllOf(HasSubstr("Birch.company: "), HasSubstr("is blocked")));
}

TEST_F(PairingBoth, TakesUpRelationsThatWereMadeByHandWhenThatIsSaid) {
  HaveRealm("Alder", "1001");
  HaveRealm("Birch", "2002");
  RelateByHand("Alder", "Birch", "2002");
  RelateByHand("Birch", "Alder", "1001");
  CompaniesToPair both = Both("Alder", "Birch");
  const std::string before = All();
  EXPECT_EQ(RefusalOf([&] { PairBoth(both); }).remedy, Remedy::kUseTheExistingRelation);
  EXPECT_EQ(All(), before);
  both.useExistingRelations = true;
  EXPECT_EQ(RefusalOf([&] { PairBoth(both); }).remedy, Remedy::kLeaveOutTheAccounts);
  EXPECT_EQ(All(), before);
  both.one.accounts = {};
  both.other.accounts = {};

  PairBoth(both);

  ExpectPaired();
  EXPECT_EQ(SeenBy("Alder", "Birch").dueTo.value().name, "Due to Birch");
}

// How far both had come by hand, or by a run that was broken off.
enum class Begun { kInvited, kAccepted, kAnswered, kConfirmed };

class PairingBothThatWasBegun : public PairingBoth, public testing::WithParamInterface<std::tuple<Begun, bool>> {
 protected:
  // By Alder.
  void Begin(Begun how) {
    const std::string invitation = InviteByHand("Alder", "Birch");
    if (how == Begun::kInvited) return;
    AcceptByHand("Birch", "Alder", invitation);
    if (how == Begun::kAccepted) return;
    SendFrom("Birch", "Alder");
    if (how == Begun::kAnswered) return;
    Confirm("Alder", "Birch Company");
  }
  void SendFrom(const std::string& from, const std::string& to) {
    const std::string text = At(from, [&](Company& company) { return ExportLetters(company, to + " Company"); });
    At(to, [&](Company& company) { ImportLetters(company, text); });
  }
};

TEST_P(PairingBothThatWasBegun, IsGoneOnWith) {
  const auto& [how, isTheOtherWayRound] = GetParam();
  Begin(how);

  PairBoth(isTheOtherWayRound ? Both("Birch", "Alder") : Both("Alder", "Birch"));

  ExpectPaired();
}

TEST_P(PairingBothThatWasBegun, KeepsItsAccounts) {
  const auto& [how, isTheOtherWayRound] = GetParam();
  Begin(how);
  CompaniesToPair both = isTheOtherWayRound ? Both("Birch", "Alder") : Both("Alder", "Birch");
  (isTheOtherWayRound ? both.other : both.one).accounts = AccountsFor("Cedar");
  const std::string before = All();

  const Refusal refusal = RefusalOf([&] { PairBoth(both); });

  EXPECT_EQ(refusal.remedy, Remedy::kRemoveThePairingFirst);
  EXPECT_THAT(refusal.why, HasSubstr("Alder.company: "));
  EXPECT_EQ(All(), before);
}

INSTANTIATE_TEST_SUITE_P(, PairingBothThatWasBegun,
                         testing::Combine(testing::Values(Begun::kInvited, Begun::kAccepted, Begun::kAnswered,
                                                          Begun::kConfirmed),
                                          testing::Bool()));

TEST_F(PairingBoth, IsNotWithWhomElseAcceptedTheInvitation) {
  const std::string invitation = InviteByHand("Alder", "Birch");
  AcceptByHand("Cedar", "Alder", invitation);
  const std::string text = At("Cedar", [](Company& company) { return ExportLetters(company, "Alder Company"); });
  At("Alder", [&](Company& company) { ImportLetters(company, text); });

  EXPECT_THAT(RefusalOf([&] { PairBoth(Both("Alder", "Birch")); }).why,
              AllOf(HasSubstr("Alder.company: there is a pairing with \"Birch Company\" already, which is answered")));

  EXPECT_THAT(At("Birch", [](Company& company) { return ListPairedPartners(company); }), IsEmpty());
}

}  // namespace
}  // namespace desk
