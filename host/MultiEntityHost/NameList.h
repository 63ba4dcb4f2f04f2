#pragma once

#include <cstdint>
#include <utility>

#include "MultiEntityHost/Enumerations.h"
#include "MultiEntityHost/TString.h"

// Names an open name of the host; the number is the host's choice. None is no name at all.
enum class NameHandle : std::uint64_t { kNone = 0 };

// The kinds of names; the module creates names of this one only.
enum NameType : std::int16_t {
  kNameTypeVendor = 1,
};

// The host's list of names: customers, vendors and others. A host implements it; the module calls it on the
// user-interface thread.
class NameList {
 public:
  // Adds a name and sets `nameId` to its record number. The host may rewrite `name` to the text as stored.
  // kEdListDuplicateName when the text is taken, anything but kEdListSuccess when it failed otherwise.
  virtual EdListStatus CreateCName(Util::TString& name, NameType type, std::int32_t& nameId) = 0;

  // What a CName is made of. Handles that are returned are the caller's and released once, unless they are kNone. A
  // name that is not valid, kNone too, has the empty text and no parent.
  virtual bool IsValidName(NameHandle name) = 0;
  // The name itself, without its parents, when `buffer` is null and `modifier` is 0.
  virtual Util::TString GetName(NameHandle name, char* buffer, std::int32_t modifier) = 0;
  // The name that it stands under, or a name that is not valid.
  virtual NameHandle GetParent(NameHandle name) = 0;
  virtual void ReleaseName(NameHandle name) noexcept = 0;

 protected:
  ~NameList() = default;
};

// A name of the host, open as long as this object lives.
class CName {
 public:
  // Takes over `handle`.
  CName(NameList& names, NameHandle handle) noexcept : names_(&names), handle_(handle) {}
  CName(CName&& other) noexcept : names_(other.names_), handle_(std::exchange(other.handle_, NameHandle::kNone)) {}
  CName& operator=(CName&& other) noexcept {
    std::swap(names_, other.names_);
    std::swap(handle_, other.handle_);
    return *this;
  }
  CName(const CName&) = delete;
  CName& operator=(const CName&) = delete;
  ~CName() {
    if (handle_ != NameHandle::kNone) names_->ReleaseName(handle_);
  }

  bool IsValid() const { return handle_ != NameHandle::kNone && names_->IsValidName(handle_); }
  Util::TString GetName(char* buffer, std::int32_t modifier) const {
    return names_->GetName(handle_, buffer, modifier);
  }
  CName GetParent() const { return {*names_, names_->GetParent(handle_)}; }

 private:
  NameList* names_;
  NameHandle handle_;
};
