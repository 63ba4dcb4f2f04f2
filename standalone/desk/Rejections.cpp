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

Rejection RejectionOf(const MERejectedTxnInfo& listed, std::string writtenAmount, const std::string& currency) {
  Rejection rejection{.type = listed.txnType,
                      .state = standalone::TransactionState{listed.state},
                      .realm = TextOf(listed.realmId),
                      .partner = TextOf(listed.partnerName),
                      .requestId = TextOf(listed.requestId),
                      .writtenAmount = std::move(writtenAmount),
                      .amount = {},
                      .partnerTxnId = TextOf(listed.partnerTxnId)};
  if (const std::optional<std::int64_t> amount = standalone::ParseAmount(rejection.writtenAmount)) {
    rejection.amount = standalone::Money{.minorUnits = *amount, .currency = currency};
  }
  return rejection;
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

// The module tells of one that does not exist.
void RequireRightFor(Work& work, const DBMultiEntityRejectedTxnReceiver& row) {
  if (row.relationId == 0) return;
  work.RequireRight({row.txnType == kTxnTypeBill ? kFeatureBills : kFeatureChecks, kActionView});
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

void SaveRejection(Company& company, const RejectionToSave& rejection) {
  Work work(company.Opened(), UseCase::kSaveRejection);
  work.AskToWrite([&] {
    const MEStatusCode answer = MultiEntityDriver::SaveRejectedTransaction(
        std::string_view(rejection.request.Text()), static_cast<std::int16_t>(rejection.type),
        std::string_view(rejection.realm.Text()), std::string_view(rejection.amount.Text()),
        std::string_view(rejection.partnerTxnId.Text()));
    return work.Recorded(answer,
                         [&] { return DeedOfSaving(RequireRelation(work, rejection.realm), RowOf(rejection)); });
  });
}

std::vector<Rejection> ListRejections(Company& company) {
  Work work(company.Opened(), UseCase::kListRejections);
  std::vector<Rejection> rejections;
  work.AskToRead([&] {
    std::vector<MERejectedTxnInfo> listed;
    const MEStatusCode answer = MultiEntityDriver::GetAllRejectedTransaction(listed);
    if (answer != MEStatusSuccess) return answer;
    std::vector<DBMultiEntityRejectedTxnReceiver> rows;
    work.Host().Rejected().List(rows);
    WrittenAmounts written(std::move(rows));
    const std::string currency = work.Host().Settings().Get().homeCurrency;
    for (const MERejectedTxnInfo& entry : listed) {
      rejections.push_back(RejectionOf(entry, written.Of(entry), currency));
    }
    return answer;
  });
  return rejections;
}

void DeleteRejection(Company& company, const standalone::RealmId& realm, const standalone::RequestId& request) {
  Work work(company.Opened(), UseCase::kDeleteRejection);
  work.AskToWrite([&] {
    work.RequireOneOf({{kFeatureBills, kActionView}, {kFeatureChecks, kActionView}});
    const DBMultiEntityRelation partner = RequireRelation(work, realm);
    const DBMultiEntityRejectedTxnReceiver row = work.Host().Rejected().Find(partner.relationId, request.Text());
    RequireRightFor(work, row);
    const OnlyOf only(work.Host(), partner.relationId);
    return work.Recorded(MultiEntityDriver::DeleteRejectedTransaction(std::string_view(request.Text())),
                         [&] { return DeedOfForgetting(partner, row); });
  });
}

}  // namespace desk
