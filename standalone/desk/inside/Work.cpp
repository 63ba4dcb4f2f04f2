#include "standalone/desk/inside/Work.h"

#include <algorithm>

#include "MultiEntityHost/Preferences.h"
#include "standalone/values/Text.h"

namespace desk {

void Work::RequireAdministrator(std::string_view action) {
  const standalone::User& user = Host().CurrentUser();
  if (IsAdministrator()) return;
  Refuse("The user " + standalone::Quoted(user.name) + " is no administrator; " + std::string(action) +
             " may only be done by one.",
         Remedy::kAskAnAdministrator);
}

void Work::RequireAdministratorOrAccountant(std::string_view what, std::string_view done) {
  if (IsAdministrator() || Host().CurrentUserIsAccountant()) return;
  Refuse("The user " + standalone::Quoted(Host().CurrentUser().name) + " is no administrator and no accountant; " +
             std::string(what) + " may only be " + std::string(done) + " by them.",
         Remedy::kAskAnAdministrator);
}

bool Work::IsAdministrator() {
  return standalone::InReadingUnit(Host().Data(),
                                   [this] { return Host().Users().IsAdministrator(Host().CurrentUser().id); });
}

bool Work::HasRight(standalone::FeatureRight right) {
  return IsAdministrator() || Host().Users().HasRight(Host().CurrentUser().id, right);
}

bool Work::HasOneOf(std::initializer_list<standalone::FeatureRight> rights) {
  return std::any_of(rights.begin(), rights.end(), [this](standalone::FeatureRight right) { return HasRight(right); });
}

void Work::RequireOneOf(std::initializer_list<standalone::FeatureRight> rights) {
  if (HasOneOf(rights)) return;
  std::string missing;
  for (const standalone::FeatureRight right : rights) {
    missing += (missing.empty() ? "" : " or ") + standalone::FeatureRightText(right);
  }
  Refuse("The user " + standalone::Quoted(Host().CurrentUser().name) + " has no right " + missing + ".",
         Remedy::kAskForTheRight);
}

// The module learns from the bridge who is an accountant.
bool Work::MayManageRelations() {
  return IsAdministrator() || (Attached().HasBridge() && Host().CurrentUserIsAccountant());
}

// Asked of the file itself, as the module's own question would have a file without a realm id remember one.
std::optional<std::string> Work::RememberedRealm() {
  return Host().Preferences().Find(kRealmIdPreference);
}

void Work::Refuse(std::string why, Remedy remedy) const {
  throw Refused({.what = what_, .status = {}, .why = std::move(why), .remedy = remedy});
}

void Work::Refuse(MEStatusCode answer, std::string why, Remedy remedy) const {
  company_.TellAnswer(answer);
  throw Refused({.what = what_, .status = answer, .why = std::move(why), .remedy = remedy});
}

void Work::Accept(MEStatusCode answer) {
  company_.TellAnswer(answer);
  if (answer != MEStatusSuccess) throw Refused(RefusalFor(what_, answer));
}

}  // namespace desk
