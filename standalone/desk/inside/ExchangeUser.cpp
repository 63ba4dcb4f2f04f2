#include "standalone/desk/inside/ExchangeUser.h"

#include <algorithm>
#include <string>
#include <utility>

#include "standalone/books/PairingTable.h"
#include "standalone/books/PreferenceTable.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

// What the company remembers the user's number by; a number is given to nobody else.
constexpr std::string_view kExchangeUserPreference = "ExchangeUser";
constexpr std::string_view kExchangeUserName = "Exchange";

// That nobody has.
std::string FreeName(Work& work) {
  std::string name(kExchangeUserName);
  for (int next = 2; work.Host().Users().Find(name); ++next) {
    name = std::string(kExchangeUserName) + " " + std::to_string(next);
  }
  return name;
}

// An accountant, as who may establish the relation with a partner that has confirmed.
standalone::User MakeUser(Work& work) {
  standalone::User user{.id = 0,
                        .name = FreeName(work),
                        .administrator = false,
                        .accountant = true,
                        .featureRights = {{kFeatureBills, kActionModify},
                                          {kFeatureChecks, kActionModify},
                                          {kFeatureJournalEntries, kActionCreate},
                                          {kFeatureJournalEntries, kActionModify}},
                        .listRights = {}};
  user = work.Host().Users().Add(user);
  work.Host().Preferences().Set(kExchangeUserPreference, std::to_string(user.id));
  return user;
}

bool IsPairedWithSomebody(Work& work) {
  const std::vector<standalone::Pairing> all = work.Host().Pairings().List();
  return std::ranges::any_of(
      all, [](const standalone::Pairing& pairing) { return pairing.state != standalone::PairingState::kRemoved; });
}

}  // namespace

std::optional<standalone::User> FindExchangeUser(Work& work) {
  const std::optional<std::string> remembered = work.Host().Preferences().Find(kExchangeUserPreference);
  const std::optional<std::int32_t> id = remembered ? standalone::ParseRecordNumber(*remembered) : std::nullopt;
  return id ? work.Host().Users().FindByNumber(*id) : std::nullopt;
}

void HaveExchangeUser(Work& work, standalone::AuditDeed& deed) {
  if (FindExchangeUser(work)) return;
  const standalone::User made = MakeUser(work);
  deed.changes.push_back({"user who carries letters", std::nullopt, made.name});
}

standalone::User RequireExchangeUser(Work& work) {
  if (std::optional<standalone::User> known = work.Read([&] { return FindExchangeUser(work); })) {
    return *std::move(known);
  }
  return work.Write([&] {
    const standalone::User made = MakeUser(work);
    work.Host().Record(DeedOfUser({}, made));
    return made;
  });
}

void LetGoOfUser(Work& work, const standalone::User& user) {
  const std::optional<standalone::User> own = FindExchangeUser(work);
  if (!own || own->id != user.id) return;
  if (IsPairedWithSomebody(work)) {
    throw standalone::InvalidInput("The user " + standalone::Quoted(user.name) +
                                   " is the one as whom letters of partners are taken and answered, and stays as long "
                                   "as this company is paired; change what that user may do with 'users change'.");
  }
  work.Host().Preferences().Forget(kExchangeUserPreference);
}

}  // namespace desk
