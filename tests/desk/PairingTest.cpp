#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "standalone/desk/Exchange.h"
#include "standalone/desk/Identity.h"
#include "standalone/desk/Pairing.h"
#include "tests/desk/PairedCompanies.h"

namespace desk {
namespace {

using standalone::PairingState;
using standalone::PartnerName;
using standalone::RelationState;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

class ThePairing : public PairedCompanies {
 protected:
  void ExpectEstablished() {
    EXPECT_EQ(Seen("Alder", "Birch").state, PairingState::kEstablished);
    EXPECT_EQ(Seen("Birch", "Alder").state, PairingState::kEstablished);
    ASSERT_THAT(RelationsOf("Alder"), SizeIs(1));
    ASSERT_THAT(RelationsOf("Birch"), SizeIs(1));
    EXPECT_EQ(RelationsOf("Alder")[0].state, RelationState::kEstablished);
    EXPECT_EQ(RelationsOf("Birch")[0].state, RelationState::kEstablished);
    EXPECT_EQ(RelationsOf("Alder")[0].realm, RealmOf("Birch"));
    EXPECT_EQ(RelationsOf("Birch")[0].realm, RealmOf("Alder"));
  }
};

TEST_F(ThePairing, EstablishesTheRelationOnBothSidesByMail) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));
  EXPECT_EQ(RelationsOf("Birch")[0].state, RelationState::kPending);
  EXPECT_THAT(RelationsOf("Alder"), IsEmpty());
  SendByMail("Birch", "Alder");
  EXPECT_EQ(Seen("Alder", "Birch").state, PairingState::kAnswered);
  EXPECT_THAT(RelationsOf("Alder"), IsEmpty());

  Confirm("Alder", "Birch");
  SendByMail("Alder", "Birch");

  ExpectEstablished();
}

TEST_F(ThePairing, EstablishesTheRelationOnBothSidesOverAFolderWithOneRunOfEachForEachStep) {
  PairOverTheFolder();

  ExpectEstablished();
}

TEST_F(ThePairing, LeavesAtMostOneLetterOfEachInTheFolderHoweverOftenItIsCarried) {
  PairOverTheFolder();

  for (int run = 0; run < 5; ++run) {
    Carry("Alder");
    EXPECT_THAT(Lying(), SizeIs(2));
  }
  CarryInTurns("Birch", "Alder", 5);
  EXPECT_THAT(Lying(), SizeIs(2));
}

TEST_F(ThePairing, PutsNothingAnewAsLongAsTheSameLetterLiesThere) {
  PairOverTheFolder();
  CarryInTurns("Alder", "Birch", 3);
  Carry("Alder");
  const std::vector<std::filesystem::path> lying = Lying();

  EXPECT_EQ(Carry("Alder").at(0).put, 0U);

  EXPECT_EQ(Lying(), lying);
}

TEST_F(ThePairing, GivesEachCompanyARealmOfItsOwnThatItKeeps) {
  PairOverTheFolder();

  const std::string alder = RealmOf("Alder");
  EXPECT_THAT(alder, SizeIs(16));
  EXPECT_NE(alder, RealmOf("Birch"));
  Invite("Alder", "Cedar");
  EXPECT_EQ(RealmOf("Alder"), alder);
}

TEST_F(ThePairing, ShowsEachSideTheFingerprintThatTheOtherOneHas) {
  const std::string invitation = Invite("Alder", "Birch");
  const AcceptedInvitation accepted = Accept("Birch", "Alder", invitation);
  SendByMail("Birch", "Alder");

  EXPECT_EQ(Seen("Alder", "Birch").fingerprint, accepted.fingerprint);
  EXPECT_THAT(accepted.fingerprint, SizeIs(std::string_view("12345 12345 12345 12345 12345 12345").size()));
}

