#include "standalone/desk/Reports.h"

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "standalone/books/AccountTable.h"
#include "standalone/books/AttachmentTable.h"
#include "standalone/books/IntercompanyTable.h"
#include "standalone/books/LinkTable.h"
#include "standalone/books/NameTable.h"
#include "standalone/books/OwnRequestTable.h"
#include "standalone/books/RelationTable.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/books/TransactionTable.h"
#include "standalone/desk/AuditedDeeds.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/LineReader.h"
#include "standalone/desk/inside/LocalTimes.h"
#include "standalone/desk/inside/Partners.h"
#include "standalone/desk/inside/Texts.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/reports/OpenItems.h"
#include "standalone/reports/Register.h"
#include "standalone/reports/TrialBalance.h"
#include "standalone/values/Errors.h"

namespace desk {

namespace {

constexpr standalone::FeatureRight kViewBills{kFeatureBills, kActionView};
constexpr standalone::FeatureRight kViewChecks{kFeatureChecks, kActionView};
constexpr standalone::FeatureRight kViewEntries{kFeatureJournalEntries, kActionView};

void RequireToViewAll(Work& work) {
  work.RequireAllOf({kViewBills, kViewChecks, kViewEntries});
}

ReportCurrency CurrencyOf(Work& work) {
  const standalone::Settings& settings = work.Host().Settings().Get();
  return {.code = settings.homeCurrency, .decimals = settings.decimals};
}

NumberedAccount Numbered(standalone::LedgerAccount account) {
  return {{.id = account.id, .name = std::move(account.fullName)}, std::move(account.number)};
}

// An account that is not there any more has no name.
NumberedAccount NumberedById(Work& work, std::int32_t id) {
  std::optional<standalone::LedgerAccount> account = work.Host().Ledger().FindAccount(id);
  return account ? Numbered(*std::move(account)) : NumberedAccount{{.id = id, .name = {}}, {}};
}

standalone::LedgerDays DaysOf(const Period& period) noexcept {
  return {.from = period.From(), .to = period.To()};
}

AccountBalance AccountBalanceOf(standalone::AccountBalance line) {
  AccountBalance told{.account = {},
                      .type = line.account.type,
                      .deleted = line.account.deleted,
                      .level = line.level,
                      .balance = line.balance,
                      .own = line.own};
  told.account = Numbered(std::move(line.account));
  return told;
}

RegisterLine RegisterLineOf(Work& work, const standalone::RegisterLine& line, std::int64_t balance) {
  standalone::AccountTable& accounts = work.Host().Accounts();
  RegisterLine told{.txnId = line.txnId,
                    .lineId = line.id,
                    .type = line.txnType,
                    .date = line.date,
                    .documentNumber = std::string(line.documentNumber),
                    .name = std::string(line.name),
                    .memo = std::string(line.memo),
                    .lineMemo = std::string(line.lineMemo),
                    .account = TextOf(accounts.FullNameOf(line.accountId)),
                    .accountId = line.accountId,
                    .accountNumber = {},
                    .otherAccount = {},
                    .amount = line.amount,
                    .balance = balance};
  if (line.otherAccountId != 0) {
    told.otherAccount = ListItem{.id = line.otherAccountId, .name = TextOf(accounts.FullNameOf(line.otherAccountId))};
  }
  return told;
}

// Nearly all lines are on few accounts.
void NumberAccounts(Work& work, Register& told) {
  std::unordered_map<std::int32_t, std::string> numbers{{told.account.id, told.account.number}};
  for (RegisterLine& line : told.lines) {
    const auto known = numbers.find(line.accountId);
    line.accountNumber = known != numbers.end()
                             ? known->second
                             : numbers.emplace(line.accountId, NumberedById(work, line.accountId).number).first->second;
  }
}

OpenItem OpenItemOf(standalone::OpenItem item) {
  return {.txnId = item.txnId,
          .lineId = item.lineId,
          .type = item.txnType,
          .date = item.date,
          .documentNumber = std::move(item.documentNumber),
          .name = std::move(item.name),
          .memo = std::move(item.memo),
          .lineMemo = std::move(item.lineMemo),
          .amount = item.amount,
          .open = item.open,
          .days = item.days,
          .age = standalone::AgeOf(item.days),
          .standing = Standing{static_cast<int>(item.standing)},
          .state = item.state};
}

class OpenItemsReader {
 public:
  // Of all partners what their accounts hold is read at once.
  OpenItemsReader(Work& work, const Period& period, bool ofAllPartners)
      : work_(work),
        period_(period),
        reversals_(work.Host().Ledger().Reversals()),
        elsewhere_(work.Host().Ledger().RelationsWithLinesElsewhere()) {
    if (ofAllPartners) balances_ = standalone::ReadBalances(work.Host().Ledger(), UpToTheDay());
  }

  OpenWithPartner Read(const DBMultiEntityRelation& relation) {
    return {.realm = relation.realmId,
            .partner = relation.partnerName,
            .owedToUs = ReadSide(relation.relationId, relation.dueFromAccountId, standalone::Owed::kToUs),
            .owedByUs = ReadSide(relation.relationId, relation.dueToAccountId, standalone::Owed::kByUs)};
  }

