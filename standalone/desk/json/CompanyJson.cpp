#include "standalone/desk/json/Json.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

const char* NameOf(UseCase what) noexcept {
  switch (what) {
    case UseCase::kBackUp:
      return "back-up";
    case UseCase::kRestore:
      return "restore";
    case UseCase::kExport:
      return "export";
    case UseCase::kImport:
      return "import";
    case UseCase::kListAccounts:
      return "list-accounts";
    case UseCase::kChangeAccounts:
      return "change-accounts";
    case UseCase::kListNames:
      return "list-names";
    case UseCase::kChangeNames:
      return "change-names";
    case UseCase::kListUsers:
      return "list-users";
    case UseCase::kReadAudit:
      return "read-audit";
    case UseCase::kChangeUsers:
      return "change-users";
    case UseCase::kReadSettings:
      return "read-settings";
    case UseCase::kChangeSettings:
      return "change-settings";
    case UseCase::kCreateRelation:
      return "create-relation";
    case UseCase::kUpdateRelation:
      return "update-relation";
    case UseCase::kDeleteRelation:
      return "delete-relation";
    case UseCase::kReadRelations:
      return "read-relations";
    case UseCase::kRecordJournalEntry:
      return "record-journal-entry";
    case UseCase::kRemoveJournalEntry:
      return "remove-journal-entry";
    case UseCase::kAttach:
      return "attach";
    case UseCase::kDetach:
      return "detach";
    case UseCase::kRecordTransaction:
      return "record-transaction";
    case UseCase::kCopyTransaction:
      return "copy-transaction";
    case UseCase::kReadBalances:
      return "read-balances";
    case UseCase::kReadRegister:
      return "read-register";
    case UseCase::kReadOpenItems:
      return "read-open-items";
    case UseCase::kShowTransaction:
      return "show-transaction";
    case UseCase::kMoveExpense:
      return "move-expense";
    case UseCase::kReverseTransaction:
      return "reverse-transaction";
    case UseCase::kCorrectTransaction:
      return "correct-transaction";
    case UseCase::kRemoveTransaction:
      return "remove-transaction";
    case UseCase::kListTransactions:
      return "list-transactions";
    case UseCase::kSetTransactionState:
      return "set-transaction-state";
    case UseCase::kFindRequest:
      return "find-request";
    case UseCase::kSaveRejection:
      return "save-rejection";
    case UseCase::kListRejections:
      return "list-rejections";
    case UseCase::kDeleteRejection:
      return "delete-rejection";
    case UseCase::kReadRealm:
      return "read-realm";
    case UseCase::kChangeRealm:
      return "change-realm";
    case UseCase::kCheckRealm:
      return "check-realm";
    case UseCase::kCheckPlugin:
      return "check-plugin";
    case UseCase::kShowReminder:
      return "show-reminder";
    case UseCase::kResetReminder:
      return "reset-reminder";
    case UseCase::kKeepOpen:
      return "keep-open";
    case UseCase::kPair:
      return "pair";
    case UseCase::kReadPartners:
      return "read-partners";
    case UseCase::kUseIdentity:
      return "use-identity";
    case UseCase::kExchange:
      return "exchange";
    case UseCase::kReadInbox:
      return "read-inbox";
    case UseCase::kAcceptRequest:
      return "accept-request";
    case UseCase::kRejectRequest:
      return "reject-request";
    case UseCase::kDisputeRequest:
      return "dispute-request";
    case UseCase::kNoteOnRequest:
      return "note-on-request";
    case UseCase::kReadOutbox:
      return "read-outbox";
    case UseCase::kSendRequest:
      return "send-request";
    case UseCase::kWithdrawRequest:
      return "withdraw-request";
    case UseCase::kReadRules:
      return "read-rules";
    case UseCase::kChangeRules:
      return "change-rules";
  }
  return "unknown";
}

