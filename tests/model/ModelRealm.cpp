#include <string>

#include "model/Model.h"

namespace model {

namespace {

constexpr ResourceInstance kResources{42};

std::string GenericException(const std::string& name) {
  return "MULTIENTITY_ERROR::Exiting " + name + ", due to generic exception";
}

}  // namespace

bool Model::DatabaseUsable() {
  return world_.GetActiveFileMgr() && world_.GetFileState() != 1;
}

std::optional<std::string> Model::GetMECacheRealmId(Util::TString realmId, bool& ok) {
  const std::string name = "MultiEntityDriver::GetMECacheRealmId";
  ok = true;
  try {
    if (!DatabaseUsable()) return {};
    std::string stored;
    const Util::Status status = world_.GetCompanyDBPreference("MERealmId", stored);
    if (status.Succeeded()) {
      world_.LocalAlloc(64, stored.size() + 1);
      return stored;
    }
    if (status.GetStatusCode() == -6018) {
      ok = world_.SetCompanyDBPreference("MERealmId", realmId.view()).Succeeded();
      return {};
    }
    Error(name, "MULTIENTITY_ERROR::In " + name + ", Unable to read CDB Preferences");
    ok = false;
  } catch (...) {
    Error(name, GenericException(name));
  }
  return {};
}

void Model::GiveBack(const std::optional<std::string>& block) {
  if (block.has_value()) --world_.blocksOut;
}

bool Model::SetMECacheRealmId(std::string realmId) {
  const std::string name = "MultiEntityDriver::SetMECacheRealmId";
  try {
    return DatabaseUsable() && world_.SetCompanyDBPreference("MERealmId", realmId).Succeeded();
  } catch (...) {
    Error(name, GenericException(name));
    return false;
  }
}

bool Model::MustCheckRealm() {
  try {
    std::string value;
    world_.GetValue2("MultiEntity", "CheckForRealmReset", value);
    return value != "0";
  } catch (...) {
    Error("MultiEntityUtils::NeedToCheckForMERealmReset", "DCE check failed for NeedToCheckForMERealmReset");
    return true;
  }
}

bool Model::IsRealmReset(Util::TString realmId) {
  bool ok = true;
  const std::optional<std::string> remembered = GetMECacheRealmId(realmId, ok);
  return ok && remembered.has_value() && !realmId.empty() && *remembered != realmId.view();
}

bool Model::BlockUserIfRealmReset(Util::TString realmId) {
  const std::string name = "MultiEntityDriver::BlockUserIfRealmReset";
  try {
    if (realmId.empty()) {
      const std::string message = world_.GetIndStringC(world_.GetKRWinInstance(), 2003, 3023);
      world_.KRMSG_MessageO(0, 3, 3, 2003, "-7;\"Intercompany transactions\";" + text::Of(message) + ";-1;");
      return true;
    }
    if (!MustCheckRealm() || !IsRealmReset(realmId)) return false;
    world_.GetKRWinInstance();
    const int answer = world_.YesNoInfoMsgO("Src/MultiEntityDriver", name.c_str(), kResources, 14717, 1, 2, true, true);
    if (answer == 1) world_.ExecuteCommand("krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_REALM_RESET");
    return true;
  } catch (...) {
    Error(name, GenericException(name));
    return false;
  }
}

bool Model::CheckForPluginNavigation() {
  const std::string name = "MultiEntityDriver::CheckForPluginNavigation";
  try {
    std::vector<DBMultiEntityRelation> rows;
    const MEStatusCode status = GetRelationsList(rows);
    if (status != 1) {
      Trace(name, "MULTIENTITY::Exiting " + name + ", due to Error " + std::to_string(status));
      return true;
    }
    for (const DBMultiEntityRelation& row : rows) {
      if (row.state == 3) return true;
    }
    if (world_.KRMSG_MessageO(0, 4, 0, 14717, "1;2;0;1;4;5;3;-1;") != 0) return true;
    world_.ExecuteCommand("krw:LaunchMEPlugin?context=ICT_TXN_DUE_TO_NORELATIONS");
    return false;
  } catch (...) {
    Error(name, GenericException(name));
    return true;
  }
}

SybaseRelationsUserPersona Model::SybaseRelationsUserPersonaForRole(int role) {
  const std::string name = "MultiEntityDriver::SybaseRelationsUserPersonaForRole";
  const auto may = [this](std::int32_t action) {
    return world_.ListPermissionAvailable(1, 0, action, 0, 0);
  };
  try {
    if (role == 0 || role == 15) return SybaseRelationsUserPersona{3};
    if (role != 1) return may(2) ? SybaseRelationsUserPersona{1} : SybaseRelationsUserPersona{0};
    if (may(4)) return SybaseRelationsUserPersona{3};
    return may(2) ? SybaseRelationsUserPersona{2} : SybaseRelationsUserPersona{0};
  } catch (...) {
    Error(name, GenericException(name));
    return SybaseRelationsUserPersona{0};
  }
}

}  // namespace model