 private:
  std::optional<OpenSide> ReadSide(std::int32_t relationId, std::int32_t accountId, standalone::Owed owed) {
    standalone::LedgerQueries& ledger = work_.Host().Ledger();
    standalone::OpenItems read = standalone::ReadOpenItems(ledger, reversals_,
                                                           {.relationId = relationId,
                                                            .accountId = accountId,
                                                            .owed = owed,
                                                            .asOf = period_.To(),
                                                            .from = period_.From(),
                                                            .hasLinesElsewhere = elsewhere_.contains(relationId)});
    if (accountId == 0 && read.items.empty()) return std::nullopt;
    const std::int64_t sum = BalanceOf(accountId);
    OpenSide side{.account = NumberedById(work_, accountId),
                  .earlier = {.count = read.earlier.count, .open = read.earlier.open},
                  .items = {},
                  .byAge = read.byAge,
                  .agreed = read.agreed,
                  .noRequest = read.noRequest,
                  .notAnswered = read.notAnswered,
                  .closed = read.closed,
                  .balance = owed == standalone::Owed::kToUs ? sum : -sum};
    side.items.reserve(read.items.size());
    for (standalone::OpenItem& item : read.items) side.items.push_back(OpenItemOf(std::move(item)));
    return side;
  }

  standalone::LedgerDays UpToTheDay() const noexcept { return {.from = NullDate(), .to = period_.To()}; }

  std::int64_t BalanceOf(std::int32_t accountId) {
    if (!balances_) return work_.Host().Ledger().SumOf(accountId, /*withSubAccounts=*/false, UpToTheDay());
    const auto found = balances_->find(accountId);
    return found == balances_->end() ? 0 : found->second;
  }

