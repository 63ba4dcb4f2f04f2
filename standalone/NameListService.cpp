#include "standalone/NameListService.h"

#include "standalone/Guard.h"
#include "standalone/ListNames.h"

namespace standalone {

EdListStatus NameListService::CreateCName(Util::TString& name, NameType type, std::int32_t& nameId) {
  return AsEdListStatus([&] {
    if (type < 0 || type > static_cast<std::int16_t>(NameKind::kOther)) return kEdListFailure;
    const std::string fullName = NormalizedFullName("The name", name.view());
    if (names_.FindByFullName(fullName)) return kEdListDuplicateName;
    nameId = names_.Create(fullName, static_cast<NameKind>(type)).id;
    name = std::string_view(fullName);
    return kEdListSuccess;
  });
}

bool NameListService::IsValidName(NameHandle name) {
  return Find(name).has_value();
}

Util::TString NameListService::GetName(NameHandle name, char* /*buffer*/, std::int32_t /*modifier*/) {
  const std::optional<Name> found = Find(name);
  return found ? Util::TString(std::string_view(found->name)) : Util::TString();
}

NameHandle NameListService::GetParent(NameHandle name) {
  const std::optional<Name> found = Find(name);
  return found ? NameHandle{static_cast<std::uint64_t>(found->parentId)} : NameHandle::kNone;
}

void NameListService::ReleaseName(NameHandle /*name*/) noexcept {}

std::optional<Name> NameListService::Find(NameHandle name) {
  if (name == NameHandle::kNone) return std::nullopt;
  return names_.Find(static_cast<std::int32_t>(name));
}

}  // namespace standalone
