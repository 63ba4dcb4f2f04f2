#include <fmt/format.h>

#include <array>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "standalone/app/Dialogue.h"
#include "standalone/app/Encounter.h"
#include "standalone/app/HowToOpen.h"
#include "standalone/app/Invocation.h"
#include "standalone/app/PartnerTexts.h"
#include "standalone/app/RequestTexts.h"
#include "standalone/app/TextInput.h"
#include "standalone/app/Values.h"
#include "standalone/app/commands/Commands.h"
#include "standalone/app/terminal/Terminal.h"
#include "standalone/desk/Identity.h"
#include "standalone/desk/NewFiles.h"
#include "standalone/desk/Pairing.h"
#include "standalone/desk/PairingBoth.h"
#include "standalone/desk/json/Json.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace app {

namespace {

// A mail with an invitation in it is not longer.
constexpr std::size_t kLongestInvitation = 1 << 20;

struct PairingOptions {
  std::string file;
  std::string partner;
  std::optional<std::string> name;
  std::optional<std::string> dueFrom;
  std::optional<std::string> dueTo;
  bool anyAccount = false;
  std::optional<std::string> folder;
  bool noFolder = false;
  std::string invitation;
  std::optional<std::string> output;
  bool useExistingRelation = false;
  std::optional<std::string> fingerprint;
  bool withRemoved = false;
  std::optional<std::string> upTo;
  bool off = false;  // said so that nobody means it by leaving something out
};

desk::RelationAccounts PairingAccounts(const PairingOptions& options) {
  return {.dueFrom = options.dueFrom, .dueTo = options.dueTo, .ofAnyType = options.anyAccount};
}

// From wherever the program is started next, it is the same one.
std::filesystem::path FolderOf(const PairingOptions& options) {
  if (!options.folder) return {};
  const std::filesystem::path folder = std::filesystem::absolute(FilePath(*options.folder)).lexically_normal();
  std::error_code ignored;
  if (std::filesystem::is_directory(folder, ignored)) return folder;
  throw standalone::InvalidInput(
      fmt::format("there is no folder {}; make it first, or connect the share on which it is",
                  standalone::Quoted(standalone::PathText(folder))));
}

std::string RealmText(const std::optional<std::string>& newRealm) {
  if (!newRealm) return {};
  return fmt::format("This company had no realm id; it got {} and keeps it.\n", *newRealm);
}

std::string OwnFingerprintText(const std::string& fingerprint) {
  return fmt::format("This company's fingerprint: {}\n", fingerprint);
}

std::string InvitedText(const PairingOptions& options, const desk::InvitationText& made) {
  const std::string written =
      options.output ? fmt::format("Wrote the invitation to {}.\n", standalone::Shown(*options.output)) : "";
  return written + RealmText(made.newRealm) + OwnFingerprintText(made.fingerprint) +
         fmt::format(
             "Send the invitation to {}, by mail for instance. When it asks by phone, read the fingerprint out "
             "to it.\nOnce it has accepted and its answer is here: multientity partner confirm {} {}\n",
             standalone::Shown(*options.name), AsTyped(options.file), AsTyped(*options.name));
}

void InvitePartner(Invocation& invocation, const PairingOptions& options) {
  const desk::Invitation invitation{.partner = standalone::PartnerName(*options.name),
                                    .accounts = PairingAccounts(options),
                                    .folder = FolderOf(options)};
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  if (options.output) desk::RequireNewFile(company, FilePath(*options.output));
  const desk::InvitationText made = desk::InvitePartner(company, invitation);
  if (options.output) desk::WriteNewFile(company, FilePath(*options.output), made.text);
  if (!invocation.options.json) {
    PrintError(InvitedText(options, made));
    if (!options.output) PrintData(made.text);
    return;
  }
  invocation.Report({{"partner", *options.name},
                     {"invitation", made.text},
                     {"file", desk::OrNull(options.output)},
                     {"fingerprint", made.fingerprint},
                     {"newRealm", desk::OrNull(made.newRealm)}},
                    {});
}

void AcceptPartner(Invocation& invocation, const PairingOptions& options) {
  desk::Acceptance acceptance{.invitation = {},
                              .partner = {},
                              .accounts = PairingAccounts(options),
                              .folder = FolderOf(options),
                              .useExistingRelation = options.useExistingRelation};
  if (options.name) acceptance.partner.emplace(*options.name);
  acceptance.invitation = ReadText("invitation", options.invitation, kLongestInvitation);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::AcceptedInvitation accepted = desk::AcceptInvitation(company, acceptance);
  const desk::PairedPartner& partner = accepted.partner;
  invocation.Report(
      {{"partner", desk::JsonOf(partner)},
       {"fingerprint", accepted.fingerprint},
       {"newRealm", desk::OrNull(accepted.newRealm)}},
      fmt::format("Accepted the invitation of {} (realm {}), which has to confirm that.\n{}"
                  "Fingerprint of {}: {}\n{}Call the partner under a number that you know, and compare both "
                  "fingerprints.\nThen {}\n",
                  standalone::Shown(partner.name), standalone::Shown(partner.realm), RealmText(accepted.newRealm),
                  standalone::Shown(partner.name), partner.fingerprint, OwnFingerprintText(accepted.fingerprint),
                  HowToSend(partner, options.file)));
}

// What the person at the terminal says to be the one that the partner read out.
std::string ComparedFingerprint(const Invocation& invocation, const PairingOptions& options,
                                const desk::PairedPartner& partner) {
  const Screen screen;
  const ReadLine person = invocation.options.json ? ReadLine() : PersonAtTheTerminal(screen);
  if (!person) {
    throw standalone::InvalidInput(
        "nobody is at a terminal to compare fingerprints; give with --fingerprint the one that the partner read out");
  }
  const bool same = Dialogue(screen, "question-shown", std::nullopt, person)
                        .Answer({.kind = desk::Question::Kind::kYesNo,
                                 .title = partner.name,
                                 .text = fmt::format("Who has accepted the invitation has the fingerprint {}. Did {} "
                                                     "read out the same, under a number that you know?",
                                                     partner.fingerprint, standalone::Shown(partner.name)),
                                 .accept = "Yes, the same",
                                 .decline = "No"});
  if (same) return partner.fingerprint;
  throw std::runtime_error(
      fmt::format("{} was not confirmed; nothing was changed. If it is somebody else who has accepted, end it with: "
                  "multientity partner remove {} {}",
                  standalone::Shown(partner.name), AsTyped(options.file), AsTyped(partner.name)));
}

// Of whom there is nothing to be confirmed nobody is asked; the desk says why.
std::string AskedFingerprint(const Invocation& invocation, const PairingOptions& options, desk::Company& company) {
  const desk::PairedPartner partner = desk::ShowPairedPartner(company, options.partner);
  if (partner.state != standalone::PairingState::kAnswered) return partner.fingerprint;
  return ComparedFingerprint(invocation, options, partner);
}

void ConfirmPartner(Invocation& invocation, const PairingOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::string fingerprint =
      options.fingerprint ? *options.fingerprint : AskedFingerprint(invocation, options, company);
  const desk::PairedPartner partner = desk::ConfirmPartner(
      company,
      {.partner = options.partner, .fingerprint = fingerprint, .useExistingRelation = options.useExistingRelation});
  invocation.Report(
      {{"partner", desk::JsonOf(partner)}},
      fmt::format("Confirmed {} (realm {}); the relation with it is established.\nNow {}\n",
                  standalone::Shown(partner.name), standalone::Shown(partner.realm), HowToSend(partner, options.file)));
}

struct RekeyOptions {
  std::string file;
  bool isLost = false;
};

void ReplaceKey(Invocation& invocation, const RekeyOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::ReplacedKey replaced =
      desk::ReplaceKey(company, options.isLost ? desk::KeyOfNow::kIsLost : desk::KeyOfNow::kIsThere);
  std::string partners;
  for (const std::string& partner : replaced.partners) {
    partners += fmt::format("{}{}", partners.empty() ? "" : ", ", standalone::Shown(partner));
  }
  invocation.Report(
      desk::JsonOf(replaced),
      fmt::format("Replaced the key of this company. Fingerprint: {}; it was {}\n"
                  "The next letters have the new key (multientity exchange run {}, or exchange export). Until a person "
                  "at each partner has compared the fingerprint and confirmed it there, they wait, and nothing is "
                  "lost; call: {}\n{}",
                  replaced.identity.fingerprint, replaced.before, AsTyped(options.file),
                  partners.empty() ? "nobody" : partners,
                  options.isLost ? "Nobody knows any more what partners were told: until all of them have shown what "
                                   "they hold, nothing is decided or sent.\n"
                                 : ""));
}

struct PairOptions {
  PairingOptions one;
  PairingOptions other;
};

desk::CompanyToPair CompanyToPair(Invocation& invocation, const PairingOptions& options) {
  return {.file = FilePath(options.file),
          .options = HowToOpen(invocation, options.file),
          .accounts = PairingAccounts(options)};
}

Json PairedJson(const std::string& file, const desk::PairedCompany& paired) {
  return {{"file", file},
          {"company", paired.name},
          {"fingerprint", paired.fingerprint},
          {"newRealm", desk::OrNull(paired.newRealm)},
          {"partner", desk::JsonOf(paired.partner)}};
}

std::string PairedText(const desk::PairedCompany& paired) {
  const std::string name = standalone::Shown(paired.name);
  const std::string realm =
      paired.newRealm ? fmt::format("{} had no realm id; it got {} and keeps it.\n", name, *paired.newRealm) : "";
  return fmt::format("{}Fingerprint of {}: {}\n", realm, name, paired.fingerprint);
}

std::string PairedText(const PairOptions& options, const desk::PairedBoth& paired) {
  const std::string letters =
      paired.one.partner.folder.empty() || paired.other.partner.folder.empty()
          ? fmt::format(
                "Letters go as texts, by exchange export and exchange import, until both have a folder: "
                "multientity partner folder {} {} DIR, and the same for {}.\n",
                AsTyped(options.one.file), AsTyped(paired.one.partner.name), AsTyped(options.other.file))
          : fmt::format("Letters go by {}: multientity exchange run {} {}\n",
                        standalone::Shown(standalone::PathText(paired.one.partner.folder)), AsTyped(options.one.file),
                        AsTyped(options.other.file));
  return fmt::format(
      "Paired {} and {}; the relation is established on both sides.\n{}{}"
      "Each has the key of the other one, as both files lie here and were compared; nobody needs to call.\n{}",
      standalone::Shown(paired.one.name), standalone::Shown(paired.other.name), PairedText(paired.one),
      PairedText(paired.other), letters);
}

void PairBoth(Invocation& invocation, const PairOptions& options) {
  PairingOptions other = options.other;
  other.anyAccount = options.one.anyAccount;
  const desk::PairedBoth paired = desk::PairBoth({.one = CompanyToPair(invocation, options.one),
                                                  .other = CompanyToPair(invocation, other),
                                                  .folder = FolderOf(options.one),
                                                  .useExistingRelations = options.one.useExistingRelation});
  invocation.Report({{"companies", Json::array({PairedJson(options.one.file, paired.one),
                                                PairedJson(options.other.file, paired.other)})}},
                    PairedText(options, paired));
}

constexpr std::array kPartnerColumns{"id",          "partner",         "realm",        "state",         "invitedByUs",
                                     "fingerprint", "dueFrom.id",      "dueFrom.name", "dueTo.id",      "dueTo.name",
                                     "folder",      "hasLetterToSend", "outstanding",  "notUnderstood", "bookedUpTo"};

void ListPartners(Invocation& invocation, const PairingOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const std::vector<desk::PairedPartner> partners = desk::ListPairedPartners(company, options.withRemoved);
  invocation.ReportList({{"partners", desk::JsonOf(partners)}}, kPartnerColumns,
                        partners.empty() ? "No partners are paired.\n" : PartnersTable(partners).Text());
}

void ShowPartner(Invocation& invocation, const PairingOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::PairedPartner partner = desk::ShowPairedPartner(company, options.partner);
  invocation.Report({{"partner", desk::JsonOf(partner)}}, PartnerText(partner, options.file));
}

void ReportFingerprint(Invocation& invocation, const std::string& fingerprint, const std::string& whoseIsMissing) {
  if (fingerprint.empty()) throw std::runtime_error(whoseIsMissing);
  invocation.Report({{"fingerprint", fingerprint}}, fingerprint + '\n');
}

void ShowFingerprint(Invocation& invocation, const PairingOptions& options) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  if (options.partner.empty()) {
    const std::optional<desk::OwnIdentity> own = desk::ShowIdentity(company);
    ReportFingerprint(invocation, own ? own->fingerprint : "",
                      "the company has no identity yet; it gets one with its first partner, by: multientity partner "
                      "invite, or partner accept");
    return;
  }
  const desk::PairedPartner partner = desk::ShowPairedPartner(company, options.partner);
  ReportFingerprint(invocation, partner.fingerprint,
                    fmt::format("{} has no fingerprint yet; it has one once it has accepted the invitation",
                                standalone::Shown(partner.name)));
}