const char* NameOf(Remedy remedy) noexcept {
  switch (remedy) {
    case Remedy::kNone:
      break;
    case Remedy::kAskAnAdministrator:
      return "ask-an-administrator";
    case Remedy::kAskForTheRight:
      return "ask-for-the-right";
    case Remedy::kAskWhoKeepsTheSwitches:
      return "ask-who-keeps-the-switches";
    case Remedy::kReadTheLog:
      return "read-the-log";
    case Remedy::kReadTheLogBooksUnchanged:
      return "read-the-log-books-unchanged";
    case Remedy::kReadTheLogStateUnchanged:
      return "read-the-log-state-unchanged";
    case Remedy::kSeeRelations:
      return "see-relations";
    case Remedy::kMakeARelation:
      return "make-a-relation";
    case Remedy::kEstablishTheRelation:
      return "establish-the-relation";
    case Remedy::kNameThePartnersRealm:
      return "name-the-partners-realm";
    case Remedy::kNameTheCompanysRealm:
      return "name-the-companys-realm";
    case Remedy::kGiveBothAccounts:
      return "give-both-accounts";
    case Remedy::kChooseFreePartnerOrAccounts:
      return "choose-free-partner-or-accounts";
    case Remedy::kForceOrWait:
      return "force-or-wait";
    case Remedy::kChooseUsableAccounts:
      return "choose-usable-accounts";
    case Remedy::kChooseAssetAndLiability:
      return "choose-asset-and-liability";
    case Remedy::kGiveTwoAccounts:
      return "give-two-accounts";
    case Remedy::kKeepTheAccount:
      return "keep-the-account";
    case Remedy::kGiveTheRelationAccounts:
      return "give-the-relation-accounts";
    case Remedy::kLeaveOutTheDueToAccount:
      return "leave-out-the-due-to-account";
    case Remedy::kNameAnExpenseAccount:
      return "name-an-expense-account";
    case Remedy::kGiveAnAmount:
      return "give-an-amount";
    case Remedy::kGiveTheRequestId:
      return "give-the-request-id";
    case Remedy::kWriteTheRequestIdAsKnown:
      return "write-the-request-id-as-known";
    case Remedy::kSeeTheBookedEntry:
      return "see-the-booked-entry";
    case Remedy::kSeeOwnTransactions:
      return "see-own-transactions";
    case Remedy::kDeleteTheRejection:
      return "delete-the-rejection";
    case Remedy::kCheckTheEntry:
      return "check-the-entry";
    case Remedy::kCheckTheAccounts:
      return "check-the-accounts";
    case Remedy::kUseTheAccountOfThatName:
      return "use-the-account-of-that-name";
    case Remedy::kUseTheNameLikeThat:
      return "use-the-name-like-that";
    case Remedy::kMakeTheUpperNameFirst:
      return "make-the-upper-name-first";
    case Remedy::kRenameInstead:
      return "rename-instead";
    case Remedy::kDeleteTheLowerFirst:
      return "delete-the-lower-first";
    case Remedy::kChangeTheRelation:
      return "change-the-relation";
    case Remedy::kSeeRelationsAndRequests:
      return "see-relations-and-requests";
    case Remedy::kTransactionHasChanged:
      return "transaction-has-changed";
    case Remedy::kSeeRejections:
      return "see-rejections";
    case Remedy::kMoveAsTheStateAllows:
      return "move-as-the-state-allows";
    case Remedy::kImportAgain:
      return "import-again";
    case Remedy::kBackUpThenReplace:
      return "back-up-then-replace";
    case Remedy::kMakeAnotherCompany:
      return "make-another-company";
    case Remedy::kDateLaterOrReopen:
      return "date-later-or-reopen";
    case Remedy::kTakeBackTheEntry:
      return "take-back-the-entry";
    case Remedy::kReverseOrRemove:
      return "reverse-or-remove";
    case Remedy::kReverseInstead:
      return "reverse-instead";
    case Remedy::kSeeTheReversal:
      return "see-the-reversal";
    case Remedy::kCopyTheOriginal:
      return "copy-the-original";
    case Remedy::kRemoveTheReversal:
      return "remove-the-reversal";
    case Remedy::kTakeBackTheLaterFirst:
      return "take-back-the-later-first";
    case Remedy::kWaitForThePartner:
      return "wait-for-the-partner";
    case Remedy::kSettleFirst:
      return "settle-first";
    case Remedy::kGiveALaterDate:
      return "give-a-later-date";
    case Remedy::kEnterAnEntry:
      return "enter-an-entry";
    case Remedy::kMoveTheExpenseAgain:
      return "move-the-expense-again";
    case Remedy::kGiveTheSharesAgain:
      return "give-the-shares-again";
    case Remedy::kSayWhatIsWrong:
      return "say-what-is-wrong";
    case Remedy::kReplace:
      return "replace";
    case Remedy::kNameWhom:
      return "name-whom";
    case Remedy::kGiveLines:
      return "give-lines";
    case Remedy::kGiveOtherLines:
      return "give-other-lines";
    case Remedy::kBalanceTheEntry:
      return "balance-the-entry";
    case Remedy::kNameThePayable:
      return "name-the-payable";
    case Remedy::kNameTheBank:
      return "name-the-bank";
    case Remedy::kGiveThePartner:
      return "give-the-partner";
    case Remedy::kCheckTheShares:
      return "check-the-shares";
    case Remedy::kShareByAnAmount:
      return "share-by-an-amount";
    case Remedy::kRecordAgain:
      return "record-again";
    case Remedy::kCopyAnotherOne:
      return "copy-another-one";
    case Remedy::kSeeTransactions:
      return "see-transactions";
    case Remedy::kSeeTheAttachments:
      return "see-the-attachments";
    case Remedy::kReplaceTheFile:
      return "replace-the-file";
    case Remedy::kPairFirst:
      return "pair-first";
    case Remedy::kSeePartners:
      return "see-partners";
    case Remedy::kMoveTheIdentityAway:
      return "move-the-identity-away";
    case Remedy::kTakeUpTheKey:
      return "take-up-the-key";
    case Remedy::kBringTheIdentity:
      return "bring-the-identity";
    case Remedy::kSendItToThePartner:
      return "send-it-to-the-partner";
    case Remedy::kTalkToThePartner:
      return "talk-to-the-partner";
    case Remedy::kCompareFingerprints:
      return "compare-fingerprints";
    case Remedy::kUseTheExistingRelation:
      return "use-the-existing-relation";
    case Remedy::kLeaveOutTheAccounts:
      return "leave-out-the-accounts";
    case Remedy::kRemoveThePairingFirst:
      return "remove-the-pairing-first";
    case Remedy::kWaitForTheOtherProgram:
      return "wait-for-the-other-program";
    case Remedy::kAnswerInTheInbox:
      return "answer-in-the-inbox";
    case Remedy::kWaitForTheReversal:
      return "wait-for-the-reversal";
    case Remedy::kSendToThePartner:
      return "send-to-the-partner";
    case Remedy::kNameExpenseAndName:
      return "name-expense-and-name";
    case Remedy::kSeeTheInbox:
      return "see-the-inbox";
    case Remedy::kSeeTheOutbox:
      return "see-the-outbox";
    case Remedy::kNameOnePartner:
      return "name-one-partner";
    case Remedy::kGiveAnotherRequestId:
      return "give-another-request-id";
    case Remedy::kCarryUntilCompared:
      return "carry-until-compared";
    case Remedy::kConfirmWhatCameBack:
      return "confirm-what-came-back";
    case Remedy::kEnterWhatWasSent:
      return "enter-what-was-sent";
    case Remedy::kEnterUnderTheLostRequest:
      return "enter-under-the-lost-request";
    case Remedy::kSendByNameOrTakeBack:
      return "send-by-name-or-take-back";
    case Remedy::kAddARule:
      return "add-a-rule";
    case Remedy::kSeeTheRules:
      return "see-the-rules";
  }
  return nullptr;
}

