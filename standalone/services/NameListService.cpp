#include "standalone/services/NameListService.h"

#include "standalone/services/Guard.h"
#include "standalone/values/ListNames.h"

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
  return Find(name).exists;
}

Util::TString NameListService::GetName(NameHandle name, char* /*buffer*/, std::int32_t /*modifier*/) {
  return Find(name).name;
}

NameHandle NameListService::GetParent(NameHandle name) {
  return Find(name).parent;
}

void NameListService::ReleaseName(NameHandle /*name*/) noexcept {}

const NameListService::HeldName& NameListService::Find(NameHandle name) {
  static const HeldName kNoName;
  if (name == NameHandle::kNone) return kNoName;
  HeldRecords<HeldName>& names = held_.Get([](auto&) {});
  const auto number = static_cast<std::uint64_t>(name);
  if (const HeldName* const held = names.Find(number)) return *held;
  return names.Hold(number, Read(name));
}

NameListService::HeldName NameListService::Read(NameHandle name) {
  const std::optional<Name> found = names_.Find(static_cast<std::int32_t>(name));
  if (!found) return {};
  return {true, std::string_view(found->name), NameHandle{static_cast<std::uint64_t>(found->parentId)}};
}

}  // namespace standalone