using ChangePartner = desk::PairedPartner (*)(desk::Company& company, const std::string& partner);

// `told` has a place for the partner's name.
void ChangeOnePartner(Invocation& invocation, const PairingOptions& options, ChangePartner change,
                      const std::string& told) {
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::PairedPartner partner = change(company, options.partner);
  invocation.Report({{"partner", desk::JsonOf(partner)}},
                    fmt::format(fmt::runtime(told), standalone::Shown(partner.name)));
}

void SetFolder(Invocation& invocation, const PairingOptions& options) {
  if (options.noFolder && options.folder) {
    throw standalone::InvalidInput("--none and a folder exclude each other; give one of them");
  }
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::PairedPartner partner = desk::SetPartnerFolder(company, options.partner, FolderOf(options));
  const std::string name = standalone::Shown(partner.name);
  invocation.Report({{"partner", desk::JsonOf(partner)}},
                    partner.folder.empty() ? fmt::format("Letters for {} and of it go through no folder now.\n", name)
                                           : fmt::format("Letters for {} and of it go through {} now.\n", name,
                                                         standalone::Shown(standalone::PathText(partner.folder))));
}

void SetAutomaticBooking(Invocation& invocation, const PairingOptions& options) {
  std::optional<standalone::LineAmount> upTo;
  if (options.upTo) upTo.emplace(*options.upTo);
  desk::Company company(FilePath(options.file), HowToOpen(invocation, options.file));
  const desk::PairedPartner partner = desk::SetBookedUpTo(company, options.partner, upTo);
  const std::string name = standalone::Shown(partner.name);
  invocation.Report({{"partner", desk::JsonOf(partner)}},
                    partner.bookedUpTo
                        ? fmt::format("Requests of {} up to {} that a rule fits are booked as soon as they come.\n",
                                      name, AmountWithCurrency(*partner.bookedUpTo))
                        : fmt::format("Each request of {} waits in the inbox now.\n", name));
}

