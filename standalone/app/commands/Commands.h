#pragma once

#include <string>
#include <vector>

#include "standalone/desk/results/ClosedDays.h"

namespace CLI {
class App;
}

namespace app {

class Invocation;

// Each adds its command to the program.
void AddInit(CLI::App& program, Invocation& invocation);
void AddImport(CLI::App& program, Invocation& invocation);
void AddAccounts(CLI::App& program, Invocation& invocation);
void AddAccount(CLI::App& program, Invocation& invocation);
void AddNames(CLI::App& program, Invocation& invocation);
void AddName(CLI::App& program, Invocation& invocation);
void AddAudit(CLI::App& program, Invocation& invocation);
void AddBackup(CLI::App& program, Invocation& invocation);
void AddRestore(CLI::App& program, Invocation& invocation);
void AddExport(CLI::App& program, Invocation& invocation);
void AddUsers(CLI::App& program, Invocation& invocation);
void AddSettings(CLI::App& program, Invocation& invocation);
void AddRelation(CLI::App& program, Invocation& invocation);
// bill, check and entry.
void AddEnter(CLI::App& program, Invocation& invocation);
void AddJournal(CLI::App& program, Invocation& invocation);
void AddReverse(CLI::App& program, Invocation& invocation);
void AddRemoveTransaction(CLI::App& program, Invocation& invocation);
void AddAttach(CLI::App& program, Invocation& invocation);
void AddDetach(CLI::App& program, Invocation& invocation);
void AddBalances(CLI::App& program, Invocation& invocation);
void AddRegister(CLI::App& program, Invocation& invocation);
void AddOpenItems(CLI::App& program, Invocation& invocation);
void AddShowTransaction(CLI::App& program, Invocation& invocation);
void AddTransactions(CLI::App& program, Invocation& invocation);
void AddTransaction(CLI::App& program, Invocation& invocation);
void AddRejected(CLI::App& program, Invocation& invocation);
void AddPartner(CLI::App& program, Invocation& invocation);
void AddExchange(CLI::App& program, Invocation& invocation);
void AddInbox(CLI::App& program, Invocation& invocation);
void AddRules(CLI::App& program, Invocation& invocation);
void AddOutbox(CLI::App& program, Invocation& invocation);
void AddIdentity(CLI::App& program, Invocation& invocation);
void AddRealm(CLI::App& program, Invocation& invocation);
void AddPlugin(CLI::App& program, Invocation& invocation);
void AddPersona(CLI::App& program, Invocation& invocation);
void AddReminder(CLI::App& program, Invocation& invocation);
void AddOpen(CLI::App& program, Invocation& invocation);
void AddLog(CLI::App& program, Invocation& invocation);
void AddCompletion(CLI::App& program, Invocation& invocation);
void AddMan(CLI::App& program, Invocation& invocation);

// A command of which one of the commands below it has to be given. `example` is what follows the program's name.
CLI::App& AddGroup(CLI::App& program, const char* name, const char* description, const char* example);
// A command that works on a company file.
CLI::App& AddFileCommand(CLI::App& parent, const char* name, const char* description, const char* example,
                         std::string& file);
// One that works on one company file or on several.
CLI::App& AddFilesCommand(CLI::App& parent, const char* name, const char* description, const char* example,
                          std::vector<std::string>& files);
// --after-close, with which an administrator changes days on which the books are closed.
void AddAfterClose(CLI::App& command, desk::ClosedDays& closedDays);
// The example and what may be added to every command, for one that is added otherwise.
void AddFooter(CLI::App& command, const char* example);

}  // namespace app
