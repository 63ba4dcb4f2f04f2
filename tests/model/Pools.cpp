#include "model/Pools.h"

namespace model {

Util::TString Arguments::Realm(std::size_t at) const {
  static const std::array<std::string, 16> kRealms{"9130", "9131", "9132", "abc",
                                                   "9130", "9131", "9132", "abc",
                                                   "ABC",  "9130", "9131", "1234567890123456789",
                                                   "",     "%s%n", "9139", "12345678901234567890"};
  return {Of(at, kRealms)};
}

Util::TString Arguments::PartnerName(std::size_t at) const {
  static const std::array<std::string, 12> kNames{"Birch Ltd",          "Alder Inc", "Birch Ltd", "Alder Inc",
                                                  "Birch Ltd",          "Alder Inc", "Birch Ltd", "100 %d",
                                                  std::string(59, 'p'), "Alder Inc", "",          std::string(60, 'q')};
  return {Of(at, kNames)};
}

Util::TString Arguments::RequestId(std::size_t at) const {
  static const std::array<std::string, 12> kRequests{
      "R1", "R2", "R3", "R4", "R1", "R2", "R5", "R6", std::string(36, 'r'), "%s", "", std::string(37, 's')};
  return {Of(at, kRequests)};
}

std::int32_t Arguments::AccountId(std::size_t at) const {
  static constexpr std::array<std::int32_t, 28> kIds{21, 22, 23, 24, 25, 26, 27, 28, 21, 22, 23, 24, 25, 26,
                                                     27, 28, 1,  8,  3,  18, 19, 20, 2,  6,  16, 17, 99, 0};
  return Of(at, kIds);
}

MEState Arguments::State(std::size_t at) const {
  static constexpr std::array<std::int32_t, 12> kStates{3, 1, 4, 0, 3, 5, 2, 1, 3, 6, 7, -1};
  return static_cast<MEState>(Of(at, kStates));
}

std::int16_t Arguments::TxnType(std::size_t at) const {
  static constexpr std::array<std::int16_t, 10> kTypes{8, 9, 3, 8, 9, 3, 8, 0, 5, 9};
  return Of(at, kTypes);
}

std::int32_t Arguments::RelationId(std::size_t at) const {
  static constexpr std::array<std::int32_t, 16> kIds{1, 2, 3, 1, 2, 4, 3, 1, 2, 3, 4, 5, 0, -1, 99, 1};
  return Of(at, kIds);
}

Util::TString Arguments::Amount(std::size_t at) const {
  static const std::array<std::string, 8> kAmounts{"100.00", "12.50", "7", "-3.00", "0.01", "1000000.00", "a lot", ""};
  return {Of(at, kAmounts)};
}

Util::TString Arguments::RejectedAmount(std::size_t at) const {
  static const std::array<std::string, 8> kAmounts{
      "100.00", "12.50", "-3.00", "a lot", "", "7", "1234567890123456789.00", "12345678901234567890.00"};
  return {Of(at, kAmounts)};
}

std::int32_t Arguments::RelationOf(std::string_view realm, std::size_t at) const {
  static constexpr std::array<std::int32_t, 4> kUnusual{0, -1, 99, 1};
  if (Rarely(at)) return kUnusual.at(static_cast<std::size_t>(Raw(at) / 8 % 4));
  if (realm == "9130") return 1;
  if (realm == "9131") return 2;
  if (realm == "9132") return 3;
  return realm == "abc" ? 4 : 5;
}

std::int32_t Arguments::RelationOfLine(std::int32_t targetId, std::size_t at) const {
  return Rarely(at) ? RelationId(at) : 1 + targetId % 3;
}

Util::TString Arguments::RealmOfLine(std::int32_t targetId, std::size_t at) const {
  static const std::array<std::string, 3> kRealms{"9130", "9131", "9132"};
  return Rarely(at) ? Realm(at) : Util::TString(kRealms.at(static_cast<std::size_t>(targetId % 3)));
}

Util::TString Arguments::RequestOfLine(std::int32_t targetId, std::size_t at) const {
  return Rarely(at) ? RequestId(at) : Util::TString("R" + std::to_string(targetId % 5));
}

std::int16_t Arguments::RejectedType(std::size_t at) const {
  static constexpr std::array<std::int16_t, 8> kTypes{9, 3, 9, 3, 9, 3, 8, 0};
  return Of(at, kTypes);
}

DateType32 Arguments::Date(std::size_t at) const {
  static constexpr std::array<DateType32, 12> kDates{
      DateType32(2024, 3, 3),  DateType32(2024, 3, 1),   DateType32(2024, 3, 5),   NullDate(),
      DateType32(2024, 11, 7), DateType32(2023, 12, 25), DateType32(2024, 2, 29),  NullDate(),
      DateType32(2024, 2, 30), DateType32(5, 1, 1),      DateType32(2024, 13, 40), DateType32(2025, 1, 5)};
  return Of(at, kDates);
}

std::string Arguments::StoredDate(std::size_t at) const {
  static const std::array<std::string, 20> kTexts{"20240303",  "20240304", "20240301",  "20240310", "20250101",
                                                  "20231231",  "2024",     "202403",    "",         "abc",
                                                  "2024ab01",  "202403xx", " 20240303", "2024 3 5", "2024-1+2",
                                                  "202403039", "99991231", "+2024033",  "-0010101", "12"};
  return Of(at, kTexts);
}

std::string Arguments::RemoteValue(std::size_t at) const {
  static const std::array<std::string, 20> kTexts{
      "10",  "900",   "0",  "",   "12",         "8",          "23",
      "abc", "12xyz", " 9", "-1", "4294967295", "4294967296", "99999999999999999999",
      "+7",  "-",     "60", "00", "0x",         "\t11"};
  return Of(at, kTexts);
}

SYSTEMTIME Arguments::Clock(std::size_t at) const {
  static constexpr std::array<SYSTEMTIME, 10> kTimes{{{2024, 3, 0, 3, 8, 30, 15, 0},
                                                      {2024, 3, 0, 3, 10, 0, 0, 0},
                                                      {2024, 3, 0, 3, 9, 59, 59, 0},
                                                      {2024, 3, 0, 3, 23, 59, 59, 0},
                                                      {2024, 3, 1, 4, 0, 0, 0, 0},
                                                      {2024, 2, 4, 29, 12, 1, 2, 0},
                                                      {2024, 12, 2, 31, 7, 45, 0, 0},
                                                      {2023, 12, 0, 31, 11, 0, 1, 0},
                                                      {2025, 1, 3, 1, 9, 0, 0, 0},
                                                      {2024, 3, 0, 10, 10, 1, 0, 0}}};
  return Of(at, kTimes);
}

std::vector<MEAccountInfo> Arguments::Accounts(std::size_t at) const {
  static constexpr std::array<std::size_t, 12> kSizes{2, 2, 2, 2, 2, 2, 2, 2, 2, 0, 1, 3};
  static constexpr std::array<std::array<std::int32_t, 3>, 4> kRoles{{{0, 1, 0}, {1, 0, 2}, {0, 1, 1}, {2, 0, 7}}};
  const auto roles = Of(at + 3, kRoles);
  std::vector<MEAccountInfo> accounts(Of(at, kSizes));
  for (std::size_t i = 0; i < accounts.size(); ++i) {
    accounts[i].accountId = AccountId(at + 1 + i % 2);
    if (i == 1 && accounts[1].accountId == accounts[0].accountId) ++accounts[1].accountId;
    accounts[i].role = static_cast<MEAccountRole>(roles.at(i));
  }
  return accounts;
}

MEAccountInfo Arguments::ExpenseAccount(std::size_t at) const {
  static constexpr std::array<std::int32_t, 10> kIds{13, -1, 15, 13, -1, 12, -1, 21, 99, 19};
  static const std::array<std::string, 6> kNames{"travel", "Rent", "Bank", "wages", "%d%s", ""};
  static constexpr std::array<std::int16_t, 4> kTypes{12, 14, 0, -1};
  return {.name = Util::TString(Of(at + 1, kNames)), .type = Of(at + 2, kTypes), .accountId = Of(at, kIds)};
}

MECNameInfo Arguments::NameInfo(std::size_t at) const {
  static constexpr std::array<std::int32_t, 6> kIds{1, -1, 2, -1, 3, -1};
  static const std::array<std::string, 7> kNames{"Vendor A", "Vendor B", "Top", "Vendor C", "Vendor D", "%s", ""};
  return {.name = Util::TString(Of(at + 1, kNames)), .nameId = Of(at, kIds)};
}

}  // namespace model
