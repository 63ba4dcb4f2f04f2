#include "support/ScriptedHost.h"

ScriptedHost::ScriptedHost()
    : services_{.ops = ops,
                .runtime = runtime,
                .killSwitches = switches,
                .remoteValues = values,
                .databasePreferences = databasePreferences,
                .preferences = preferences,
                .multiEntity = store,
                .permissions = permissions,
                .accounts = chart,
                .names = names,
                .journal = journal,
                .lines = lines,
                .queries = queries,
                .money = money,
                .application = application,
                .messages = messages,
                .platform = &platform} {}

ScriptedHost::~ScriptedHost() = default;
