#include "partners/Play.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <optional>
#include <string>

#include "partners/AtEveryMoment.h"
#include "partners/AtRest.h"
#include "partners/BadFolder.h"
#include "partners/Books.h"
#include "partners/Carrying.h"
#include "partners/Dying.h"
#include "standalone/company/FileNames.h"
#include "standalone/desk/Correcting.h"
#include "standalone/desk/Entering.h"
#include "standalone/desk/Exchange.h"
#include "standalone/desk/Identity.h"
#include "standalone/desk/Inbox.h"
#include "standalone/desk/Journal.h"
#include "standalone/desk/Outbox.h"
#include "standalone/desk/Pairing.h"
#include "standalone/desk/Rejections.h"
#include "standalone/desk/Rules.h"
#include "standalone/desk/Settings.h"
#include "standalone/desk/Transactions.h"
#include "standalone/exchange/FolderMailbox.h"
#include "standalone/exchange/IdentityFile.h"
#include "standalone/values/Decimals.h"
#include "standalone/values/Errors.h"

namespace partners {

namespace {

using desk::Company;
using desk::EnteredType;
using standalone::InboxState;
using standalone::LineAmount;
using standalone::RequestId;
using standalone::TransactionState;
using enum standalone::TransactionState;

constexpr int kMostConfirmations = 12;
constexpr std::string_view kBooks = "books.company";

// There is nothing of which the step could be done.
struct Idle {};

enum class Outcome { kDone, kRefused, kIdle, kWrong };

// Of the files of a company, and of those in the shared folder.
std::string KindOf(const std::filesystem::path& file) {
  const std::string ending = file.extension().string();
  if (ending == exchange::kDraftSuffix || ending == exchange::kEnvelopeSuffix) return "a letter";
  if (ending == ".company") return "the company file";
  if (ending == ".company-wal") return "its write-ahead log";
  return ending == ".identity" ? "the identity" : "another file";
}

std::string Amount(std::int64_t minorUnits) {
  return standalone::FormatPlainAmount(minorUnits, standalone::kTwoDecimals);
}

class Playing {
 public:
  Playing(Group& group, bool hasRestores) : group_(group), hasRestores_(hasRestores), folder_(group.Shared()) {
    folder_.Remember();
  }

  void Do(const Step& step, Tally& tally) {
    Tally::Times& times = tally.times[step.act];
    who_ = step.who;
    random_.seed(step.chance);
    const std::optional<Outcome> outcome = step.death ? DoAndDie(step, tally) : Try(step.act);
    if (!outcome) {
      ++times.died;
    } else {
      ++(*outcome == Outcome::kDone ? times.done : *outcome == Outcome::kIdle ? times.idle : times.refused);
    }
    Look(step.who);
  }

  // Nobody holds anything back any more.
  void End() {
    for (who_ = 0; who_ < group_.Size(); ++who_) {
      if (HasOtherCopy()) EndOtherCopy();
      desk::ChangeSetting(Here(), "closing-date", "none");
      Unblock();
    }
    folder_.LetTimePass();
    ComeToRest(group_);
    for (int rounds = 0; SettleKeys() || ConfirmAll(); ++rounds) {
      if (rounds == kMostConfirmations) throw Violation("there is always something to confirm");
      ComeToRest(group_);
    }
    for (std::size_t who = 0; who < group_.Size(); ++who) Look(who);
    RequireAgreement(group_, hasRestores_);
  }

 private:
  Company& Here() { return group_.Open(who_); }
  std::size_t Below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_); }
  bool OneIn(std::size_t times) { return Below(times) == 0; }
  template <typename Item>
  const Item& AnyOf(const std::vector<Item>& items) {
    if (items.empty()) throw Idle();
    return items[Below(items.size())];
  }
  std::size_t AnotherCompany() {
    const std::size_t other = Below(group_.Size() - 1);
    return other < who_ ? other : other + 1;
  }
  DateType32 AnyDay() {
    return {2026, static_cast<std::uint8_t>(3 + Below(3)), static_cast<std::uint8_t>(1 + Below(28))};
  }

