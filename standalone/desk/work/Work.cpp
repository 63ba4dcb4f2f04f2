#include "standalone/desk/work/Work.h"

#include "standalone/values/Text.h"

namespace desk {

void Work::RequireAdministrator(std::string_view action) {
  const standalone::User& user = Host().CurrentUser();
  const bool isAdministrator =
      standalone::InReadingUnit(Host().Data(), [&] { return Host().Users().IsAdministrator(user.id); });
  if (isAdministrator) return;
  Refuse("The user " + standalone::Quoted(user.name) + " is no administrator; " + std::string(action) +
             " may only be done by one.",
         Remedy::kAskAnAdministrator);
}

void Work::Refuse(std::string why, Remedy remedy) const {
  throw Refused({.what = what_, .status = {}, .why = std::move(why), .remedy = remedy});
}

void Work::Accept(MEStatusCode answer) {
  company_.TellAnswer(answer);
  if (answer != MEStatusSuccess) throw Refused(RefusalFor(what_, answer));
}

}  // namespace desk
