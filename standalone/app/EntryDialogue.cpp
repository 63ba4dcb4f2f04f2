#include "standalone/app/EntryDialogue.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include "standalone/app/terminal/Table.h"
#include "standalone/desk/results/Refusal.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

using desk::EnteredType;
using standalone::Trimmed;

std::string FormatSum(const desk::RecordedTransaction& transaction, bool isOfDebits) {
  standalone::Money sum = transaction.lines.at(0).amount;
  sum.minorUnits = 0;
  for (const desk::RecordedLine& line : transaction.lines) {
    if ((line.amount.minorUnits > 0) == isOfDebits) sum.minorUnits += line.amount.minorUnits;
  }
  if (!isOfDebits) sum.minorUnits = -sum.minorUnits;
  return standalone::FormatAmount(sum);
}

// What is not posted yet has no request ids.
Table LinesTableOf(const desk::RecordedTransaction& transaction) {
  const bool isPosted = transaction.txnId != 0;
  std::vector<Column> columns{{.title = "Account"},
                              {.title = "Debit", .align = Align::kRight},
                              {.title = "Credit", .align = Align::kRight},
                              {.title = "Partner", .importance = Importance::kMajor},
                              {.title = "Memo", .importance = Importance::kMinor}};
  if (isPosted) columns.push_back({.title = "Request", .importance = Importance::kDetail, .fit = Fit::kWhole});
  Table table(std::move(columns));
  for (const desk::RecordedLine& line : transaction.lines) {
    const bool isDebit = line.amount.minorUnits > 0;
    standalone::Money shown = line.amount;
    if (!isDebit) shown.minorUnits = -shown.minorUnits;
    const std::string amount = standalone::FormatAmount(shown);
    std::vector<std::string> cells{line.account.name, isDebit ? amount : "", isDebit ? "" : amount,
                                   line.partners ? line.partners->partner : "", line.memo};
    if (isPosted) cells.push_back(line.partners ? line.partners->requestId : "");
    table.Add(std::move(cells));
  }
  std::vector<std::string> total{"Total", FormatSum(transaction, /*isOfDebits=*/true),
                                 FormatSum(transaction, /*isOfDebits=*/false), "", ""};
  if (isPosted) total.emplace_back();
  table.AddTotal(std::move(total));
  return table;
}

const char* QuestionForTheName(EnteredType type) noexcept {
  switch (type) {
    case EnteredType::kBill:
      return "From whom (a name, or + and the name of a new vendor)";
    case EnteredType::kCheck:
      return "To whom (a name, or + and the name of a new vendor)";
    case EnteredType::kEntry:
      break;
  }
  return "Name (or none)";
}

// The answer up to its first blank, and what stands behind it.
std::pair<std::string, std::string> FirstWordAndRest(const std::string& answer) {
  const std::size_t blank = answer.find_first_of(" \t");
  if (blank == std::string::npos) return {answer, ""};
  return {answer.substr(0, blank), std::string(Trimmed(std::string_view(answer).substr(blank)))};
}

// Who just goes on has not agreed.
bool IsYes(const std::string& answer) {
  if (answer.empty() || standalone::EqualIgnoringCase(answer, "n")) return false;
  return standalone::EqualIgnoringCase(answer, "y") || standalone::ParseYesNo("The answer", answer);
}

}  // namespace

std::string EnteredText(const desk::RecordedTransaction& transaction) {
  std::string text = NounOf(transaction.type);
  if (transaction.txnId != 0) text += fmt::format(" {}", transaction.txnId);
  text += fmt::format(" of {}", standalone::FormatIsoDate(transaction.date));
  const auto add = [&text](const std::string& part) {
    if (!part.empty()) text += ", " + standalone::Shown(part);
  };
  if (transaction.name) add(transaction.name->name + (transaction.name->id == 0 ? " (new)" : ""));
  if (!transaction.documentNumber.empty()) add("number " + transaction.documentNumber);
  add(transaction.memo);
  text.front() = static_cast<char>(text.front() - 'a' + 'A');
  text += fmt::format(", {}\n\n{}", transaction.lines.at(0).amount.currency, LinesTableOf(transaction).Text());
  for (const std::string& attachment : transaction.attachments) {
    text += fmt::format("Attachment: {}\n", standalone::Shown(attachment));
  }
  return text;
}