  Outcome Try(Act act) {
    try {
      Perform(act);
      return Outcome::kDone;
    } catch (const Idle&) {
      return Outcome::kIdle;
    } catch (const desk::Refused& refused) {
      RequirePersonsAct(act, refused);
    } catch (const standalone::InvalidInput& invalid) {
      RequirePersonsAct(act, invalid);
    } catch (const standalone::ConstraintViolation& violation) {
      RequirePersonsAct(act, violation);
    }
    return Outcome::kRefused;
  }
  // Its program closes the company before it ends, too. None if it has died before.
  std::optional<Outcome> DoAndDie(const Step& step, Tally& tally) {
    group_.CloseAll();
    const Ended ended = DieDuring(*step.death, [&](std::string& text) {
      try {
        const Outcome outcome = Try(step.act);
        group_.CloseAll();
        return static_cast<int>(outcome);
      } catch (const std::exception& wrong) {
        text = wrong.what();
        return static_cast<int>(Outcome::kWrong);
      }
    });
    if (ended.hasDied) OpenAgain(step.act);
    NoteEntered();
    folder_.Remember();
    if (ended.hasDied) {
      ++tally.diedWriting[KindOf(ended.text)];
      return std::nullopt;
    }
    const auto outcome = static_cast<Outcome>(ended.code);
    if (outcome == Outcome::kWrong) throw Violation(ended.text);
    return outcome;
  }

  // By the program, before anybody else looks at what was left.
  void OpenAgain(Act act) {
    if (act == Act::kCarryAll) {
      for (std::size_t who = 0; who < group_.Size(); ++who) group_.Open(who);
    }
    group_.Open(who_);
  }

  // What carries and what meddles is never refused.
  static void RequirePersonsAct(Act act, const std::exception& refused) {
    if (act == Act::kCarry || act == Act::kCarryAll)
      throw Violation(std::string("carrying was refused: ") + refused.what());
  }
  void Look(std::size_t who) {
    Books books(group_.FileOf(who));
    RequireSound(kCompanies.at(who), books);
  }

  void Perform(Act act) {
    switch (act) {
      case Act::kBill:
        return Enter(EnteredType::kBill);
      case Act::kCheck:
        return Enter(EnteredType::kCheck);
      case Act::kEntry:
        return Enter(EnteredType::kEntry);
      case Act::kSend:
        return Send({});
      case Act::kSendOne:
        return Send({.requests = {RequestId(AnyOwnIn({kEntered}).request)}});
      case Act::kWithdraw:
        desk::WithdrawRequest(Here(), RequestId(AnyOwnIn({kSent}).request));
        return;
      case Act::kReverse:
        return Reverse();
      case Act::kCorrect:
        return Correct();
      case Act::kRemove:
        desk::RemoveTransaction(Here(), AnyOwnIn({kEntered}).txnId);
        return;
      case Act::kMoveByHand:
        return MoveByHand();
      case Act::kAccept:
        return AcceptAll();
      case Act::kAcceptOne:
        return Accept({.requests = {AnyInInbox()}});
      case Act::kReject:
        return Reject();
      case Act::kDispute:
        desk::DisputeRequest(Here(), AnyInInbox(), standalone::RemarkText("Our half is less"));
        return;
      case Act::kNote:
        desk::NoteOnRequest(Here(), AnyInInbox(), standalone::RemarkText("We look at it"));
        return;
      case Act::kNoteOnOwn:
        desk::NoteOnOwnRequest(Here(), RequestId(AnyOwnIn({kSent}).request), standalone::RemarkText("It is right"));
        return;
      case Act::kBookByHand:
        return BookByHand();
      case Act::kRemoveBooked:
        desk::RemoveJournalEntry(Here(), AnyBooked().txnId);
        return;
      case Act::kMoveExpense:
        desk::MoveExpense(Here(), {.txnId = AnyBooked().txnId, .account = "Rent", .date = AnyDay()});
        return;
      case Act::kRejectByHand:
        return RejectByHand();
      case Act::kClose:
        desk::ChangeSetting(Here(), "closing-date", "2026-04-15");
        return;
      case Act::kReopen:
        desk::ChangeSetting(Here(), "closing-date", "none");
        return;
      case Act::kBlock:
        desk::BlockPartner(Here(), kCompanies.at(AnotherCompany()));
        return;
      case Act::kUnblock:
        return Unblock();
      case Act::kAddRule:
        return AddRule();
      case Act::kRemoveRule:
        desk::RemoveRule(Here(), AnyOf(desk::ListRules(Here())).id);
        return;
      case Act::kBookAtOnce:
        return BookAtOnce();
      case Act::kClock:
        return SetClock();
      case Act::kRekey:
        return Rekey();
      case Act::kConfirmKey:
        return ConfirmKey();
      case Act::kCarry:
        return CarryHere();
      case Act::kCarryAll:
        for (who_ = 0; who_ < group_.Size(); ++who_) {
          if (HasIdentity()) CarryHere();
        }
        return;
      default:
        return Befall(act);
    }
  }

