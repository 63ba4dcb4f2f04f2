#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <sstream>

#include "app/Books.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;

namespace {

using Words = std::vector<std::string>;

struct Help {
  std::set<std::string> commands;
  std::set<std::string> options;
};

// What is explained stands behind few blanks, its explanation behind many.
Help ReadHelp(const std::string& text) {
  Help help;
  std::istringstream lines(text);
  bool ofCommands = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("Example:")) break;
    if (line == "Subcommands:") ofCommands = true;
    if (line.empty()) ofCommands = false;
    const std::size_t begin = line.find_first_not_of(' ');
    if (begin == std::string::npos || begin == 0 || begin > 8) continue;
    const std::string word = line.substr(begin, line.find(' ', begin) - begin);
    if (ofCommands) help.commands.insert(word);
    if (!word.starts_with('-')) continue;
    std::istringstream names(word);
    for (std::string name; std::getline(names, name, ',');) help.options.insert(name);
  }
  return help;
}

std::string OutputOf(const std::string& command) {
  const std::unique_ptr<std::FILE, decltype(&pclose)> pipe(popen(command.c_str(), "r"), &pclose);
  std::string text;
  std::array<char, 4096> part{};
  for (std::size_t count = 1; count != 0;) {
    count = std::fread(part.data(), 1, part.size(), pipe.get());
    text.append(part.data(), count);
  }
  return text;
}

}  // namespace

class WhatTheProgramTellsOfItself : public EmptyDirectory {
 protected:
  std::map<std::string, Help> AllHelp() const {
    std::map<std::string, Help> all;
    AddHelp("", {}, all);
    return all;
  }

  // What bash completes behind "multientity", the last word being the one that is typed.
  Words Completed(const Words& typed) const {
    WriteFile("completion", Run({"completion", "bash"}).out);
    std::string words = "multientity";
    for (const std::string& word : typed) words += " '" + word + "'";
    const std::string completed = OutputOf(
        "bash --norc -c 'source \"$0\"; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _multientity; "
        "printf \"%s\\n\" \"${COMPREPLY[@]}\"' '" +
        In("completion").string() + "' " + words);
    Words lines;
    std::istringstream text(completed);
    for (std::string line; std::getline(text, line);) {
      if (!line.empty()) lines.push_back(line);
    }
    return lines;
  }

 private:
  void AddHelp(const std::string& path, Words words, std::map<std::string, Help>& all) const {
    words.emplace_back("--help");
    const Help help = ReadHelp(Run(words).out);
    words.pop_back();
    all[path] = help;
    for (const std::string& command : help.commands) {
      words.push_back(command);
      AddHelp(path.empty() ? command : path + " " + command, words, all);
      words.pop_back();
    }
  }
};

TEST_F(WhatTheProgramTellsOfItself, HasEveryCommandAndOptionOfTheHelpForBothShellsAndForMan) {
  const std::map<std::string, Help> all = AllHelp();
  const std::string man = Run({"man"}).out;

  ASSERT_THAT(all.at("").commands, IsSupersetOf({"init", "relation", "transactions", "man"}));
  ASSERT_THAT(all.at("relation list").options, IsSupersetOf({"--realms", "--csv"}));
  for (const char* shell : {"bash", "zsh"}) {
    const std::string completion = Run({"completion", shell}).out;
    for (const auto& [path, help] : all) {
      for (const std::string& command : help.commands) {
        EXPECT_THAT(completion, testing::ContainsRegex("'" + path + "'\\) echo '[^']*\\b" + command + "\\b"));
      }
      for (const std::string& option : help.options) {
        EXPECT_THAT(completion, testing::ContainsRegex("'" + path + "'\\) echo '[^']*" + option + "[ ']"));
      }
    }
  }
  for (const auto& [path, help] : all) {
    const std::size_t section =
        path.empty() ? 0 : man.find(".SS \"" + std::regex_replace(path, std::regex("-"), "\\-") + "\"\n");
    ASSERT_NE(section, std::string::npos) << path;
    const std::string text = man.substr(section, man.find("\n.SS ", section + 1) - section);
    for (const std::string& option : help.options) {
      EXPECT_THAT(text, HasSubstr("\\fB" + std::regex_replace(option, std::regex("-"), "\\-") + "\\fR")) << path;
    }
  }
}

TEST_F(WhatTheProgramTellsOfItself, CompletesCommandsInBash) {
  EXPECT_THAT(Completed({"rela"}), ElementsAre("relation"));
  EXPECT_THAT(Completed({"relation", "l"}), ElementsAre("list"));
  EXPECT_THAT(Completed({"--user", "Admin", "--json", "users", "ch"}), ElementsAre("change"));
}

TEST_F(WhatTheProgramTellsOfItself, CompletesTheOptionsOfACommandInBash) {
  EXPECT_THAT(Completed({"relation", "list", "alder.company", "--rea"}), ElementsAre("--realms"));
  EXPECT_THAT(Completed({"transactions", "--js"}), ElementsAre("--json"));
}

TEST_F(WhatTheProgramTellsOfItself, CompletesTheStatesAndTypesInBash) {
  EXPECT_THAT(Completed({"transactions", "alder.company", "--state", "e"}), ElementsAre("entered", "established"));
  EXPECT_THAT(Completed({"transactions", "alder.company", "--type", ""}), ElementsAre("bill", "check", "journal"));
  EXPECT_THAT(Completed({"relation", "list", "--state", "p"}), ElementsAre("pending"));
  EXPECT_THAT(Completed({"rejected", "list", "alder.company", "--type", "b"}), ElementsAre("bill"));
  EXPECT_THAT(Completed({"inbox", "list", "alder.company", "--state", "re"}), ElementsAre("rejected", "refused"));
  EXPECT_THAT(Run({"completion", "zsh"}).out, HasSubstr("'transactions --state') echo 'entered sent came-back"));
}

TEST_F(Books, EveryStateAndTypeThatIsCompletedIsUnderstood) {
  RelateBirch();
  ImportMarch();

  for (const char* const state : {"entered", "sent", "came-back", "established", "closed"}) {
    Done({"transactions", kFile, "--state", state});
  }
  for (const char* const type : {"bill", "check", "journal"}) Done({"transactions", kFile, "--type", type});
  for (const char* const type : {"bill", "check"}) Done({"rejected", "list", kFile, "--type", type});
  for (const char* const state : {"pending", "established", "without-accounts", "deactivated"}) {
    Done({"relation", "list", kFile, "--state", state});
  }
  for (const char* const state : {"new", "held", "accepted", "to-book-again", "rejected", "refused", "withdrawn"}) {
    Done({"inbox", "list", kFile, "--state", state});
  }
}

TEST_F(WhatTheProgramTellsOfItself, LeavesFilesToBash) {
  EXPECT_TRUE(Completed({"accounts", "alder"}).empty());
  EXPECT_THAT(Run({"completion", "bash"}).out, HasSubstr("complete -o default -F _multientity multientity\n"));
}

TEST_F(WhatTheProgramTellsOfItself, IsAManualPageOfWhichTheFormatterDoesNotComplain) {
  if (OutputOf("command -v groff").empty()) GTEST_SKIP() << "there is no groff here";
  WriteFile("multientity.1", Run({"man"}).out);

  const std::string warnings = OutputOf("groff -man -Tutf8 -ww -z '" + In("multientity.1").string() + "' 2>&1");

  EXPECT_EQ(warnings, "");
}
