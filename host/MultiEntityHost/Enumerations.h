#pragma once

#include <cstdint>

namespace KrEnumerations {

// An account's type. Numbers above 15 are types of the host that have no switch of their own.
enum AccntTypeType : std::int16_t {
  kBank = 0,
  kAccountsReceivable = 1,
  kOtherCurrentAsset = 2,
  kFixedAsset = 3,
  kOtherAsset = 4,
  kAccountsPayable = 5,
  kCreditCard = 6,
  kOtherCurrentLiability = 7,
  kLongTermLiability = 8,
  kEquity = 9,
  kIncome = 10,
  kCostOfGoodsSold = 11,
  kExpense = 12,
  kOtherIncome = 13,
  kOtherExpense = 14,
  kNonPosting = 15,
};

// The kinds of accounts that the host itself keeps. The module asks only for the one that never carries an
// intercompany balance.
enum SpecialAccountTypeType : std::int32_t {
  kSpecialNotForMultiEntity = 5,
};

}  // namespace KrEnumerations

// A host transaction's type, as 16-bit rows and 32-bit views have it.
inline constexpr std::int16_t kTxnTypeNone = 0;
inline constexpr std::int16_t kTxnTypeCheck = 3;
inline constexpr std::int16_t kTxnTypeJournalEntry = 8;
inline constexpr std::int16_t kTxnTypeBill = 9;

// In the place of the record number of an account or a name that is still to be created.
inline constexpr std::int32_t kToBeCreated = -1;

// A program feature that a user may have rights in.
enum ProgramFeature : std::int32_t {
  kFeatureNone = 0,
  kFeatureChecks = 16,
  kFeatureJournalEntries = 19,
  kFeatureBills = 20,
};

// What a user wants to do with a program feature or with an element of a list.
enum UserAction : std::int32_t {
  kActionCreate = 1,
  kActionView = 2,
  kActionDelete = 4,
  kActionModify = 5,
};

enum ListType : std::int32_t {
  kListAccounts = 1,
};

// How much of a host object is asked for when it is opened.
enum FeatureType : std::int32_t {
  kFeatureTypeStandard = 1,
};

// The outcome of a call into the host's lists and transactions. What is none of these has failed for another reason.
enum EdListStatus : std::int32_t {
  kEdListSuccess = 1,
  kEdListFailure = 2,
  kEdListDuplicateAccount = 3,
  kEdListDuplicateName = 7,
};