constexpr const char* kPairedPartnerHelp = "The partner: its realm id, or its name";
constexpr const char* kFolderHelp =
    "The folder that the partner sees, too, such as one of a synchronised disk, by which letters go both ways";

void AddPairingAccounts(CLI::App& command, PairingOptions& options) {
  command.add_option("--due-from", options.dueFrom,
                     std::string("What the partner owes this company: an asset. ") + kAccountHelp);
  command.add_option("--due-to", options.dueTo,
                     std::string("What this company owes the partner: a liability. ") + kAccountHelp);
  command.add_flag("--any-account", options.anyAccount,
                   "Also a due-from account that is no asset and a due-to account that is no liability");
}

void AddExistingRelation(CLI::App& command, PairingOptions& options) {
  command.add_flag("--use-existing-relation", options.useExistingRelation,
                   "With the relation to that realm which was made by hand, and its accounts");
}

CLI::App& AddPartnerCommand(CLI::App& group, const char* name, const char* description, const char* example,
                            PairingOptions& options) {
  CLI::App& command = AddFileCommand(group, name, description, example, options.file);
  command.add_option("PARTNER", options.partner, kPairedPartnerHelp)->required();
  return command;
}

void AddInvite(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<PairingOptions>();
  CLI::App& command = AddFileCommand(
      group, "invite",
      "Invite a partner company: prints a text that can be mailed to it, with which it accepts, and tells on standard\n"
      "error what to do next",
      "partner invite alder.company --name \"Birch Services Company\" \\\n"
      "    --due-from \"Due from Birch Services Company\" --due-to \"Due to Birch Services Company\" \\\n"
      "    --output birch.invitation",
      options->file);
  command.add_option("--name", options->name, "The partner company's name, up to 59 bytes")->required();
  AddPairingAccounts(command, *options);
  command.add_option("--folder", options->folder, kFolderHelp);
  command.add_option("--output", options->output, "A new file for the invitation; standard output when left out");
  invocation.When(command, [options](Invocation& run) { InvitePartner(run, *options); });
}

