#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "standalone/books/RowFields.h"
#include "tests/company/CompanyFixture.h"

namespace standalone {
namespace {

using testing::Eq;
using testing::Optional;

// Of two partners; within one unit of work.
class KnownRequests : public CompanyFixture {
 protected:
  std::int32_t Relate(std::string_view realm) {
    DBMultiEntityRelation relation{};
    Fill(relation.realmId, realm);
    relation.state = 3;
    host_.Relations().Add(relation, 0);
    return relation.relationId;
  }
  void Carry(std::int32_t relationId, std::string_view request) {
    DBMultiEntityTransaction row{};
    row.txnId = ++lastId_;
    row.targetId = lastId_;
    row.relationId = relationId;
    row.txnType = kTxnTypeJournalEntry;
    Fill(row.requestId, request);
    host_.Intercompany().Add(row);
  }
  void Reject(std::int32_t relationId, std::string_view request) {
    DBMultiEntityRejectedTxnReceiver row{};
    row.relationId = relationId;
    row.txnType = kTxnTypeBill;
    Fill(row.requestId, request);
    host_.Rejected().Add(row);
  }
  auto Booked(std::string_view request) { return host_.Intercompany().FindRequestButForBlanks(birch_, request); }
  auto Rejected(std::string_view request) { return host_.Rejected().FindButForBlanks(birch_, request); }
  auto BookedInOtherLetters(std::string_view request) {
    return host_.Intercompany().FindRequestButForCase(birch_, request);
  }
  auto RejectedInOtherLetters(std::string_view request) { return host_.Rejected().FindButForCase(birch_, request); }

  StandaloneHost host_{path_};
  UnitOfWork unit_{host_.Data(), Access::kWrite};
  const std::int32_t birch_ = Relate("1001");
  const std::int32_t cedar_ = Relate("1002");
  std::int32_t lastId_ = 0;
};

TEST_F(KnownRequests, AreFoundWhateverBlanksAreAtTheirEnds) {
  for (const char* const known : {"bare", "behind  ", " before", "  both "}) {
    Carry(birch_, known);
    Reject(birch_, known);
  }

  for (const auto& [request, known] : {std::pair{"bare ", "bare"},
                                       {" bare", "bare"},
                                       {"  bare  ", "bare"},
                                       {"bare", "bare"},
                                       {"behind", "behind  "},
                                       {" behind", "behind  "},
                                       {"before", " before"},
                                       {"before ", " before"},
                                       {"both", "  both "}}) {
    EXPECT_THAT(Booked(request), Optional(Eq(known))) << request;
    EXPECT_THAT(Rejected(request), Optional(Eq(known))) << request;
  }
}

TEST_F(KnownRequests, AreOthersWhenTheyDifferByMoreThanBlanksAtTheirEnds) {
  for (const char* const known : {"R-1", "R-1 b", "R-1!", "r-2", " R-3 b"}) {
    Carry(birch_, known);
    Reject(birch_, known);
  }

  for (const char* const request : {"R-", "R-1b", "R-11", "R -1", "R-2", "R-3", "b", "R-1 "}) {
    const bool isKnown = std::string_view(request) == "R-1 ";
    EXPECT_EQ(Booked(request).has_value(), isKnown) << request;
    EXPECT_EQ(Rejected(request).has_value(), isKnown) << request;
  }
}

TEST_F(KnownRequests, AreFoundWhateverTheCaseOfTheLettersThatAreTyped) {
  for (const char* const known : {"0193b38b-fb4c", "0193B38B-FB4D", "inv-7a", "r\u00e9f-1"}) {
    Carry(birch_, known);
    Reject(birch_, known);
  }

  for (const auto& [request, known] : {std::pair{"0193B38B-FB4C", "0193b38b-fb4c"},
                                       {"0193b38B-Fb4c", "0193b38b-fb4c"},
                                       {"0193b38b-fb4d", "0193B38B-FB4D"},
                                       {"INV-7A", "inv-7a"},
                                       {"iNV-7A", "inv-7a"},
                                       {"R\u00e9F-1", "r\u00e9f-1"}}) {
    EXPECT_THAT(BookedInOtherLetters(request), Optional(Eq(known))) << request;
    EXPECT_THAT(RejectedInOtherLetters(request), Optional(Eq(known))) << request;
  }
  for (const char* const request : {"inv-7a", "INV-7", "INV-7AB", "INV_7A", "0193b38b-fb4e", "nv-7a"}) {
    EXPECT_EQ(BookedInOtherLetters(request), std::nullopt) << request;
    EXPECT_EQ(RejectedInOtherLetters(request), std::nullopt) << request;
  }
}

TEST_F(KnownRequests, AreThoseOfOnePartner) {
  Carry(cedar_, "R-1");
  Reject(cedar_, " R-1");
  Reject(cedar_, "R-1");

  EXPECT_EQ(BookedInOtherLetters("r-1"), std::nullopt);
  EXPECT_EQ(RejectedInOtherLetters("r-1"), std::nullopt);

  EXPECT_EQ(Booked("R-1 "), std::nullopt);
  EXPECT_EQ(Rejected("R-1 "), std::nullopt);
}

}  // namespace
}  // namespace standalone
