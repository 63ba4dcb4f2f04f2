#include "standalone/desk/Names.h"

#include "standalone/desk/Company.h"
#include "standalone/desk/inside/Work.h"

namespace desk {

std::vector<Name> ListNames(Company& company) {
  Work work(company.Opened(), UseCase::kListNames);
  std::vector<Name> names;
  work.Read([&] {
    for (const standalone::Name& name : work.Host().Names().List()) {
      names.push_back({.id = name.id, .name = name.fullName, .kind = standalone::NameKindText(name.kind)});
    }
  });
  return names;
}

}  // namespace desk
