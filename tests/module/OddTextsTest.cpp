#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "module/Arrangements.h"

// Texts are data: nothing in them is a format, a quote or an end for the module but the NUL that ends a row's field.

namespace {

using testing::Contains;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::size_t kMebibyte = 1U << 20U;

std::string Repeated(std::string_view text, std::size_t size) {
  std::string repeated;
  while (repeated.size() < size) repeated += text;
  repeated.resize(size);
  return repeated;
}

Util::TString Of(const std::string& text) {
  return std::string_view(text);
}

// As short as a realm id has to be.
class OddText : public Company, public testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(Every, OddText,
                         testing::Values("%s%n%d%999999999s", "100%", "'; DROP TABLE--", "\"North\" & 'Co'", "\\x41\\0",
                                         "tab\tand\rline\n", "\x01\x02\x1b[31m\x7f", "\xff\xfe\x80",
                                         "\xc3\xa9\xe2\x82\xac"),
                         [](const auto& text) { return "number" + std::to_string(text.index); });

TEST_P(OddText, AsARealmIdAndANameIsStoredByteByByte) {
  EXPECT_EQ(
      MultiEntityDriver::CreateRelation(Of(GetParam()), Of(GetParam()), MERelationType{}, MEStateWithoutAccounts, {}),
      MEStatusSuccess);

  ASSERT_THAT(host.store.relations, SizeIs(1));
  EXPECT_EQ(host.store.relations[0].realmId, GetParam());
  EXPECT_EQ(host.store.relations[0].partnerName, GetParam());
  EXPECT_THAT(host.Calls(), Contains("GetRelation(" + GetParam() + ")"));
}

TEST_P(OddText, AsARealmIdThatIsNotKnownIsInTheLogAsItIs) {
  DBMultiEntityRelation row{};
  EXPECT_EQ(MultiEntityDriver::GetRelation(Of(GetParam()), row), MEStatusInvalidData);

  EXPECT_THAT(host.Lines(),
              Contains(Warning("MULTIENTITY_WARNING:: not able to get the relation as it is not part of table realm [" +
                               GetParam() + "]")));
}

TEST_P(OddText, AsARequestIdIsBookedFoundAndToldAsItIs) {
  host.store.relations = {RelationRow({.relationId = 5})};
  host.names.names = {{31, {.text = "Airline"}}};
  std::uint32_t txnId = 0;

  EXPECT_EQ(MultiEntityDriver::RecordGeneralJournalEntry("9130", DueFrom(11), 12, "1.00", Of(GetParam()),
                                                         {.name = "Airline", .nameId = 31}, txnId),
            MEStatusSuccess);
  EXPECT_EQ(MultiEntityDriver::DoesTransactionExist("9130", Of(GetParam())), MEStatusSuccess);

  EXPECT_EQ(host.store.transactions.at(0).requestId, GetParam());
  EXPECT_THAT(host.Lines(),
              Contains(Trace("MULTIENTITY:: Matching Transaction found for partner realm [9130], request id [" +
                             GetParam() + "]")));
}

TEST_P(OddText, AsANameUnderAnotherIsShownAsItIs) {
  host.store.relations = {RelationRow({.relationId = 5})};
  host.names.names = {{31, {.text = GetParam()}}, {32, {.text = GetParam(), .parent = 31}}};
  host.lines.lines = {{101, {.txnId = 10, .txnType = kTxnTypeBill, .nameId = 32}}};
  host.store.transactions = {TransactionRow({.txnId = 10, .relationId = 5, .targetId = 101, .txnType = 9})};
  std::vector<METxnInfo> list;

  EXPECT_EQ(MultiEntityDriver::GetListOfTxnTargetEntries(list, 10), MEStatusSuccess);

  EXPECT_EQ(list.at(0).txnName, Of(GetParam() + ":" + GetParam()));
}

TEST_P(OddText, AsTheRememberedRealmIsComparedByteByByte) {
  host.databasePreferences.values = {{"MERealmId", GetParam()}};

  EXPECT_FALSE(MultiEntityDriver::BlockUserIfRealmReset(Of(GetParam())));
  EXPECT_TRUE(MultiEntityDriver::BlockUserIfRealmReset(Of(GetParam() + "x")));
}

class ATextOfAMebibyte : public Company {
 protected:
  const std::string text = Repeated("%s'\"\x01", kMebibyte);
};

TEST_F(ATextOfAMebibyte, IsNoRealmIdAndIsInTheLogAsAWhole) {
  EXPECT_EQ(MultiEntityDriver::DeleteRelation(Of(text), true), MEStatusInvalidData);

  EXPECT_THAT(host.CallsOf({"GetRelation"}), IsEmpty());
  EXPECT_EQ(host.Lines().back().message,
            "MULTIENTITY_ERROR::DeleteRelation failed as Invalid data for realm [" + text + "]");
}

TEST_F(ATextOfAMebibyte, IsNoRequestIdOfAnUpdate) {
  EXPECT_EQ(MultiEntityDriver::UpdateTransactionWithState("9130", Of(text), MEStateEstablished), MEStatusInvalidData);

  EXPECT_EQ(host.Lines().back().message,
            "MULTIENTITY_ERROR::UpdateRelationsWithState failed as Invalid data for requestId [" + text + "]");
}

TEST_F(ATextOfAMebibyte, DoesNotRunOverTheFieldsOfARejectedTransaction) {
  host.store.relations = {RelationRow({.relationId = 5})};

  EXPECT_EQ(MultiEntityDriver::SaveRejectedTransaction(Of(text), kTxnTypeBill, "9130", Of(text), Of(text)),
            MEStatusSuccess);

  EXPECT_THAT(host.CallsOf({"InvalidParameter"}), SizeIs(3));
  const DBMultiEntityRejectedTxnReceiver& row = host.store.rejected.at(0);
  EXPECT_THAT(row.requestId, testing::Each('\0'));
  EXPECT_THAT(row.amount, testing::Each('\0'));
  EXPECT_THAT(row.partnerTxnId, testing::Each('\0'));
}

TEST_F(ATextOfAMebibyte, AsANameReachesTheHostAndTheScreenAsAWhole) {
  host.store.relations = {RelationRow({.relationId = 5})};
  host.names.names = {{31, {.text = text}}};
  host.lines.lines = {{101, {.txnId = 10, .txnType = kTxnTypeCheck, .accountName = text, .nameId = 31}}};
  host.store.transactions = {TransactionRow({.txnId = 10, .relationId = 5, .targetId = 101, .txnType = 3})};
  std::vector<METxnInfo> list;

  EXPECT_EQ(MultiEntityDriver::GetListOfTxnTargetEntries(list, NullDate(), NullDate()), MEStatusSuccess);

  EXPECT_EQ(list.at(0).txnName, Of(text));
  EXPECT_EQ(list.at(0).billCheckAccountName, Of(text));
}

class ATextWithANul : public Company {
 protected:
  const std::string text{
      "91\0"
      "30",
      5};
};

TEST_F(ATextWithANul, EndsInAFieldAtTheNul) {
  EXPECT_EQ(MultiEntityDriver::CreateRelation(Of(text), Of(text), MERelationType{}, MEStateWithoutAccounts, {}),
            MEStatusSuccess);

  EXPECT_EQ(host.store.relations.at(0).realmId, std::string_view("91"));
}

TEST_F(ATextWithANul, IsNotTheTextBeforeTheNul) {
  host.store.relations = {RelationRow({.relationId = 5, .realmId = "91"})};
  host.databasePreferences.values = {{"MERealmId", "91"}};

  EXPECT_EQ(MultiEntityDriver::DoesTransactionExist(Of(text), "request"), MEStatusDeclined);
  EXPECT_TRUE(MultiEntityDriver::BlockUserIfRealmReset(Of(text)));
}

TEST_F(ATextWithANul, EndsInTheLogAtTheNul) {
  DBMultiEntityRelation row{};
  MultiEntityDriver::GetRelation(Of(text), row);

  EXPECT_THAT(host.Lines(), Contains(Warning("MULTIENTITY_WARNING:: not able to get the relation as it is not part of "
                                             "table realm [91]")));
}

}  // namespace
