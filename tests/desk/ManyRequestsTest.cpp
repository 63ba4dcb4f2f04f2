#include <cstddef>
#include <string>
#include <vector>

#include "standalone/desk/Import.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Names.h"
#include "tests/desk/PairedCompanies.h"

namespace desk {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

// More than is read of the books at once, and than a run tells of.
constexpr std::size_t kMany = 1'030;
constexpr std::size_t kTold = 1'000;

// Alder has entered them, each with a half that Birch bears.
class ManyBills : public PairedCompanies {
 protected:
  ManyBills() : PairedCompanies({"Alder", "Birch"}) { PairOverTheFolder(); }

  void Enter(const std::vector<std::string>& requests) {
    const std::string realm = RealmOf("Birch");
    std::string csv = "transaction,type,date,name,memo,account,amount,line_memo,partner_realm,request_id,state\n";
    for (const std::string& request : requests) {
      csv += request + ",bill,2026-11-02,Hillcrest,Inspection,Maintenance,50.00,,,,\n";
      csv += request + ",,,,,Due from Birch,50.00,," + realm + "," + request + ",entered\n";
      csv += request + ",,,,,Accounts Payable,-100.00,,,,\n";
    }
    standalone::WriteFile(folder_ / "bills.csv", csv);
    At("Alder", [&](Company& company) {
      desk::AddName(company, {.name = "Hillcrest", .kind = "vendor"});
      Import(company, Importable::kTransactions, folder_ / "bills.csv");
    });
  }

  static std::vector<std::string> Requests() {
    std::vector<std::string> requests;
    for (std::size_t i = 1; i <= kMany; ++i) requests.push_back("R-" + std::to_string(i));
    return requests;
  }
};

TEST_F(ManyBills, AreAllSentWhereSomeCannotBe) {
  std::vector<std::string> requests = Requests();
  requests[3] = "same";
  requests[900] = "SAME";
  Enter(requests);

  const std::vector<CarriedWith> carried = Carry("Alder");

  EXPECT_EQ(carried.at(0).sent, kMany - 2);
  EXPECT_THAT(carried.at(0).notSent, ElementsAre(AllOf(HasSubstr("\"same\""), HasSubstr("cannot be told from")),
                                                 AllOf(HasSubstr("\"SAME\""), HasSubstr("cannot be told from"))));
}

TEST_F(ManyBills, AreAllTakenWhereARunTellsOfTheFirstOnes) {
  Enter(Requests());
  Carry("Alder");

  const std::vector<CarriedWith> carried = Carry("Birch");

  std::size_t told = 0;
  std::size_t more = 0;
  for (const TakenLetter& letter : carried.at(0).taken) {
    told += letter.done.size();
    more += letter.moreDone;
  }
  EXPECT_EQ(told, kTold);
  EXPECT_EQ(more, kMany - kTold);
  EXPECT_THAT(At("Birch", [](Company& company) { return ListInbox(company, {}); }), SizeIs(kMany));
}

}  // namespace
}  // namespace desk
