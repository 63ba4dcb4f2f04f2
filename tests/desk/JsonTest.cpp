#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string_view>

#include "standalone/desk/json/Json.h"

namespace desk {
namespace {

using standalone::Money;
using standalone::RelationState;
using standalone::TransactionState;
using namespace std::chrono_literals;

Relation ARelation() {
  const Relation::Moment made{std::chrono::sys_days(std::chrono::year(2026) / 1 / 31) + 9h + 30min + 999ms};
  return {.id = 4,
          .realm = "1001",
          .partner = "Birch \"Services\"",
          .type = 7,
          .state = RelationState::kEstablished,
          .dueFrom = ListItem{.id = 11, .name = "Due from Birch"},
          .dueTo = {},
          .revision = 2,
          .createdAt = made,
          .changedAt = made + 1s};
}

constexpr const char* kARelation =
    R"({"id":4,"realm":"1001","partner":"Birch \"Services\"","type":7,"state":"established","stateNumber":3,)"
    R"("dueFrom":{"id":11,"name":"Due from Birch"},"dueTo":null,"revision":2,"createdAt":"2026-01-31T09:30:00Z",)"
    R"("changedAt":"2026-01-31T09:30:01Z"})";

IntercompanyLine ALine() {
  return {.txnId = 601,
          .lineId = 1631,
          .type = kTxnTypeJournalEntry,
          .state = TransactionState::kSent,
          .date = DateType32(2026, 1, 31),
          .realm = "1001",
          .partner = "Birch",
          .name = ListItem{.id = 3, .name = "Northern Power"},
          .memo = "Heating",
          .account = ListItem{.id = 9, .name = "Utilities:Power"},
          .otherAccount = ListItem{.id = 7, .name = "Due to Birch"},
          .amount = Money{.minorUnits = -123450, .currency = "CAD"},
          .requestId = "request-1"};
}

constexpr const char* kALine =
    R"({"transaction":601,"line":1631,"type":"journal","typeNumber":8,"date":"2026-01-31","realm":"1001",)"
    R"("partner":"Birch","name":{"id":3,"name":"Northern Power"},"memo":"Heating","account":{"id":9,"name":"Utilities:Power"},)"
    R"("otherAccount":{"id":7,"name":"Due to Birch"},"amount":"-1234.50","currency":"CAD","state":"sent",)"
    R"("stateNumber":1,"ofBefore":false,"requestId":"request-1"})";

TEST(AsJson, AnAccountHasItsTypeByNameAndNumber) {
  EXPECT_EQ(
      JsonOf(Account{.id = 9, .name = "Utilities:Power", .number = "", .type = 12, .specialKind = 5, .deleted = true})
          .dump(),
      R"({"id":9,"name":"Utilities:Power","number":null,"type":"Expense","typeNumber":12,"special":5,"deleted":true})");
}

TEST(AsJson, AnAccountHasItsNumberAsAText) {
  EXPECT_EQ(
      JsonOf(Account{.id = 9, .name = "Rent", .number = "4000.10", .type = 12, .specialKind = 0, .deleted = false})
          .at("number"),
      "4000.10");
}

TEST(AsJson, NamesThatAreAlikeHaveTheirListAndTheirPairs) {
  EXPECT_EQ(
      JsonOf(Lookalikes{.list = Lookalikes::List::kNames, .count = 11, .first = {{.name = "A", .other = "B"}}}).dump(),
      R"({"list":"names","count":11,"first":[{"name":"A","other":"B"}]})");
  EXPECT_EQ(JsonOf(Lookalikes{.list = Lookalikes::List::kAccounts, .count = 1, .first = {}}).at("list"), "accounts");
}

TEST(AsJson, AnExportedJournalHasItsFileAndWhatItHolds) {
  EXPECT_EQ(
      JsonOf(ExportedJournal{.file = "a.journal", .bytes = 90, .accounts = 2, .transactions = 3, .lines = 7}).dump(),
      R"({"file":"a.journal","bytes":90,"accounts":2,"transactions":3,"lines":7})");
}

TEST(AsJson, ANameHasItsKind) {
  EXPECT_EQ(JsonOf(Name{.id = 3, .name = "Walker:Depot", .kind = "customer"}).dump(),
            R"({"id":3,"name":"Walker:Depot","kind":"customer"})");
}

TEST(AsJson, AUserHasTheRightsThatAreWrittenDown) {
  EXPECT_EQ(JsonOf(User{.name = "Robin",
                        .administrator = false,
                        .accountant = true,
                        .rights = {standalone::Right("bills:create"), standalone::Right("accounts:view")}})
                .dump(),
            R"({"name":"Robin","administrator":false,"accountant":true,"rights":["bills:create","accounts:view"]})");
}

TEST(AsJson, AnAdministratorHasAllRights) {
  EXPECT_EQ(JsonOf(User{.name = "Admin", .administrator = true, .accountant = false, .rights = standalone::AllRights()})
                .dump(),
            R"({"name":"Admin","administrator":true,"accountant":false,"rights":["checks:create","checks:view",)"
            R"("checks:delete","checks:modify","journal:create","journal:view","journal:delete","journal:modify",)"
            R"("bills:create","bills:view","bills:delete","bills:modify","accounts:create","accounts:view",)"
            R"("accounts:delete","accounts:modify"]})");
}

TEST(AsJson, AUserWithoutRightsHasAnEmptyList) {
  EXPECT_EQ(JsonOf(User{.name = "Robin", .administrator = false, .accountant = false, .rights = {}}).dump(),
            R"({"name":"Robin","administrator":false,"accountant":false,"rights":[]})");
}

TEST(AsJson, SettingsHaveTheNamesUnderWhichTheyAreChanged) {
  EXPECT_EQ(JsonOf(Settings{.companyName = "Alder",
                            .homeCurrency = "KWD",
                            .decimals = standalone::Decimals(3),
                            .multiCurrency = true,
                            .sampleFile = false,
                            .accountantsCopy = true,
                            .closingDate = DateType32(2026, 6, 30)})
                .dump(),
            R"({"company-name":"Alder","home-currency":"KWD","decimals":3,"multi-currency":true,"sample-file":false,)"
            R"("accountants-copy":true,"closing-date":"2026-06-30"})");
}

TEST(AsJson, AnImportHasWhatWasAdded) {
  EXPECT_EQ(JsonOf(Imported{.rows = 1,
                            .accounts = 2,
                            .names = 3,
                            .transactions = 4,
                            .lines = 5,
                            .intercompanyLines = 6,
                            .passedOver = 7})
                .dump(),
            R"({"rows":1,"accounts":2,"names":3,"transactions":4,"lines":5,"intercompanyLines":6,"passedOver":7})");
}

TEST(AsJson, ALineOfTheLogHasAllItsColumns) {
  EXPECT_EQ(JsonOf(LogLine{.time = "2026-01-31T09:30:00.123Z",
                           .user = "Admin",
                           .level = 2,
                           .eventType = 1,
                           .sourceFile = "Driver.cpp",
                           .sourceLine = 12,
                           .shortName = "Driver::Do",
                           .signature = "void Do()",
                           .message = "done\tit"})
                .dump(),
            R"({"time":"2026-01-31T09:30:00.123Z","user":"Admin","level":2,"eventType":1,"sourceFile":"Driver.cpp",)"
            R"json("sourceLine":12,"shortName":"Driver::Do","signature":"void Do()","message":"done\tit"})json");
}

TEST(AsJson, ARelationHasItsAccountsAndMoments) {
  EXPECT_EQ(JsonOf(ARelation()).dump(), kARelation);
}

TEST(AsJson, AnIntercompanyLineHasItsAmountSignedAndWithoutSeparators) {
  EXPECT_EQ(JsonOf(ALine()).dump(), kALine);
}

TEST(AsJson, AnIntercompanyLineThatTheBooksHaveNotIsNullWhereNothingIsThere) {
  EXPECT_EQ(JsonOf(IntercompanyLine{.txnId = 1,
                                    .lineId = 3,
                                    .type = kTxnTypeBill,
                                    .state = {TransactionState{2}, true},
                                    .date = {},
                                    .realm = "1001",
                                    .partner = "Birch",
                                    .name = {},
                                    .memo = {},
                                    .account = {},
                                    .otherAccount = {},
                                    .amount = {},
                                    .requestId = ""})
                .dump(),
            R"({"transaction":1,"line":3,"type":"bill","typeNumber":9,"date":null,"realm":"1001","partner":"Birch",)"
            R"("name":null,"memo":"","account":null,"otherAccount":null,"amount":null,"currency":null,)"
            R"("state":"came back","stateNumber":2,"ofBefore":true,"requestId":""})");
}

TEST(AsJson, AnAmountOfACompanyWithoutCurrencyHasNone) {
  IntercompanyLine line = ALine();
  line.amount = Money{.minorUnits = INT64_MIN, .currency = ""};

  EXPECT_EQ(JsonOf(line)["amount"], "-92233720368547758.08");
  EXPECT_EQ(JsonOf(line)["currency"], nullptr);
}

TEST(AsJson, ARejectionHasItsAmountAsANumberAndAsItWasWritten) {
  EXPECT_EQ(JsonOf(Rejection{.type = kTxnTypeCheck,
                             .state = TransactionState::kRejected,
                             .realm = "1001",
                             .partner = "Birch",
                             .requestId = "request-1",
                             .writtenAmount = "1,234.5",
                             .amount = Money{.minorUnits = 123450, .currency = "USD"},
                             .partnerTxnId = "B-77"})
                .dump(),
            R"({"type":"check","typeNumber":3,"state":"rejected","stateNumber":4,"realm":"1001","partner":"Birch",)"
            R"("requestId":"request-1","amount":"1234.50","currency":"USD","writtenAmount":"1,234.5",)"
            R"("partnerTransaction":"B-77"})");
}

TEST(AsJson, ARejectionWhoseTextIsNoAmountHasNullForIt) {
  const Json json = JsonOf(Rejection{.type = kTxnTypeBill,
                                     .state = TransactionState::kRejected,
                                     .realm = "1001",
                                     .partner = "Birch",
                                     .requestId = "request-1",
                                     .writtenAmount = "much",
                                     .amount = {},
                                     .partnerTxnId = "B-77"});

  EXPECT_EQ(json["amount"], nullptr);
  EXPECT_EQ(json["currency"], nullptr);
  EXPECT_EQ(json["writtenAmount"], "much");
}

TEST(AsJson, ACheckOfTheRealmHasWhatIsRememberedBeforeAndAfter) {
  EXPECT_EQ(JsonOf(RealmCheck{.blocked = true, .outcome = RealmOutcome::kReset, .before = {}, .after = "9130"}).dump(),
            R"({"blocked":true,"outcome":"reset","rememberedBefore":null,"remembered":"9130"})");
}

TEST(AsJson, AReminderThatComesHasItsTimes) {
  EXPECT_EQ(
      JsonOf(Reminder{.obstacle = {},
                      .rememberedDay = "20260131",
                      .launchDay = DateType32(2026, 1, 31),
                      .timing = ReminderTiming{.launchHour = 10,
                                               .isLaunchDayAhead = true,
                                               .isLaunchDayPast = false,
                                               .untilLaunch = 3600s,
                                               .leastDelay = 900s,
                                               .delay = 3600s,
                                               .comesEarly = false,
                                               .due = {.day = {2026, 1, 31}, .sinceMidnight = 10h + 5s}},
                      .waiting = {.requests = 2, .cameBack = 1}})
          .dump(),
      R"({"comes":true,"obstacle":null,"launchDate":"2026-01-31","remembered":true,"rememberedDay":"20260131",)"
      R"("launchHour":10,"secondsUntilLaunch":3600,"leastDelaySeconds":900,"delaySeconds":3600,"dueAt":"2026-01-31T10:00:05","comesEarly":false,)"
      R"("waiting":{"requests":2,"cameBack":1,"ofBefore":0,"partners":0,"outstanding":0,"relations":0}})");
}

TEST(AsJson, AReminderThatDoesNotComeHasTheObstacle) {
  EXPECT_EQ(
      JsonOf(Reminder{.obstacle = NoReminder::kRememberedDayIsNone, .rememberedDay = {}, .launchDay = {}, .timing = {}})
          .dump(),
      R"({"comes":false,"obstacle":"remembered-day-is-none","launchDate":null,"remembered":false,"rememberedDay":null,)"
      R"("launchHour":null,"secondsUntilLaunch":null,"leastDelaySeconds":null,"delaySeconds":null,)"
      R"("dueAt":null,"comesEarly":null,)"
      R"("waiting":{"requests":0,"cameBack":0,"ofBefore":0,"partners":0,"outstanding":0,"relations":0}})");
}

TEST(AsJson, AResetReminderHasTheDayOfBefore) {
  EXPECT_EQ(JsonOf(ReminderReset{.before = "21000102", .launchDay = {2026, 1, 31}}).dump(),
            R"({"rememberedBefore":"21000102","rememberedDay":null,"launchDate":"2026-01-31"})");
  EXPECT_EQ(JsonOf(ReminderReset{.before = {}, .launchDay = {2026, 1, 31}}).dump(),
            R"({"rememberedBefore":null,"rememberedDay":null,"launchDate":"2026-01-31"})");
}

TEST(AsJson, EachObstacleHasANameOfItsOwn) {
  const auto obstacle = [](NoReminder what) {
    return JsonOf(Reminder{.obstacle = what, .rememberedDay = {}, .launchDay = {}, .timing = {}})["obstacle"];
  };

  EXPECT_EQ(obstacle(NoReminder::kNoBridge), "no-bridge");
  EXPECT_EQ(obstacle(NoReminder::kFeatureIsOff), "feature-is-off");
  EXPECT_EQ(obstacle(NoReminder::kSampleFile), "sample-file");
  EXPECT_EQ(obstacle(NoReminder::kAccountantsCopy), "accountants-copy");
  EXPECT_EQ(obstacle(NoReminder::kSeveralCurrencies), "several-currencies");
  EXPECT_EQ(obstacle(NoReminder::kNoRight), "no-right");
  EXPECT_EQ(obstacle(NoReminder::kRelationsNotRead), "relations-not-read");
  EXPECT_EQ(obstacle(NoReminder::kNoRelation), "no-relation");
}

TEST(AsJson, ACompanyThatWasBroughtForwardHasItsVersions) {
  EXPECT_EQ(JsonOf(BroughtForward{.from = 1, .to = 2, .before = "alder.before", .left = {"a trigger"}}).dump(),
            R"({"from":1,"to":2,"before":"alder.before","left":["a trigger"]})");
  EXPECT_EQ(JsonOf(BroughtForward{.from = 1, .to = 2, .before = {}, .left = {}}).dump(),
            R"({"from":1,"to":2,"before":null,"left":[]})");
}

TEST(AsJson, AnOpeningHasWhatItDidBesides) {
  EXPECT_EQ(JsonOf(Opening{.broughtForward = {}, .onlyRead = standalone::OnlyRead::kReadOnlyMedium}).dump(),
            R"({"readsACopy":true,"onlyRead":"read-only-medium","from":null,"to":null,"before":null,"left":[]})");
  EXPECT_EQ(JsonOf(Opening{.broughtForward = BroughtForward{.from = 1, .to = 2, .before = "alder.before", .left = {}},
                           .onlyRead = {}})
                .dump(),
            R"({"readsACopy":false,"onlyRead":null,"from":1,"to":2,"before":"alder.before","left":[]})");
}

TEST(AsJson, APartnerThatIsPairedHasAllThatIsKnownOfIt) {
  const PairedPartner partner{.id = 1,
                              .name = "Birch",
                              .realm = "1001",
                              .state = standalone::PairingState::kEstablished,
                              .invitedByUs = true,
                              .fingerprint = "12345 67890 12345 67890 12345 67890",
                              .dueFrom = ListItem{.id = 11, .name = "Due from Birch"},
                              .dueTo = ListItem{.id = 12, .name = "Due to Birch"},
                              .folder = "shared",
                              .hasLetterToSend = true,
                              .outstanding = {"answer: no right"},
                              .notUnderstood = {"statement: not known"}};

  EXPECT_EQ(
      JsonOf(partner).dump(),
      R"({"id":1,"partner":"Birch","realm":"1001","state":"established","invitedByUs":true,)"
      R"("fingerprint":"12345 67890 12345 67890 12345 67890","dueFrom":{"id":11,"name":"Due from Birch"},)"
      R"("dueTo":{"id":12,"name":"Due to Birch"},"folder":"shared","hasLetterToSend":true,)"
      R"("outstanding":["answer: no right"],"notUnderstood":["statement: not known"],"offeredKeys":[],"bookedUpTo":null})");
}

TEST(AsJson, APartnerOfWhomLittleIsKnownHasNullForTheRest) {
  const Json json = JsonOf(PairedPartner{.id = 1,
                                         .name = "Birch",
                                         .realm = "",
                                         .state = standalone::PairingState::kInvited,
                                         .invitedByUs = true,
                                         .fingerprint = "",
                                         .dueFrom = {},
                                         .dueTo = {},
                                         .folder = {},
                                         .hasLetterToSend = false,
                                         .outstanding = {}});

  for (const char* const key : {"realm", "fingerprint", "dueFrom", "dueTo", "folder"}) {
    EXPECT_EQ(json.at(key), nullptr) << key;
  }
}

TEST(AsJson, EachStateOfAPairingHasANameOfItsOwn) {
  using enum standalone::PairingState;
  std::set<std::string_view> names;
  for (const auto state : {kInvited, kAnswered, kAccepted, kEstablished, kBlocked, kRemoved}) {
    names.insert(standalone::NameOf(state));
  }

  EXPECT_THAT(names, testing::ElementsAre("accepted", "answered", "blocked", "established", "invited", "removed"));
}

TEST(AsJson, AnIdentityHasItsFileAndItsFingerprint) {
  EXPECT_EQ(JsonOf(OwnIdentity{.file = "a.company.identity", .fingerprint = "12345", .realm = "1000"}).dump(),
            R"({"file":"a.company.identity","fingerprint":"12345","realm":"1000"})");
}

TEST(AsJson, WhatWasCarriedHasItsLettersAndWhatWentWrong) {
  const CarriedWith carried{
      .partner = "Birch",
      .folder = "shared",
      .taken = {{.partner = "Birch", .facts = 1, .done = {"done"}, .moreDone = 2, .outstanding = {}}},
      .triedAgain = {"established"},
      .sent = 3,
      .notSent = {"line 5: blocked"},
      .put = 2,
      .setAside = {"a.envelope: no envelope"},
      .failure = ""};

  EXPECT_EQ(
      JsonOf(carried).dump(),
      R"({"partner":"Birch","folder":"shared","taken":[{"partner":"Birch","facts":1,"done":["done"],"moreDone":2,)"
      R"("outstanding":[]}],"triedAgain":["established"],"awaited":null,"sent":3,"notSent":["line 5: blocked"],"put":2,"setAside":["a.envelope: no envelope"],"waiting":[],"failure":null})");
}

InboxRequest ARequest() {
  return {.partner = "Alder",
          .realm = "1002",
          .requestId = "R-7",
          .type = kTxnTypeBill,
          .date = DateType32(2026, 1, 31),
          .amount = Money{.minorUnits = 4500, .currency = "USD"},
          .document = "NP-1",
          .name = "Northern Power",
          .memo = "Heating",
          .hint = "Utilities",
          .earlier = EarlierOfPartner{.reverses = false, .requestId = "R-6"},
          .state = standalone::InboxState::kAccepted,
          .mark = "",
          .reason = "",
          .entry = EntryOfRequest{.txnId = 601, .day = DateType32(2026, 2, 1)}};
}

constexpr const char* kARequest =
    R"({"partner":"Alder","realm":"1002","requestId":"R-7","type":"bill","typeNumber":9,"date":"2026-01-31",)"
    R"("amount":"45.00","currency":"USD","documentNumber":"NP-1","name":"Northern Power","memo":"Heating",)"
    R"("hint":"Utilities","reverses":null,"corrects":"R-6","state":"accepted","disputed":false,"mark":null,)"
    R"("reason":null,)"
    R"("entry":{"transaction":601,"date":"2026-02-01"},"entryBefore":null,"rule":null,)"
    R"("ruleMark":null,"remarks":[])";

TEST(AsJson, APartnersRequestHasWhatItsProposalSaysAndWhatBecameOfIt) {
  EXPECT_EQ(JsonOf(ARequest()).dump(), std::string(kARequest) + "}");
}

TEST(AsJson, WhatWasSaidOfARequestHasWhoSaidItAndWhetherItDisputes) {
  InboxRequest request = ARequest();
  request.remarks = {{.id = "0f", .isDispute = true, .isOurs = true, .text = "Our half is 40.00"},
                     {.id = "1e", .isDispute = false, .isOurs = false, .text = "The tax is in it"}};
  request.isDisputed = true;

  EXPECT_EQ(JsonOf(request).at("disputed"), true);
  EXPECT_EQ(JsonOf(request).at("remarks").dump(),
            R"([{"id":"0f","kind":"dispute","by":"us","text":"Our half is 40.00"},)"
            R"({"id":"1e","kind":"note","by":"partner","text":"The tax is in it"}])");
}

TEST(AsJson, ARuleHasWhatTheRequestsAreLikeAndWhereTheyGo) {
  const Rule rule{.id = 3,
                  .partner = "Alder",
                  .realm = "1002",
                  .name = "Northern Power",
                  .hint = "",
                  .memo = "",
                  .account = {.id = 12, .name = "Power"},
                  .bookedAs = ListItem{.id = 4, .name = "Northern"},
                  .isLearned = true,
                  .unfit = ""};
  InboxRequest request = ARequest();
  request.rule = rule;

  EXPECT_EQ(JsonOf(rule).dump(),
            R"({"id":3,"partner":"Alder","realm":"1002","name":"Northern Power","hint":null,"memo":null,)"
            R"("account":{"id":12,"name":"Power"},"bookedAs":{"id":4,"name":"Northern"},"learned":true,"unfit":null})");
  EXPECT_EQ(JsonOf(request).at("rule"), JsonOf(rule));
}

TEST(AsJson, ABookedRequestSaysWhetherItsDayWasMovedAndByWhichRule) {
  EXPECT_EQ(JsonOf(BookedRequest{.request = ARequest(), .isDateMoved = true}).dump(),
            std::string(kARequest) + R"(,"dateMoved":true,"byRule":null})");
}

TEST(AsJson, ARequestThatWasLeftHasItsRefusal) {
  const Json left = JsonOf(LeftRequest{
      .request = ARequest(),
      .refusal = {.what = UseCase::kRecordJournalEntry, .status = 8, .why = "no", .remedy = Remedy::kSeeRelations}});

  EXPECT_EQ(left.at("requestId"), "R-7");
  EXPECT_EQ(left.at("refusal").at("status"), 8);
  EXPECT_EQ(left.at("refusal").at("remedy"), "see-relations");
}

TEST(AsJson, ARequestThatIsLostHasNoTransactionAndNoState) {
  const OutboxRequest lost{.partner = "Birch",
                           .realm = "1001",
                           .requestId = "R-8",
                           .type = kTxnTypeCheck,
                           .date = DateType32(2026, 1, 31),
                           .amount = Money{.minorUnits = -100, .currency = ""},
                           .name = "Northern Power",
                           .memo = "",
                           .isSent = true,
                           .isLost = true,
                           .reason = "",
                           .mark = "these books lost it"};

  EXPECT_EQ(
      JsonOf(lost).dump(),
      R"({"partner":"Birch","realm":"1001","requestId":"R-8","transaction":null,"line":null,"type":"check",)"
      R"("typeNumber":3,"date":"2026-01-31","amount":"-1.00","currency":null,"name":"Northern Power","memo":"",)"
      R"("state":null,"stateNumber":null,"ofBefore":null,"sent":true,"withdrawing":false,"disputed":false,"lost":true,)"
      R"("reason":null,"mark":"these books lost it","remarks":[]})");
}

TEST(AsJson, RequestsOfAKindHaveNoAmountAndNoDayWhereThereAreNone) {
  EXPECT_EQ(
      JsonOf(RequestsOfAKind{
                 .count = 2, .sum = Money{.minorUnits = 4600, .currency = "USD"}, .oldest = DateType32(2026, 1, 31)})
          .dump(),
      R"({"count":2,"amount":"46.00","currency":"USD","oldest":"2026-01-31"})");
  EXPECT_EQ(JsonOf(RequestsOfAKind{}).dump(), R"({"count":0,"amount":null,"currency":null,"oldest":null})");
}

TEST(AsJson, AQuestionHasItsKind) {
  const Question question{.kind = Question::Kind::kWarning,
                          .title = "Intercompany transactions",
                          .text = "Still pending.",
                          .accept = "OK",
                          .decline = ""};

  EXPECT_EQ(
      JsonOf(question).dump(),
      R"({"kind":"warning","title":"Intercompany transactions","text":"Still pending.","accept":"OK","decline":""})");
  EXPECT_EQ(NameOf(Question::Kind::kYesNo), "question");
  EXPECT_EQ(NameOf(Question::Kind::kNotice), "notice");
}

TEST(AsJson, APersonaHasItsNameAndNumber) {
  EXPECT_EQ(JsonOf(Persona::kNone).dump(), R"({"persona":"none","personaNumber":0})");
  EXPECT_EQ(JsonOf(Persona::kViewer).dump(), R"({"persona":"viewer","personaNumber":1})");
  EXPECT_EQ(JsonOf(Persona::kContributor).dump(), R"({"persona":"contributor","personaNumber":2})");
  EXPECT_EQ(JsonOf(Persona::kManager).dump(), R"({"persona":"manager","personaNumber":3})");
}

TEST(AsJson, ARefusalHasItsStatusAndItsRemedy) {
  EXPECT_EQ(JsonOf(Refusal{.what = UseCase::kRecordJournalEntry,
                           .status = 12,
                           .why = "no such row",
                           .remedy = Remedy::kMakeARelation})
                .dump(),
            R"({"status":12,"what":"record-journal-entry","meaning":"no such row","remedy":"make-a-relation"})");
}

TEST(AsJson, ARefusalWithoutStatusAndRemedyHasNullForThem) {
  EXPECT_EQ(JsonOf(Refusal{.what = UseCase::kChangeUsers, .status = {}, .why = "no", .remedy = Remedy::kNone}).dump(),
            R"({"status":null,"what":"change-users","meaning":"no","remedy":null})");
}

TEST(AsJson, EachRemedyButNoneHasAName) {
  for (int number = 1; number <= static_cast<int>(Remedy::kSeeTheRules); ++number) {
    const Json json =
        JsonOf(Refusal{.what = UseCase::kImport, .status = {}, .why = "no", .remedy = static_cast<Remedy>(number)});
    EXPECT_TRUE(json["remedy"].is_string()) << number;
  }
}

TEST(AsJson, EachUseCaseHasANameOfItsOwn) {
  std::vector<std::string> names;
  for (int number = 0; number <= static_cast<int>(UseCase::kChangeRules); ++number) {
    names.push_back(JsonOf(
        Refusal{.what = static_cast<UseCase>(number), .status = {}, .why = "no", .remedy = Remedy::kNone})["what"]);
  }

  std::ranges::sort(names);
  EXPECT_TRUE(std::ranges::adjacent_find(names) == names.end());
  EXPECT_THAT(names, testing::Not(testing::Contains("unknown")));
}

TEST(AsJson, TheScreenOfWhatWaitsHasLinesAndRelations) {
  const PendingWork pending{.lines = {.items = {ALine()}, .refusal = {}},
                            .relations = {.items = {ARelation()}, .refusal = {}}};

  EXPECT_EQ(JsonOf(PluginScreen(pending)).dump(),
            std::string(R"({"view":"pending-transactions","refusals":[],"transactions":[)") + kALine +
                R"(],"relations":[)" + kARelation + R"(],"requests":[],"partners":[]})");
}

TEST(AsJson, TheScreenOfWhatWaitsHasRequestsOfPartners) {
  const PendingWork pending{.lines = {.items = {}, .refusal = {}},
                            .relations = {.items = {}, .refusal = {}},
                            .requests = {{.partner = "Birch",
                                          .realm = "1001",
                                          .requestId = "R-1",
                                          .type = kTxnTypeBill,
                                          .date = {2026, 11, 2},
                                          .amount = {4000, "USD"},
                                          .name = "Northern Power",
                                          .state = standalone::InboxState::kNew}}};

  EXPECT_EQ(JsonOf(PluginScreen(pending)).at("requests").dump(),
            R"([{"partner":"Birch","realm":"1001","requestId":"R-1","type":"bill","typeNumber":9,"date":"2026-11-02",)"
            R"("amount":"40.00","currency":"USD","name":"Northern Power","state":"new"}])");
}

TEST(AsJson, AScreenThatCouldNotBeReadWholeSaysWhy) {
  const Refusal refusal{.what = UseCase::kListTransactions, .status = 8, .why = "not read", .remedy = Remedy::kNone};
  const PendingWork pending{.lines = {.items = {}, .refusal = refusal}, .relations = {.items = {}, .refusal = {}}};

  EXPECT_EQ(JsonOf(PluginScreen(pending)).dump(),
            R"({"view":"pending-transactions","refusals":[{"status":8,"what":"list-transactions",)"
            R"("meaning":"not read","remedy":null}],"transactions":[],"relations":[],"requests":[],"partners":[]})");
}

TEST(AsJson, TheScreenAfterARealmResetHasTheRememberedRealm) {
  EXPECT_EQ(JsonOf(PluginScreen(
                       RelationsAfterRealmReset{.rememberedRealm = "9130", .relations = {.items = {}, .refusal = {}}}))
                .dump(),
            R"({"view":"relations-after-realm-reset","refusals":[],"remembered":"9130","relations":[]})");
}

TEST(AsJson, TheScreenToSetUpARelationHasTheRelations) {
  EXPECT_EQ(JsonOf(PluginScreen(RelationSetUp{.relations = {.items = {ARelation()}, .refusal = {}}})).dump(),
            std::string(R"({"view":"relation-set-up","refusals":[],"relations":[)") + kARelation + "]}");
}

TEST(AsJson, AListKeepsItsOrder) {
  EXPECT_EQ(JsonOf(std::vector<Name>{{.id = 2, .name = "B", .kind = "other"}, {.id = 1, .name = "A", .kind = "other"}})
                .dump(),
            R"([{"id":2,"name":"B","kind":"other"},{"id":1,"name":"A","kind":"other"}])");
  EXPECT_EQ(JsonOf(std::vector<Name>{}).dump(), "[]");
}

}  // namespace
}  // namespace desk
