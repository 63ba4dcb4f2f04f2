#include <fmt/format.h>

#include <array>
#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/ReportTexts.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/desk/Reports.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/AccountTypes.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Dates.h"

namespace app {

namespace {

struct OpenItemsOptions {
  std::string file;
  std::optional<std::string> asOf;
  std::optional<std::string> from;
  std::optional<std::string> partner;
};

constexpr const char* kOwedToUs = "owed to us";
constexpr const char* kOwedByUs = "owed by us";

// Hands each side of each partner to `take`, with what it is called.
template <typename Take>
void ForEachSide(const desk::OpenItems& open, Take&& take) {
  for (const desk::OpenWithPartner& partner : open.partners) {
    if (partner.owedToUs) take(partner, *partner.owedToUs, kOwedToUs);
    if (partner.owedByUs) take(partner, *partner.owedByUs, kOwedByUs);
  }
}

std::string OpenItemStateText(const desk::OpenItem& item) {
  return item.state ? standalone::MarkedStateName(*item.state) : "";
}

bool IsListedEmpty(const desk::OpenSide& side) noexcept {
  return side.items.empty() && side.earlier.count == 0;
}

// What is listed as open on one side, of all partners; none where nothing is, or more than can be counted.
std::optional<std::int64_t> OpenOn(std::optional<desk::OpenSide> desk::OpenWithPartner::* which,
                                   const desk::OpenItems& open) {
  std::optional<std::int64_t> sum;
  for (const desk::OpenWithPartner& partner : open.partners) {
    const std::optional<desk::OpenSide>& side = partner.*which;
    if (!side || IsListedEmpty(*side)) continue;
    sum = standalone::AddAmounts(sum.value_or(0), side->earlier.open);
    if (!sum) return sum;
    for (const desk::OpenItem& item : side->items) {
      sum = standalone::AddAmounts(sum.value_or(0), item.open);
      if (!sum) return sum;
    }
  }
  return sum;
}

void AddOpenTotal(Table& table, const desk::OpenItems& open, const char* owed, std::optional<std::int64_t> sum) {
  if (sum) {
    table.AddTotal({"Total", owed, "", "", "", "", "", "", "", AmountText(open.currency, *sum), "", "", ""});
  }
}

Table OpenItemsTable(const desk::OpenItems& open) {
  using enum Importance;
  Table table({{.title = "Partner"},
               {.title = "Side", .fit = Fit::kWhole},
               {.title = "Date", .importance = kKey, .fit = Fit::kWhole},
               {.title = "Type", .importance = kDetail, .fit = Fit::kWhole},
               {.title = "Txn", .align = Align::kRight},
               {.title = "Number", .importance = kDetail, .fit = Fit::kWhole},
               {.title = "Name", .importance = kDetail},
               {.title = "Memo", .importance = kDetail},
               {.title = "Amount", .align = Align::kRight, .importance = kMinor},
               {.title = "Open", .align = Align::kRight},
               {.title = "Days", .align = Align::kRight, .importance = kMinor},
               {.title = "State", .importance = kMajor, .fit = Fit::kWhole},
               {.title = "Standing", .importance = kKey, .fit = Fit::kWhole}});
  ForEachSide(open, [&](const desk::OpenWithPartner& partner, const desk::OpenSide& side, const char* owed) {
    if (side.earlier.count != 0) {
      table.Add({partner.partner, owed, "before " + standalone::FormatIsoDate(open.from), "", "", "", "", "", "",
                 AmountText(open.currency, side.earlier.open), "", "", ""});
    }
    for (const desk::OpenItem& item : side.items) {
      table.Add({partner.partner, owed, standalone::FormatIsoDate(item.date),
                 standalone::TransactionTypeName(item.type), std::to_string(item.txnId), item.documentNumber, item.name,
                 item.memo.empty() ? item.lineMemo : item.memo, AmountText(open.currency, item.amount),
                 AmountText(open.currency, item.open), std::to_string(item.days), OpenItemStateText(item),
                 std::string(desk::NameOf(item.standing))});
    }
  });
  AddOpenTotal(table, open, kOwedToUs, OpenOn(&desk::OpenWithPartner::owedToUs, open));
  AddOpenTotal(table, open, kOwedByUs, OpenOn(&desk::OpenWithPartner::owedByUs, open));
  return table;
}

Table OpenTotalsTable(const desk::OpenItems& open) {
  using enum Importance;
  Table table({{.title = "Partner"},
               {.title = "Side", .fit = Fit::kWhole},
               {.title = "Account", .importance = kDetail},
               {.title = "0-30 days", .align = Align::kRight, .importance = kMajor},
               {.title = "31-60", .align = Align::kRight, .importance = kMajor},
               {.title = "61-90", .align = Align::kRight, .importance = kMajor},
               {.title = "Over 90", .align = Align::kRight, .importance = kMajor},
               {.title = "Open", .align = Align::kRight},
               {.title = "No request", .align = Align::kRight, .importance = kMinor},
               {.title = "Not answered", .align = Align::kRight, .importance = kMinor},
               {.title = "Closed here", .align = Align::kRight, .importance = kMinor},
               {.title = "Account holds", .align = Align::kRight, .importance = kKey}});
  ForEachSide(open, [&](const desk::OpenWithPartner& partner, const desk::OpenSide& side, const char* owed) {
    const auto amount = [&](std::int64_t minorUnits) {
      return AmountText(open.currency, minorUnits);
    };
    table.Add({partner.partner, owed, NumberedText(side.account), amount(side.byAge[0]), amount(side.byAge[1]),
               amount(side.byAge[2]), amount(side.byAge[3]), amount(side.Open()), amount(side.noRequest),
               amount(side.notAnswered), amount(side.closed), amount(side.balance)});
  });
  return table;
}

// A relation that has got other accounts makes it so, and else nothing but a damaged file.
std::string DifferencesText(const desk::OpenItems& open) {
  std::string text;
  ForEachSide(open, [&](const desk::OpenWithPartner& partner, const desk::OpenSide& side, const char* owed) {
    if (side.Difference() == 0) return;
    text += Wrapped(fmt::format("What is {} with {} differs from what the account holds by {}.", owed, partner.partner,
                                AmountText(open.currency, side.Difference()))) +
            '\n';
  });
  return text;
}

std::string OpenItemsText(const desk::OpenItems& open) {
  const std::string day = standalone::FormatIsoDate(open.asOf);
  if (open.partners.empty()) return fmt::format("Nothing is open with any partner as of {}.\n", day);
  const Table items = OpenItemsTable(open);
  const std::string from =
      open.from == NullDate() ? "" : fmt::format(", dated from {} on", standalone::FormatIsoDate(open.from));
  return Wrapped(fmt::format("Open items as of {}{}{}; their states are those of now", day, from,
                             InCurrency(open.currency))) +
         '\n' + (items.Empty() ? "Nothing is open.\n" : items.Text()) + '\n' + OpenTotalsTable(open).Text() +
         DifferencesText(open);
}

constexpr std::array kOpenItemColumns{
    "realm", "partner",        "side",  "account",     "date",     "type",     "typeNumber", "transaction",
    "line",  "documentNumber", "name",  "memo",        "lineMemo", "amount",   "open",       "days",
    "age",   "standing",       "state", "stateNumber", "ofBefore", "currency", "accountId",  "accountNumber"};

// A side's items, after a row of type `earlier` for what is dated before the first day.
Json RowsOf(const Json& side) {
  Json rows = side.at("items");
  const Json& earlier = side.at("earlier");
  if (!earlier.is_null() && earlier.at("items") != 0) {
    rows.insert(rows.begin(), Json{{"date", earlier.at("before")}, {"type", "earlier"}, {"open", earlier.at("open")}});
  }
  return rows;
}

// Each row with whose it is.
Json OpenItemRows(const desk::OpenItems& open) {
  const Json json = desk::JsonOf(open);
  Json rows = Json::array();
  for (const Json& partner : json.at("partners")) {
    for (const char* const side : {"owedToUs", "owedByUs"}) {
      if (partner.at(side).is_null()) continue;
      const Json& account = partner.at(side).at("account");
      for (Json& row : RowsOf(partner.at(side))) {
        row.update({{"realm", partner.at("realm")},
                    {"partner", partner.at("partner")},
                    {"side", side},
                    {"account", account.at("name")},
                    {"accountId", account.at("id")},
                    {"accountNumber", account.at("number")},
                    {"currency", json.at("currency")}});
        rows.push_back(std::move(row));
      }
    }
  }
  return rows;
}

void ShowOpenItems(Invocation& invocation, const OpenItemsOptions& options) {
  desk::OpenItemsQuery query{.asOf = {}, .from = PeriodBound("--from", options.from), .partner = options.partner};
  if (options.asOf) query.asOf = standalone::ParseDate("--as-of", *options.asOf);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::OpenItems open = desk::ReadOpenItems(company, query);
  invocation.ReportList(invocation.options.csv ? Json{{"rows", OpenItemRows(open)}} : desk::JsonOf(open),
                        kOpenItemColumns, OpenItemsText(open));
}

}  // namespace

void AddOpenItems(CLI::App& program, Invocation& invocation) {
  const auto options = std::make_shared<OpenItemsOptions>();
  CLI::App& command =
      AddFileCommand(program, "open-items", "List what this company and its partners owe each other, and for how long",
                     "open-items alder.company --partner \"Birch Services Company\"", options->file);
  command.add_option("--as-of,--to", options->asOf, "The day at whose end it is open, YYYY-MM-DD; today when left out");
  command.add_option("--from", options->from,
                     "First day of the items that are listed, YYYY-MM-DD; what is older is one line for each side");
  command.add_option("--partner", options->partner, "Only this partner, by realm id or name");
  AddCsvOption(command, invocation.options);
  invocation.When(command, [options](Invocation& run) { ShowOpenItems(run, *options); });
}

}  // namespace app
