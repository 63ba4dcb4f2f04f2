#pragma once

#include <functional>
#include <string>

#include "standalone/app/Dialogue.h"
#include "standalone/desk/Entering.h"

namespace app {

// The transaction as people check it: what it is, then its lines with debits, credits and partners.
std::string EnteredText(const desk::RecordedTransaction& transaction);

// Asks the person at the terminal for what a transaction still needs. A wrong answer is told and asked for again; when
// the input ends, everything throws std::runtime_error which says that nothing was saved.
class EntryDialogue {
 public:
  // The company outlives this.
  EntryDialogue(ReadLine person, desk::Company& company) : person_(std::move(person)), company_(company) {}

  // Of a transaction without lines, for all that was left out.
  void Complete(desk::TransactionToRecord& transaction) const;
  bool Confirm(const desk::RecordedTransaction& preview) const;

 private:
  // Hands answers to `take` until it throws no refusal.
  void Ask(const std::string& question, const std::function<void(const std::string& answer)>& take) const;
  void RequireGiven(const desk::TransactionToRecord& transaction) const;
  void AskForDate(desk::TransactionToRecord& transaction) const;
  void AskForName(desk::TransactionToRecord& transaction) const;
  void AskForNumberAndMemo(desk::TransactionToRecord& transaction) const;
  void AskForLines(desk::TransactionToRecord& transaction) const;
  bool AskForLine(desk::TransactionToRecord& transaction) const;
  void AskForAccountToCredit(desk::TransactionToRecord& transaction) const;
  void AskForShares(desk::TransactionToRecord& transaction) const;
  void RequireBalance(const desk::TransactionToRecord& transaction) const;

  ReadLine person_;
  desk::Company& company_;
};

}  // namespace app