const char* NameOf(RealmOutcome outcome) noexcept {
  switch (outcome) {
    case RealmOutcome::kNoRealm:
      return "no-realm";
    case RealmOutcome::kReset:
      return "reset";
    case RealmOutcome::kUnchanged:
      return "unchanged";
    case RealmOutcome::kRememberedNow:
      return "remembered-now";
    case RealmOutcome::kNotChecked:
      return "not-checked";
  }
  return "unknown";
}

const char* NameOf(NoReminder obstacle) noexcept {
  switch (obstacle) {
    case NoReminder::kNoBridge:
      return "no-bridge";
    case NoReminder::kFeatureIsOff:
      return "feature-is-off";
    case NoReminder::kSampleFile:
      return "sample-file";
    case NoReminder::kAccountantsCopy:
      return "accountants-copy";
    case NoReminder::kSeveralCurrencies:
      return "several-currencies";
    case NoReminder::kNoRight:
      return "no-right";
    case NoReminder::kRelationsNotRead:
      return "relations-not-read";
    case NoReminder::kNoRelation:
      return "no-relation";
    case NoReminder::kRememberedDayIsNone:
      return "remembered-day-is-none";
  }
  return "unknown";
}

template <typename Item>
void AddPart(Json& json, const char* key, const Part<Item>& part) {
  json[key] = JsonOf(part.items);
  if (part.refusal) json["refusals"].push_back(JsonOf(*part.refusal));
}

