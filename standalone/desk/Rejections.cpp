#include "standalone/desk/Rejections.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/RejectedRequestTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/OwnTransactions.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/Partners.h"
#include "standalone/desk/inside/Texts.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Amount.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

// The amounts as they are kept. The module lists the rows in their order, but those that the user may not see, and
// writes an amount anew.
class WrittenAmounts {
 public:
  explicit WrittenAmounts(std::vector<DBMultiEntityRejectedTxnReceiver> rows) : rows_(std::move(rows)) {}

  // For one entry after the other.
  std::string Of(const MERejectedTxnInfo& listed) {
    const auto found = std::find_if(next_, rows_.cend(), [&listed](const DBMultiEntityRejectedTxnReceiver& row) {
      return standalone::Field(row.requestId) == listed.requestId.view() && row.txnType == listed.txnType &&
             standalone::Field(row.partnerTxnId) == listed.partnerTxnId.view();
    });
    if (found == rows_.cend()) return {};
    next_ = std::next(found);
    return std::string(standalone::Field(found->amount));
  }

 private:
  std::vector<DBMultiEntityRejectedTxnReceiver> rows_;
  std::vector<DBMultiEntityRejectedTxnReceiver>::const_iterator next_ = rows_.cbegin();
};

Rejection RejectionOf(const MERejectedTxnInfo& listed, std::string writtenAmount,
                      const standalone::Settings& settings) {
  Rejection rejection{.type = listed.txnType,
                      .state = standalone::TransactionState{listed.state},
                      .realm = TextOf(listed.realmId),
                      .partner = TextOf(listed.partnerName),
                      .requestId = TextOf(listed.requestId),
                      .writtenAmount = std::move(writtenAmount),
                      .amount = {},
                      .partnerTxnId = TextOf(listed.partnerTxnId)};
  if (const std::optional<std::int64_t> amount = standalone::ParseAmount(rejection.writtenAmount, settings.decimals)) {
    rejection.amount =
        standalone::Money{.minorUnits = *amount, .currency = settings.homeCurrency, .decimals = settings.decimals};
  }
  return rejection;
}

bool IsWanted(const Rejection& rejection, const RejectionFilter& filter, const std::optional<std::string>& realm) {
  return (!realm || rejection.realm == *realm) &&
         (!filter.type || rejection.type == static_cast<std::int16_t>(*filter.type)) &&
         (!filter.request || rejection.requestId == filter.request->Text());
}

DBMultiEntityRelation RequireRelation(Work& work, const standalone::RealmId& realm) {
  DBMultiEntityRelation relation{};
  if (work.Host().Relations().Find(realm.Text(), relation)) return relation;
  work.Refuse("there is no relation with the partner " + standalone::Quoted(realm.Text()), Remedy::kSeeRelations);
}

DBMultiEntityRejectedTxnReceiver RowOf(const RejectionToSave& rejection) {
  DBMultiEntityRejectedTxnReceiver row{};
  standalone::Fill(row.requestId, rejection.request.Text());
  standalone::Fill(row.amount, rejection.amount.Text());
  standalone::Fill(row.partnerTxnId, rejection.partnerTxnId.Text());
  row.txnType = static_cast<std::int16_t>(rejection.type);
  return row;
}

constexpr standalone::FeatureRight RightToSee(std::int32_t txnType) noexcept {
  return {txnType == kTxnTypeBill ? kFeatureBills : kFeatureChecks, kActionView};
}

// The module tells of one that does not exist.
void RequireRightFor(Work& work, const DBMultiEntityRejectedTxnReceiver& row) {
  if (row.relationId == 0) return;
  work.RequireRight(RightToSee(row.txnType));
}

void RequireAmount(Work& work, const RejectionToSave& rejection) {
  const standalone::Settings& settings = work.Host().Settings().Get();
  standalone::RequireAmount(rejection.amount.Text(), settings.homeCurrency, settings.decimals);
}

