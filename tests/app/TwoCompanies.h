#pragma once

#include "app/Books.h"

inline constexpr const char* kBirchFile = "birch.company";
inline constexpr const char* kBirch = "Birch Services Company";
inline constexpr const char* kAlder = "Alder Supply Company";

// Alder and Birch, each with its own file, who have not been told of each other yet, and a folder that both see.
class TwoCompanies : public Books {
 protected:
  TwoCompanies() {
    WriteFile("birch-accounts.csv",
              "name,type\nChecking,Bank\nDue from Alder,Other Current Asset\nDue to Alder,Other Current Liability\n"
              "Repairs,Expense\n");
    Done({"init", kBirchFile, "--name", kBirch});
    Done({"import", "accounts", kBirchFile, "birch-accounts.csv"});
    std::filesystem::create_directory(In("shared"));
  }

  using Arguments = std::vector<std::string>;

  static Arguments With(Arguments arguments, const Arguments& more) {
    arguments.insert(arguments.end(), more.begin(), more.end());
    return arguments;
  }
  static Arguments Invite(const Arguments& more = {}) {
    return With(
        {"partner", "invite", kFile, "--name", kBirch, "--due-from", "Due from Birch", "--due-to", "Due to Birch"},
        more);
  }
  static Arguments Accept(const Arguments& more = {}) {
    return With({"partner", "accept", kBirchFile, "alder.invitation", "--due-from", "Due from Alder", "--due-to",
                 "Due to Alder"},
                more);
  }

  // Alder's invitation lies in a file.
  void InviteBirch(const Arguments& more = {}) const { Done(With(Invite({"--output", "alder.invitation"}), more)); }
  // Birch has accepted, and Alder knows it.
  void HaveBirchAccept(const Arguments& more = {}) const {
    InviteBirch(more);
    Done(Accept(more));
    BringLetters(kBirchFile, kAlder, kFile);
  }
  void Pair(const Arguments& more = {}) const {
    HaveBirchAccept(more);
    Done({"partner", "confirm", kFile, kBirch, "--fingerprint", FingerprintOf(kBirchFile)});
    BringLetters(kFile, kBirch, kBirchFile);
  }
  // As text.
  void BringLetters(const char* from, const char* to, const char* file) const {
    std::filesystem::remove(In("letters.txt"));
    Done({"exchange", "export", from, to, "--output", "letters.txt"});
    Done({"exchange", "import", file, "letters.txt"});
  }
  std::string FingerprintOf(const char* file) const {
    return Answer({"partner", "fingerprint", file}).at("fingerprint").get<std::string>();
  }
  std::string StateOf(const char* file, const char* partner) const {
    return Answer({"partner", "show", file, partner}).at("partner").at("state").get<std::string>();
  }
  // All that a company is, byte by byte.
  std::string Whole(const char* file) const {
    const std::string identity = std::string(file) + ".identity";
    return Contents(file) + (std::filesystem::exists(In(identity)) ? Contents(identity) : "");
  }
};
