// Two companies that are partners compare the facts that they hold, by letters that are lost, doubled and crossed, and
// over backups that are restored. The facts are of a kind that no version knows, which each keeps and none acts upon.
#include <filesystem>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "standalone/desk/Exchange.h"
#include "standalone/desk/Pairing.h"
#include "standalone/desk/inside/Awaiting.h"
#include "standalone/desk/inside/Carrying.h"
#include "standalone/desk/inside/OwnIdentity.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Work.h"
#include "tests/desk/DeskFixture.h"

namespace desk {
namespace {

using standalone::FactOrigin;
using standalone::PartnerName;
using testing::IsEmpty;
using testing::Le;
using testing::SizeIs;

constexpr const char* kAlder = "Alder";
constexpr const char* kBirch = "Birch";

class ComparingPartners : public testing::Test {
 protected:
  using Files = std::vector<std::pair<std::filesystem::path, std::string>>;

  ComparingPartners() {
    std::filesystem::create_directory(Folder());
    Make(kAlder, kBirch);
    Make(kBirch, kAlder);
    Pair();
  }

  std::filesystem::path FileOf(const std::string& company) const { return folder_ / (company + ".company"); }
  std::filesystem::path Folder() const { return folder_ / "shared"; }

  template <typename Does>
  auto At(const std::string& name, Does&& does) {
    Company company(FileOf(name));
    return does(company);
  }
  template <typename Does>
  auto AtWorkIn(const std::string& name, Does&& does) {
    return At(name, [&](Company& company) {
      Work work(company.Opened(), UseCase::kExchange);
      return work.Write([&] { return does(work, work.Host().Pairings().List().at(0)); });
    });
  }

  void Make(const std::string& name, const std::string& partner) {
    CreateCompany({.file = FileOf(name), .name = name + " Company", .homeCurrency = "USD"});
    standalone::WriteFile(folder_ / "accounts.csv", "name,type,special,deleted\nDue from " + partner +
                                                        ",Other Current Asset,,\nDue to " + partner +
                                                        ",Other Current Liability,,\n");
    At(name, [&](Company& company) { Import(company, Importable::kAccounts, folder_ / "accounts.csv"); });
  }
  void Pair() {
    const auto accounts = [](const std::string& partner) {
      return RelationAccounts{.dueFrom = "Due from " + partner, .dueTo = "Due to " + partner};
    };
    const std::string invitation = At(kAlder, [&](Company& company) {
      return InvitePartner(company, {.partner = PartnerName(kBirch), .accounts = accounts(kBirch), .folder = Folder()})
          .text;
    });
    At(kBirch, [&](Company& company) {
      AcceptInvitation(
          company,
          {.invitation = invitation, .partner = PartnerName(kAlder), .accounts = accounts(kAlder), .folder = Folder()});
    });
    CarryInTurns(kBirch, kAlder, 1);
    At(kAlder, [](Company& company) {
      ConfirmPartner(company, {.partner = kBirch, .fingerprint = ShowPairedPartner(company, kBirch).fingerprint});
    });
    CarryInTurns(kAlder, kBirch, 3);
  }

  // How many letters were put.
  std::size_t Carry(const std::string& who) {
    return At(who, [](Company& company) { return RunExchange(company).at(0).put; });
  }
  std::size_t CarryInTurns(const std::string& one, const std::string& other, int rounds) {
    std::size_t put = 0;
    for (int round = 0; round < rounds; ++round) put += Carry(one) + Carry(other);
    return put;
  }
  // Neither sees what the other one puts meanwhile.
  std::size_t CarryAtTheSameMoment() {
    const std::vector<std::filesystem::path> before = Lying();
    const std::size_t putByAlder = Carry(kAlder);
    Files alders;
    for (const std::filesystem::path& file : Lying()) {
      if (std::ranges::count(before, file) != 0) continue;
      alders.emplace_back(file, standalone::ReadFile(file));
      std::filesystem::remove(file);
    }
    const std::size_t put = putByAlder + Carry(kBirch);
    for (const auto& [file, bytes] : alders) standalone::WriteFile(file, bytes);
    return put;
  }

