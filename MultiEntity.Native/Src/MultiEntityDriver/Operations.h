#pragma once

#include "MultiEntityDriver/OperationLog.h"

// The operations as the operations log names them, so that logs of any build compare equal.
namespace operations {

inline constexpr const char* kDriverSource = "Src/MultiEntityDriver";
inline constexpr const char* kUtilsSource = "Src/MultiEntityUtils";

inline constexpr Operation IsFeatureEnabled{
    "MultiEntityDriver::IsFeatureEnabled",
    "bool __cdecl MultiEntityDriver::IsFeatureEnabled(enum MESupportCheckKey,enum MEKillSwitchKey)", kDriverSource};

inline constexpr Operation HasMEPermission{
    "MultiEntityDriver::HasMEPermission",
    "bool __cdecl MultiEntityDriver::HasMEPermission(enum MEPermissionType,enum ProgramFeature)", kDriverSource};

inline constexpr Operation CreateRelation{
    "MultiEntityDriver::CreateRelation",
    "enum MEStatusCode __cdecl MultiEntityDriver::CreateRelation("
    "class Util::TString<char,class Util::TStringAllocator<char> >,"
    "class Util::TString<char,class Util::TStringAllocator<char> >,enum MERelationType,enum MEState,"
    "class std::vector<struct MEAccountInfo,class std::allocator<struct MEAccountInfo> >)",
    kDriverSource};

inline constexpr Operation PopulateCOAInRelation{
    "MultiEntityDriver::PopulateCOAInRelation",
    "enum MEStatusCode __cdecl MultiEntityDriver::PopulateCOAInRelation("
    "struct DMMultiEntityRelation::DBMultiEntityRelation &,"
    "class std::vector<struct MEAccountInfo,class std::allocator<struct MEAccountInfo> >)",
    kDriverSource};

inline constexpr Operation UpdateRelation{
    "MultiEntityDriver::UpdateRelation",
    "enum MEStatusCode __cdecl MultiEntityDriver::UpdateRelation(struct MERelationInfo)", kDriverSource};

inline constexpr Operation DeleteRelation{"MultiEntityDriver::DeleteRelation",
                                          "enum MEStatusCode __cdecl MultiEntityDriver::DeleteRelation("
                                          "class Util::TString<char,class Util::TStringAllocator<char> >,bool)",
                                          kDriverSource};

inline constexpr Operation GetRelation{"MultiEntityDriver::GetRelation",
                                       "enum MEStatusCode __cdecl MultiEntityDriver::GetRelation("
                                       "class Util::TString<char,class Util::TStringAllocator<char> >,"
                                       "struct DMMultiEntityRelation::DBMultiEntityRelation &)",
                                       kDriverSource};

inline constexpr Operation GetRelationById{"MultiEntityDriver::GetRelationById",
                                           "enum MEStatusCode __cdecl MultiEntityDriver::GetRelationById("
                                           "long,struct DMMultiEntityRelation::DBMultiEntityRelation &)",
                                           kDriverSource};

inline constexpr Operation GetRelationsList{
    "MultiEntityDriver::GetRelationsList",
    "enum MEStatusCode __cdecl MultiEntityDriver::GetRelationsList("
    "class std::vector<struct DMMultiEntityRelation::DBMultiEntityRelation,"
    "class std::allocator<struct DMMultiEntityRelation::DBMultiEntityRelation> > &)",
    kDriverSource};

inline constexpr Operation GetRelationRealmIdList{
    "MultiEntityDriver::GetRelationRealmIdList",
    "enum MEStatusCode __cdecl MultiEntityDriver::GetRelationRealmIdList("
    "class std::vector<class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> >,"
    "class std::allocator<class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> > > > "
    "&,bool)",
    kDriverSource};

inline constexpr Operation GetAccountsList{
    "MultiEntityDriver::GetAccountsList",
    "enum MEStatusCode __cdecl MultiEntityDriver::GetAccountsList("
    "class std::unordered_map<long,struct std::pair<"
    "class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> >,"
    "class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> > >,"
    "struct std::hash<long>,struct std::equal_to<long>,class std::allocator<struct std::pair<long const ,"
    "struct std::pair<class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> >,"
    "class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> > > > > > &,"
    "enum MEAccountFilter,class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> >)",
    kDriverSource};

inline constexpr Operation GetAccountListByType{
    "MultiEntityDriver::GetAccountListByType",
    "enum MEStatusCode __cdecl MultiEntityDriver::GetAccountListByType("
    "short,class std::vector<struct std::pair<"
    "class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> >,long>,"
    "class std::allocator<struct std::pair<"
    "class std::basic_string<char,struct std::char_traits<char>,class std::allocator<char> >,long> > > &)",
    kDriverSource};

inline constexpr Operation RecordGeneralJournalEntry{
    "MultiEntityDriver::RecordGeneralJournalEntry",
    "enum MEStatusCode __cdecl MultiEntityDriver::RecordGeneralJournalEntry("
    "class Util::TString<char,class Util::TStringAllocator<char> >,struct MEAccountInfo,int,"
    "class Util::TString<char,class Util::TStringAllocator<char> >,"
    "class Util::TString<char,class Util::TStringAllocator<char> >,struct MECNameInfo,unsigned int &)",
    kDriverSource};

inline constexpr Operation RemoveGeneralJournalEntry{
    "MultiEntityDriver::RemoveGeneralJournalEntry",
    "enum MEStatusCode __cdecl MultiEntityDriver::RemoveGeneralJournalEntry(unsigned int)", kDriverSource};

inline constexpr Operation GetListOfTxnTargetEntriesOfTxn{
    "MultiEntityDriver::GetListOfTxnTargetEntries",
    "enum MEStatusCode __cdecl MultiEntityDriver::GetListOfTxnTargetEntries("
    "class std::vector<struct METxnInfo,class std::allocator<struct METxnInfo> > &,long)",
    kDriverSource};

inline constexpr Operation GetListOfTxnTargetEntriesOfPeriod{
    "MultiEntityDriver::GetListOfTxnTargetEntries",
    "enum MEStatusCode __cdecl MultiEntityDriver::GetListOfTxnTargetEntries("
    "class std::vector<struct METxnInfo,class std::allocator<struct METxnInfo> > &,class DateType32,class DateType32)",
    kDriverSource};

inline constexpr Operation InitializeMEKillSwitchLookUpTable{
    "MultiEntityUtils::InitializeMEKillSwitchLookUpTable",
    "bool __cdecl MultiEntityUtils::InitializeMEKillSwitchLookUpTable(void)", kUtilsSource};

inline constexpr Operation IsKillSwitchEnabled{"MultiEntityUtils::IsFeatureEnabled",
                                               "bool __cdecl MultiEntityUtils::IsFeatureEnabled(enum MEKillSwitchKey)",
                                               kUtilsSource};

}  // namespace operations
