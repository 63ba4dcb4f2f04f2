#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "app/Program.h"

using Json = nlohmann::json;

// A directory of its own for each test, in which company files have relative names.
class EmptyDirectory : public testing::Test {
 public:
  EmptyDirectory();
  EmptyDirectory(const EmptyDirectory&) = delete;
  EmptyDirectory& operator=(const EmptyDirectory&) = delete;
  ~EmptyDirectory() override;

 protected:
  Outcome Run(const std::vector<std::string>& arguments) const { return RunProgram(directory_, arguments); }
  // What a command answers to --json; fails the test unless the command ends with 0.
  Json Answer(std::vector<std::string> arguments) const;
  // The same for a command that fails: the error that it prints as JSON.
  Json ErrorOf(std::vector<std::string> arguments) const;
  // Fails the test unless the command ends with 0.
  void Done(const std::vector<std::string>& arguments) const;

  std::filesystem::path In(std::string_view name) const { return directory_ / name; }
  std::string Contents(std::string_view name) const { return ContentsOf(In(name)); }
  void WriteFile(std::string_view name, std::string_view text) const { Write(In(name), text); }

 private:
  std::filesystem::path directory_;
};

inline constexpr const char* kFile = "alder.company";

// The file of Alder Supply Company: a chart of accounts, three names, and nothing booked yet.
class Books : public EmptyDirectory {
 public:
  Books();

 protected:
  // To Birch Services Company, realm 1001, with the accounts "Due from Birch" and "Due to Birch".
  void RelateBirch() const;
  // Three transactions of March 2024, each with one intercompany line: a bill (1), a check (2), a journal entry (3).
  void ImportMarch() const;
  // Books 40.00 to Utilities under the request id; the journal entry's transaction id.
  int Book(const std::string& request) const;
  // Has the company file remember a text under a key, past the program.
  void Remember(const std::string& key, const std::string& text) const;
  // What another program may do to the company file.
  void ChangeTheFile(const std::string& sql) const;
  // Remote values with which the reminder is due a second after the company is opened, at any time of the day.
  void LetTheReminderComeAtOnce() const;
  // The numbers of the accounts, by name.
  int AccountId(const std::string& name) const;
};
