#pragma once

#include <concepts>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

#include "MultiEntity/Records.h"
#include "MultiEntityHost/DateType32.h"
#include "MultiEntityHost/MultiEntityRows.h"
#include "MultiEntityHost/TString.h"
#include "platform/SystemTime.h"

// How an argument of a call, a result or a row reads in what happened: texts in quotes, numbers and enumerators as
// numbers, rows field by field, so that two of them read the same only when they are.
namespace model::text {

std::string Of(std::string_view text);
std::string Of(DateType32 date);
std::string Of(const DBMultiEntityRelation& row);
std::string Of(const DBMultiEntityTransaction& row);
std::string Of(const DBMultiEntityRejectedTxnReceiver& row);

inline std::string Of(const Util::TString& text) {
  return Of(text.view());
}
inline std::string Of(const std::string& text) {
  return Of(std::string_view(text));
}
inline std::string Of(const char* text) {
  return text == nullptr ? "null" : Of(std::string_view(text));
}
inline std::string Of(std::same_as<bool> auto value) {
  return value ? "true" : "false";
}
template <class Number>
  requires(std::is_arithmetic_v<Number> && !std::same_as<Number, bool>)
std::string Of(Number value) {
  return std::to_string(value);
}
template <class Enumeration>
  requires std::is_enum_v<Enumeration>
std::string Of(Enumeration value) {
  return std::to_string(static_cast<std::underlying_type_t<Enumeration>>(value));
}

// A text field of a row, up to its first NUL; what lies behind that is told apart when it is not zero.
template <std::size_t Width>
std::string OfField(const char (&field)[Width]) {
  const std::string_view whole(field, Width);
  const std::string_view content = whole.substr(0, whole.find('\0'));
  std::string read = Of(content);
  if (whole.find_first_not_of('\0', content.size()) != std::string_view::npos) read += "+rest";
  return read;
}

inline std::string Of(const MEAccountInfo& account) {
  return "{" + Of(account.name) + " type " + Of(account.type) + " id " + Of(account.accountId) + " role " +
         Of(account.role) + "}";
}
inline std::string Of(const MECNameInfo& name) {
  return "{" + Of(name.name) + " id " + Of(name.nameId) + "}";
}
inline std::string Of(const METxnInfo& entry) {
  std::string read =
      "{" + Of(entry.txnId) + "/" + Of(entry.targetId) + " type " + Of(entry.txnType) + " state " + Of(entry.state);
  for (const Util::TString* field :
       {&entry.realmId, &entry.partnerName, &entry.requestId, &entry.amount, &entry.currencyCode, &entry.txnName,
        &entry.billCheckAccountName, &entry.liabilityAccountName, &entry.entryAccountName, &entry.txnDate}) {
    read += ' ' + Of(*field);
  }
  return read + "}";
}
inline std::string Of(const MERejectedTxnInfo& entry) {
  std::string read = "{type " + Of(entry.txnType) + " state " + Of(entry.state);
  for (const Util::TString* field : {&entry.realmId, &entry.partnerName, &entry.requestId, &entry.currencyCode,
                                     &entry.amount, &entry.partnerTxnId}) {
    read += ' ' + Of(*field);
  }
  return read + "}";
}
inline std::string Of(const std::pair<std::string, std::string>& texts) {
  return Of(texts.first) + "|" + Of(texts.second);
}
inline std::string Of(const std::pair<std::string, long>& entry) {
  return Of(entry.first) + "=" + Of(entry.second);
}
template <class Element>
std::string Of(const std::vector<Element>& list) {
  std::string read = "[";
  for (const auto& element : list) read += (read.size() > 1 ? ", " : "") + Of(element);
  return read + "]";
}
inline std::string Of(const std::unordered_map<long, std::pair<std::string, std::string>>& accounts) {
  const std::map<long, std::pair<std::string, std::string>> ordered(accounts.begin(), accounts.end());
  std::string read = "load factor " + Of(accounts.max_load_factor()) + " [";
  for (const auto& [recnum, texts] : ordered) read += Of(recnum) + ": " + Of(texts) + "; ";
  return read + "]";
}
inline std::string Of(const std::optional<long>& number) {
  return number.has_value() ? Of(*number) : "null";
}
inline std::string Of(const std::optional<std::string>& text) {
  return text.has_value() ? Of(*text) : "null";
}
inline std::string Of(const MERelationInfo& info) {
  return "{" + Of(info.realmId) + " update realm " + Of(info.updateRealm) + " state " + Of(info.state) + " accounts " +
         Of(info.accounts) + (info.skipPermissionCheck ? " without asking for the right" : "") + "}";
}
inline std::string Of(const SYSTEMTIME& time) {
  return "{" + Of(time.wYear) + "-" + Of(time.wMonth) + "-" + Of(time.wDay) + " " + Of(time.wHour) + ":" +
         Of(time.wMinute) + ":" + Of(time.wSecond) + "}";
}

template <class... Arguments>
std::string OfCall(std::string_view name, const Arguments&... arguments) {
  std::string call(name);
  call += '(';
  bool first = true;
  ((call += first ? "" : ", ", first = false, call += Of(arguments)), ...);
  call += ')';
  return call;
}

}  // namespace model::text
