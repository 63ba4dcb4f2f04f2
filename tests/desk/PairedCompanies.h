#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "standalone/desk/Exchange.h"
#include "standalone/desk/Pairing.h"
#include "tests/desk/DeskFixture.h"

namespace desk {

// Companies that know each other, or get to, over a folder; each is opened for what it does and closed again, as on
// machines of their own.
class PairedCompanies : public testing::Test {
 protected:
  template <typename Does>
  auto At(const std::string& name, Does&& does, const std::string& user = kFirstUser) {
    Company company(
        FileOf(name),
        {.user = user, .onOpened = {}, .onLogLine = {}, .onAnswer = {}, .onSaved = nullptr, .onLookalikes = {}});
    return does(company);
  }

  explicit PairedCompanies(const std::vector<std::string>& names = {"Alder", "Birch", "Cedar"}) {
    for (const std::string& name : names) Make(name, "USD");
    std::filesystem::create_directory(Folder());
  }

  std::filesystem::path FileOf(const std::string& company) const { return folder_ / (company + ".company"); }
  std::filesystem::path Folder() const { return folder_ / "shared"; }

  void Make(const std::string& name, const std::string& currency) {
    CreateCompany({.file = FileOf(name), .name = name + " Company", .homeCurrency = currency});
    standalone::WriteFile(folder_ / "accounts.csv",
                          "name,type,special,deleted\n"
                          "Checking,Bank,,\n"
                          "Accounts Payable,Accounts Payable,,\n"
                          "Maintenance,Expense,,\n"
                          "Due from Alder,Other Current Asset,,\n"
                          "Due to Alder,Other Current Liability,,\n"
                          "Due from Birch,Other Current Asset,,\n"
                          "Due to Birch,Other Current Liability,,\n"
                          "Due from Cedar,Other Current Asset,,\n"
                          "Due to Cedar,Other Current Liability,,\n");
    At(name, [&](Company& company) { Import(company, Importable::kAccounts, folder_ / "accounts.csv"); });
  }

  static RelationAccounts AccountsFor(const std::string& partner) {
    return {.dueFrom = "Due from " + partner, .dueTo = "Due to " + partner};
  }
  std::string Invite(const std::string& who, const std::string& whom) {
    return At(who,
              [&](Company& company) {
                return InvitePartner(
                    company,
                    {.partner = standalone::PartnerName(whom), .accounts = AccountsFor(whom), .folder = Folder()});
              })
        .text;
  }
  AcceptedInvitation Accept(const std::string& who, const std::string& whose, const std::string& invitation) {
    return At(who, [&](Company& company) {
      return AcceptInvitation(company, {.invitation = invitation,
                                        .partner = standalone::PartnerName(whose),
                                        .accounts = AccountsFor(whose),
                                        .folder = Folder()});
    });
  }
  PairedPartner Confirm(const std::string& who, const std::string& whom) {
    return At(who, [&](Company& company) {
      const std::string fingerprint = ShowPairedPartner(company, whom).fingerprint;
      return ConfirmPartner(company, {.partner = whom, .fingerprint = fingerprint});
    });
  }
  std::vector<CarriedWith> Carry(const std::string& who) {
    return At(who, [](Company& company) { return RunExchange(company); });
  }
  void CarryInTurns(const std::string& one, const std::string& other, int rounds) {
    for (int round = 0; round < rounds; ++round) {
      Carry(one);
      Carry(other);
    }
  }
  void SendByMail(const std::string& from, const std::string& to) {
    const std::string text = At(from, [&](Company& company) { return ExportLetters(company, to); });
    At(to, [&](Company& company) { return ImportLetters(company, "> a mail\r\n\r\n" + text + "\nRegards"); });
  }
  void PairOverTheFolder() {
    Accept("Birch", "Alder", Invite("Alder", "Birch"));
    CarryInTurns("Birch", "Alder", 1);
    Confirm("Alder", "Birch");
    CarryInTurns("Alder", "Birch", 1);
  }

  PairedPartner Seen(const std::string& by, const std::string& whom) {
    return At(by, [&](Company& company) { return ShowPairedPartner(company, whom); });
  }
  std::vector<Relation> RelationsOf(const std::string& company) {
    return At(company, [](Company& open) { return ListRelations(open); });
  }
  std::string RealmOf(const std::string& company) {
    return At(company, [](Company& open) { return RememberedRealm(open).value_or("none"); });
  }
  std::vector<std::filesystem::path> Lying() const {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(Folder())) {
      if (entry.is_regular_file()) files.push_back(entry.path());
    }
    return files;
  }
  std::string Books(const std::string& company) const { return standalone::ReadFile(FileOf(company)); }
  void Restore(const std::string& company, const std::string& books) {
    for (const char* suffix : {"-wal", "-shm"}) std::filesystem::remove(FileOf(company).string() + suffix);
    standalone::WriteFile(FileOf(company), books);
  }

  standalone::TemporaryFolder folder_;
};

}  // namespace desk