  void Say(const std::string& who, const std::vector<std::string>& notes, const std::string& month = "2026-03",
           const std::string& text = "a note") {
    AtWorkIn(who, [&](Work& work, const standalone::Pairing& pairing) {
      const exchange::KeyPair keys = RequireKeys(work);
      for (const std::string& note : notes) {
        Keep(work, pairing,
             exchange::Fact::Signed({.pairing = pairing.pairingId,
                                     .author = keys.Public(),
                                     .kind = "greeting",
                                     .name = note,
                                     .month = month,
                                     .fields = {{"text", text}}},
                                    keys),
             FactOrigin::kMade);
      }
    });
  }
  // Which the other side takes for no fact, as its signature is not the author's.
  void HoldWhatNobodyElseWill(const std::string& who, const std::string& note) {
    AtWorkIn(who, [&](Work& work, const standalone::Pairing& pairing) {
      const exchange::KeyPair keys = RequireKeys(work);
      const exchange::Statement what{.pairing = pairing.pairingId,
                                     .author = keys.Public(),
                                     .kind = "greeting",
                                     .name = note,
                                     .month = "2026-03",
                                     .fields = {}};
      Keep(work, pairing, exchange::Fact(exchange::BodyOf(what), std::string(64, 's')), FactOrigin::kMade);
    });
  }
  static std::vector<std::string> Notes(const std::string& name, int count) {
    std::vector<std::string> notes;
    for (int number = 0; number < count; ++number) notes.push_back(name + std::to_string(number));
    return notes;
  }

  std::set<std::string> HeldBy(const std::string& who) {
    return AtWorkIn(who, [](Work& work, const standalone::Pairing& pairing) {
      std::set<std::string> held;
      work.Host().Facts().ForEachHash(pairing.id, [&](std::string_view hash) { held.emplace(hash); });
      return held;
    });
  }
  bool HasLetterToSend(const std::string& who) {
    return At(who, [](Company& company) { return ListPairedPartners(company).at(0).hasLetterToSend; });
  }
  // How many rounds of both it takes until both hold the same and say so no more; 99 when they do not.
  int RoundsUntilEqual(const std::string& first, const std::string& second) {
    for (int rounds = 1; rounds <= 12; ++rounds) {
      Carry(first);
      Carry(second);
      if (HeldBy(kAlder) == HeldBy(kBirch)) return rounds;
    }
    return 99;
  }
  void ExpectRestAfter(int rounds) {
    CarryInTurns(kAlder, kBirch, rounds);
    EXPECT_EQ(CarryInTurns(kBirch, kAlder, 3), 0U);
  }
  void ExpectEqualAtRest(int rounds) {
    ExpectRestAfter(rounds);
    EXPECT_EQ(HeldBy(kAlder), HeldBy(kBirch));
    EXPECT_FALSE(HasLetterToSend(kAlder));
    EXPECT_FALSE(HasLetterToSend(kBirch));
  }

  std::vector<std::filesystem::path> Lying() const {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(Folder())) {
      if (entry.is_regular_file()) files.push_back(entry.path());
    }
    std::ranges::sort(files);
    return files;
  }
  void LoseAllLetters() const {
    for (const std::filesystem::path& file : Lying()) std::filesystem::remove(file);
  }
  std::string Books(const std::string& company) const { return standalone::ReadFile(FileOf(company)); }
  void Restore(const std::string& company, const std::string& books) {
    for (const char* suffix : {"-wal", "-shm"}) std::filesystem::remove(FileOf(company).string() + suffix);
    standalone::WriteFile(FileOf(company), books);
  }
  // A person confirms what came back, once they were compared.
  void GoOn(const std::string& who) {
    AtWorkIn(who, [](Work& work, const standalone::Pairing& /*pairing*/) {
      const std::optional<Awaited> awaited = FindAwaited(work);
      if (awaited && awaited->toCompare.empty()) Confirm(work);
    });
  }
  void GoOnBoth() {
    GoOn(kAlder);
    GoOn(kBirch);
  }