void EntryDialogue::Ask(const std::string& question, const std::function<void(const std::string& answer)>& take) const {
  while (true) {
    const std::optional<std::string> line = person_(question + ": ");
    if (!line) throw std::runtime_error("the input has ended; nothing was saved");
    try {
      take(std::string(Trimmed(*line)));
      return;
    } catch (const desk::Refused& refused) {
      ShowPrompt(fmt::format("  {}\n", standalone::Shown(refused.what())));
    } catch (const standalone::InvalidInput& wrong) {
      ShowPrompt(fmt::format("  {}\n", standalone::Shown(wrong.what())));
    }
  }
}

void EntryDialogue::Complete(desk::TransactionToRecord& transaction) const {
  const bool isAskedForAll = transaction.lines.empty();
  // What was sent before has all of it.
  const bool wasSent = !transaction.lost.empty();
  if (isAskedForAll && !wasSent) {
    RequireGiven(transaction);
    AskForDate(transaction);
  }
  const bool needsName = transaction.type != EnteredType::kEntry || isAskedForAll;
  if (needsName && !wasSent && std::holds_alternative<std::monostate>(transaction.name)) AskForName(transaction);
  if (isAskedForAll && !wasSent) AskForNumberAndMemo(transaction);
  if (isAskedForAll) AskForLines(transaction);
  AskForAccountToCredit(transaction);
  if (isAskedForAll && transaction.shares.empty()) AskForShares(transaction);
}

// What was given on the command line, before anything is typed in vain.
void EntryDialogue::RequireGiven(const desk::TransactionToRecord& transaction) const {
  if (transaction.date) desk::RequireDay(company_, transaction.date, transaction.closedDays);
  if (const auto* const vendor = std::get_if<desk::NewVendor>(&transaction.name)) {
    desk::RequireNewVendor(company_, *vendor);
  } else if (const auto* const named = std::get_if<desk::Existing>(&transaction.name)) {
    desk::RequireName(company_, named->text);
  }
}

void EntryDialogue::AskForDate(desk::TransactionToRecord& transaction) const {
  if (transaction.date) return;
  Ask("Date (YYYY-MM-DD, or none for today)", [&](const std::string& answer) {
    std::optional<DateType32> date;
    if (!answer.empty()) date = standalone::ParseDate("The date", answer);
    desk::RequireDay(company_, date, transaction.closedDays);
    transaction.date = date;
  });
}

void EntryDialogue::AskForNumberAndMemo(desk::TransactionToRecord& transaction) const {
  if (transaction.documentNumber.Text().empty()) {
    Ask("Document number (or none)", [&](const std::string& answer) {
      transaction.documentNumber = standalone::DocumentNumber(answer);
      desk::RequireAnotherDocument(company_, transaction);
    });
  } else {
    desk::RequireAnotherDocument(company_, transaction);
  }
  if (transaction.memo.Text().empty()) {
    Ask("Memo (or none)", [&](const std::string& answer) { transaction.memo = standalone::Memo(answer); });
  }
}

void EntryDialogue::AskForName(desk::TransactionToRecord& transaction) const {
  Ask(QuestionForTheName(transaction.type), [&](const std::string& answer) {
    if (answer.starts_with('+')) {
      const desk::NewVendor vendor{standalone::NewListName(Trimmed(std::string_view(answer).substr(1)))};
      desk::RequireNewVendor(company_, vendor);
      transaction.name = vendor;
    } else if (!answer.empty()) {
      desk::RequireName(company_, answer);
      transaction.name = desk::Existing{answer};
    } else if (transaction.type != EnteredType::kEntry) {
      throw standalone::InvalidInput("A name is needed.");
    }
  });
}

