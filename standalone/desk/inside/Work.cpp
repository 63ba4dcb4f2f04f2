#include "standalone/desk/inside/Work.h"

#include "standalone/values/Text.h"

namespace desk {

void Work::RequireAdministrator(std::string_view action) {
  const standalone::User& user = Host().CurrentUser();
  if (IsAdministrator()) return;
  Refuse("The user " + standalone::Quoted(user.name) + " is no administrator; " + std::string(action) +
             " may only be done by one.",
         Remedy::kAskAnAdministrator);
}

void Work::RequireAdministratorOrAccountant(std::string_view what) {
  if (IsAdministrator() || Host().CurrentUserIsAccountant()) return;
  Refuse("The user " + standalone::Quoted(Host().CurrentUser().name) + " is no administrator and no accountant; " +
             std::string(what) + " may only be seen by them.",
         Remedy::kAskAnAdministrator);
}

bool Work::IsAdministrator() {
  return standalone::InReadingUnit(Host().Data(),
                                   [this] { return Host().Users().IsAdministrator(Host().CurrentUser().id); });
}

bool Work::HasRight(standalone::FeatureRight right) {
  return IsAdministrator() || Host().Users().HasRight(Host().CurrentUser().id, right);
}

void Work::RequireRight(standalone::FeatureRight right) {
  if (HasRight(right)) return;
  Refuse("The user " + standalone::Quoted(Host().CurrentUser().name) + " has no right " +
             standalone::FeatureRightText(right) + ".",
         Remedy::kAskForTheRight);
}

void Work::Refuse(std::string why, Remedy remedy) const {
  throw Refused({.what = what_, .status = {}, .why = std::move(why), .remedy = remedy});
}

void Work::Accept(MEStatusCode answer) {
  company_.TellAnswer(answer);
  if (answer != MEStatusSuccess) throw Refused(RefusalFor(what_, answer));
}

}  // namespace desk