  standalone::TemporaryFolder folder_;
};

TEST_F(ComparingPartners, PutNothingAnyMoreOnceBothHoldTheSame) {
  Say(kAlder, Notes("a", 3));
  Say(kBirch, Notes("b", 2));

  EXPECT_THAT(CarryInTurns(kAlder, kBirch, 10), Le(5U));

  ExpectEqualAtRest(0);
}

TEST_F(ComparingPartners, ComeToRestWhenTheyWriteAtTheSameMomentAgainAndAgain) {
  Say(kAlder, Notes("a", 3));
  Say(kBirch, Notes("b", 2));
  for (int moment = 0; moment < 8; ++moment) CarryAtTheSameMoment();

  EXPECT_EQ(CarryAtTheSameMoment(), 0U);
  EXPECT_EQ(HeldBy(kAlder), HeldBy(kBirch));
  EXPECT_FALSE(HasLetterToSend(kAlder));
  EXPECT_FALSE(HasLetterToSend(kBirch));
}

TEST_F(ComparingPartners, SendALostLetterAgain) {
  Say(kAlder, {"a"});
  Carry(kAlder);
  LoseAllLetters();

  ExpectEqualAtRest(3);
}

TEST_F(ComparingPartners, TakeADoubledLetterOnce) {
  Say(kAlder, {"a"});
  Carry(kAlder);
  for (const std::filesystem::path& file : Lying()) {
    const std::string name = file.filename().string();
    std::filesystem::copy_file(file, Folder() / (name.substr(0, 17) + "copy of " + name.substr(17)));
  }

  ExpectEqualAtRest(3);
  EXPECT_THAT(Lying(), SizeIs(2));
}

class WhatABackupLost : public ComparingPartners, public testing::WithParamInterface<const char*> {
 protected:
  std::string Other() const { return GetParam() == std::string(kAlder) ? kBirch : kAlder; }
};

TEST_P(WhatABackupLost, ComesBackWithTheCompanysOwn) {
  Say(kAlder, Notes("a", 3));
  Say(kBirch, Notes("b", 3));
  CarryInTurns(kAlder, kBirch, 3);
  const std::string books = Books(GetParam());
  Say(kAlder, Notes("later a", 3));
  Say(kBirch, Notes("later b", 3), "2026-04");
  CarryInTurns(kAlder, kBirch, 3);
  const std::set<std::string> held = HeldBy(Other());

  Restore(GetParam(), books);

  EXPECT_THAT(RoundsUntilEqual(GetParam(), Other()), Le(3));
  ExpectEqualAtRest(2);
  EXPECT_EQ(HeldBy(GetParam()), held);
}

TEST_P(WhatABackupLost, ComesBackWhenItWasThePartnersOnly) {
  Say(kAlder, {"a"});
  CarryInTurns(kAlder, kBirch, 3);
  const std::string books = Books(GetParam());
  Say(Other(), {"later"});
  CarryInTurns(kAlder, kBirch, 3);

  Restore(GetParam(), books);

  EXPECT_THAT(RoundsUntilEqual(GetParam(), Other()), Le(3));
  ExpectEqualAtRest(2);
}

TEST_P(WhatABackupLost, ComesBackThoughNoLetterLiesInTheFolder) {
  Say(kAlder, {"a"});
  CarryInTurns(kAlder, kBirch, 3);
  const std::string books = Books(GetParam());
  Say(Other(), {"later"});
  CarryInTurns(kAlder, kBirch, 3);

  Restore(GetParam(), books);
  LoseAllLetters();

  EXPECT_THAT(RoundsUntilEqual(GetParam(), Other()), Le(3));
  ExpectEqualAtRest(2);
}

TEST_P(WhatABackupLost, ComesBackEachTimeThatTheSameBackupIsRestored) {
  Say(kAlder, {"a"});
  CarryInTurns(kAlder, kBirch, 3);
  const std::string books = Books(GetParam());
  Say(Other(), {"later"});
  CarryInTurns(kAlder, kBirch, 3);

  for (int time = 0; time < 3; ++time) {
    Restore(GetParam(), books);
    EXPECT_THAT(RoundsUntilEqual(Other(), GetParam()), Le(4));
    ExpectEqualAtRest(2);
  }
}

INSTANTIATE_TEST_SUITE_P(, WhatABackupLost, testing::Values(kAlder, kBirch));

TEST_F(ComparingPartners, GetBackWhatEachOfThemLost) {
  Say(kAlder, Notes("a", 3));
  Say(kBirch, Notes("b", 3), "2026-04");
  CarryInTurns(kAlder, kBirch, 3);
  const std::string alders = Books(kAlder);
  Say(kAlder, Notes("later a", 3));
  CarryInTurns(kAlder, kBirch, 3);
  const std::string birchs = Books(kBirch);
  Say(kBirch, Notes("later b", 3));
  Carry(kBirch);
  Restore(kAlder, alders);
  Say(kAlder, Notes("after a", 2));
  Restore(kBirch, birchs);
  LoseAllLetters();
  CarryInTurns(kAlder, kBirch, 4);
  GoOnBoth();

  EXPECT_THAT(RoundsUntilEqual(kAlder, kBirch), Le(2));
  ExpectEqualAtRest(2);
}

TEST_F(ComparingPartners, ComeToRestWhenOneHoldsAFactThatTheOtherOneCannot) {
  HoldWhatNobodyElseWill(kAlder, "unsigned");
  Say(kAlder, Notes("a", 2));

  ExpectRestAfter(8);

  const std::set<std::string> alders = HeldBy(kAlder);
  EXPECT_EQ(alders.size(), HeldBy(kBirch).size() + 1);
  Say(kBirch, {"b"});
  ExpectRestAfter(8);
  EXPECT_EQ(HeldBy(kAlder).size(), alders.size() + 1);
  EXPECT_EQ(HeldBy(kBirch).size(), alders.size());
}

TEST_F(ComparingPartners, ComeToRestWhenEachHoldsAFactThatTheOtherOneCannot) {
  HoldWhatNobodyElseWill(kAlder, "unsigned");
  HoldWhatNobodyElseWill(kBirch, "unsigned");
  Say(kAlder, Notes("a", 2));
  Say(kBirch, Notes("b", 2));

  for (int moment = 0; moment < 16; ++moment) CarryAtTheSameMoment();

  EXPECT_EQ(CarryAtTheSameMoment(), 0U);
  ExpectRestAfter(0);
  EXPECT_EQ(HeldBy(kAlder).size(), HeldBy(kBirch).size());
}

TEST_F(ComparingPartners, GetBackTwoThousandFactsOfSeveralMonths) {
  const std::vector<std::string> months{"2026-01", "2026-02", "2026-03", "2026-04", "2026-05"};
  for (const std::string& month : months) Say(kAlder, Notes("a", 10), month);
  CarryInTurns(kAlder, kBirch, 3);
  for (const std::string& month : months) Say(kAlder, Notes("later a", 390), month);
  AtWorkIn(kAlder, [](Work& work, const auto& pairing) { work.Host().Facts().MarkAllShown(pairing.id); });
  LoseAllLetters();

  EXPECT_THAT(RoundsUntilEqual(kBirch, kAlder), Le(3));
  EXPECT_THAT(HeldBy(kBirch), SizeIs(2003));
  ExpectEqualAtRest(2);
}

class ALetterInSeveralEnvelopes : public ComparingPartners, public testing::WithParamInterface<std::size_t> {};

TEST_P(ALetterInSeveralEnvelopes, IsSentAgainWhereOneIsLost) {
  Say(kAlder, Notes("long", 50), "2026-03", std::string(60'000, 'x'));
  EXPECT_EQ(Carry(kAlder), 3U);
  std::vector<std::filesystem::path> alders;
  for (const std::filesystem::path& file : Lying()) {
    if (std::filesystem::file_size(file) > 10'000) alders.push_back(file);
  }
  ASSERT_THAT(alders, SizeIs(3));

  std::filesystem::remove(alders.at(GetParam()));

  ExpectEqualAtRest(4);
  EXPECT_THAT(HeldBy(kBirch), SizeIs(53));
}

INSTANTIATE_TEST_SUITE_P(, ALetterInSeveralEnvelopes, testing::Values(0U, 1U, 2U));

TEST_F(ComparingPartners, WriteNothingToWhoIsBlockedAndGoOnAfterwards) {
  Say(kAlder, {"a"});
  At(kAlder, [](Company& company) { BlockPartner(company, kBirch); });
  Say(kBirch, {"b"});
  CarryInTurns(kBirch, kAlder, 2);
  EXPECT_EQ(Carry(kAlder), 0U);
  EXPECT_THAT(HeldBy(kAlder), SizeIs(4));

  At(kAlder, [](Company& company) { UnblockPartner(company, kBirch); });

  ExpectEqualAtRest(3);
  EXPECT_THAT(HeldBy(kAlder), SizeIs(5));
}

TEST_F(ComparingPartners, AreWrittenToOnceInAStartWhenTheyRemoveWhatAsksForNothing) {
  At(kAlder, [&](Company& company) {
    LoseAllLetters();
    EXPECT_EQ(RunExchange(company).at(0).put, 1U);
    for (int run = 0; run < 3; ++run) {
      LoseAllLetters();
      EXPECT_EQ(RunExchange(company).at(0).put, 0U);
    }
  });
  EXPECT_EQ(Carry(kAlder), 1U);
}

// As a program leaves one that was killed before it knew that it had put it, by a clock that was set back since.
TEST_F(ComparingPartners, PutNothingAnyMoreWhereTheLastLetterAlsoLiesUnderALaterName) {
  Say(kAlder, {"one"});
  CarryInTurns(kAlder, kBirch, 4);
  for (const std::filesystem::path& file : Lying()) {
    const std::string address = file.filename().string().substr(0, 16);
    standalone::WriteFile(Folder() / (address + "-ffffffff-ffff-7fff-bfff-ffffffffffff.envelope"),
                          standalone::ReadFile(file));
  }

  CarryInTurns(kAlder, kBirch, 1);

  EXPECT_EQ(CarryInTurns(kAlder, kBirch, 2), 0U);
}

// As by a clock that was set back since, or by a disk that brings back what it had.
TEST_F(ComparingPartners, AreComparedThoughALetterOfBeforeLiesThereUnderALaterName) {
  Say(kAlder, {"one"});
  CarryInTurns(kAlder, kBirch, 4);
  const std::string books = Books(kAlder);
  Files before;
  for (const std::filesystem::path& file : Lying()) {
    const std::string address = file.filename().string().substr(0, 16);
    before.emplace_back(Folder() / (address + "-ffffffff-ffff-7fff-bfff-ffffffffffff.envelope"),
                        standalone::ReadFile(file));
  }
  Say(kBirch, {"two"});
  CarryInTurns(kAlder, kBirch, 4);
  Restore(kAlder, books);
  for (const auto& [file, bytes] : before) standalone::WriteFile(file, bytes);

  ExpectEqualAtRest(6);
}

TEST_F(ComparingPartners, AreComparedOnceTheyHaveReadThatTheyAskedAndHoldTheSame) {
  const auto ask = [&](const std::string& why) {
    AtWorkIn(kAlder, [&](Work& work, const standalone::Pairing& pairing) { AskToCompare(work, pairing, why); });
  };
  const auto isCompared = [&](const std::string& why) {
    return AtWorkIn(kAlder, [&](Work& work, const auto& pairing) { return IsCompared(work, pairing, why); });
  };
  EXPECT_FALSE(isCompared("restored"));

  ask("restored");
  Carry(kAlder);
  EXPECT_FALSE(isCompared("restored"));
  CarryInTurns(kBirch, kAlder, 1);
  EXPECT_TRUE(isCompared("restored"));
  EXPECT_FALSE(isCompared("restored again"));

  ask("restored");
  EXPECT_TRUE(isCompared("restored"));
  ask("restored again");
  EXPECT_FALSE(isCompared("restored again"));
  ExpectRestAfter(2);
  EXPECT_TRUE(isCompared("restored again"));
}

TEST_F(ComparingPartners, AreNotComparedAsLongAsWhatTheOtherOneHoldsIsMissing) {
  Say(kAlder, {"a"});
  CarryInTurns(kAlder, kBirch, 3);
  const std::string books = Books(kAlder);
  Say(kBirch, {"b"});
  CarryInTurns(kAlder, kBirch, 3);
  Restore(kAlder, books);
  AtWorkIn(kAlder, [](Work& work, const auto& pairing) { AskToCompare(work, pairing, "restored"); });
  const auto isCompared = [&] {
    return AtWorkIn(kAlder, [](Work& work, const auto& pairing) { return IsCompared(work, pairing, "restored"); });
  };

  for (int round = 0; round < 4; ++round) {
    CarryInTurns(kAlder, kBirch, 1);
    EXPECT_EQ(isCompared(), HeldBy(kAlder).size() == 5 && round > 0) << round;
  }
  EXPECT_TRUE(isCompared());
}

TEST_F(ComparingPartners, AreComparedWithWhoCannotHoldAllThatTheyDo) {
  HoldWhatNobodyElseWill(kAlder, "unsigned");
  ExpectRestAfter(8);
  const auto ask = [&](const std::string& who) {
    AtWorkIn(who, [](Work& work, const auto& pairing) { AskToCompare(work, pairing, "restored"); });
  };
  const auto isCompared = [&](const std::string& who) {
    return AtWorkIn(who, [](Work& work, const auto& pairing) { return IsCompared(work, pairing, "restored"); });
  };
  ask(kAlder);
  ask(kBirch);

  ExpectRestAfter(8);

  EXPECT_TRUE(isCompared(kAlder));
  EXPECT_FALSE(isCompared(kBirch));
}

// Both hold some of the facts that were ever said, believe anything of what the other one holds, and write through a
// folder that loses, doubles and delays.
class PartnersWithAnyFacts : public ComparingPartners, public testing::WithParamInterface<unsigned int> {
 protected:
  void Meddle() {
    for (const std::filesystem::path& file : Lying()) {
      switch (Below(4)) {
        case 0:
          std::filesystem::remove(file);
          break;
        case 1:
          seen_.emplace_back(file, standalone::ReadFile(file));
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
  void DoAnything(int step) {
    const std::string who = Below(2) == 0 ? kAlder : kBirch;
    const std::string month = "2026-0" + std::to_string(1 + Below(4));
    switch (Below(8)) {
      case 0:
      case 1:
        Say(who, Notes(std::to_string(step) + "-", static_cast<int>(1 + Below(5))), month);
        break;
      case 2:
        backups_.emplace_back(who, Books(who));
        break;
      case 3:
        if (backups_.empty()) break;
        std::apply([&](const auto&... backup) { Restore(backup...); }, backups_.at(Below(backups_.size())));
        break;
      case 4:
        CarryAtTheSameMoment();
        break;
      default:
        Carry(who);
        break;
    }
  }
  std::size_t Below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }

  std::mt19937 random_{GetParam()};
  Files seen_;
  std::vector<std::pair<std::string, std::string>> backups_;
};

TEST_P(PartnersWithAnyFacts, HoldTheSameAfterAFewRoundsWithoutLoss) {
  for (int step = 0; step < 40; ++step) {
    DoAnything(step);
    Meddle();
  }
  const std::set<std::string> alders = HeldBy(kAlder);
  std::set<std::string> all = HeldBy(kBirch);
  all.insert(alders.begin(), alders.end());

  if (GetParam() % 2 == 0) {
    for (int round = 0; round < 8; ++round) {
      CarryInTurns(kAlder, kBirch, 1);
      GoOnBoth();
    }
  } else {
    for (int moment = 0; moment < 16; ++moment) {
      CarryAtTheSameMoment();
      GoOnBoth();
    }
  }

  EXPECT_THAT(HeldBy(kAlder), testing::IsSupersetOf(all));
  ExpectEqualAtRest(3);
}

INSTANTIATE_TEST_SUITE_P(, PartnersWithAnyFacts, testing::Range(1U, 13U));

}  // namespace
}  // namespace desk
