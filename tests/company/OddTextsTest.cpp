#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/company/LogReader.h"
#include "standalone/company/Session.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::Contains;
using testing::Field;

// Odd texts on their way through the module into the company file and the log of a complete host.
class OddTextInTheBooks : public CompanyFixture, public testing::WithParamInterface<std::string> {
 protected:
  static Util::TString Text() { return std::string_view(GetParam()); }

  MEStatusCode Relate() {
    return host_.Request(Access::kWrite, [] {
      return MultiEntityDriver::CreateRelation(Text(), Text(), MERelationType{}, MEStateWithoutAccounts, {});
    });
  }

  std::vector<LogLine> Log() {
    host_.Log().Flush();
    return LogReader(CompanyFile::LogPath(path_)).LastLines(100);
  }

  StandaloneHost host_{path_};
  Session session_{host_};
};

INSTANTIATE_TEST_SUITE_P(Every, OddTextInTheBooks,
                         testing::Values("%s%n%d%999999999s", "'; DROP TABLE--", "\"North\" & 'Co'", "\\x41\\0",
                                         "tab\tand\rline\n", "\x01\x02\x1b[31m\x7f", "\xc3\xa9\xe2\x82\xac"),
                         [](const auto& text) { return "number" + std::to_string(text.index); });

TEST_P(OddTextInTheBooks, IsTheRealmIdAndTheNameOfARelationByteByByte) {
  ASSERT_EQ(Relate(), MEStatusSuccess);

  DBMultiEntityRelation row{};
  EXPECT_EQ(host_.Request(Access::kRead, [&] { return MultiEntityDriver::GetRelation(Text(), row); }), MEStatusSuccess);

  EXPECT_EQ(row.realmId, GetParam());
  EXPECT_EQ(row.partnerName, GetParam());
}

TEST_P(OddTextInTheBooks, IsInTheLogAsItIs) {
  DBMultiEntityRelation row{};
  host_.Request(Access::kRead, [&] { return MultiEntityDriver::GetRelation(Text(), row); });

  EXPECT_THAT(Log(), Contains(Field(&LogLine::message,
                                    "MULTIENTITY_WARNING:: not able to get the relation as it is not part of table "
                                    "realm [" +
                                        GetParam() + "]")));
}

TEST_P(OddTextInTheBooks, IsRememberedAsTheCompanysRealm) {
  EXPECT_FALSE(host_.Request(Access::kWrite, [] { return MultiEntityDriver::BlockUserIfRealmReset(Text()); }));
  EXPECT_FALSE(host_.Request(Access::kWrite, [] { return MultiEntityDriver::BlockUserIfRealmReset(Text()); }));

  EXPECT_TRUE(host_.Request(Access::kWrite, [] { return MultiEntityDriver::BlockUserIfRealmReset("9130"); }));
}

class AMebibyteInTheBooks : public CompanyFixture {
 protected:
  static constexpr std::size_t kMebibyte = 1U << 20U;
  const std::string percents_ = std::string(kMebibyte, '%');

  StandaloneHost host_{path_};
  Session session_{host_};
};

TEST_F(AMebibyteInTheBooks, IsInTheLogAsAWhole) {
  const MEStatusCode status = host_.Request(
      Access::kWrite, [&] { return MultiEntityDriver::DeleteRelation(std::string_view(percents_), true); });

  EXPECT_EQ(status, MEStatusInvalidData);
  EXPECT_THAT(LogReader(CompanyFile::LogPath(path_)).LastLines(1),
              testing::ElementsAre(
                  Field(&LogLine::message,
                        "MULTIENTITY_ERROR::DeleteRelation failed as Invalid data for realm [" + percents_ + "]")));
}