TEST_F(ThePairing, IsConfirmedByTheRightFingerprintOnly) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));
  SendByMail("Birch", "Alder");

  const Refusal refusal = At("Alder", [](Company& company) {
    return RefusalOf(
        [&] { ConfirmPartner(company, {.partner = "Birch", .fingerprint = "00000 11111 22222 33333 44444 55555"}); });
  });

  EXPECT_EQ(refusal.remedy, Remedy::kCompareFingerprints);
  EXPECT_EQ(Seen("Alder", "Birch").state, PairingState::kAnswered);
  EXPECT_THAT(RelationsOf("Alder"), IsEmpty());
}

TEST_F(ThePairing, IsWithWhoAcceptedFirstAndTellsOfOthers) {
  const std::string invitation = Invite("Alder", "Birch");
  Accept("Birch", "Alder", invitation);
  Accept("Cedar", "Alder", invitation);
  SendByMail("Birch", "Alder");

  const std::string text = At("Cedar", [](Company& company) { return ExportLetters(company, "Alder"); });
  EXPECT_THROW(At("Alder", [&](Company& company) { return ImportLetters(company, text); }), standalone::InvalidInput);
  Confirm("Alder", "Birch");
  SendByMail("Alder", "Birch");

  ExpectEstablished();
  EXPECT_EQ(Seen("Cedar", "Alder").state, PairingState::kAccepted);
}

class APairingOverABadFolder : public ThePairing, public testing::WithParamInterface<unsigned int> {
 protected:
  // Some letters are lost, some come twice, later or broken.
  void Meddle() {
    for (const std::filesystem::path& file : Lying()) {
      const std::string bytes = standalone::ReadFile(file);
      switch (Below(5)) {
        case 0:
          std::filesystem::remove(file);
          break;
        case 1:
          seen_.emplace_back(file, bytes);
          break;
        case 2:
          standalone::WriteFile(file, WithAByteChanged(bytes));
          break;
        default:
          break;
      }
    }
    if (!seen_.empty() && Below(2) == 0) {
      const auto& [file, bytes] = seen_.at(Below(seen_.size()));
      standalone::WriteFile(file, bytes);
    }
  }
  std::string WithAByteChanged(std::string bytes) {
    bytes.at(Below(bytes.size())) ^= 1;
    return bytes;
  }
  std::size_t Below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

  std::mt19937 random_{GetParam()};
  std::vector<std::pair<std::filesystem::path, std::string>> seen_;
};

TEST_P(APairingOverABadFolder, ComesAboutAllTheSame) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));
  for (int step = 0; step < 12; ++step) {
    Carry(Below(2) == 0 ? "Alder" : "Birch");
    Meddle();
    if (Seen("Alder", "Birch").state == PairingState::kAnswered && Below(2) == 0) Confirm("Alder", "Birch");
  }
  CarryInTurns("Birch", "Alder", 2);
  if (Seen("Alder", "Birch").state == PairingState::kAnswered) Confirm("Alder", "Birch");
  CarryInTurns("Alder", "Birch", 2);

  ExpectEstablished();
  EXPECT_FALSE(Seen("Alder", "Birch").hasLetterToSend);
  EXPECT_FALSE(Seen("Birch", "Alder").hasLetterToSend);
}

INSTANTIATE_TEST_SUITE_P(, APairingOverABadFolder, testing::Range(1U, 13U));

TEST_F(ThePairing, TakesNoLetterOfWhichAByteWasChanged) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));
  Carry("Birch");
  const std::filesystem::path letter = Lying().at(0);
  std::string bytes = standalone::ReadFile(letter);
  bytes[bytes.size() / 2] ^= 1;
  standalone::WriteFile(letter, bytes);

  const std::vector<CarriedWith> carried = Carry("Alder");

  ASSERT_THAT(carried, SizeIs(1));
  EXPECT_THAT(carried[0].setAside, SizeIs(1));
  EXPECT_THAT(carried[0].taken, IsEmpty());
  EXPECT_EQ(Seen("Alder", "Birch").state, PairingState::kInvited);
  CarryInTurns("Birch", "Alder", 1);
  EXPECT_EQ(Seen("Alder", "Birch").state, PairingState::kAnswered);
}

