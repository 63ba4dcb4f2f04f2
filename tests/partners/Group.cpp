#include "partners/Group.h"

#include <cstdlib>

#include "partners/History.h"
#include "standalone/desk/Exchange.h"
#include "standalone/desk/Import.h"
#include "standalone/desk/Pairing.h"
#include "tests/support/TemporaryFolder.h"

namespace partners {

namespace {

constexpr const char* kBeginning = "2026-06-01T09:00:00";

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

Group::Group(const std::filesystem::path& folder, std::size_t companies)
    : play_(folder / "play"), paired_(folder / "paired"), size_(companies) {
  std::filesystem::create_directories(Shared());
  for (std::size_t who = 0; who < size_; ++who) Make(who);
  for (std::size_t inviter = 0; inviter < size_; ++inviter) {
    for (std::size_t accepter = inviter + 1; accepter < size_; ++accepter) Pair(inviter, accepter);
  }
  CloseAll();
  std::filesystem::copy(play_, paired_, std::filesystem::copy_options::recursive);
}

void Group::Begin() {
  CloseAll();
  clocks_.clear();
  requests_.clear();
  std::filesystem::remove_all(play_);
  std::filesystem::copy(paired_, play_, std::filesystem::copy_options::recursive);
}

desk::Company& Group::Open(std::size_t who) {
  if (!open_ || openFor_ != who) {
    open_.reset();
    const auto clock = clocks_.find(who);
    setenv("MULTIENTITY_NOW", clock == clocks_.end() ? kBeginning : clock->second.c_str(), /*overwrite=*/1);
    open_ = std::make_unique<desk::Company>(FileOf(who));
    openFor_ = who;
  }
  return *open_;
}

void Group::SetClock(std::size_t who, const std::string& time) {
  clocks_[who] = time;
  CloseAll();
}

std::filesystem::path Group::FolderOf(std::size_t who) const {
  return play_ / kCompanies.at(who);
}

std::filesystem::path Group::FileOf(std::size_t who) const {
  return FolderOf(who) / "books.company";
}

void Group::Make(std::size_t who) {
  std::filesystem::create_directory(FolderOf(who));
  desk::CreateCompany({.file = FileOf(who), .name = std::string(kCompanies.at(who)) + " Company"});
  const standalone::TemporaryFolder lists;
  standalone::WriteFile(lists / "accounts.csv", ChartFor(size_));
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
