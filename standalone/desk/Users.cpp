#include "standalone/desk/Users.h"

#include "MultiEntity/MultiEntityDriver.h"
#include "standalone/books/UserTable.h"
#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Deeds.h"
#include "standalone/desk/inside/ExchangeUser.h"
#include "standalone/desk/inside/Work.h"

namespace desk {

namespace {

constexpr const char* kChangeOfUsers = "a change of users";

std::vector<standalone::Right> RightsOf(const standalone::User& user) {
  if (user.administrator) return standalone::AllRights();
  std::vector<standalone::Right> rights;
  rights.reserve(user.featureRights.size() + user.listRights.size());
  for (const auto& right : user.featureRights) rights.emplace_back(standalone::FeatureRightText(right));
  for (const auto& right : user.listRights) rights.emplace_back(standalone::ListRightText(right));
  return rights;
}

User UserOf(const standalone::User& user) {
  return {
      .name = user.name, .administrator = user.administrator, .accountant = user.accountant, .rights = RightsOf(user)};
}

standalone::User RecordOf(const User& user) {
  standalone::User record;
  record.name = user.name;
  record.administrator = user.administrator;
  record.accountant = user.accountant;
  for (const standalone::Right& right : user.rights) {
    if (standalone::IsListRight(right.Text())) {
      record.listRights.push_back(standalone::ParseListRight(right.Text()));
    } else {
      record.featureRights.push_back(standalone::ParseFeatureRight(right.Text()));
    }
  }
  return record;
}

}  // namespace

std::vector<User> ListUsers(Company& company) {
  Work work(company.Opened(), UseCase::kListUsers);
  std::vector<User> users;
  work.Read([&] {
    work.RequireAdministratorOrAccountant("the users");
    for (const standalone::User& user : work.Host().Users().List()) users.push_back(UserOf(user));
  });
  return users;
}

User AddUser(Company& company, const User& user) {
  const standalone::User record = RecordOf(user);
  Work work(company.Opened(), UseCase::kChangeUsers);
  return work.WriteAsAdministrator(kChangeOfUsers, [&] {
    const standalone::User added = work.Host().Users().Require(work.Host().Users().Add(record).name);
    work.Host().Record(DeedOfUser({}, added));
    return UserOf(added);
  });
}

ChangedUser ChangeUser(Company& company, const User& user) {
  const standalone::User record = RecordOf(user);
  Work work(company.Opened(), UseCase::kChangeUsers);
  return work.WriteAsAdministrator(kChangeOfUsers, [&] {
    const std::optional<standalone::User> before = work.Host().Users().Find(record.name);
    work.Host().Users().Change(record);
    const standalone::User changed = work.Host().Users().Require(record.name);
    return ChangedUser{UserOf(changed), work.RecordChanges(DeedOfUser(before, changed))};
  });
}

void RemoveUser(Company& company, const std::string& name) {
  Work work(company.Opened(), UseCase::kChangeUsers);
  work.WriteAsAdministrator(kChangeOfUsers, [&] {
    const standalone::User removed = work.Host().Users().Require(name);
    LetGoOfUser(work, removed);
    work.Host().Users().Remove(name);
    work.Host().Record(DeedOfUser(removed, {}));
  });
}

Persona PersonaInRole(Company& company, std::int32_t role) {
  Work work(company.Opened(), UseCase::kReadRelations);
  return static_cast<Persona>(work.Read([&] { return MultiEntityDriver::SybaseRelationsUserPersonaForRole(role); }));
}

}  // namespace desk
