#include "model/Narrator.h"

namespace model {

namespace {

std::string ToldFault(const Fault& fault) {
  if (fault.call == 0) return {};
  const std::string call = ", call " + std::to_string(fault.call) + " of the host ";
  switch (fault.kind) {
    case FaultKind::kRefuse:
      return call + "refused (" + std::to_string(fault.code) + (fault.preferenceMissing ? ", missing" : "") + ")";
    case FaultKind::kThrowStandard:
      return call + "throwing std::runtime_error";
    case FaultKind::kThrowOutOfRange:
      return call + "throwing std::out_of_range";
    case FaultKind::kThrowOther:
      return call + "throwing what is no exception";
  }
  return call;
}

template <class Set>
std::string Listed(const Set& set) {
  std::string all;
  for (const auto& [first, second] : set) all += ' ' + text::Of(first) + '/' + text::Of(second);
  return all.empty() ? " none" : all;
}

std::string ToldPreference(const World& world, const char* key) {
  const auto found = world.preferences.find(key);
  return std::string("preference ") + key + ' ' +
         (found == world.preferences.end() ? "removed" : text::Of(found->second));
}

std::string ToldBridge(const World& world) {
  return text::OfCall("bridge: there, accountant entry, attention entry, accountant, attention", world.bridgeThere,
                      world.accountantEntryThere, world.attentionEntryThere, world.accountant, world.attention);
}

// What the host's step does, told by what it leaves in a company that was as at first.
std::string ToldChange(const Operation& operation) {
  World world = FreshWorld();
  Change(world, operation);
  const Arguments a(operation);
  switch (operation.kind) {
    case Kind::kSetFeatureSwitch:
    case Kind::kSetAccountSwitch:
      return "one switch set, off:" + Listed(world.switchesOff);
    case Kind::kSetRight:
      return "one right set, missing (feature/action):" + Listed(world.rightsMissing);
    case Kind::kSetListRight:
      return "list right set, missing: " +
             (world.listRightsMissing.empty() ? "none" : text::Of(*world.listRightsMissing.begin()));
    case Kind::kSetAdministrator:
      return text::OfCall("administrator", world.administrator);
    case Kind::kSetClock:
      return "clock " + text::Of(world.now);
    case Kind::kSetRemoteValue:
      return "remote value" + Listed(world.remoteValues);
    case Kind::kSetStoredDate:
      return ToldPreference(world, "MEPromptLaunchDate");
    case Kind::kSetStoredRealm:
      return ToldPreference(world, "MERealmId");
    case Kind::kPutRelation:
      return "put " + text::Of(world.relations.back());
    case Kind::kDropRelation:
      return "drop relation " + std::to_string(a.Raw(0)) + " modulo their number";
    case Kind::kPutTransaction:
      return "put " + text::Of(world.transactions.back()) + (a.Rarely(6) ? "" : " dated " + text::Of(a.Date(7)));
    case Kind::kPutLine:
      return text::OfCall("put line: id, txn, type, date", a.TargetId(0), a.TxnId(1), a.TxnType(2), a.Date(3));
    case Kind::kDropLine:
      return "drop line " + std::to_string(a.Raw(0)) + " modulo their number";
    case Kind::kPutRejected:
      return "put " + text::Of(world.rejected.back());
    case Kind::kSetAccount: {
      const Account& account = world.accounts.at(a.AccountId(0));
      return text::OfCall("account: id, type, deleted, sub-account, special", a.AccountId(0), account.type,
                          account.deleted, account.subAccount, account.special);
    }
    case Kind::kSetApplication:
      return text::OfCall("application: server mode, open, closing, active file, file state", world.serverMode,
                          world.open, world.closing, world.hasActiveFile, world.fileState);
    case Kind::kSetCompany:
      return text::OfCall("company: preferences, sample, accountant's copy, multi-currency, currency",
                          world.preferencesAvailable, world.sampleFile, world.accountantsCopy, world.multiCurrency,
                          world.homeCurrency);
    case Kind::kSetBridge:
      return ToldBridge(world);
    case Kind::kSetAnswers:
      return text::OfCall("answers: question, message", world.yesNoAnswer, world.messageAnswer);
    case Kind::kPutQueryRow:
      return text::OfCall("put query row: selection, date, txn", world.queryRows.back().selection,
                          world.queryRows.back().date, world.queryRows.back().txnId);
    case Kind::kSetLogLevel:
      return "log level set, unwanted: " +
             (world.unwantedLevels.empty() ? "none" : text::Of(*world.unwantedLevels.begin()));
    case Kind::kSetLastTimer:
      return text::OfCall("last timer id", world.lastTimer);
    default:
      return "?";
  }
}

}  // namespace

std::string Told(const Operation& operation) {
  if (static_cast<std::size_t>(operation.kind) >= kOperationKinds) return "the host: " + ToldChange(operation);
  Narrator narrator;
  Perform(narrator, operation);
  return narrator.Told() + ToldFault(operation.fault);
}

}  // namespace model
