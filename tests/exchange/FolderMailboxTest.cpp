#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "exchange/FolderUnderTest.h"
#include "exchange/MailboxContract.h"
#include "standalone/exchange/FolderMailbox.h"
#include "support/Thrown.h"

namespace exchange {
namespace {

using standalone::ReadFile;
using standalone::WriteFile;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

class FolderUnderTest final : public MailboxUnderTest {
 public:
  std::unique_ptr<Mailbox> Open() override { return std::make_unique<FolderMailbox>(folder_.path, folder_.clock); }
  std::string ReasonOf(std::string_view name) override {
    std::string text = ReadFile(folder_.aside / (std::string(name) + ".why.txt"));
    if (text.ends_with('\n')) text.pop_back();
    return text;
  }

 private:
  FolderOfEnvelopes folder_;
};

INSTANTIATE_TEST_SUITE_P(InAFolder, AMailbox,
                         ::testing::Values(MailboxKind{"Folder",
                                                       [] {
                                                         return std::make_unique<FolderUnderTest>();
                                                       }}),
                         NameOfKind);

class AFolderOfEnvelopes : public ::testing::Test, protected FolderOfEnvelopes {};

TEST_F(AFolderOfEnvelopes, HasOneFileForEachUnderTheAddressAndATimeOrderedName) {
  const std::string name = mailbox.Put(kBirch, "hello");

  EXPECT_THAT(FilesIn(path), ElementsAre(name));
  EXPECT_THAT(name, AllOf(StartsWith("0123456789abcdef-"), ::testing::EndsWith(".envelope"), SizeIs(62)));
  EXPECT_EQ(ReadFile(path / name), "5:hello,");
}

TEST_F(AFolderOfEnvelopes, SortsThoseThatWerePutEarlierInFront) {
  const std::string late = mailbox.Put(kBirch, "late");
  clock.now -= std::chrono::hours(1);
  const std::string early = mailbox.Put(kBirch, "early");

  EXPECT_THAT(mailbox.List(kBirch), ElementsAre(early, late));
}

TEST_F(AFolderOfEnvelopes, HasThoseWithNamesOfOthersInFrontOfAllThatWerePut) {
  const std::string early = mailbox.Put(kBirch, "early");
  clock.now += std::chrono::hours(1);
  const std::string late = mailbox.Put(kBirch, "late");
  const std::string copy = WriteEnvelope(early.substr(17, 36) + " (1)", "5:early,");
  const std::string letter = WriteEnvelope("letter from Alder", "5:hello,");

  EXPECT_THAT(mailbox.List(kBirch), ElementsAre(copy, letter, early, late));
}

TEST_F(AFolderOfEnvelopes, LeavesWhatIsOthersAlone) {
  const std::vector<std::string> others = {"README.txt",
                                           "desktop.ini",
                                           ".DS_Store",
                                           "0123456789abcdef",
                                           "0123456789abcdef-1",
                                           "0123456789abcdef-1.envelope.part",
                                           "x0123456789abcdef-1.envelope",
                                           ".0123456789abcdef-1.envelope"};
  for (const std::string& name : others) WriteFile(path / name, "a");

  EXPECT_THAT(mailbox.List(kBirch), IsEmpty());
  EXPECT_THAT(FilesIn(path), ::testing::UnorderedElementsAreArray(others));
}

TEST_F(AFolderOfEnvelopes, TakesOneThatAMailProgramHasSavedUnderANameOfItsOwn) {
  const std::string name = WriteEnvelope("letter from Alder (1)", "5:hello,");

  EXPECT_THAT(mailbox.List(kBirch), ElementsAre(name));
  EXPECT_EQ(mailbox.Take(name, kMost).bytes, "hello");
}

TEST_F(AFolderOfEnvelopes, TakesOneWhoseNameADiskHasPutInCapitals) {
  const std::string name = "0123456789ABCDEF-1.ENVELOPE";
  WriteFile(path / name, "5:hello,");

  EXPECT_THAT(mailbox.List(kBirch), ElementsAre(name));
  EXPECT_EQ(mailbox.Take(name, kMost).bytes, "hello");
}

TEST_F(AFolderOfEnvelopes, LeavesOneThatIsStillBeingWrittenAtAnyLength) {
  const std::string whole = "5:hello,";
  for (std::size_t bytes = 0; bytes < whole.size(); ++bytes) {
    const std::string name = WriteEnvelope("1", whole.substr(0, bytes));

    EXPECT_EQ(mailbox.Take(name, kMost).finding, Finding::kUnfinished) << bytes;
  }

  EXPECT_EQ(mailbox.Take(WriteEnvelope("1", whole), kMost).finding, Finding::kWhole);
}

TEST_F(AFolderOfEnvelopes, CallsOneBrokenWhoseEndHasNotComeForLong) {
  const std::string name = WriteEnvelope("1", "5:hel");

  clock.now += std::chrono::minutes(9);
  const Finding early = mailbox.Take(name, kMost).finding;
  clock.now += std::chrono::minutes(2);
  const TakenEnvelope late = mailbox.Take(name, kMost);

  EXPECT_EQ(early, Finding::kUnfinished);
  EXPECT_EQ(late.finding, Finding::kBroken);
  EXPECT_THAT(late.reason, HasSubstr("end is missing"));
}

TEST_F(AFolderOfEnvelopes, CallsAnOldOneBrokenAlsoWhereTheDisksClockIsAhead) {
  const std::string name = WriteEnvelope("1", "5:hel");

  clock.now -= std::chrono::minutes(11);

  EXPECT_EQ(mailbox.Take(name, kMost).finding, Finding::kBroken);
}

TEST_F(AFolderOfEnvelopes, CallsOneBrokenAtOnceThatCanNeverBecomeAnEnvelope) {
  EXPECT_EQ(mailbox.Take(WriteEnvelope("1", "Dear Birch,"), kMost).finding, Finding::kBroken);
  EXPECT_EQ(mailbox.Take(WriteEnvelope("2", "5:hello,and more"), kMost).finding, Finding::kBroken);
}

TEST_F(AFolderOfEnvelopes, TellsAFolderOfThatNameAndSetsItAsideWithAllInIt) {
  const std::string name = NameFor("1");
  std::filesystem::create_directory(path / name);
  WriteFile(path / name / "precious", "a");

  const TakenEnvelope taken = mailbox.Take(name, kMost);
  mailbox.SetAside(name, taken.reason);

  EXPECT_EQ(taken.finding, Finding::kNoFile);
  EXPECT_EQ(ReadFile(aside / name / "precious"), "a");
  EXPECT_THAT(mailbox.List(kBirch), IsEmpty());
}

TEST_F(AFolderOfEnvelopes, KeepsAllThatWasSetAsideUnderOneName) {
  const std::string name = NameFor("1");
  for (const char* const content : {"one", "two", "three"}) {
    WriteFile(path / name, content);
    mailbox.SetAside(name, "It is forged: " + std::string(content));
  }

  std::vector<std::string> contents;
  for (const std::string& file : FilesIn(aside)) contents.push_back(ReadFile(aside / file));
  EXPECT_THAT(contents, ::testing::UnorderedElementsAre("one", "two", "three", "It is forged: one\n",
                                                        "It is forged: two\n", "It is forged: three\n"));
}

TEST_F(AFolderOfEnvelopes, WritesReasonsThatNoTextOfOthersCanDisguise) {
  const std::string name = WriteEnvelope("1", "a");

  mailbox.SetAside(name, "It comes from \x1b[31mBirch\n.");

  EXPECT_EQ(ReadFile(aside / (name + ".why.txt")), "It comes from \\x1B[31mBirch\\x0A.\n");
}

TEST_F(AFolderOfEnvelopes, NeverReadsOrRemovesWhatLiesElsewhere) {
  WriteFile(parent / "0123456789abcdef-1.envelope", "5:hello,");

  for (const std::string& name :
       {std::string("../0123456789abcdef-1.envelope"),
        std::string("0123456789abcdef-/../../0123456789abcdef-1.envelope"), std::string("README.txt"), std::string(),
        std::string("0123456789abcdef-\0.envelope", 26)}) {
    EXPECT_THROW(mailbox.Take(name, kMost), MailboxError) << name;
    EXPECT_THROW(mailbox.Acknowledge(name), MailboxError) << name;
    EXPECT_THROW(mailbox.SetAside(name, "It is forged."), MailboxError) << name;
    EXPECT_THROW(mailbox.LiesThere(name), MailboxError) << name;
  }

  EXPECT_EQ(ReadFile(parent / "0123456789abcdef-1.envelope"), "5:hello,");
}

TEST_F(AFolderOfEnvelopes, TellsWhenItHasVanishedAndTakesNothingForGone) {
  const std::string name = mailbox.Put(kBirch, "hello");
  std::filesystem::remove_all(path);

  EXPECT_THAT(MessageOf<MailboxError>([&] { mailbox.List(kBirch); }),
              AllOf(HasSubstr("mail"), HasSubstr("disk or share is connected")));
  EXPECT_THROW(mailbox.Put(kBirch, "hello"), MailboxError);
  EXPECT_THROW(mailbox.Take(name, kMost), MailboxError);
  EXPECT_THROW(mailbox.Acknowledge(name), MailboxError);
  EXPECT_THROW(mailbox.SetAside(name, "It is forged."), MailboxError);
  EXPECT_THROW(mailbox.LiesThere(name), MailboxError);
  EXPECT_FALSE(std::filesystem::exists(path));
}

TEST_F(AFolderOfEnvelopes, TellsWhenItIsAFile) {
  std::filesystem::remove(path);
  WriteFile(path, "precious");

  EXPECT_THROW(mailbox.List(kBirch), MailboxError);
  EXPECT_THROW(mailbox.Put(kBirch, "hello"), MailboxError);

  EXPECT_EQ(ReadFile(path), "precious");
}

TEST_F(AFolderOfEnvelopes, LeavesAnEnvelopeWhereNothingCanBeSetAside) {
  const std::string name = WriteEnvelope("1", "a");
  WriteFile(aside, "precious");

  EXPECT_THROW(mailbox.SetAside(name, "It is forged."), MailboxError);

  EXPECT_TRUE(mailbox.LiesThere(name));
  EXPECT_EQ(ReadFile(aside), "precious");
}

TEST_F(AFolderOfEnvelopes, ListsNoDraftAndRemovesOneThatWasGivenUpADayAgo) {
  const std::string draft = "." + NameFor("1") + ".tmp";
  WriteFile(path / draft, "5:hel");

  EXPECT_THAT(mailbox.List(kBirch), IsEmpty());
  EXPECT_THAT(FilesIn(path), ElementsAre(draft));
  clock.now += std::chrono::hours(25);
  EXPECT_THAT(mailbox.List(kBirch), IsEmpty());
  EXPECT_THAT(FilesIn(path), IsEmpty());
}

TEST_F(AFolderOfEnvelopes, HoldsThousands) {
  constexpr std::size_t kMany = 3'000;
  for (std::size_t count = 0; count < kMany; ++count) WriteEnvelope(std::to_string(count), "1:a,");

  const std::vector<std::string> names = mailbox.List(kBirch);
  for (const std::string& name : names) mailbox.Acknowledge(name);

  EXPECT_THAT(names, SizeIs(kMany));
  EXPECT_THAT(FilesIn(path), IsEmpty());
}

TEST_F(AFolderOfEnvelopes, MayHaveANameInAnyLetters) {
  const std::filesystem::path named = path / std::filesystem::path(u8"M\u00FCller & S\u00F6hne");
  std::filesystem::create_directory(named);
  FolderMailbox other(named, clock);

  const std::string name = other.Put(kBirch, "hello");

  EXPECT_EQ(other.Take(name, kMost).bytes, "hello");
}

}  // namespace
}  // namespace exchange
