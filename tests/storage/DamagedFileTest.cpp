// Company files that lost bytes or had them changed. The places are random, but the same each time; the environment
// variables MULTIENTITY_SEED and MULTIENTITY_DAMAGES choose others and more of them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/company/Session.h"
#include "standalone/import/Import.h"
#include "standalone/values/Errors.h"
#include "tests/company/CompanyFixture.h"
#include "tests/crash/Contents.h"

namespace standalone {
namespace {

using testing::IsEmpty;

constexpr int kOrdinaryDamages = 250;
constexpr std::size_t kHeaderLength = 100;
constexpr int kRarely = 100;  // one of so many; nothing tells a changed text from the one that was written

struct Files {
  std::string company;
  std::string log;  // the write-ahead log; none when empty

  bool operator==(const Files&) const = default;
};

std::uint64_t Setting(const char* name, std::uint64_t otherwise) {
  const char* text = std::getenv(name);
  return text != nullptr ? std::strtoull(text, nullptr, 10) : otherwise;
}

std::filesystem::path LogOf(const std::filesystem::path& file) {
  return file.string() + "-wal";
}

Files ReadFiles(const std::filesystem::path& file) {
  return {ReadFile(file), ReadFile(LogOf(file))};
}

void WriteFiles(const std::filesystem::path& file, const Files& files) {
  std::filesystem::remove(file.string() + "-shm");
  std::filesystem::remove(LogOf(file));
  WriteFile(file, files.company);
  if (!files.log.empty()) WriteFile(LogOf(file), files.log);
}

// What a user does with a company: reads all of it and books something.
void WorkOn(StandaloneHost& host, const std::string& request) {
  host.Request(Access::kRead, [&] {
    host.Accounts().List();
    host.Names().List();
    host.Users().List();
    host.Settings().Get();
  });
  host.Request(Access::kRead, [&] {
    std::vector<METxnInfo> lines;
    MultiEntityDriver::GetListOfTxnTargetEntries(lines, DateType32(2000, 1, 1), DateType32(2999, 12, 31));
  });
  host.Request(Access::kWrite, [&] {
    std::uint32_t txnId = 0;
    MultiEntityDriver::RecordGeneralJournalEntry("1001", {.name = "Rent", .type = 12, .accountId = 1}, 2, "10.00",
                                                 request.c_str(), {.name = "Walker", .nameId = 1}, txnId);
  });
}

enum class Ending { kRefused, kStopped, kWorked };

class ADamagedCompanyFile : public CompanyFixture {
 protected:
  ADamagedCompanyFile() : random_(Setting("MULTIENTITY_SEED", 1)) {
    const std::filesystem::path withLog = folder_ / "with-log";
    StandaloneHost host(path_);
    const Session session(host);
    host.Request(Access::kWrite, [&] {
      host.Accounts().Create({"Rent", KrEnumerations::kExpense, 0, false});
      host.Accounts().Create({"Due to Alder", KrEnumerations::kOtherCurrentLiability, 0, false});
      host.Names().Create("Walker", NameKind::kVendor);
      FileOf(host).Execute("INSERT INTO me_relation VALUES (1, '1001', 'Alder Supply Company', 0, 3, 0, 0, 1, 0, 2)");
    });
    for (int number = 0; number < 60; ++number) WorkOn(host, "request-" + std::to_string(number));
    FileOf(host).QueryText("PRAGMA wal_checkpoint(TRUNCATE)");
    closed_ = {ReadFile(path_), {}};
    for (int number = 0; number < 4; ++number) WorkOn(host, "crash-" + std::to_string(number));
    crashed_ = ReadFiles(path_);
  }

  int Damages() const { return static_cast<int>(Setting("MULTIENTITY_DAMAGES", kOrdinaryDamages)); }
  // Few damages may hit a text once more than their share.
  int MostAltered() const { return Damages() / kRarely + 1; }
  // Most of a page is free, and few damages may all fall there.
  int LeastRefused() const { return Damages() / kRarely; }
  std::size_t Place(std::size_t from, std::size_t to) {
    return std::uniform_int_distribution<std::size_t>(from, to - 1)(random_);
  }

  void Flip(std::string& bytes, std::size_t from, std::size_t to) {
    char& byte = bytes[Place(from, to)];
    byte = static_cast<char>(static_cast<unsigned char>(byte) ^ static_cast<unsigned char>(Place(1, 256)));
  }
  template <typename Damage>
  std::vector<Files> Damaged(const Files& files, const Damage& damage) {
    WriteFiles(path_, files);
    whole_ = InspectCopy(path_).contents;
    std::vector<Files> all(static_cast<std::size_t>(Damages()), files);
    std::ranges::for_each(all, damage);
    return all;
  }