void AddAccept(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<PairingOptions>();
  CLI::App& command = AddFileCommand(
      group, "accept", "Accept a partner's invitation; the relation with it is pending until the partner confirms",
      "partner accept birch.company alder.invitation --due-from \"Due from Alder Supply Company\" \\\n"
      "    --due-to \"Due to Alder Supply Company\" --folder /shared/alder-birch",
      options->file);
  command
      .add_option("INVITATION", options->invitation, "The file with the invitation, or the mail; - for standard input")
      ->required();
  command.add_option("--name", options->name,
                     "What the partner is called here, up to 59 bytes; as it calls itself when left out");
  AddPairingAccounts(command, *options);
  command.add_option("--folder", options->folder, kFolderHelp);
  AddExistingRelation(command, *options);
  invocation.When(command, [options](Invocation& run) { AcceptPartner(run, *options); });
}

void AddRekey(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<RekeyOptions>();
  CLI::App& command = AddFileCommand(
      group, "rekey",
      "Give this company another key, as when somebody else may have the one of now, or when it is lost.\n"
      "Partners take letters under it once they have compared its fingerprint and confirmed it",
      "partner rekey alder.company", options->file);
  command.add_flag("--lost", options->isLost, "The identity is lost, and a new one is made");
  invocation.When(command, [options](Invocation& run) { ReplaceKey(run, *options); });
}

