#include "faults/Scenario.h"

namespace faults {

namespace {

const std::string kRecord = "MultiEntityDriver::RecordGeneralJournalEntry";
const std::string kRemove = "MultiEntityDriver::RemoveGeneralJournalEntry";

std::function<std::string(Company&)> Booking(std::int32_t accountId, std::int32_t nameId, const char* requestId) {
  return [=](Company& company) {
    return Text(MultiEntityDriver::RecordGeneralJournalEntry(
        "9130",
        {.name = "Travel", .type = KrEnumerations::kExpense, .accountId = accountId, .role = MEAccountRoleDueFrom}, 12,
        "99.50", requestId, {.name = "Airline", .nameId = nameId}, company.results.txnId));
  };
}

// The store declines a second row for a line, which is when the booking is undone.
void TakeTheNextLine(Company& company) {
  company.host.store.transactions.push_back(TransactionRow({.txnId = 99, .relationId = 5, .targetId = 303}));
}

}  // namespace

// Whatever is thrown while an entry is recorded leaves what was already booked.
std::vector<Scenario> JournalScenarios() {
  const Handling caught = Ends("14", {Error("MULTIENTITY_ERROR:: exception occured during fetching data  " + kRecord)});
  // The caller has the entry's id from the moment at which there is a row to be saved.
  const Handling caughtWithId = Handling(caught).With("txnId 0", "txnId 31");
  const Handling caughtWithoutId = Handling(caught).With("txnId 31", "txnId 0");
  const auto expenseAccount = [](const std::string& id) {
    return Ends("6", {Error("MULTIENTITY_ERROR:: no matching Expense Accnt for id [" + id + "] in  " + kRecord)});
  };
  const std::string saveFailed = Error("MULTIENTITY_ERROR:: Not able to save GJE data in ME Txn table in  " + kRecord);
  const Table record = Table{
      {"FeaturePermissionAvailable(19, 1, 0)",
       Ends("3", {Notice("MULTIENTITY::Exiting MultiEntityDriver::HasMEPermission"),
                  Trace("MULTIENTITY: No permission to record GJE")}),
       Ends("3", {Notice("MULTIENTITY::Exiting MultiEntityDriver::HasMEPermission"),
                  Trace("MULTIENTITY: No permission to record GJE")})},
      {"CreateNewChartOfAccount", WhenFailing(Ends("6")).Or(kEdListDuplicateAccount, Ends("5")), caught},
      {"OpenAccount", NoSuchFailure(), caught},
      {"GetAccountForRecnum(15)", expenseAccount("15"), caught},
      {"GetAccountForRecnum(16)", expenseAccount("16"), caught},
      {"GetRelation",
       Ends("12", {Error("MULTIENTITY_ERROR:: Relation fatching failed for realm [9130] in " + kRecord)}), caught},
      {"GetAccountForRecnum(12)",
       Ends("6", {Error("MULTIENTITY_ERROR:: no matching Due to Accnt for id [12] in  " + kRecord)}), caught},
      {"CreateCName", WhenFailing(Ends("17")).Or(kEdListDuplicateName, Ends("16")), caught},
      {"CreateGeneralJournalEntry", Ends("0", {Error("MULTIENTITY_ERROR:: Not able to create GJE in  " + kRecord)}),
       caught},
      {"InvalidParameter", NoSuchFailure(), caughtWithoutId},
      {"SaveTransaction",
       Ends("0", {saveFailed})
           .AfterAsking({"DeleteGeneralJournalEntry"})
           .Undone("CreateGeneralJournalEntry")
           .With("txnId 0", "txnId 31"),
       caughtWithId}};
  const Table undo =
      Table{
          {"SaveTransaction", GoesOn(), caughtWithId},
          {"DeleteGeneralJournalEntry",
           Ends("18", {Error("MULTIENTITY_ERROR:: Not able to delete GJE in  " + kRecord)}).With("txnId 0", "txnId 31"),
           caughtWithId}} +
      record;
  const Handling entryStays = Ends("18", {Error("MULTIENTITY_ERROR:: Not able to delete GJE in  " + kRemove)});
  const Handling rowsStay =
      Ends("19", {Error("MULTIENTITY_ERROR:: Not able to save GJE data in ME Txn table in  " + kRemove)});

  return {
      {"RecordingAnEntryOnAnAccountAndANameThatExist", "MultiEntityDriver::RecordGeneralJournalEntry", Nothing,
       Booking(15, 33, "new-request"), record},
      {"RecordingAnEntryOnANewAccountAndANewName", "MultiEntityDriver::RecordGeneralJournalEntry", Nothing,
       Booking(-1, -1, "new-request"), record},
      {"RecordingAnEntryUnderARequestIdThatDoesNotFit", "MultiEntityDriver::RecordGeneralJournalEntry", Nothing,
       Booking(15, 33, "7777777777777777777777777777777777777"), record},
      {"RecordingAnEntryWhoseRowIsDeclined", "MultiEntityDriver::RecordGeneralJournalEntry", TakeTheNextLine,
       Booking(15, 33, "new-request"), undo},
      {"RemovingAnEntry",
       "MultiEntityDriver::RemoveGeneralJournalEntry",
       Nothing,
       [](Company& /*company*/) { return Text(MultiEntityDriver::RemoveGeneralJournalEntry(30)); },
       {{"DeleteGeneralJournalEntry", entryStays, entryStays}, {"DeleteTransaction", rowsStay, rowsStay}}},
  };
}

}  // namespace faults