  Work& work_;
  Period period_;
  std::optional<std::unordered_map<std::int32_t, std::int64_t>> balances_;
  std::vector<standalone::LedgerQueries::Reversal> reversals_;
  std::unordered_set<std::int32_t> elsewhere_;
};

bool HasAnything(const std::optional<OpenSide>& side) noexcept {
  return side && (!side->items.empty() || side->earlier.count != 0 || side->balance != 0);
}

standalone::FeatureRight ViewRightOf(std::int16_t txnType) noexcept {
  if (txnType == kTxnTypeBill) return kViewBills;
  return txnType == kTxnTypeCheck ? kViewChecks : kViewEntries;
}

ShownLine::Request RequestOf(Work& work, const DBMultiEntityTransaction& row) {
  const IntercompanyLine read = LineReader(work).ReadRequest(row);
  ShownLine::Request request{.realm = read.realm,
                             .partner = read.partner,
                             .id = read.requestId,
                             .state = read.state,
                             .reverses = {},
                             .corrects = {}};
  if (const auto earlier = work.Host().OwnRequests().EarlierOf(row.targetId)) {
    (earlier->kind == standalone::EarlierRequest::Kind::kReverses ? request.reverses : request.corrects) =
        earlier->targetId;
  }
  return request;
}

std::vector<ShownLine> LinesOf(Work& work, std::int32_t txnId) {
  std::vector<ShownLine> lines;
  for (standalone::PostedLine& line : work.Host().Transactions().LinesOf(txnId)) {
    lines.push_back({.lineId = line.id,
                     .account = NumberedById(work, line.accountId),
                     .amount = line.amount,
                     .memo = std::move(line.memo),
                     .request = {}});
  }
  std::vector<DBMultiEntityTransaction> rows;
  work.Host().Intercompany().ListOf(txnId, rows);
  for (const DBMultiEntityTransaction& row : rows) {
    const auto line = std::ranges::find(lines, row.targetId, &ShownLine::lineId);
    if (line != lines.end()) line->request = RequestOf(work, row);
  }
  return lines;
}

ShownLink::Kind KindOf(standalone::LinkKind kind) noexcept {
  if (kind == standalone::LinkKind::kReverses) return ShownLink::Kind::kReverses;
  return kind == standalone::LinkKind::kCorrects ? ShownLink::Kind::kCorrects : ShownLink::Kind::kMoves;
}

std::vector<ShownLink> LinksOf(Work& work, std::int32_t txnId) {
  std::vector<ShownLink> links;
  for (const standalone::TransactionLink& link : work.Host().Links().Of(txnId)) {
    const bool isLater = link.txnId == txnId;
    links.push_back(
        {.kind = KindOf(link.kind), .isLater = isLater, .otherTxnId = isLater ? link.earlierTxnId : link.txnId});
  }
  return links;
}

// However they came to be so: by the partner's answer, by an import, or as they were booked from the partner's request.
bool AreAllEstablished(const std::vector<ShownLine>& lines) noexcept {
  bool any = false;
  for (const ShownLine& line : lines) {
    if (!line.request) continue;
    if (line.request->state.number != standalone::TransactionState::kEstablished) return false;
    any = true;
  }
  return any;
}

std::vector<AuditedDeed> DeedsAbout(Work& work, std::int32_t txnId, const Period& period) {
  std::vector<AuditedDeed> deeds;
  work.Host().Audit().ForEach({.user = {}, .action = {}, .txnId = txnId}, [&](const standalone::AuditLine& line) {
    AuditedDeed deed = AuditedDeedOf(line);
    if (IsOfPeriod(deed, period)) deeds.push_back(std::move(deed));
  });
  return deeds;
}

ShownTransaction ShownTransactionOf(Work& work, const standalone::TransactionHeader& header, const Period& trail) {
  ShownTransaction shown{.currency = CurrencyOf(work),
                         .txnId = header.id,
                         .type = header.type,
                         .date = header.date,
                         .name = {},
                         .documentNumber = header.documentNumber,
                         .memo = header.memo,
                         .confirmed = false,
                         .lines = LinesOf(work, header.id),
                         .links = LinksOf(work, header.id),
                         .attachments = work.Host().Attachments().Of(header.id),
                         .audit = {}};
  shown.confirmed = AreAllEstablished(shown.lines);
  if (header.nameId != 0) {
    const auto name = work.Host().Names().Find(header.nameId);
    shown.name = ListItem{.id = header.nameId, .name = name ? name->fullName : ""};
  }
  if (work.IsAdministratorOrAccountant()) shown.audit = DeedsAbout(work, header.id, trail);
  return shown;
}

}  // namespace

Balances ReadBalances(Company& company, const BalancesQuery& query) {
  Work work(company.Opened(), UseCase::kReadBalances);
  return work.Read([&] {
    RequireToViewAll(work);
    standalone::TrialBalanceQuery asked{
        .days = DaysOf(query.period), .accountId = {}, .depth = query.depth, .withUnused = query.withUnused};
    if (query.account) asked.accountId = work.Host().Accounts().Require(*query.account).id;
    standalone::TrialBalance read = standalone::ReadTrialBalance(work.Host().Ledger(), asked);
    Balances balances{.currency = CurrencyOf(work), .period = query.period, .lines = {}, .totals = {}};
    balances.lines.reserve(read.lines.size());
    for (standalone::AccountBalance& line : read.lines) balances.lines.push_back(AccountBalanceOf(std::move(line)));
    if (!query.account) balances.totals = Balances::Totals{.debits = read.debits, .credits = read.credits};
    return balances;
  });
}

Register ReadRegister(Company& company, const RegisterQuery& query) {
  Work work(company.Opened(), UseCase::kReadRegister);
  return work.Read([&] {
    RequireToViewAll(work);
    standalone::LedgerQueries& ledger = work.Host().Ledger();
    const standalone::RegisterQuery asked{.accountId = work.Host().Accounts().Require(query.account).id,
                                          .withSubAccounts = query.withSubAccounts,
                                          .days = DaysOf(query.period)};
    Register told{.currency = CurrencyOf(work),
                  .period = query.period,
                  .account = NumberedById(work, asked.accountId),
                  .opening = standalone::OpeningBalance(ledger, asked),
                  .lines = {},
                  .closing = 0};
    told.closing = standalone::ReadRegister(ledger, asked, told.opening,
                                            [&](const standalone::RegisterLine& line, std::int64_t balance) {
                                              told.lines.push_back(RegisterLineOf(work, line, balance));
                                            });
    NumberAccounts(work, told);
    return told;
  });
}

OpenItems ReadOpenItems(Company& company, const OpenItemsQuery& query) {
  Work work(company.Opened(), UseCase::kReadOpenItems);
  return work.Read([&] {
    RequireToViewAll(work);
    std::vector<DBMultiEntityRelation> relations;
    if (query.partner) {
      relations.push_back(RequirePartner(work, *query.partner));
    } else {
      work.Host().Relations().List(relations);
    }
    OpenItems open{.currency = CurrencyOf(work),
                   .asOf = query.asOf ? *query.asOf : LocalTimeAfter(work.Host().Clock(), {}).day,
                   .from = query.from,
                   .partners = {}};
    OpenItemsReader reader(work, Period(open.from, open.asOf), !query.partner);
    for (const DBMultiEntityRelation& relation : relations) {
      OpenWithPartner partner = reader.Read(relation);
      const bool isTold = query.partner || HasAnything(partner.owedToUs) || HasAnything(partner.owedByUs);
      if (isTold) open.partners.push_back(std::move(partner));
    }
    return open;
  });
}

ShownTransaction ShowTransaction(Company& company, std::int32_t txnId, const Period& trail) {
  Work work(company.Opened(), UseCase::kShowTransaction);
  return work.Read([&] {
    work.RequireOneOf({kViewBills, kViewChecks, kViewEntries});
    const std::optional<standalone::TransactionHeader> header = work.Host().Transactions().FindHeader(txnId);
    if (!header) {
      throw standalone::InvalidInput("There is no transaction " + std::to_string(txnId) +
                                     " in the books; whether there was one, 'audit show --txn " +
                                     std::to_string(txnId) + "' tells.");
    }
    work.RequireRight(ViewRightOf(header->type));
    return ShownTransactionOf(work, *header, trail);
  });
}

}  // namespace desk
