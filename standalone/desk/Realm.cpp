#include "standalone/desk/Realm.h"

#include <exception>
#include <stdexcept>
#include <utility>

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/PersonAtWork.h"
#include "standalone/desk/inside/Work.h"

namespace desk {

namespace {

constexpr const char* kChangeOfRealm = "a change of the realm id";

RealmOutcome OutcomeOf(const RealmCheck& check, const std::optional<standalone::RealmId>& realm) {
  if (!realm) return RealmOutcome::kNoRealm;
  if (check.blocked) return RealmOutcome::kReset;
  if (check.after != realm->Text()) return RealmOutcome::kNotChecked;
  return check.before ? RealmOutcome::kUnchanged : RealmOutcome::kRememberedNow;
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

void RememberRealm(Company& company, const standalone::RealmId& realm) {
  Work work(company.Opened(), UseCase::kChangeRealm);
  std::string text = realm.Text();
  work.WriteAsAdministrator(kChangeOfRealm, [&] {
    const std::optional<std::string> before = work.RememberedRealm();
    if (!MultiEntityDriver::SetMECacheRealmId(text.data())) {
      throw std::runtime_error("the realm id " + realm.Text() + " could not be stored in the company file");
    }
    work.Host().Record(DeedOfRealm(before, realm.Text()));
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
      // The module remembers one where none was; another one is somebody else's doing, while a question was open.
      if (!check.before && check.after) {
        work.RequireAdministrator(kChangeOfRealm);
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
