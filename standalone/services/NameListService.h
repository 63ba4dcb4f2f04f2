#pragma once

#include "MultiEntityHost/NameList.h"
#include "standalone/books/NameTable.h"
#include "standalone/storage/ReadOnce.h"
#include "standalone/values/HeldRecords.h"

namespace standalone {

// The name list as the module sees it. A name's handle is its record number, so that nothing has to be released.
class NameListService final : public NameList {
 public:
  NameListService(Database& database, NameTable& names) : names_(names), held_(database) {}

  EdListStatus CreateCName(Util::TString& name, NameType type, std::int32_t& nameId) override;
  bool IsValidName(NameHandle name) override;
  Util::TString GetName(NameHandle name, char* buffer, std::int32_t modifier) override;
  NameHandle GetParent(NameHandle name) override;
  void ReleaseName(NameHandle name) noexcept override;

 private:
  struct HeldName {
    bool exists = false;
    Util::TString name;
    NameHandle parent = NameHandle::kNone;
  };

  // Each name is read once as long as nobody changes a list.
  const HeldName& Find(NameHandle name);
  HeldName Read(NameHandle name);

  NameTable& names_;
  ReadOnce<HeldRecords<HeldName>> held_;
};

}  // namespace standalone