TEST_F(ThePairing, LeavesTheLettersOfOthersInTheFolder) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));
  Accept("Alder", "Cedar", Invite("Cedar", "Alder"));
  Carry("Birch");

  const std::vector<CarriedWith> carried = Carry("Cedar");

  EXPECT_THAT(carried.at(0).setAside, IsEmpty());
  EXPECT_THAT(Lying(), SizeIs(1));
}

TEST_F(ThePairing, GoesOnAfterTheInvitersBooksWereRestored) {
  const std::string invitation = Invite("Alder", "Birch");
  const std::string books = Books("Alder");
  Accept("Birch", "Alder", invitation);
  CarryInTurns("Birch", "Alder", 1);
  Confirm("Alder", "Birch");
  CarryInTurns("Alder", "Birch", 2);

  Restore("Alder", books);
  CarryInTurns("Birch", "Alder", 2);

  ExpectEstablished();
}

TEST_F(ThePairing, IsAcceptedOnceMoreAfterTheAcceptersBooksWereRestored) {
  const std::string invitation = Invite("Alder", "Birch");
  const std::string books = Books("Birch");
  Accept("Birch", "Alder", invitation);
  CarryInTurns("Birch", "Alder", 1);
  Confirm("Alder", "Birch");
  CarryInTurns("Alder", "Birch", 1);
  const std::string realm = RealmOf("Birch");

  Restore("Birch", books);
  Accept("Birch", "Alder", invitation);
  CarryInTurns("Birch", "Alder", 2);

  EXPECT_EQ(RealmOf("Birch"), realm);
  ExpectEstablished();
}

TEST_F(ThePairing, GivesBackARelationThatWasThereBeforeAsItWas) {
  const std::string invitation = Invite("Alder", "Birch");
  const std::string alder = RealmOf("Alder");
  At("Birch", [&](Company& company) {
    CreateRelation(company, {.realm = standalone::RealmId(alder),
                             .partner = PartnerName("Alder"),
                             .type = 0,
                             .state = RelationState::kEstablished,
                             .accounts = AccountsFor("Alder")});
    AcceptInvitation(company, {.invitation = invitation,
                               .partner = PartnerName("Alder"),
                               .accounts = {},
                               .folder = {},
                               .useExistingRelation = true});
  });
  EXPECT_EQ(RelationsOf("Birch").at(0).state, RelationState::kPending);

  At("Birch", [](Company& company) { RemovePairing(company, "Alder"); });

  EXPECT_EQ(RelationsOf("Birch").at(0).state, RelationState::kEstablished);
}

TEST_F(ThePairing, KeepsNothingOfWhoIsNotThePartner) {
  const std::string invitation = Invite("Alder", "Birch");
  Make("Dogwood", "USD");
  Accept("Dogwood", "Alder", Invite("Alder", "Cedar"));
  CarryInTurns("Dogwood", "Alder", 1);
  At("Alder", [](Company& company) { SetPartnerFolder(company, "Birch", {}); });
  const std::string taken = RealmOf("Dogwood");
  At("Cedar", [&](Company& company) { RememberRealm(company, standalone::RealmId(taken)); });
  Accept("Cedar", "Alder", invitation);
  SendByMail("Cedar", "Alder");
  EXPECT_EQ(Seen("Alder", "Birch").state, PairingState::kInvited);
  EXPECT_THAT(Seen("Alder", "Birch").outstanding, IsEmpty());
  At("Alder", [this](Company& company) { SetPartnerFolder(company, "Birch", Folder()); });

  Accept("Birch", "Alder", invitation);
  CarryInTurns("Birch", "Alder", 1);
  Confirm("Alder", "Birch");
  CarryInTurns("Alder", "Birch", 3);

  EXPECT_EQ(Seen("Birch", "Alder").state, PairingState::kEstablished);
  EXPECT_FALSE(Seen("Alder", "Birch").hasLetterToSend);
  EXPECT_FALSE(Seen("Birch", "Alder").hasLetterToSend);
}

