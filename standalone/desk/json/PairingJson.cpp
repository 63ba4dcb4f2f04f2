#include "standalone/desk/json/Json.h"
#include "standalone/values/Money.h"
#include "standalone/values/Text.h"

namespace desk {

namespace {

Json AccountJson(const std::optional<ListItem>& account) {
  if (!account) return {};
  return {{"id", account->id}, {"name", account->name}};
}

// Null for what is empty.
Json TextJson(const std::string& text) {
  return text.empty() ? Json() : Json(text);
}

Json PathJson(const std::filesystem::path& path) {
  return TextJson(standalone::PathText(path));
}

}  // namespace

Json JsonOf(const PairedPartner& partner) {
  Json offered = Json::array();
  for (const OfferedKey& key : partner.offeredKeys) {
    offered.push_back({{"fingerprint", key.fingerprint}, {"announced", key.isAnnounced}});
  }
  return {{"id", partner.id},
          {"partner", partner.name},
          {"realm", TextJson(partner.realm)},
          {"state", NameOf(partner.state)},
          {"invitedByUs", partner.invitedByUs},
          {"fingerprint", TextJson(partner.fingerprint)},
          {"dueFrom", AccountJson(partner.dueFrom)},
          {"dueTo", AccountJson(partner.dueTo)},
          {"folder", PathJson(partner.folder)},
          {"hasLetterToSend", partner.hasLetterToSend},
          {"outstanding", partner.outstanding},
          {"notUnderstood", partner.notUnderstood},
          {"offeredKeys", std::move(offered)},
          {"bookedUpTo", partner.bookedUpTo ? Json(standalone::FormatPlainAmount(*partner.bookedUpTo)) : Json()}};
}

Json JsonOf(const ReplacedKey& replaced) {
  return {{"identity", JsonOf(replaced.identity)}, {"before", replaced.before}, {"partners", replaced.partners}};
}

Json JsonOf(const OwnIdentity& identity) {
  return {{"file", standalone::PathText(identity.file)},
          {"fingerprint", identity.fingerprint},
          {"realm", TextJson(identity.realm)}};
}

Json JsonOf(const TakenLetter& letter) {
  return {{"partner", TextJson(letter.partner)},
          {"facts", letter.facts},
          {"done", letter.done},
          {"moreDone", letter.moreDone},
          {"outstanding", letter.outstanding}};
}

Json JsonOf(const Awaited& awaited) {
  return {{"identityLost", awaited.isIdentityLost}, {"missing", awaited.missing},
          {"cameBack", awaited.cameBack},           {"fromElsewhere", awaited.fromElsewhere},
          {"first", awaited.firstThatCameBack},     {"toCompare", awaited.toCompare}};
}

Json JsonOf(const CarriedWith& carried) {
  return {{"partner", carried.partner},
          {"folder", PathJson(carried.folder)},
          {"taken", JsonOf(carried.taken)},
          {"triedAgain", carried.triedAgain},
          {"awaited", carried.awaited ? JsonOf(*carried.awaited) : Json()},
          {"sent", carried.sent},
          {"notSent", carried.notSent},
          {"put", carried.put},
          {"setAside", carried.setAside},
          {"waiting", carried.waiting},
          {"failure", TextJson(carried.failure)}};
}

}  // namespace desk
