#pragma once

#include "Frame/OperationLog.h"

// The operations as the operations log names them, so that logs of any build compare equal.
namespace operations {

inline constexpr const char* kDriverSource = "Src/MultiEntityDriver";
inline constexpr const char* kSchedulerSource = "Src/MultiEntityScheduler";
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

inline constexpr Operation UpdateTransactionWithStateByRequest{
    "MultiEntityDriver::UpdateTransactionWithState",
    "enum MEStatusCode __cdecl MultiEntityDriver::UpdateTransactionWithState(class Util::TString<char,class "
    "Util::TStringAllocator<char> >,class Util::TString<char,class Util::TStringAllocator<char> >,enum MEState)",
    kDriverSource};

inline constexpr Operation UpdateTransactionWithStateByLine{
    "MultiEntityDriver::UpdateTransactionWithState",
    "enum MEStatusCode __cdecl MultiEntityDriver::UpdateTransactionWithState(int,int,enum MEState)", kDriverSource};

inline constexpr Operation DoesTransactionExist{
    "MultiEntityDriver::DoesTransactionExist",
    "enum MEStatusCode __cdecl MultiEntityDriver::DoesTransactionExist(class Util::TString<char,class "
    "Util::TStringAllocator<char> >,class Util::TString<char,class Util::TStringAllocator<char> >)",
    kDriverSource};

inline constexpr Operation SaveRejectedTransaction{
    "MultiEntityDriver::SaveRejectedTransaction",
    "enum MEStatusCode __cdecl MultiEntityDriver::SaveRejectedTransaction(class Util::TString<char,class "
    "Util::TStringAllocator<char> >,short,class Util::TString<char,class Util::TStringAllocator<char> >,class "
    "Util::TString<char,class Util::TStringAllocator<char> >,class Util::TString<char,class "
    "Util::TStringAllocator<char> >)",
    kDriverSource};

inline constexpr Operation GetAllRejectedTransaction{
    "MultiEntityDriver::GetAllRejectedTransaction",
    "enum MEStatusCode __cdecl MultiEntityDriver::GetAllRejectedTransaction(class std::vector<struct "
    "MERejectedTxnInfo,class std::allocator<struct MERejectedTxnInfo> > &)",
    kDriverSource};

inline constexpr Operation DeleteRejectedTransaction{
    "MultiEntityDriver::DeleteRejectedTransaction",
    "enum MEStatusCode __cdecl MultiEntityDriver::DeleteRejectedTransaction(class Util::TString<char,class "
    "Util::TStringAllocator<char> >)",
    kDriverSource};

inline constexpr Operation GetTxns{"MultiEntityDriver::GetTxns",
                                   "bool __cdecl MultiEntityDriver::GetTxns(unsigned int,class std::vector<unsigned "
                                   "long,class std::allocator<unsigned long> > &)",
                                   kDriverSource};

inline constexpr Operation GetTxnsForPeriod{
    "MultiEntityDriver::GetTxnsForPeriod",
    "bool __cdecl MultiEntityDriver::GetTxnsForPeriod(class DateType32,class DateType32,unsigned int,unsigned "
    "int,class std::vector<unsigned long,class std::allocator<unsigned long> > &)",
    kDriverSource};

inline constexpr Operation GetMECacheRealmId{"MultiEntityDriver::GetMECacheRealmId",
                                             "char * __cdecl MultiEntityDriver::GetMECacheRealmId(class "
                                             "Util::TString<char,class Util::TStringAllocator<char> >,bool &)",
                                             kDriverSource};

inline constexpr Operation SetMECacheRealmId{
    "MultiEntityDriver::SetMECacheRealmId", "bool __cdecl MultiEntityDriver::SetMECacheRealmId(char *)", kDriverSource};

inline constexpr Operation BlockUserIfRealmReset{"MultiEntityDriver::BlockUserIfRealmReset",
                                                 "bool __cdecl MultiEntityDriver::BlockUserIfRealmReset(class "
                                                 "Util::TString<char,class Util::TStringAllocator<char> >)",
                                                 kDriverSource};

inline constexpr Operation CheckForPluginNavigation{"MultiEntityDriver::CheckForPluginNavigation",
                                                    "bool __cdecl MultiEntityDriver::CheckForPluginNavigation(void)",
                                                    kDriverSource};

inline constexpr Operation SybaseRelationsUserPersonaForRole{
    "MultiEntityDriver::SybaseRelationsUserPersonaForRole",
    "enum SybaseRelationsUserPersona __cdecl MultiEntityDriver::SybaseRelationsUserPersonaForRole(int)", kDriverSource};

inline constexpr Operation NeedToCheckForMERealmReset{"MultiEntityUtils::NeedToCheckForMERealmReset",
                                                      "bool __cdecl MultiEntityUtils::NeedToCheckForMERealmReset(void)",
                                                      kUtilsSource};

inline constexpr Operation GetDelayInSecondsFromDCE{
    "MESchedulerUtil::GetDelayInSecondsFromDCE", "unsigned int __cdecl MESchedulerUtil::GetDelayInSecondsFromDCE(void)",
    kSchedulerSource};

inline constexpr Operation GetHoursToLaunchFromDCE{
    "MESchedulerUtil::GetHoursToLaunchFromDCE", "unsigned int __cdecl MESchedulerUtil::GetHoursToLaunchFromDCE(void)",
    kSchedulerSource};

inline constexpr Operation GetNextSchedulerTimeFromPrefDb{
    "MESchedulerUtil::GetNextSchedulerTimeFromPrefDb",
    "class DateType32 __cdecl MESchedulerUtil::GetNextSchedulerTimeFromPrefDb(void)", kSchedulerSource};

inline constexpr Operation SetNextSchedulerTimeToPrefDb{
    "MESchedulerUtil::SetNextSchedulerTimeToPrefDb", "void __cdecl MESchedulerUtil::SetNextSchedulerTimeToPrefDb(void)",
    kSchedulerSource};

inline constexpr Operation GetSchedulerLaunchDelayInSeconds{
    "MESchedulerUtil::GetSchedulerLaunchDelayInSeconds",
    "unsigned int __cdecl MESchedulerUtil::GetSchedulerLaunchDelayInSeconds(void)", kSchedulerSource};

inline constexpr Operation CanProcessSchedulerMsg{"MESchedulerUtil::CanProcessSchedulerMsg",
                                                  "bool __cdecl MESchedulerUtil::CanProcessSchedulerMsg(void)",
                                                  kSchedulerSource};

inline constexpr Operation StartScheduler{"MESchedulerUtil::StartScheduler",
                                          "void __cdecl MESchedulerUtil::StartScheduler(void)", kSchedulerSource};

inline constexpr Operation OnTimerElapsed{
    "MESchedulerUtil::OnTimerElapsed",
    "void __cdecl MESchedulerUtil::OnTimerElapsed(struct HWND__ *,unsigned int,unsigned __int64,unsigned long)",
    kSchedulerSource};

inline constexpr Operation ProcessScheduler{"MultiEntityScheduler::ProcessMsg",
                                            "void __cdecl MultiEntityScheduler::ProcessMsg(void)", kSchedulerSource};

inline constexpr Operation ProcessUIPrompt{"MESchedulerUIPrompt::ProcessMsg",
                                           "void __cdecl MESchedulerUIPrompt::ProcessMsg(void)", kSchedulerSource};

}  // namespace operations
