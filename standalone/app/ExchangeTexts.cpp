#include "standalone/app/ExchangeTexts.h"

#include <fmt/format.h>

#include "standalone/app/PartnerTexts.h"
#include "standalone/app/RequestTexts.h"
#include "standalone/values/Counted.h"
#include "standalone/values/Dates.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

// One kind of requests with a partner: what people call them, and what is to be done about them.
struct KindOfRequests {
  const desk::RequestsOfAKind* requests;
  std::string_view called;
  std::string_view waitsFor;
  std::string_view toDo;  // with a place for the company and the partner, as they are typed; empty for nothing
};

constexpr std::string_view kUs = "us";
constexpr std::string_view kPartner = "partner";
constexpr std::string_view kNobody = "nobody";

void AddInboxKinds(std::vector<KindOfRequests>& kinds, const desk::InboxStatus& inbox) {
  kinds.push_back({&inbox.waiting, "in the inbox, for a person", kUs,
                   "book or reject what is in the inbox; see it with: multientity inbox list {} --partner {}"});
  kinds.push_back(
      {&inbox.toBookAgain, "in the inbox, to be booked again", kUs,
       "book again what these books lost; see it with: multientity inbox list {} --partner {} --state to-book-again"});
  kinds.push_back({&inbox.disputed.requests, "in the inbox, disputed", inbox.disputed.toAnswer == 0 ? kPartner : kUs,
                   inbox.disputed.toAnswer == 0
                       ? ""
                       : "book, reject or answer what is disputed, of which the partner has said something; see it "
                         "with: multientity inbox list {} --partner {}"});
  kinds.push_back({&inbox.held, "in the inbox, held until what they take back is booked", kNobody, ""});
}

void AddOutboxKinds(std::vector<KindOfRequests>& kinds, const desk::OutboxStatus& outbox) {
  kinds.push_back({&outbox.cameBack, "came back", kUs,
                   "correct or reverse what came back; see why with: multientity outbox list {} --partner {}"});
  kinds.push_back(
      {&outbox.lost, "lost from these books, and known to the partner", kUs,
       "enter what is lost once more under the request that the partner knows, with --lost REQUEST; see it with: "
       "multientity outbox list {} --partner {}"});
  kinds.push_back(
      {&outbox.entered, "entered, to be sent", kUs, "send it with: multientity exchange send {} --partner {}"});
  kinds.push_back({&outbox.disputed.requests, "disputed by the partner", outbox.disputed.toAnswer == 0 ? kPartner : kUs,
                   outbox.disputed.toAnswer == 0
                       ? ""
                       : "answer or withdraw what the partner disputes; see why with: multientity outbox list {} "
                         "--partner {}"});
  kinds.push_back({&outbox.unanswered, "sent, without an answer", kPartner, ""});
  kinds.push_back({&outbox.withdrawing, "being withdrawn", kPartner, ""});
}

std::vector<KindOfRequests> KindsIn(const desk::ExchangeStatus& status) {
  std::vector<KindOfRequests> kinds;
  if (status.inbox) AddInboxKinds(kinds, *status.inbox);
  if (status.outbox) AddOutboxKinds(kinds, *status.outbox);
  std::erase_if(kinds, [](const KindOfRequests& kind) { return kind.requests->count == 0; });
  return kinds;
}

// "sent, without an answer: 2 requests over 300.00 USD, since 2026-11-02".
std::string SentenceOf(const KindOfRequests& kind) {
  std::string text = fmt::format("{}: {}", kind.called, standalone::Counted(kind.requests->count, "request"));
  if (kind.requests->sum) text += fmt::format(" over {}", AmountWithCurrency(*kind.requests->sum));
  if (kind.requests->oldest) {
    text += fmt::format(", {} {}", kind.requests->count == 1 ? "of" : "since",
                        standalone::FormatIsoDate(*kind.requests->oldest));
  }
  return text;
}

// Whoever has to do something comes before who has to wait.
std::string_view MoreUrgent(std::string_view one, std::string_view other) {
  if (one == kUs || other == kUs) return kUs;
  return one == kPartner || other == kPartner ? kPartner : kNobody;
}

std::string HowToConfirm(const std::string& file) {
  return fmt::format(
      "multientity exchange confirm {} --restored if a backup was restored here; with --copy-ended once a copy that "
      "was at work does not work any more",
      AsTyped(file));
}

}  // namespace

std::string AwaitedText(const desk::Awaited& awaited, const std::string& file, std::string_view indent) {
  std::string text;
  const auto addLine = [&](const std::string& sentence) {
    text += fmt::format("{}{}\n", indent, sentence);
  };
  if (awaited.missing != 0 || awaited.isIdentityLost) addLine(standalone::Shown(desk::MissingText(awaited)));
  if (awaited.cameBack != 0) addLine(standalone::Shown(desk::CameBackText(awaited)));
  if (!awaited.toCompare.empty()) {
    addLine(
        fmt::format("nothing is decided or sent until these have shown what they hold: {}; carry letters here and "
                    "there with: multientity exchange run {}",
                    standalone::Shown(desk::ToCompareText(awaited)), AsTyped(file)));
  }
  if (awaited.cameBack != 0) {
    addLine(fmt::format("{} an administrator has confirmed why that came back, with: {}",
                        awaited.toCompare.empty() ? "nothing is decided or sent until" : "and until",
                        HowToConfirm(file)));
  }
  return text;
}

StandingWith StandingOf(const desk::ExchangeStatus& status, const std::string& file) {
  const NextStep pairing = NextStepWith(status.partner, file);
  const bool isEstablished = status.partner.state == standalone::PairingState::kEstablished;
  StandingWith standing{.waitsFor = pairing.waitsFor, .why = pairing.why, .requests = {}, .toDo = {}};
  const auto addPairing = [&] {
    if (!pairing.toDo.empty()) standing.toDo.push_back(pairing.toDo);
  };
  if (!isEstablished) addPairing();
  for (const KindOfRequests& kind : KindsIn(status)) {
    standing.requests.push_back(SentenceOf(kind));
    standing.waitsFor = MoreUrgent(standing.waitsFor, kind.waitsFor);
    if (kind.toDo.empty()) continue;
    standing.toDo.push_back(fmt::format(fmt::runtime(kind.toDo), AsTyped(file), AsTyped(status.partner.name)));
  }
  if (status.inbox && status.inbox->marked != 0) {
    standing.toDo.push_back(fmt::format("look closely at {} in the inbox, for the reason that the list tells",
                                        standalone::Counted(status.inbox->marked, "request")));
  }
  // Letters take along what was decided before.
  if (isEstablished) addPairing();
  return standing;
}

}  // namespace app