void AddConfirm(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<PairingOptions>();
  CLI::App& command = AddPartnerCommand(
      group, "confirm",
      "Confirm that who has accepted the invitation is the partner, once its fingerprint is the one that it read out.\n"
      "Of a partner whose key was replaced: take the other key, whose fingerprint is given",
      "partner confirm alder.company \"Birch Services Company\" \\\n"
      "    --fingerprint \"12345 67890 12345 67890 12345 67890\"",
      *options);
  command.add_option("--fingerprint", options->fingerprint,
                     "The digits that the partner read out; when left out, a person at a terminal is asked");
  AddExistingRelation(command, *options);
  invocation.When(command, [options](Invocation& run) { ConfirmPartner(run, *options); });
}

void AddPair(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<PairOptions>();
  CLI::App& command = AddFileCommand(
      group, "pair",
      "Pair two companies that lie in one place, as those of a group do: invites, accepts, compares the keys of both "
      "and\n"
      "confirms. What was begun before is gone on with",
      "partner pair alder.company birch.company --folder /shared/alder-birch \\\n"
      "    --due-from \"Due from Birch Services Company\" --due-to \"Due to Birch Services Company\" \\\n"
      "    --other-due-from \"Due from Alder Supply Company\" --other-due-to \"Due to Alder Supply Company\"",
      options->one.file);
  command.add_option("OTHER", options->other.file, "The other company's file, behind FILE")->required();
  AddPairingAccounts(command, options->one);
  command.add_option("--other-due-from", options->other.dueFrom,
                     std::string("In the other company's books, what this one owes it: an asset. ") + kAccountHelp);
  command.add_option("--other-due-to", options->other.dueTo,
                     std::string("In the other company's books, what it owes this one: a liability. ") + kAccountHelp);
  command.add_option("--folder", options->one.folder,
                     "The folder by which letters of both go, such as one beside the files");
  AddExistingRelation(command, options->one);
  invocation.When(command, [options](Invocation& run) { PairBoth(run, *options); });
}

