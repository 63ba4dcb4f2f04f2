#pragma once

#include "host/NameList.h"
#include "standalone/NameTable.h"

namespace standalone {

// The name list as the module sees it. A name's handle is its record number, so that nothing has to be released.
class NameListService final : public NameList {
 public:
  explicit NameListService(NameTable& names) : names_(names) {}

  EdListStatus CreateCName(Util::TString& name, NameType type, std::int32_t& nameId) override;
  bool IsValidName(NameHandle name) override;
  Util::TString GetName(NameHandle name, char* buffer, std::int32_t modifier) override;
  NameHandle GetParent(NameHandle name) override;
  void ReleaseName(NameHandle name) noexcept override;

 private:
  std::optional<Name> Find(NameHandle name);

  NameTable& names_;
};

}  // namespace standalone