TEST_F(ThePairing, IsNamedByWhatOnePartnerIsCalledOnly) {
  Invite("Alder", "Birch");
  At("Alder", [](Company& company) {
    EXPECT_EQ(RefusalOf([&] { RemovePairing(company, ""); }).remedy, Remedy::kSeePartners);
    EXPECT_EQ(RefusalOf([&] { RemovePairing(company, "1"); }).remedy, Remedy::kSeePartners);
  });
}

TEST_F(ThePairing, IsNamedByThePartnerInAnyCaseAndSuggestedWhereItIsMistyped) {
  Invite("Alder", "Birch");
  At("Alder", [](Company& company) {
    EXPECT_EQ(ShowPairedPartner(company, "bIRCH").name, "Birch");
    EXPECT_THAT(RefusalOf([&] { ShowPairedPartner(company, "Brich"); }).why, HasSubstr("Did you mean \"Birch\"?"));
  });
}

TEST_F(ThePairing, IsNamedLetterByLetterWhereTwoAreCalledTheSameButForTheCase) {
  Invite("Alder", "Birch");
  At("Alder", [](Company& company) {
    InvitePartner(company, {.partner = standalone::PartnerName("BIRCH"),
                            .accounts = AccountsFor("Cedar"),
                            .folder = std::filesystem::path()});

    EXPECT_EQ(ShowPairedPartner(company, "BIRCH").name, "BIRCH");
    EXPECT_EQ(ShowPairedPartner(company, "Birch").name, "Birch");
    EXPECT_EQ(RefusalOf([&] { ShowPairedPartner(company, "birch"); }).remedy, Remedy::kSeePartners);
  });
}

TEST_F(ThePairing, GoesOnBesideAFileThatCannotBeSetAside) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));
  Carry("Birch");
  const std::string letter = Lying().at(0).filename().string();
  standalone::WriteFile(
      Folder() / (letter.substr(0, letter.find('-')) + "-00000000-0000-7000-8000-000000000000.envelope"), "7:nothing,");
  standalone::WriteFile(Folder() / "set-aside", "in the way");

  const std::vector<CarriedWith> carried = Carry("Alder");

  EXPECT_THAT(carried.at(0).setAside, SizeIs(1));
  EXPECT_EQ(Seen("Alder", "Birch").state, PairingState::kAnswered);
}

TEST_F(ThePairing, LeavesTheLettersOfWhoIsBlockedWhereTheyAre) {
  PairOverTheFolder();
  CarryInTurns("Alder", "Birch", 2);
  At("Alder", [](Company& company) { BlockPartner(company, "Birch"); });
  const std::vector<std::filesystem::path> lying = Lying();

  CarryInTurns("Birch", "Alder", 3);

  EXPECT_FALSE(std::filesystem::exists(Folder() / "set-aside"));
  EXPECT_EQ(Lying(), lying);
}

TEST_F(ThePairing, KeepsAReservedAccount) {
  Invite("Alder", "Birch");

  At("Alder", [](Company& company) {
    EXPECT_EQ(RefusalOf([&] { DeleteAccount(company, "Due to Birch"); }).remedy, Remedy::kChooseFreePartnerOrAccounts);
  });
}

TEST_F(ThePairing, TakesNothingFromWhoIsBlocked) {
  PairOverTheFolder();
  At("Alder", [](Company& company) { BlockPartner(company, "Birch"); });
  At("Birch", [](Company& company) { SetPartnerFolder(company, "Alder", {}); });
  const std::string text = At("Birch", [](Company& company) { return ExportLetters(company, "Alder"); });

  EXPECT_THROW(At("Alder", [&](Company& company) { return ImportLetters(company, text); }), standalone::InvalidInput);
  EXPECT_EQ(Carry("Alder").at(0).put, 0U);

  At("Alder", [](Company& company) { UnblockPartner(company, "Birch"); });
  EXPECT_THAT(At("Alder", [&](Company& company) { return ImportLetters(company, text); }), SizeIs(1));
}