TEST_F(AMebibyteInTheBooks, IsNoNameOfAnAccountAndBooksNothing) {
  std::uint32_t txnId = 0;
  host_.Request(Access::kWrite, [] {
    return MultiEntityDriver::CreateRelation("9130", "North", MERelationType{}, MEStateWithoutAccounts, {});
  });

  const MEStatusCode status = host_.Request(Access::kWrite, [&] {
    return MultiEntityDriver::RecordGeneralJournalEntry(
        "9130", {.name = std::string_view(percents_), .type = KrEnumerations::kExpense, .accountId = -1, .role = {}}, 1,
        "1.00", "request", {.name = std::string_view(percents_), .nameId = -1}, txnId);
  });

  EXPECT_EQ(status, MEStatusAccountFailed);
  EXPECT_EQ(Count(host_, "SELECT (SELECT count(*) FROM account) + (SELECT count(*) FROM txn)"), 0);
}

TEST_F(AMebibyteInTheBooks, IsRememberedAsTheCompanysRealm) {
  const auto isReset = [&](std::string_view realm) {
    return host_.Request(Access::kWrite, [&] { return MultiEntityDriver::BlockUserIfRealmReset(realm); });
  };

  EXPECT_FALSE(isReset(percents_));
  EXPECT_FALSE(isReset(percents_));

  EXPECT_EQ(Count(host_, "SELECT length(value) FROM preference WHERE key = 'MERealmId'"), kMebibyte);
  EXPECT_TRUE(isReset(percents_.substr(1)));
}

// For the module a text ends at its NUL, as in every field of a row and in the log; the company file is handed whole
// texts.
class ANulInTheBooks : public CompanyFixture {
 protected:
  const std::string text_{
      "91\0"
      "30",
      5};

  MEStatusCode Relate() {
    return host_.Request(Access::kWrite, [&] {
      return MultiEntityDriver::CreateRelation(std::string_view(text_), std::string_view(text_), MERelationType{},
                                               MEStateWithoutAccounts, {});
    });
  }
  MEStatusCode Read(std::string_view realm, DBMultiEntityRelation& row) {
    return host_.Request(Access::kRead, [&] { return MultiEntityDriver::GetRelation(realm, row); });
  }

  StandaloneHost host_{path_};
  Session session_{host_};
};

TEST_F(ANulInTheBooks, EndsARealmIdAndTheNameOfARelation) {
  ASSERT_EQ(Relate(), MEStatusSuccess);

  DBMultiEntityRelation row{};
  EXPECT_EQ(Read("91", row), MEStatusSuccess);
  EXPECT_STREQ(row.realmId, "91");
  EXPECT_STREQ(row.partnerName, "91");
  EXPECT_EQ(
      Count(host_, "SELECT count(*) FROM me_relation WHERE hex(realm_id) = '3931' AND hex(partner_name) = '3931'"), 1);
}

TEST_F(ANulInTheBooks, DoesNotMakeAnotherPartnerOfTheTextBeforeIt) {
  ASSERT_EQ(Relate(), MEStatusSuccess);

  DBMultiEntityRelation row{};
  EXPECT_EQ(Read(text_, row), MEStatusInvalidData);
  host_.Log().Flush();
  EXPECT_THAT(LogReader(CompanyFile::LogPath(path_)).LastLines(1),
              testing::ElementsAre(Field(&LogLine::message,
                                         "MULTIENTITY_WARNING:: not able to get the relation as it is not part of "
                                         "table realm [91]")));
}

TEST_F(ANulInTheBooks, IsInTheRememberedRealm) {
  host_.Request(Access::kWrite, [&] { return MultiEntityDriver::BlockUserIfRealmReset(std::string_view(text_)); });

  EXPECT_EQ(Count(host_, "SELECT hex(value) = '3931003330' FROM preference WHERE key = 'MERealmId'"), 1);
}

class OddCommand : public CompanyFixture, public testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(Every, OddCommand,
                         testing::Values(std::string("krw:LaunchMEPlugin?context=ICT_SCHEDULER\0", 41),
                                         std::string(1U << 20U, '%'), "%s%n", ""),
                         [](const auto& text) { return "number" + std::to_string(text.index); });

TEST_P(OddCommand, IsRefused) {
  StandaloneHost host(path_);

  EXPECT_THROW(
      host.Request(Access::kWrite,
                   [&] { host.Services().application.ExecuteCommand(CCommandAndArgs(std::string_view(GetParam()))); }),
      std::runtime_error);
}

}  // namespace
}  // namespace standalone
