#pragma once

namespace CLI {
class App;
}

namespace app {

class Invocation;

// Each adds its command to the program.
void AddInit(CLI::App& program, Invocation& invocation);
void AddImport(CLI::App& program, Invocation& invocation);
void AddAccounts(CLI::App& program, Invocation& invocation);
void AddNames(CLI::App& program, Invocation& invocation);
void AddAudit(CLI::App& program, Invocation& invocation);
void AddBackup(CLI::App& program, Invocation& invocation);
void AddRestore(CLI::App& program, Invocation& invocation);
void AddUsers(CLI::App& program, Invocation& invocation);
void AddSettings(CLI::App& program, Invocation& invocation);
void AddRelation(CLI::App& program, Invocation& invocation);
void AddJournal(CLI::App& program, Invocation& invocation);
void AddTransactions(CLI::App& program, Invocation& invocation);
void AddTransaction(CLI::App& program, Invocation& invocation);
void AddRejected(CLI::App& program, Invocation& invocation);
void AddRealm(CLI::App& program, Invocation& invocation);
void AddPlugin(CLI::App& program, Invocation& invocation);
void AddPersona(CLI::App& program, Invocation& invocation);
void AddReminder(CLI::App& program, Invocation& invocation);
void AddOpen(CLI::App& program, Invocation& invocation);
void AddLog(CLI::App& program, Invocation& invocation);

// A command that works on a company file. `example` is what follows the program's name.
CLI::App& AddFileCommand(CLI::App& parent, const char* name, const char* description, const char* example,
                         std::string& file);
// The example and what may be added to every command, for one that is added otherwise.
void AddFooter(CLI::App& command, const char* example);

}  // namespace app
