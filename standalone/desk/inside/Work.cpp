#include "standalone/desk/inside/Work.h"

#include <algorithm>

#include "MultiEntity/MultiEntityDriver.h"
#include "MultiEntityHost/Preferences.h"
#include "platform/Clock.h"
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
  if (IsAdministratorOrAccountant()) return;
  Refuse("The user " + standalone::Quoted(Host().CurrentUser().name) + " is no administrator and no accountant; " +
             std::string(what) + " may only be " + std::string(done) + " by them.",
         Remedy::kAskAnAdministrator);
}

std::string Work::WithSuggestion(std::string why) const {
  if (!suggestion_.empty()) why.append(why.ends_with('.') ? "" : ".").append(suggestion_);
  return why;
}

bool Work::IsAdministrator() {
  return standalone::InReadingUnit(Host().Data(), [this] {
    Host().FindUserAgain();
    return Host().CurrentUser().administrator;
  });
}

bool Work::HasRight(standalone::FeatureRight right) {
  return IsAdministrator() || Host().Users().HasRight(Host().CurrentUser().id, right);
}

bool Work::HasRight(standalone::ListRight right) {
  return IsAdministrator() || Host().Users().HasRight(Host().CurrentUser().id, right);
}

bool Work::HasOneOf(std::initializer_list<standalone::FeatureRight> rights) {
  return std::any_of(rights.begin(), rights.end(), [this](standalone::FeatureRight right) { return HasRight(right); });
}

void Work::RequireRight(standalone::ListRight right) {
  if (HasRight(right)) return;
  RefuseWithoutRight(standalone::ListRightText(right));
}

void Work::RequireOneOf(std::initializer_list<standalone::FeatureRight> rights) {
  if (HasOneOf(rights)) return;
  std::string missing;
  for (const standalone::FeatureRight right : rights) {
    missing += (missing.empty() ? "" : " or ") + standalone::FeatureRightText(right);
  }
  RefuseWithoutRight(missing);
}

void Work::RefuseWithoutRight(const std::string& right) {
  Refuse("The user " + standalone::Quoted(Host().CurrentUser().name) + " has no right " + right + ".",
         Remedy::kAskForTheRight);
}

void Work::RequireAllOf(std::initializer_list<standalone::FeatureRight> rights) {
  std::string missing;
  for (const standalone::FeatureRight right : rights) {
    if (!HasRight(right)) missing += (missing.empty() ? "" : " and ") + standalone::FeatureRightText(right);
  }
  if (!missing.empty()) RefuseWithoutRight(missing);
}

void Work::RequireFeature() {
  if (MultiEntityDriver::IsFeatureEnabled(MESupportCheckMultiEntity, MEKillSwitchGlobal)) return;
  Accept(MEStatusFeatureDisabled);
}

// The module learns from the bridge who is an accountant.
bool Work::MayManageRelations() {
  return IsAdministrator() || (Attached().HasBridge() && Host().CurrentUserIsAccountant());
}

std::string Work::WhyNotManageRelations() {
  const std::string why =
      "the user " + standalone::Quoted(Host().CurrentUser().name) + " has no right to manage relations";
  return Attached().HasBridge() ? why : why + ": without the bridge library beside the program nobody is an accountant";
}

std::string Work::WhyNotDone(UseCase what, MEStatusCode answer) {
  constexpr std::string_view kTheUser = "the user ";
  std::string why = RefusalFor(what, answer).why;
  if (answer == MEStatusPermissionDenied && why.starts_with(kTheUser)) {
    why.insert(kTheUser.size(), standalone::Quoted(Host().CurrentUser().name) + " ");
  }
  return why;
}

DateType32 Work::Today() {
  return platform::Today(Host().Clock());
}

// Asked of the file itself, as the module's own question would have a file without a realm id remember one.
std::optional<std::string> Work::RememberedRealm() {
  return Host().Preferences().Find(kRealmIdPreference);
}

void Work::Refuse(std::string why, Remedy remedy) const {
  throw Refused({.what = what_, .status = {}, .why = WithSuggestion(std::move(why)), .remedy = remedy});
}

void Work::Refuse(MEStatusCode answer, std::string why, Remedy remedy) const {
  company_.TellAnswer(answer);
  throw Refused({.what = what_, .status = answer, .why = std::move(why), .remedy = remedy});
}

void Work::Accept(MEStatusCode answer) {
  company_.TellAnswer(answer);
  if (answer == MEStatusSuccess) return;
  Refusal refusal = RefusalFor(what_, answer);
  if (answer != MEStatusPermissionDenied) refusal.why = WithSuggestion(std::move(refusal.why));
  throw Refused(std::move(refusal));
}

}  // namespace desk
