#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "MultiEntityHost/HostServices.h"
#include "support/CallScript.h"
#include "support/ScriptedApplication.h"
#include "support/ScriptedBooks.h"
#include "support/ScriptedConfiguration.h"
#include "support/ScriptedLists.h"
#include "support/ScriptedPlatform.h"
#include "support/ScriptedRuntime.h"
#include "support/ScriptedStore.h"

// A complete host in memory. A test fills the services' tables, says where the host is to fail, and reads afterwards
// what the host was asked, what the log gained and what the tables hold. An object that the module opens and does not
// release exactly once fails the test.
class ScriptedHost : public CallScript {
 public:
  ScriptedHost();
  ~ScriptedHost();
  ScriptedHost(const ScriptedHost&) = delete;
  ScriptedHost& operator=(const ScriptedHost&) = delete;

  const HostServices& Services() const noexcept { return services_; }

  const std::vector<LogLine>& Lines() const noexcept { return ops.lines; }
  std::vector<LogLine> LinesOf(const std::string& shortName) const { return ops.LinesOf(shortName); }

  ScriptedOps ops{*this};
  ScriptedRuntime runtime{*this};
  ScriptedSwitches switches{*this};
  ScriptedValues values{*this};
  ScriptedDatabasePreferences databasePreferences{*this};
  ScriptedPreferences preferences{*this};
  ScriptedStore store{*this};
  ScriptedPermissions permissions{*this};
  ScriptedChart chart{*this};
  ScriptedNames names{*this};
  ScriptedLines lines{*this, names};
  ScriptedJournal journal{*this, store, chart, names, lines};
  ScriptedQueries queries{*this};
  ScriptedMoney money{*this};
  ScriptedApplication application{*this};
  ScriptedMessages messages{*this};
  ScriptedPlatform platform{*this};

 private:
  HostServices services_;
};