  // What is wrong with how such files are treated.
  std::vector<std::string> Complaints(const std::vector<Files>& all) {
    std::vector<std::string> complaints;
    for (std::size_t number = 0; number < all.size(); ++number) {
      for (const std::string& complaint : ComplaintsAbout(all[number])) {
        complaints.push_back("damage " + std::to_string(number) + ": " + complaint);
      }
    }
    RecordProperty("refused", refused_);
    RecordProperty("stopped", stopped_);
    RecordProperty("worked", worked_);
    RecordProperty("altered", altered_);
    return complaints;
  }

  std::vector<std::string> ComplaintsAbout(const Files& files) {
    WriteFiles(path_, files);
    const Inspection before = InspectCopy(path_);
    std::vector<std::string> complaints;
    const Ending ending = TryToWork(complaints);
    if (ending == Ending::kRefused) {
      ++refused_;
      if (ReadFiles(path_) != files) complaints.emplace_back("it was refused, but is not as it was");
      return complaints;
    }
    ++(ending == Ending::kStopped ? stopped_ : worked_);
    if (before.contents.transactions != whole_.transactions) ++altered_;
    Compare(before, InspectCopy(path_), complaints);
    return complaints;
  }

  // Other errors than those that a program tells its user fall through and fail the test.
  Ending TryToWork(std::vector<std::string>& complaints) const {
    bool isOpen = false;
    try {
      StandaloneHost host(path_);
      const Session session(host);
      isOpen = true;
      WorkOn(host, "another");
      return Ending::kWorked;
    } catch (const CompanyFileError& error) {
      ComplainUnlessClear(error.what(), complaints);
    } catch (const UnitOfWorkError& error) {
      ComplainUnlessClear(error.what(), complaints);
    } catch (const InvalidInput& error) {
      // The user Admin is gone.
      if (isOpen) complaints.emplace_back(error.what());
    }
    return isOpen ? Ending::kStopped : Ending::kRefused;
  }

  void ComplainUnlessClear(const std::string& message, std::vector<std::string>& complaints) const {
    static constexpr std::array kAdvice{"Restore it from a backup", "Name a file that was made by 'init'",
                                        "Open it with the newer program", "Give yourself the right", "Check that"};
    const bool advises =
        std::ranges::any_of(kAdvice, [&](const char* advice) { return message.find(advice) != std::string::npos; });
    if (advises && message.find(path_.string()) != std::string::npos) return;
    complaints.push_back("not a clear message: " + message);
  }

  static void Compare(const Inspection& before, const Inspection& after, std::vector<std::string>& complaints) {
    for (const std::string& fault : before.faults) complaints.push_back("it was not noticed: " + fault);
    for (const std::string& fault : after.faults) complaints.push_back("it was made worse: " + fault);
    for (const auto& [id, transaction] : before.contents.transactions) {
      const auto found = after.contents.transactions.find(id);
      if (found == after.contents.transactions.end() || found->second != transaction) {
        complaints.push_back("lost transaction " + std::to_string(id));
      }
    }
  }

  // The log that a crash leaves once this was done after the first crash.
  std::string LogAfter(const char* sql) {
    WriteFiles(path_, crashed_);
    StandaloneHost host(path_);
    host.Request(Access::kWrite, [&] { FileOf(host).Execute(sql); });
    return ReadFile(LogOf(path_));
  }

  static std::string Over(const std::string& newer, const std::string& older) {
    return newer + older.substr(newer.size());
  }

  bool WasOpened(const Files& files) {
    WriteFiles(path_, files);
    std::vector<std::string> ignored;
    return TryToWork(ignored) != Ending::kRefused;
  }

  std::size_t TransactionsOf(const Files& files) {
    WriteFiles(path_, files);
    return InspectCopy(path_).contents.transactions.size();
  }

