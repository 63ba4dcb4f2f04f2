#pragma once

#include <cstdint>

#include "MultiEntityHost/DateType32.h"
#include "MultiEntityHost/Enumerations.h"
#include "MultiEntityHost/Money.h"
#include "MultiEntityHost/NameList.h"
#include "MultiEntityHost/TString.h"

// Names an open line of the host; the number is the host's choice.
enum class LineHandle : std::uint64_t {};

// What is done when a line cannot be read; the module always asks for 0.
enum ReadFailSafeType : std::int32_t {
  kReadFailSafeDefault = 0,
};

// The transaction type under which a line is viewed; 0 is any.
using TViewType = std::int32_t;
inline constexpr TViewType kViewAny = 0;

// The lines of the host's transactions. A host implements it; the module calls it on the user-interface thread.
class TargetLines {
 public:
  // Whether there is a line of that id that is seen under the view.
  virtual bool TargExists(std::int32_t targetId, TViewType view) = 0;

  // What a TargType is made of: opened on a line, asked, released once. A line that does not exist answers the null
  // date, 0, empty texts and a name that is not valid.
  virtual LineHandle OpenLine(std::int32_t targetId, FeatureType feature, ReadFailSafeType failSafe,
                              TViewType view) = 0;
  // The day of the transaction.
  virtual DateType32 GetDate(LineHandle line) = 0;
  // In minor units; a debit is positive.
  virtual BalType GetAmount(LineHandle line) = 0;
  // The full name of the line's account, NUL-terminated and valid until the line is released; both options are 0.
  virtual const char* GetAccountName(LineHandle line, std::int32_t option1, std::int32_t option2) = 0;
  // The line's own memo.
  virtual Util::TString GetStrMemo(LineHandle line) = 0;
  // The name on the transaction.
  virtual CName GetTransactionName(LineHandle line) = 0;
  virtual void ReleaseLine(LineHandle line) noexcept = 0;

 protected:
  ~TargetLines() = default;
};

// A line of a host transaction, open as long as this object lives.
class TargType {
 public:
  TargType(TargetLines& lines, std::int32_t targetId, FeatureType feature, ReadFailSafeType failSafe, TViewType view)
      : lines_(lines), handle_(lines.OpenLine(targetId, feature, failSafe, view)) {}
  TargType(const TargType&) = delete;
  TargType& operator=(const TargType&) = delete;
  ~TargType() { lines_.ReleaseLine(handle_); }

  DateType32 GetDate() const { return lines_.GetDate(handle_); }
  BalType GetAmount() const { return lines_.GetAmount(handle_); }
  const char* GetAccountName(std::int32_t option1, std::int32_t option2) const {
    return lines_.GetAccountName(handle_, option1, option2);
  }
  Util::TString GetStrMemo() const { return lines_.GetStrMemo(handle_); }
  CName GetTransactionName() const { return lines_.GetTransactionName(handle_); }

 private:
  TargetLines& lines_;
  LineHandle handle_;
};
