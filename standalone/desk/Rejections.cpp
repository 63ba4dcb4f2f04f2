#include "standalone/desk/Rejections.h"

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/SettingsTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/work/Work.h"
#include "standalone/values/Amount.h"

namespace desk {

namespace {

Rejection RejectionOf(const MERejectedTxnInfo& listed, const std::string& currency) {
  const auto text = [](const Util::TString& value) {
    return std::string(value.view());
  };
  Rejection rejection{.type = listed.txnType,
                      .state = standalone::TransactionState{listed.state},
                      .realm = text(listed.realmId),
                      .partner = text(listed.partnerName),
                      .requestId = text(listed.requestId),
                      .writtenAmount = text(listed.amount),
                      .amount = {},
                      .partnerTxnId = text(listed.partnerTxnId)};
  if (const std::optional<std::int64_t> amount = standalone::ParseAmount(rejection.writtenAmount)) {
    rejection.amount = standalone::Money{.minorUnits = *amount, .currency = currency};
  }
  return rejection;
}

}  // namespace

void SaveRejection(Company& company, const RejectionToSave& rejection) {
  Work work(company.Opened(), UseCase::kSaveRejection);
  work.AskToWrite([&] {
    return MultiEntityDriver::SaveRejectedTransaction(
        std::string_view(rejection.request.Text()), static_cast<std::int16_t>(rejection.type),
        std::string_view(rejection.realm.Text()), std::string_view(rejection.amount.Text()),
        std::string_view(rejection.partnerTxnId.Text()));
  });
}

std::vector<Rejection> ListRejections(Company& company) {
  Work work(company.Opened(), UseCase::kListRejections);
  std::vector<Rejection> rejections;
  work.AskToRead([&] {
    std::vector<MERejectedTxnInfo> listed;
    const MEStatusCode answer = MultiEntityDriver::GetAllRejectedTransaction(listed);
    if (answer != MEStatusSuccess) return answer;
    const std::string currency = work.Host().Settings().Get().homeCurrency;
    for (const MERejectedTxnInfo& entry : listed) rejections.push_back(RejectionOf(entry, currency));
    return answer;
  });
  return rejections;
}

void DeleteRejection(Company& company, const standalone::RequestId& request) {
  Work work(company.Opened(), UseCase::kDeleteRejection);
  work.AskToWrite([&] { return MultiEntityDriver::DeleteRejectedTransaction(std::string_view(request.Text())); });
}

}  // namespace desk