struct ScreenJson {
  Json operator()(const PendingWork& pending) const {
    Json json{{"view", "pending-transactions"}, {"refusals", Json::array()}};
    AddPart(json, "transactions", pending.lines);
    AddPart(json, "relations", pending.relations);
    json["requests"] = JsonOf(pending.requests);
    json["partners"] = JsonOf(pending.partners);
    return json;
  }
  Json operator()(const RelationsAfterRealmReset& after) const {
    Json json{{"view", "relations-after-realm-reset"}, {"refusals", Json::array()}};
    json["remembered"] = OrNull(after.rememberedRealm);
    AddPart(json, "relations", after.relations);
    return json;
  }
  Json operator()(const RelationSetUp& setUp) const {
    Json json{{"view", "relation-set-up"}, {"refusals", Json::array()}};
    AddPart(json, "relations", setUp.relations);
    return json;
  }
};

}  // namespace

std::string_view NameOf(Persona persona) noexcept {
  switch (persona) {
    case Persona::kNone:
      return "none";
    case Persona::kViewer:
      return "viewer";
    case Persona::kContributor:
      return "contributor";
    case Persona::kManager:
      return "manager";
  }
  return "unknown";
}

std::string_view NameOf(standalone::OnlyRead why) noexcept {
  using standalone::OnlyRead;
  switch (why) {
    case OnlyRead::kReadOnlyMedium:
      return "read-only-medium";
    case OnlyRead::kNetworkShare:
      return "network-share";
    case OnlyRead::kOtherNames:
      return "hard-link";
    case OnlyRead::kWriteProtected:
      return "write-protected";
    case OnlyRead::kWriteProtectedFolder:
      return "write-protected-folder";
  }
  return "unknown";
}

std::string_view NameOf(Question::Kind kind) noexcept {
  switch (kind) {
    case Question::Kind::kYesNo:
      return "question";
    case Question::Kind::kNotice:
      return "notice";
    case Question::Kind::kWarning:
      return "warning";
  }
  return "message";
}

Json JsonOf(Persona persona) {
  return {{"persona", NameOf(persona)}, {"personaNumber", static_cast<int>(persona)}};
}

Json JsonOf(const User& user) {
  Json rights = Json::array();
  for (const standalone::Right& right : user.rights) rights.push_back(right.Text());
  return {
      {"name", user.name}, {"administrator", user.administrator}, {"accountant", user.accountant}, {"rights", rights}};
}

Json JsonOf(const Settings& settings) {
  return {{"company-name", settings.companyName},
          {"home-currency", settings.homeCurrency},
          {"decimals", settings.decimals.Count()},
          {"multi-currency", settings.multiCurrency},
          {"sample-file", settings.sampleFile},
          {"accountants-copy", settings.accountantsCopy},
          {"closing-date", settings.closingDate ? Json(standalone::FormatIsoDate(*settings.closingDate)) : Json()}};
}

Json JsonOf(const Imported& imported) {
  return {{"rows", imported.rows},
          {"accounts", imported.accounts},
          {"names", imported.names},
          {"transactions", imported.transactions},
          {"lines", imported.lines},
          {"intercompanyLines", imported.intercompanyLines},
          {"passedOver", imported.passedOver}};
}