void AddPartnerList(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<PairingOptions>();
  CLI::App& command = AddFileCommand(group, "list", "List the partners with whom this company is paired",
                                     "partner list alder.company", options->file);
  command.add_flag("--all", options->withRemoved, "Those that were removed, too");
  AddCsvOption(command, invocation.options);
  invocation.When(command, [options](Invocation& run) { ListPartners(run, *options); });
}

void AddPartnerShow(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<PairingOptions>();
  CLI::App& command = AddPartnerCommand(group, "show", "Show one partner, how far the pairing is and what to do next",
                                        "partner show alder.company \"Birch Services Company\"", *options);
  invocation.When(command, [options](Invocation& run) { ShowPartner(run, *options); });
}

void AddFingerprint(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<PairingOptions>();
  CLI::App& command =
      AddFileCommand(group, "fingerprint", "Show a fingerprint, six groups of five digits, to be compared by phone",
                     "partner fingerprint alder.company \"Birch Services Company\"", options->file);
  command.add_option("PARTNER", options->partner,
                     "The partner, by its realm id or its name, behind FILE; this company itself when left out");
  invocation.When(command, [options](Invocation& run) { ShowFingerprint(run, *options); });
}

void AddChangeOf(CLI::App& group, Invocation& invocation, const char* name, const char* description,
                 const char* example, ChangePartner change, const char* told) {
  const auto options = std::make_shared<PairingOptions>();
  CLI::App& command = AddPartnerCommand(group, name, description, example, *options);
  invocation.When(command, [options, change, told](Invocation& run) { ChangeOnePartner(run, *options, change, told); });
}

void AddFolder(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<PairingOptions>();
  CLI::App& command =
      AddPartnerCommand(group, "folder", "Set the folder by which letters go to a partner and come from it",
                        "partner folder alder.company \"Birch Services Company\" /shared/alder-birch", *options);
  CLI::Option* folder = command.add_option("DIR", options->folder, kFolderHelp)->required();
  command.add_flag_callback(
      "--none",
      [options, folder] {
        options->noFolder = true;
        folder->required(false);
      },
      "No folder any more: letters go as text, by exchange export and exchange import");
  invocation.When(command, [options](Invocation& run) { SetFolder(run, *options); });
}

void AddAuto(CLI::App& group, Invocation& invocation) {
  const auto options = std::make_shared<PairingOptions>();
  CLI::App& command = AddPartnerCommand(
      group, "auto", "Book requests of a partner that a rule fits as soon as they come, up to an amount, or no longer",
      "partner auto birch.company \"Alder Supply Company\" --up-to 500", *options);
  CLI::Option_group* const how = command.add_option_group("How", "One of these has to be given");
  how->add_option("--up-to", options->upTo, "Up to this amount; larger ones and credits wait for a person");
  how->add_flag("--off", options->off, "None of them: each waits for a person");
  how->require_option(1);
  invocation.When(command, [options](Invocation& run) { SetAutomaticBooking(run, *options); });
}

}  // namespace

void AddPartner(CLI::App& program, Invocation& invocation) {
  CLI::App& group =
      AddGroup(program, "partner", "Get to know partner companies, so that letters to them are signed and sealed",
               "partner list alder.company");
  AddInvite(group, invocation);
  AddAccept(group, invocation);
  AddConfirm(group, invocation);
  AddRekey(group, invocation);
  AddPair(group, invocation);
  AddPartnerList(group, invocation);
  AddPartnerShow(group, invocation);
  AddFingerprint(group, invocation);
  AddChangeOf(group, invocation, "block", "Send nothing to a partner and take nothing from it, until it is unblocked",
              "partner block alder.company \"Birch Services Company\"", desk::BlockPartner,
              "Blocked {}: nothing is sent to it and nothing is taken from it.\n");
  AddChangeOf(group, invocation, "unblock", "Send to a partner that was blocked again, and take from it",
              "partner unblock alder.company \"Birch Services Company\"", desk::UnblockPartner, "Unblocked {}.\n");
  AddChangeOf(group, invocation, "remove",
              "End the pairing with a partner. A relation that it has not confirmed goes with it, an established one "
              "stays",
              "partner remove alder.company \"Birch Services Company\"", desk::RemovePairing,
              "Ended the pairing with {}.\n");
  AddFolder(group, invocation);
  AddAuto(group, invocation);
}

}  // namespace app