  void Befall(Act act) {
    switch (act) {
      case Act::kLose:
        return folder_.Lose(random_);
      case Act::kDouble:
        return folder_.Double(random_);
      case Act::kDelay:
        return folder_.Delay(random_);
      case Act::kArrive:
        return folder_.Arrive(random_);
      case Act::kTruncate:
        return folder_.Truncate(random_);
      case Act::kCorrupt:
        return folder_.Corrupt(random_);
      case Act::kReplay:
        return folder_.Replay(random_);
      case Act::kMisdirect:
        return folder_.Misdirect(random_);
      case Act::kBackUp:
        return BackUp();
      case Act::kRestoreBooks:
        return Restore(kBooks);
      case Act::kRestoreFolder:
        return Restore("");
      case Act::kConfirm:
        return Confirm();
      case Act::kCopyFolder:
        return Copy(/*isWhole=*/true);
      case Act::kCopyBooks:
        return Copy(/*isWhole=*/false);
      case Act::kUseOtherCopy:
        return UseOtherCopy();
      case Act::kEndOtherCopy:
        return EndOtherCopy();
      default:
        throw std::logic_error("nobody performs this act");
    }
  }

  std::vector<RequestRow> Rows(bool own) {
    std::vector<RequestRow> rows = Books(group_.FileOf(who_)).Rows();
    std::erase_if(rows, [own](const RequestRow& row) { return row.isOwn != own; });
    return rows;
  }
  RequestRow AnyOwn() { return AnyOf(Rows(true)); }
  // Mostly in one of these states, where it may be done.
  RequestRow AnyOwnIn(std::initializer_list<TransactionState> states) {
    std::vector<RequestRow> rows = Rows(true);
    if (!OneIn(8)) {
      std::erase_if(rows, [&](const RequestRow& row) {
        return std::ranges::find(states, TransactionState{row.state}) == states.end();
      });
    }
    return AnyOf(rows);
  }
  RequestRow AnyBooked() { return AnyOf(Rows(false)); }
  // Mostly one with which something is to be done.
  RequestId AnyInInbox() {
    std::vector<InboxRow> rows = Books(group_.FileOf(who_)).Inbox();
    if (!OneIn(8)) {
      std::erase_if(rows, [](const InboxRow& row) {
        return row.state != InboxState::kNew && row.state != InboxState::kHeld && row.state != InboxState::kToBookAgain;
      });
    }
    return RequestId(AnyOf(rows).request);
  }
  // That a partner has entered, whether it was sent or not.
  Entered AnyForHere() {
    std::vector<Entered> forHere = group_.Requests();
    std::erase_if(forHere, [this](const Entered& entered) { return entered.to != who_; });
    return AnyOf(forHere);
  }