void EntryDialogue::AskForLines(desk::TransactionToRecord& transaction) const {
  while (AskForLine(transaction)) {
  }
}

// False when there are no more.
bool EntryDialogue::AskForLine(desk::TransactionToRecord& transaction) const {
  std::string account;
  Ask(fmt::format("Line {}, account (or none when there are no more)", transaction.lines.size() + 1),
      [&](const std::string& answer) {
        account = answer;
        if (!answer.empty()) {
          desk::RequireAccount(company_, transaction.type, answer);
        } else if (transaction.lines.empty()) {
          throw standalone::InvalidInput("A line is needed.");
        } else if (transaction.type == EnteredType::kEntry) {
          RequireBalance(transaction);
        }
      });
  if (account.empty()) return false;
  Ask("  amount, and a memo behind it", [&](const std::string& answer) {
    const auto [amount, memo] = FirstWordAndRest(answer);
    desk::EnteredLine line{
        .account = account, .amount = standalone::LineAmount(amount), .memo = standalone::Memo(memo)};
    if (desk::RequireAmount(company_, line.amount).minorUnits == 0) {
      throw standalone::InvalidInput("A line over nothing is not booked.");
    }
    transaction.lines.push_back(line);
  });
  return true;
}

// Tells of what stands against the transaction otherwise, too.
void EntryDialogue::AskForAccountToCredit(desk::TransactionToRecord& transaction) const {
  try {
    desk::RecordTransaction(company_, transaction, desk::Posting::kPreviewOnly);
  } catch (const desk::Refused& refused) {
    const desk::Remedy remedy = refused.Value().remedy;
    const bool isOpen = remedy == desk::Remedy::kNameThePayable || remedy == desk::Remedy::kNameTheBank;
    if (!isOpen || transaction.credited) throw;
    ShowPrompt(fmt::format("  {}\n", standalone::Shown(refused.what())));
    Ask("Account to credit", [&](const std::string& answer) {
      desk::TransactionToRecord tried = transaction;
      tried.credited = answer;
      desk::RecordTransaction(company_, tried, desk::Posting::kPreviewOnly);
      transaction.credited = answer;
    });
  }
}

void EntryDialogue::AskForShares(desk::TransactionToRecord& transaction) const {
  while (true) {
    std::string partner;
    Ask("Partner who bears a part (realm or name, or none when there are no more)", [&](const std::string& answer) {
      partner = answer;
      if (!answer.empty()) desk::RequirePartnerToShareWith(company_, answer);
    });
    if (partner.empty()) return;
    Ask("  share (50%, 1/3 or an amount; none for no share)", [&](const std::string& answer) {
      if (answer.empty()) return;
      desk::TransactionToRecord tried = transaction;
      tried.shares.push_back({.partner = partner, .share = standalone::ShareText(answer)});
      desk::RecordTransaction(company_, tried, desk::Posting::kPreviewOnly);
      transaction.shares = tried.shares;
    });
  }
}

void EntryDialogue::RequireBalance(const desk::TransactionToRecord& transaction) const {
  standalone::Money missing;
  for (const desk::EnteredLine& line : transaction.lines) {
    standalone::Money amount = desk::RequireAmount(company_, line.amount);
    amount.minorUnits += missing.minorUnits;
    missing = std::move(amount);
  }
  if (missing.minorUnits == 0) return;
  const char* const side = missing.minorUnits < 0 ? "debits" : "credits";
  if (missing.minorUnits < 0) missing.minorUnits = -missing.minorUnits;
  throw standalone::InvalidInput(
      fmt::format("The debits and the credits do not come to the same yet: {} {} are missing "
                  "from the {}.",
                  standalone::FormatAmount(missing), missing.currency, side));
}

bool EntryDialogue::Confirm(const desk::RecordedTransaction& preview) const {
  ShowPrompt(EnteredText(preview));
  bool isConfirmed = false;
  Ask(fmt::format("Post this {}? [y/N]", NounOf(preview.type)),
      [&](const std::string& answer) { isConfirmed = IsYes(answer); });
  return isConfirmed;
}

}  // namespace app