// Names the partner to the store as long as it lives.
class OnlyOf {
 public:
  OnlyOf(standalone::StandaloneHost& host, std::int32_t relationId) noexcept : host_(host) {
    host_.DeleteRejectedOf(relationId);
  }
  OnlyOf(const OnlyOf&) = delete;
  OnlyOf& operator=(const OnlyOf&) = delete;
  ~OnlyOf() { host_.DeleteRejectedOf(std::nullopt); }

 private:
  standalone::StandaloneHost& host_;
};

}  // namespace

std::string SaveRejection(Company& company, const RejectionToSave& rejection) {
  Work work(company.Opened(), UseCase::kSaveRejection);
  std::string realm = rejection.partner.Text();
  work.AskToWrite([&] {
    // Who has no right learns that from the module, whichever partner is named.
    if (work.HasRight(RightToSee(static_cast<std::int32_t>(rejection.type)))) {
      RequireAmount(work, rejection);
      realm = RealmOf(work, rejection.partner).Text();
      DBMultiEntityRelation relation{};
      if (work.Host().Relations().Find(realm, relation)) {
        RefuseRejectionByHand(work, relation.relationId, rejection.request.Text());
        RefuseBooked(work, relation.relationId, rejection.request.Text());
      }
    }
    const MEStatusCode answer = MultiEntityDriver::SaveRejectedTransaction(
        std::string_view(rejection.request.Text()), static_cast<std::int16_t>(rejection.type), std::string_view(realm),
        std::string_view(rejection.amount.Text()), std::string_view(rejection.partnerTxnId.Text()));
    return work.Recorded(
        answer, [&] { return DeedOfSaving(RequireRelation(work, standalone::RealmId(realm)), RowOf(rejection)); });
  });
  return realm;
}

std::vector<Rejection> ListRejections(Company& company, const RejectionFilter& filter) {
  Work work(company.Opened(), UseCase::kListRejections);
  std::vector<Rejection> rejections;
  std::optional<std::string> realm;
  work.AskToRead([&] {
    if (filter.partner && work.HasOneOf({{kFeatureBills, kActionView}, {kFeatureChecks, kActionView}}))
      realm = standalone::Field(RequirePartner(work, filter.partner->Text()).realmId);
    std::vector<MERejectedTxnInfo> listed;
    const MEStatusCode answer = MultiEntityDriver::GetAllRejectedTransaction(listed);
    if (answer != MEStatusSuccess) return answer;
    std::vector<DBMultiEntityRejectedTxnReceiver> rows;
    work.Host().Rejected().List(rows);
    WrittenAmounts written(std::move(rows));
    const standalone::Settings settings = work.Host().Settings().Get();
    for (const MERejectedTxnInfo& entry : listed) {
      rejections.push_back(RejectionOf(entry, written.Of(entry), settings));
    }
    return answer;
  });
  std::erase_if(rejections, [&](const Rejection& rejection) { return !IsWanted(rejection, filter, realm); });
  return rejections;
}

std::string DeleteRejection(Company& company, const Partner& partner, const standalone::RequestId& request) {
  Work work(company.Opened(), UseCase::kDeleteRejection);
  std::string realm;
  work.AskToWrite([&] {
    work.RequireOneOf({{kFeatureBills, kActionView}, {kFeatureChecks, kActionView}});
    const DBMultiEntityRelation relation = RequireRelation(work, RealmOf(work, partner));
    realm = relation.realmId;
    const DBMultiEntityRejectedTxnReceiver row = work.Host().Rejected().Find(relation.relationId, request.Text());
    RequireRightFor(work, row);
    RefuseRejectionByHand(work, relation.relationId, request.Text());
    const OnlyOf only(work.Host(), relation.relationId);
    return work.Recorded(MultiEntityDriver::DeleteRejectedTransaction(std::string_view(request.Text())),
                         [&] { return DeedOfForgetting(relation, row); });
  });
  return realm;
}

}  // namespace desk