  // A third of it is each partner's who bears a part.
  std::vector<desk::PartnersShare> Shares() {
    std::vector<desk::PartnersShare> shares;
    const std::size_t first = AnotherCompany();
    shares.push_back({.partner = kCompanies.at(first), .share = standalone::ShareText("1/3")});
    const std::size_t second = AnotherCompany();
    if (second != first && OneIn(3)) {
      shares.push_back({.partner = kCompanies.at(second), .share = standalone::ShareText("1/4")});
    }
    return shares;
  }
  std::vector<desk::EnteredLine> Lines(EnteredType type) {
    const auto amount = static_cast<std::int64_t>(100 + Below(100'000));
    std::vector<desk::EnteredLine> lines{{.account = "Utilities", .amount = LineAmount(Amount(amount))}};
    if (type == EnteredType::kEntry) {
      lines.push_back({.account = "Checking", .amount = LineAmount(Amount(-amount))});
    }
    return lines;
  }
  void Note(const desk::RecordedTransaction& recorded) {
    for (const desk::RecordedLine& line : recorded.lines) {
      if (!line.partners) continue;
      group_.Requests().push_back({.from = who_,
                                   .to = CompanyNamed(line.partners->partner),
                                   .request = line.partners->requestId,
                                   .amount = line.amount.minorUnits});
    }
  }
  // By a process that has ended.
  void NoteEntered() {
    for (const RequestRow& row : Rows(true)) {
      if (row.partner.empty() || std::ranges::count(group_.Requests(), row.request, &Entered::request) != 0) continue;
      group_.Requests().push_back(
          {.from = who_, .to = CompanyNamed(row.partner), .request = row.request, .amount = row.amount});
    }
  }
  void Enter(EnteredType type) {
    desk::TransactionToRecord transaction{
        .type = type, .date = AnyDay(), .name = {}, .lines = Lines(type), .shares = Shares(), .attachments = {}};
    if (type != EnteredType::kEntry) transaction.name = desk::Existing{"Northern Power"};
    transaction.again = true;
    Note(desk::RecordTransaction(Here(), transaction, desk::Posting::kPost));
  }
  void Send(const desk::RequestSelection& selection) {
    if (desk::SendRequests(Here(), selection).sent.empty()) throw Idle();
  }
  void Reverse() {
    Note(desk::ReverseTransaction(
             Here(), {.txnId = AnyOwnIn({kEntered, kCameBack, kEstablished}).txnId, .date = DateType32(2026, 6, 1)})
             .reversal);
  }
  void Correct() {
    const RequestRow row = AnyOwnIn({kEntered, kCameBack, kEstablished});
    const auto type = static_cast<EnteredType>(row.type);
    desk::TransactionToCorrect correction{.type = type, .txnId = row.txnId, .date = DateType32(2026, 6, 1)};
    correction.lines = Lines(type);
    if (OneIn(4)) {
      correction.withoutPartners = true;
    } else {
      correction.shares = Shares();
    }
    const desk::CorrectedTransaction corrected = desk::CorrectTransaction(Here(), correction, desk::Posting::kPost);
    Note(corrected.reversed.reversal);
    Note(corrected.correction);
  }
  void MoveByHand() {
    const auto state = static_cast<standalone::TransactionState>(std::array{0, 1, 2, 3, 5}.at(Below(5)));
    const RequestRow row = AnyOwn();
    const auto entered = std::ranges::find(group_.Requests(), row.request, &Entered::request);
    if (entered == group_.Requests().end()) throw Idle();
    desk::SetState(Here(), desk::Partner(kCompanies.at(entered->to)), RequestId(row.request), state);
  }

  void Unblock() {
    for (const desk::PairedPartner& partner : desk::ListPairedPartners(Here())) {
      if (partner.state == standalone::PairingState::kBlocked) desk::UnblockPartner(Here(), partner.name);
    }
  }

  void AddRule() {
    desk::RuleToAdd rule{.partner = desk::Partner(kCompanies.at(AnotherCompany())),
                         .name = {},
                         .hint = "Utilities",
                         .memo = {},
                         .expense = OneIn(2) ? "Utilities" : "Rent"};
    if (OneIn(2)) rule.name = "Northern Power";
    if (OneIn(2)) rule.bookedAs = "Northern Power";
    desk::AddRule(Here(), rule);
  }
  void BookAtOnce() {
    const char* partner = kCompanies.at(AnotherCompany());
    std::optional<LineAmount> upTo;
    if (!OneIn(4)) upTo = LineAmount(Amount(static_cast<std::int64_t>(1'000 + Below(40'000))));
    desk::SetBookedUpTo(Here(), partner, upTo);
  }
  // Those of the companies disagree by up to two months.
  void SetClock() {
    group_.SetClock(who_, "2026-0" + std::to_string(5 + Below(3)) + "-" + std::to_string(10 + Below(19)) + "T0" +
                              std::to_string(Below(10)) + ":00:00");
  }

  // Of what nobody has to look at on its own.
  void AcceptAll() {
    const std::vector<desk::InboxRequest> waiting = desk::ListInbox(Here(), {});
    const bool isAny = std::ranges::any_of(waiting, [](const desk::InboxRequest& request) {
      return request.state != InboxState::kHeld && request.mark.empty() && !request.isDisputed;
    });
    if (!isAny) throw Idle();
    Accept({});
  }
  void Accept(const desk::RequestSelection& selection) {
    desk::RequestBooking booking{.expense = desk::Existing{"Utilities"}, .name = desk::Existing{"Northern Power"}};
    if (OneIn(3)) booking.date = AnyDay();
    if (desk::AcceptRequests(Here(), selection, booking).booked.empty()) throw Idle();
  }
  void Reject() {
    if (desk::RejectRequests(Here(), {.requests = {AnyInInbox()}}, standalone::Memo("Not ours")).rejected.empty()) {
      throw Idle();
    }
  }
  void BookByHand() {
    const Entered entered = AnyForHere();
    const std::int64_t amount = OneIn(4) ? entered.amount + 100 : entered.amount;
    desk::RecordJournalEntry(Here(), {.partner = desk::Partner(kCompanies.at(entered.from)),
                                      .request = RequestId(entered.request),
                                      .amount = LineAmount(Amount(amount)),
                                      .expense = desk::Existing{"Utilities"},
                                      .dueTo = {},
                                      .name = desk::Existing{"Northern Power"}});
  }
  void RejectByHand() {
    const Entered entered = AnyForHere();
    desk::SaveRejection(Here(), {.partner = desk::Partner(kCompanies.at(entered.from)),
                                 .request = RequestId(entered.request),
                                 .type = standalone::RejectableType::kBill,
                                 .amount = standalone::RejectedAmount(Amount(entered.amount)),
                                 .partnerTxnId = standalone::PartnerTxnId("1")});
  }

  // Of two copies of a company at least one has it.
  exchange::IdentityFile IdentityOf(std::size_t who) const {
    const std::filesystem::path atWork = standalone::IdentityOf(group_.FileOf(who));
    return exchange::IdentityFile(std::filesystem::exists(atWork) ? atWork : OtherCopyOf(who) / atWork.filename());
  }
  // As it is read out by who has the identity.
  std::string FingerprintOf(std::size_t who) const { return exchange::Fingerprint(IdentityOf(who).Keys().Public()); }
  // Two copies of a company that both did so would be two companies.
  void Rekey() {
    if (HasOtherCopy()) throw Idle();
    desk::ReplaceKey(Here(), desk::KeyOfNow::kIsThere);
  }
  void ConfirmKey() {
    std::vector<desk::PairedPartner> partners = desk::ListPairedPartners(Here());
    std::erase_if(partners, [](const desk::PairedPartner& partner) { return partner.offeredKeys.empty(); });
    const std::string name = AnyOf(partners).name;
    const auto whom = std::ranges::find(kCompanies, name, [](const char* company) { return std::string(company); });
    desk::ConfirmPartner(
        Here(), {.partner = name, .fingerprint = FingerprintOf(static_cast<std::size_t>(whom - kCompanies.begin()))});
  }
  // Who has an identity of before again, which its partner knows to be replaced, has to replace it once more.
  void SettleKey(std::size_t whom) {
    try {
      desk::ConfirmPartner(Here(), {.partner = kCompanies.at(whom), .fingerprint = FingerprintOf(whom)});
    } catch (const desk::Refused&) {
      desk::ReplaceKey(group_.Open(whom), desk::KeyOfNow::kIsThere);
    }
  }
  // Whether there was something to settle.
  bool SettleKeys() {
    bool isAny = false;
    for (who_ = 0; who_ < group_.Size(); ++who_) {
      for (std::size_t whom = 0; whom < group_.Size(); ++whom) {
        if (whom == who_) continue;
        const desk::PairedPartner partner = desk::ShowPairedPartner(Here(), kCompanies.at(whom));
        if (partner.offeredKeys.empty() && partner.fingerprint == FingerprintOf(whom)) continue;
        SettleKey(whom);
        isAny = true;
      }
    }
    return isAny;
  }

  void CarryHere() {
    if (!HasIdentity()) return RequireRefusedToCarry();
    Carry(group_, who_);
    folder_.Remember();
  }
  void RequireRefusedToCarry() {
    try {
      Carry(group_, who_);
    } catch (const desk::Refused&) {
      throw Idle();
    }
    throw Violation("letters were carried for books without an identity");
  }

  std::filesystem::path Backups() const { return group_.FolderOf(who_) / "backups"; }
  void BackUp() {
    group_.CloseAll();
    const std::filesystem::path backup = Backups() / std::to_string(++backups_);
    std::filesystem::create_directories(backup);
    for (const auto& entry : std::filesystem::directory_iterator(group_.FolderOf(who_))) {
      if (entry.is_regular_file()) std::filesystem::copy_file(entry.path(), backup / entry.path().filename());
    }
  }
  // Books come back without their identity where the one that stays knows their key, also as a former one; an identity
  // of before does not where the other copy may sign under a later one.
  bool MayComeBack(const std::filesystem::path& backup, bool isIdentityRestored) {
    const exchange::IdentityFile now = IdentityOf(who_);
    if (isIdentityRestored) {
      const exchange::IdentityFile then(standalone::IdentityOf(backup / kBooks));
      return !HasOtherCopy() || then.Keys().Public() == now.Keys().Public();
    }
    const std::string key = Books(backup / kBooks).Key();
    const auto isThat = [&key](const exchange::KeyPair& keys) {
      return keys.Public().Hex() == key;
    };
    return isThat(now.Keys()) || std::ranges::any_of(now.FormerKeys(), isThat);
  }
  // Of the books alone, or of all that lies beside them, too.
  void Restore(std::string_view only) {
    if (!std::filesystem::exists(Backups())) throw Idle();
    std::vector<std::filesystem::path> backups;
    for (const auto& entry : std::filesystem::directory_iterator(Backups())) backups.push_back(entry.path());
    std::ranges::sort(backups);
    const std::filesystem::path backup = AnyOf(backups);
    const bool isIdentityRestored = only.empty() && std::filesystem::exists(standalone::IdentityOf(backup / kBooks));
    if (!MayComeBack(backup, isIdentityRestored)) throw Idle();
    group_.CloseAll();
    for (const char* suffix : {"-wal", "-shm"}) std::filesystem::remove(group_.FileOf(who_).string() + suffix);
    for (const auto& entry : std::filesystem::directory_iterator(backup)) {
      if (!only.empty() && entry.path().filename() != only) continue;
      std::filesystem::copy_file(entry.path(), group_.FolderOf(who_) / entry.path().filename(),
                                 std::filesystem::copy_options::overwrite_existing);
    }
  }

  // Of two copies of a company one is at work, under the company's name; the other one lies beside it.
  std::filesystem::path OtherCopyOf(std::size_t who) const { return group_.FolderOf(who).string() + " elsewhere"; }
  std::filesystem::path OtherCopy() const { return OtherCopyOf(who_); }
  bool HasOtherCopy() const { return std::filesystem::exists(OtherCopy()); }
  void RequireOtherCopy() const {
    if (!HasOtherCopy()) throw Idle();
  }
  std::filesystem::path Identity() const { return standalone::IdentityOf(group_.FileOf(who_)); }
  bool HasIdentity() const { return std::filesystem::exists(Identity()); }
  // Without its identity it can be worked with, and tells nobody anything.
  void Copy(bool isWhole) {
    if (HasOtherCopy()) throw Idle();
    group_.CloseAll();
    std::filesystem::create_directory(OtherCopy());
    for (const auto& entry : std::filesystem::directory_iterator(group_.FolderOf(who_))) {
      const bool isWanted = isWhole || entry.path() == group_.FileOf(who_);
      if (entry.is_regular_file() && isWanted) {
        std::filesystem::copy_file(entry.path(), OtherCopy() / entry.path().filename());
      }
    }
  }
  void UseOtherCopy() {
    RequireOtherCopy();
    group_.CloseAll();
    const std::filesystem::path away = OtherCopy().string() + " for a moment";
    std::filesystem::rename(group_.FolderOf(who_), away);
    std::filesystem::rename(OtherCopy(), group_.FolderOf(who_));
    std::filesystem::rename(away, OtherCopy());
  }
  // The one at work goes on, with the identity of the other one if it has none.
  void EndOtherCopy() {
    RequireOtherCopy();
    group_.CloseAll();
    if (!HasIdentity()) std::filesystem::rename(OtherCopy() / Identity().filename(), Identity());
    std::filesystem::remove_all(OtherCopy());
  }

  void Confirm() {
    desk::ConfirmCameBack(Here(), OneIn(2) ? desk::WhyCameBack::kRestored : desk::WhyCameBack::kCopyEnded);
  }
  // Once nothing travels any more. Whether there was something to confirm.
  bool ConfirmAll() {
    bool isAny = false;
    for (who_ = 0; who_ < group_.Size(); ++who_) {
      const std::optional<desk::Awaited> awaited = desk::TellAwaited(Here());
      if (!awaited) continue;
      if (!hasRestores_) throw Violation(std::string(kCompanies.at(who_)) + " waits as if a backup was restored");
      if (!awaited->toCompare.empty()) {
        throw Violation(std::string(kCompanies.at(who_)) + " was not compared with " + desk::ToCompareText(*awaited));
      }
      Confirm();
      isAny = true;
    }
    return isAny;
  }

  Group& group_;
  bool hasRestores_;
  BadFolder folder_;
  std::mt19937 random_;
  std::size_t who_ = 0;
  int backups_ = 0;
};

}  // namespace

void PlayHistory(Group& group, const History& history, Tally& tally) {
  const bool hasRestores = std::ranges::any_of(history.steps, [](const Step& step) {
    return step.act == Act::kRestoreBooks || step.act == Act::kRestoreFolder || step.act == Act::kUseOtherCopy;
  });
  group.Begin();
  Playing playing(group, hasRestores);
  for (const Step& step : history.steps) playing.Do(step, tally);
  playing.End();
}

}  // namespace partners
