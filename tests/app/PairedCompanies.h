#pragma once

#include <string>

#include "app/TwoCompanies.h"

// Alder and Birch, who are paired and carry their letters by one folder. Alder pays, and Birch bears half of it.
class PairedCompanies : public TwoCompanies {
 protected:
  PairedCompanies() {
    Pair({"--folder", "shared"});
    Done({"partner", "folder", kBirchFile, kAlder, "shared"});
  }

  // A bill of 90.00, of which Birch bears 45.00; its request.
  std::string EnterBill(const std::string& number = "NP-1", const std::string& amount = "90.00") const {
    const Json bill = Answer({"bill", "record", kFile, "--name", "Northern Power", "--number", number, "--date",
                              "2024-03-05", "--line", "Utilities", amount, "--partner", kBirch, "--share", "50%"});
    for (const Json& line : bill.at("lines")) {
      if (!line.at("requestId").is_null()) return line.at("requestId").get<std::string>();
    }
    ADD_FAILURE() << "no line has a request";
    return {};
  }
  // Every letter of both gets to the other one.
  void Carry() const {
    for (const char* const file : {kFile, kBirchFile, kFile, kBirchFile}) Done({"exchange", "run", file});
  }
  // The same with its request in Birch's inbox.
  std::string BillInTheInbox(const std::string& number = "NP-1", const std::string& amount = "90.00") const {
    std::string request = EnterBill(number, amount);
    Done({"exchange", "send", kFile});
    Carry();
    return request;
  }
  Outcome AcceptRequest(const std::string& request, const Arguments& more = {}) const {
    return Run(
        With({"inbox", "accept", kBirchFile, request, "--new-expense", "Power", "--new-name", "Northern Power"}, more));
  }
  Json InInbox(const std::string& request) const {
    return Answer({"inbox", "show", kBirchFile, request}).at("request");
  }
  Json InOutbox(const std::string& request) const { return Answer({"outbox", "show", kFile, request}).at("request"); }
};
