#include "standalone/desk/Realm.h"

#include <exception>
#include <stdexcept>
#include <utility>
#include <vector>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/RelationTable.h"
#include "standalone/books/RowFields.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/Pairings.h"
#include "standalone/desk/inside/PersonAtWork.h"
#include "standalone/desk/inside/Work.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

constexpr const char* kChangeOfRealm = "a change of the realm id";

RealmOutcome OutcomeOf(const RealmCheck& check, const std::optional<standalone::RealmId>& realm) {
  if (!realm) return RealmOutcome::kNoRealm;
  if (check.blocked) return RealmOutcome::kReset;
  if (check.after != realm->Text()) return RealmOutcome::kNotChecked;
  return check.before ? RealmOutcome::kUnchanged : RealmOutcome::kRememberedNow;
}

// A company that bore its partner's realm id would be related to itself.
void RefusePartnersRealm(Work& work, const standalone::RealmId& realm) {
  std::vector<DBMultiEntityRelation> relations;
  work.Host().Relations().List(relations);
  for (const DBMultiEntityRelation& relation : relations) {
    if (standalone::Trimmed(standalone::Field(relation.realmId)) != standalone::Trimmed(realm.Text())) continue;
    work.Refuse("the realm " + standalone::Quoted(realm.Text()) + " is that of the partner " +
                    standalone::Quoted(standalone::Field(relation.partnerName)) + ", not this company's own",
                Remedy::kNameTheCompanysRealm);
  }
}

template <typename Operation>
auto InFrontOf(const Person& person, Work& work, Operation&& operation) {
  std::exception_ptr failure;
  const PersonAtWork present(work, person, [&failure](std::exception_ptr thrown) { failure = std::move(thrown); });
  auto result = operation();
  if (failure) std::rethrow_exception(failure);
  return result;
}

}  // namespace

std::optional<std::string> RememberedRealm(Company& company) {
  Work work(company.Opened(), UseCase::kReadRealm);
  return work.Read([&] { return work.RememberedRealm(); });
}

bool RememberRealm(Company& company, const standalone::RealmId& realm) {
  Work work(company.Opened(), UseCase::kChangeRealm);
  std::string text = realm.Text();
  return work.WriteAsAdministrator(kChangeOfRealm, [&] {
    RefusePartnersRealm(work, realm);
    RefuseWhilePaired(work);
    const std::optional<std::string> before = work.RememberedRealm();
    if (!MultiEntityDriver::SetMECacheRealmId(text.data())) {
      throw std::runtime_error("the realm id " + realm.Text() + " could not be stored in the company file");
    }
    if (before == realm.Text()) return false;
    work.Host().Record(DeedOfRealm(before, realm.Text()));
    return true;
  });
}

RealmCheck CheckRealm(Company& company, const std::optional<standalone::RealmId>& realm, const Person& person) {
  Work work(company.Opened(), UseCase::kCheckRealm);
  const Util::TString reported = realm ? Util::TString(std::string_view(realm->Text())) : Util::TString();
  return InFrontOf(person, work, [&] {
    return work.Write([&] {
      RealmCheck check;
      check.before = work.RememberedRealm();
      check.blocked = MultiEntityDriver::BlockUserIfRealmReset(reported);
      check.after = work.RememberedRealm();
      // The module remembers one where none was, unless the check is switched off, which only it knows beforehand;
      // another one is somebody else's doing, while a question was open.
      if (realm && !check.before && check.after) {
        work.RequireAdministrator(kChangeOfRealm);
        RefusePartnersRealm(work, *realm);
        work.Host().Record(DeedOfRealm(check.before, check.after.value_or("")));
      }
      check.outcome = OutcomeOf(check, realm);
      return check;
    });
  });
}

bool CheckPlugin(Company& company, const Person& person) {
  Work work(company.Opened(), UseCase::kCheckPlugin);
  return InFrontOf(person, work,
                   [&] { return work.Read([] { return MultiEntityDriver::CheckForPluginNavigation(); }); });
}

}  // namespace desk