  std::mt19937_64 random_;
  Files closed_;   // after the company was closed
  Files crashed_;  // after its program was killed: four bookings are in the write-ahead log only
  int refused_ = 0;
  int stopped_ = 0;
  int worked_ = 0;
  int altered_ = 0;  // of those that were not refused: a transaction reads otherwise than before the damage
  Contents whole_;
};

TEST_F(ADamagedCompanyFile, WouldBeWorkedOnIfItWereNotDamaged) {
  EXPECT_THAT(Complaints({closed_, crashed_}), IsEmpty());

  EXPECT_EQ(worked_, 2);
  EXPECT_EQ(TransactionsOf(crashed_), TransactionsOf(closed_) + 4);
}

TEST_F(ADamagedCompanyFile, ThatWasCutOffIsRefusedAsItIs) {
  const auto cutOff = [&](Files& files) {
    files.company.resize(Place(0, files.company.size()));
  };

  EXPECT_THAT(Complaints(Damaged(closed_, cutOff)), IsEmpty());

  EXPECT_EQ(refused_, Damages());
  EXPECT_EQ(altered_, 0);
}

TEST_F(ADamagedCompanyFile, ThatWasCutOffAfterACrashIsRefusedOrHealedByItsLog) {
  const auto cutOff = [&](Files& files) {
    files.company.resize(Place(0, files.company.size()));
  };

  EXPECT_THAT(Complaints(Damaged(crashed_, cutOff)), IsEmpty());

  EXPECT_GT(refused_, Damages() / 2);
  EXPECT_EQ(altered_, 0);
}

TEST_F(ADamagedCompanyFile, WithAChangedByteInItsHeaderIsRefusedOrWorksAsBefore) {
  const auto flip = [&](Files& files) {
    Flip(files.company, 0, kHeaderLength);
  };

  EXPECT_THAT(Complaints(Damaged(closed_, flip)), IsEmpty());

  EXPECT_GT(refused_, 0);
  EXPECT_EQ(altered_, 0);
}

TEST_F(ADamagedCompanyFile, WithAChangedByteInItsPagesIsRefusedOrWorksAsBefore) {
  const auto flip = [&](Files& files) {
    Flip(files.company, kHeaderLength, files.company.size());
  };

  EXPECT_THAT(Complaints(Damaged(closed_, flip)), IsEmpty());

  EXPECT_GE(refused_, LeastRefused());
  EXPECT_LE(altered_, MostAltered());
}

TEST_F(ADamagedCompanyFile, WithManyChangedBytesIsRefused) {
  const auto flip = [&](Files& files) {
    for (int byte = 0; byte < 200; ++byte) Flip(files.company, 0, files.company.size());
  };

  EXPECT_THAT(Complaints(Damaged(closed_, flip)), IsEmpty());

  EXPECT_EQ(refused_, Damages());
  EXPECT_EQ(altered_, 0);
}

TEST_F(ADamagedCompanyFile, WithALostBlockIsRefusedOrWorksAsBefore) {
  const auto lose = [&](Files& files) {
    const std::size_t block = Place(0, files.company.size() / 512) * 512;
    files.company.replace(block, 512, std::string(512, '\0'));
  };

  EXPECT_THAT(Complaints(Damaged(closed_, lose)), IsEmpty());

  EXPECT_GE(refused_, LeastRefused());
  EXPECT_EQ(altered_, 0);
}

TEST_F(ADamagedCompanyFile, WithAChangedByteAfterACrashIsRefusedOrWorksAsBefore) {
  const auto flip = [&](Files& files) {
    Flip(files.company, 0, files.company.size());
  };

  EXPECT_THAT(Complaints(Damaged(crashed_, flip)), IsEmpty());

  EXPECT_GE(refused_, LeastRefused());
  EXPECT_LE(altered_, MostAltered());
}

TEST_F(ADamagedCompanyFile, WithAChangedByteInItsLogIsRefusedOrWorksAsBefore) {
  const auto flip = [&](Files& files) {
    Flip(files.log, 0, files.log.size());
  };

  EXPECT_THAT(Complaints(Damaged(crashed_, flip)), IsEmpty());

  EXPECT_GE(refused_, LeastRefused());
  // Where the last of the four bookings that are in it was hit.
  EXPECT_LE(altered_, Damages() / 3);
}

// Two programs were killed when they had written all of a transaction, but not yet told the others of it; the others
// then wrote over it from its beginning. Three transactions that begin at the same place, each shorter than the one
// before.
TEST_F(ADamagedCompanyFile, IsNoneWhoseLogEndsInWhatKilledProgramsLeft) {
  const std::string longest = LogAfter("INSERT INTO preference VALUES ('a', hex(zeroblob(40000)))");
  const std::string shorter = LogAfter("INSERT INTO preference VALUES ('a', hex(zeroblob(12000)))");
  const std::string last = LogAfter("UPDATE company SET name = 'Birch'");
  ASSERT_GT(longest.size(), shorter.size());
  ASSERT_GT(shorter.size(), last.size());

  const Files left{crashed_.company, Over(last, Over(shorter, longest))};

  EXPECT_THAT(Complaints({left}), IsEmpty());
  EXPECT_EQ(worked_, 1);
}

TEST_F(ADamagedCompanyFile, LosesAtMostTheLastBookingToAChangedByteInItsLog) {
  const std::size_t all = TransactionsOf(crashed_);
  std::size_t least = all;
  const auto flip = [&](Files& files) {
    Flip(files.log, 0, files.log.size());
  };
  const auto note = [&](const Files& files) {
    if (WasOpened(files)) least = std::min(least, TransactionsOf(files));
  };

  std::ranges::for_each(Damaged(crashed_, flip), note);

  EXPECT_GE(least, all - 1);
}

}  // namespace
}  // namespace standalone