Json JsonOf(const standalone::BadRow& row) {
  return {{"line", row.line}, {"reason", row.reason}};
}

Json JsonOf(const NewLogLine& line) {
  return {
      {"level", line.level}, {"eventType", line.eventType}, {"shortName", line.shortName}, {"message", line.message}};
}

Json JsonOf(const LogLine& line) {
  return {{"time", line.time},
          {"user", line.user},
          {"level", line.level},
          {"eventType", line.eventType},
          {"sourceFile", line.sourceFile},
          {"sourceLine", line.sourceLine},
          {"shortName", line.shortName},
          {"signature", line.signature},
          {"message", line.message}};
}

Json JsonOf(const RealmCheck& check) {
  return {{"blocked", check.blocked},
          {"outcome", NameOf(check.outcome)},
          {"rememberedBefore", OrNull(check.before)},
          {"remembered", OrNull(check.after)}};
}

Json JsonOf(const standalone::WaitingWork& waiting) {
  return {{"requests", waiting.requests}, {"cameBack", waiting.cameBack},       {"ofBefore", waiting.ofBefore},
          {"partners", waiting.partners}, {"outstanding", waiting.outstanding}, {"relations", waiting.relations}};
}

Json JsonOf(const Reminder& reminder) {
  Json json{{"comes", !reminder.obstacle.has_value()},
            {"obstacle", reminder.obstacle ? Json(NameOf(*reminder.obstacle)) : Json()},
            {"launchDate", reminder.launchDay ? Json(standalone::FormatIsoDate(*reminder.launchDay)) : Json()},
            {"remembered", reminder.rememberedDay.has_value()},
            {"rememberedDay", OrNull(reminder.rememberedDay)},
            {"launchHour", nullptr},
            {"secondsUntilLaunch", nullptr},
            {"leastDelaySeconds", nullptr},
            {"delaySeconds", nullptr},
            {"dueAt", nullptr},
            {"comesEarly", nullptr},
            {"waiting", JsonOf(reminder.waiting)}};
  if (!reminder.timing) return json;
  json["launchHour"] = reminder.timing->launchHour;
  json["secondsUntilLaunch"] = reminder.timing->untilLaunch.count();
  json["leastDelaySeconds"] = reminder.timing->leastDelay.count();
  json["delaySeconds"] = reminder.timing->delay.count();
  json["dueAt"] = standalone::FormatDayAndTime(reminder.timing->due, 'T');
  json["comesEarly"] = reminder.timing->comesEarly;
  return json;
}

Json JsonOf(const ReminderReset& reset) {
  return {{"rememberedBefore", OrNull(reset.before)},
          {"rememberedDay", nullptr},
          {"launchDate", standalone::FormatIsoDate(reset.launchDay)}};
}

Json JsonOf(const BroughtForward& broughtForward) {
  return {{"from", broughtForward.from},
          {"to", broughtForward.to},
          {"before", broughtForward.before.empty() ? Json() : Json(standalone::PathText(broughtForward.before))},
          {"left", broughtForward.left}};
}

Json JsonOf(const Opening& opening) {
  Json json{{"readsACopy", opening.onlyRead.has_value()},
            {"onlyRead", opening.onlyRead ? Json(NameOf(*opening.onlyRead)) : Json()},
            {"from", nullptr},
            {"to", nullptr},
            {"before", nullptr},
            {"left", Json::array()}};
  if (opening.broughtForward) json.update(JsonOf(*opening.broughtForward));
  return json;
}

Json JsonOf(const Question& question) {
  return {{"kind", NameOf(question.kind)},
          {"title", question.title},
          {"text", question.text},
          {"accept", question.accept},
          {"decline", question.decline}};
}

Json JsonOf(const PluginScreen& screen) {
  return std::visit(ScreenJson(), screen);
}

Json JsonOf(const Refusal& refusal) {
  const char* const remedy = NameOf(refusal.remedy);
  return {{"status", OrNull(refusal.status)},
          {"what", NameOf(refusal.what)},
          {"meaning", refusal.why},
          {"remedy", remedy == nullptr ? Json() : Json(remedy)}};
}

}  // namespace desk