TEST_F(ThePairing, EndsWithAPendingRelationThatIsRemoved) {
  Accept("Birch", "Alder", Invite("Alder", "Birch"));

  At("Birch", [](Company& company) { RemovePairing(company, "Alder"); });

  EXPECT_THAT(RelationsOf("Birch"), IsEmpty());
  EXPECT_THAT(At("Birch", [](Company& company) { return ListPairedPartners(company); }), IsEmpty());
  EXPECT_THAT(At("Birch", [](Company& company) { return ListPairedPartners(company, true); }), SizeIs(1));
}

TEST_F(ThePairing, LeavesNothingBehindWhenItIsRefused) {
  const std::string own = Invite("Alder", "Birch");
  Make("Dogwood", "EUR");
  const std::string inEuro = Invite("Dogwood", "Alder");
  const std::string birchs = Invite("Birch", "Cedar");
  const auto accept = [&](const std::string& invitation, const RelationAccounts& accounts) {
    At("Alder", [&](Company& company) {
      AcceptInvitation(company, {.invitation = invitation, .partner = {}, .accounts = accounts, .folder = {}});
    });
  };
  const auto invite = [&](const std::string& whom, const RelationAccounts& accounts) {
    At("Alder", [&](Company& company) {
      InvitePartner(company, {.partner = PartnerName(whom), .accounts = accounts, .folder = {}});
    });
  };
  const std::string before = Books("Alder");

  EXPECT_THAT(RefusalOf([&] { accept(own, AccountsFor("Cedar")); }).why, HasSubstr("this company's own"));
  EXPECT_THAT(RefusalOf([&] { accept(inEuro, AccountsFor("Cedar")); }).why, HasSubstr("its books are in EUR"));
  EXPECT_THAT(RefusalOf([&] { accept(birchs, AccountsFor("Birch")); }).why, HasSubstr("reserved by an invitation"));
  EXPECT_THAT(RefusalOf([&] { accept(birchs, {}); }).why, HasSubstr("needs a due-from and a due-to account"));
  EXPECT_THAT(RefusalOf([&] { invite("Birch", AccountsFor("Cedar")); }).why, HasSubstr("there is a pairing"));
  EXPECT_THAT(RefusalOf([&] { invite("Cedar", AccountsFor("Birch")); }).why, HasSubstr("reserved by an invitation"));
  EXPECT_THROW(accept("no invitation", AccountsFor("Cedar")), standalone::InvalidInput);

  EXPECT_EQ(Books("Alder"), before);

  const auto inviteByCedar = [&] {
    At("Cedar", [&](Company& company) {
      InvitePartner(
          company,
          {.partner = PartnerName("Alder"), .accounts = {.dueFrom = "Checking", .dueTo = "Checking"}, .folder = {}});
    });
  };
  RefusalOf(inviteByCedar);
  EXPECT_FALSE(std::filesystem::exists(FileOf("Cedar").string() + ".identity"));
}

TEST_F(ThePairing, IsForWhoMayManageRelations) {
  At("Alder", [](Company& company) {
    AddUser(company, {.name = "Kim", .administrator = false, .accountant = false, .rights = {}});
  });

  const Refusal refusal = At(
      "Alder",
      [](Company& company) {
        return RefusalOf([&] {
          InvitePartner(company, {.partner = PartnerName("Birch"), .accounts = AccountsFor("Birch"), .folder = {}});
        });
      },
      "Kim");

  EXPECT_EQ(refusal.status, MEStatusPermissionDenied);
  EXPECT_FALSE(std::filesystem::exists(FileOf("Alder").string() + ".identity"));
}

TEST_F(ThePairing, StopsWhenTheIdentityIsMissingOrAnotherCompanys) {
  PairOverTheFolder();
  const std::string identity = FileOf("Alder").string() + ".identity";
  const std::string kept = standalone::ReadFile(identity);

  std::filesystem::remove(identity);
  EXPECT_EQ(RefusalOf([&] { Carry("Alder"); }).remedy, Remedy::kBringTheIdentity);
  std::filesystem::copy_file(FileOf("Birch").string() + ".identity", identity);
  EXPECT_EQ(RefusalOf([&] { Carry("Alder"); }).remedy, Remedy::kBringTheIdentity);

  EXPECT_EQ(standalone::ReadFile(FileOf("Birch").string() + ".identity"), standalone::ReadFile(identity));
}

