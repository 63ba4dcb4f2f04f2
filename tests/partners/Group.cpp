#include "partners/Group.h"

#include "standalone/desk/Exchange.h"
#include "standalone/desk/Import.h"
#include "standalone/desk/Pairing.h"
#include "tests/support/TemporaryFolder.h"

namespace partners {

namespace {

std::string ChartFor(std::size_t companies) {
  std::string csv =
      "name,type,special,deleted\n"
      "Checking,Bank,,\n"
      "Payables,Accounts Payable,,\n"
      "Utilities,Expense,,\n"
      "Rent,Expense,,\n";
  for (std::size_t partner = 0; partner < companies; ++partner) {
    const std::string name = kCompanies.at(partner);
    csv += "Due from " + name + ",Other Current Asset,,\nDue to " + name + ",Other Current Liability,,\n";
  }
  return csv;
}

desk::RelationAccounts AccountsFor(std::size_t partner) {
  const std::string name = kCompanies.at(partner);
  return {.dueFrom = "Due from " + name, .dueTo = "Due to " + name};
}

}  // namespace

Group::Group(const std::filesystem::path& folder, std::size_t companies) : Companies(folder, companies) {
  for (std::size_t who = 0; who < Size(); ++who) Make(who);
  for (std::size_t inviter = 0; inviter < Size(); ++inviter) {
    for (std::size_t accepter = inviter + 1; accepter < Size(); ++accepter) Pair(inviter, accepter);
  }
  Keep();
}

void Group::Begin() {
  Companies::Begin();
  requests_.clear();
}

void Group::Make(std::size_t who) {
  desk::CreateCompany({.file = FileOf(who), .name = std::string(kCompanies.at(who)) + " Company"});
  const standalone::TemporaryFolder lists;
  standalone::WriteFile(lists / "accounts.csv", ChartFor(Size()));
  standalone::WriteFile(lists / "names.csv", "name,kind\nNorthern Power,vendor\n");
  desk::Import(Open(who), desk::Importable::kAccounts, lists / "accounts.csv");
  desk::Import(Open(who), desk::Importable::kNames, lists / "names.csv");
}

void Group::Pair(std::size_t inviter, std::size_t accepter) {
  const std::string theInviter = kCompanies.at(inviter);
  const std::string theAccepter = kCompanies.at(accepter);
  const std::string invitation = desk::InvitePartner(Open(inviter), {.partner = standalone::PartnerName(theAccepter),
                                                                     .accounts = AccountsFor(accepter),
                                                                     .folder = Shared()})
                                     .text;
  desk::AcceptInvitation(Open(accepter), {.invitation = invitation,
                                          .partner = standalone::PartnerName(theInviter),
                                          .accounts = AccountsFor(inviter),
                                          .folder = Shared()});
  desk::RunExchange(Open(accepter));
  desk::RunExchange(Open(inviter));
  const std::string fingerprint = desk::ShowPairedPartner(Open(inviter), theAccepter).fingerprint;
  desk::ConfirmPartner(Open(inviter), {.partner = theAccepter, .fingerprint = fingerprint});
  desk::RunExchange(Open(inviter));
  desk::RunExchange(Open(accepter));
}

}  // namespace partners