TEST_F(ThePairing, GoesOnWithAnIdentityThatWasMovedByItsPassphrase) {
  PairOverTheFolder();
  const std::string identity = FileOf("Alder").string() + ".identity";
  const std::string passphrase = "a long walk home";
  const std::string text = At("Alder", [&](Company& company) { return ExportIdentity(company, passphrase); });
  const std::string birchs = At("Birch", [&](Company& company) { return ExportIdentity(company, passphrase); });
  std::filesystem::remove(identity);

  At("Alder", [&](Company& company) {
    EXPECT_EQ(RefusalOf([&] { ImportIdentity(company, birchs, passphrase); }).remedy, Remedy::kBringTheIdentity);
    EXPECT_FALSE(std::filesystem::exists(identity));
    EXPECT_THROW(ImportIdentity(company, text, "another one, as long"), standalone::InvalidInput);
    ImportIdentity(company, text, passphrase);
  });

  CarryInTurns("Alder", "Birch", 1);
  ExpectEstablished();
}

TEST_F(ThePairing, HoldsOnToTheRelation) {
  PairOverTheFolder();
  const std::string realm = RealmOf("Birch");

  At("Alder", [&](Company& company) {
    EXPECT_EQ(RefusalOf([&] { DeleteRelation(company, standalone::RealmId(realm), false); }).remedy,
              Remedy::kRemoveThePairingFirst);
    EXPECT_EQ(RefusalOf([&] {
                UpdateRelation(
                    company,
                    {.partner = standalone::RealmId(realm), .state = RelationState::kDeactivated, .accounts = {}});
              }).remedy,
              Remedy::kRemoveThePairingFirst);
    EXPECT_EQ(RefusalOf([&] {
                CreateRelation(company, {.realm = standalone::RealmId(realm),
                                         .partner = PartnerName("Birch"),
                                         .type = 0,
                                         .state = RelationState::kEstablished,
                                         .accounts = AccountsFor("Cedar")});
              }).remedy,
              Remedy::kRemoveThePairingFirst);
    EXPECT_EQ(RefusalOf([&] { RememberRealm(company, standalone::RealmId("77")); }).remedy,
              Remedy::kRemoveThePairingFirst);
  });
}

AuditQuery About(const std::string& action) {
  return {.user = {}, .action = action, .period = Period(NullDate(), NullDate()), .txnId = {}};
}

TEST_F(ThePairing, IsToldInTheAuditTrail) {
  PairOverTheFolder();

  std::vector<std::string> actions;
  At("Alder", [&](Company& company) {
    for (const AuditedDeed& deed : ListAudit(company, About("partner"))) {
      actions.push_back(deed.action);
    }
    EXPECT_THAT(ListAudit(company, About("exchange")), SizeIs(1));
  });

  EXPECT_THAT(actions, ElementsAre("partner.invite", "partner.confirm"));
}

TEST_F(ThePairing, TakesUpARelationThatWasMadeByHandWhenThatIsSaid) {
  const std::string invitation = Invite("Alder", "Birch");
  const std::string alder = RealmOf("Alder");
  At("Birch", [&](Company& company) {
    CreateRelation(company, {.realm = standalone::RealmId(alder),
                             .partner = PartnerName("Alder"),
                             .type = 0,
                             .state = RelationState::kEstablished,
                             .accounts = AccountsFor("Alder")});
    Acceptance acceptance{
        .invitation = invitation, .partner = PartnerName("Alder"), .accounts = {}, .folder = Folder()};
    EXPECT_EQ(RefusalOf([&] { AcceptInvitation(company, acceptance); }).remedy, Remedy::kUseTheExistingRelation);
    acceptance.useExistingRelation = true;
    AcceptInvitation(company, acceptance);
  });
  CarryInTurns("Birch", "Alder", 1);
  Confirm("Alder", "Birch");
  CarryInTurns("Alder", "Birch", 1);

  ExpectEstablished();
}

}  // namespace
}  // namespace desk
