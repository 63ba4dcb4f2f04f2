#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "bench/HandWritten.h"

struct sqlite3;
struct sqlite3_stmt;

namespace bench {

// What a programmer would write who has to leave the same rows in the two companies of a pair, the same signed facts,
// the same lines of the audit trail and the same letters, and nothing else: a bill that was entered is proposed, a
// proposal is booked by the rule for its name and answered, an answer establishes the line; each in a transaction of
// its own. It knows one pairing and no other outcome, and asks no rights.
class ExchangingByHand {
 public:
  using Moment = HandWritten::Moment;

  // `now` is asked for each line of the trail.
  ExchangingByHand(const std::filesystem::path& company, std::function<Moment()> now);
  ExchangingByHand(const ExchangingByHand&) = delete;
  ExchangingByHand& operator=(const ExchangingByHand&) = delete;
  ~ExchangingByHand() = default;

  // Takes the letters that lie there, proposes what was entered, and puts what is to be told.
  void Carry();

 private:
  struct Fact {
    std::string_view wire;
    std::string_view body;
    std::string_view signature;
    std::string_view author;
    std::string_view kind;
    std::string_view name;
    std::string_view month;
    std::map<std::string_view, std::string_view> fields;
  };
  struct Letter {
    std::string content;
    std::string_view word;
    std::string_view echo;
    std::string_view summary;
    std::vector<std::string_view> facts;
  };
  struct Carrying {
    std::string word;
    std::string wordFor;
    bool isEchoed = false;
    std::string theirWord;
    std::string letters;
    std::string lettersFor;
    bool owesReply = false;
    std::string theirSummary;
    bool isCompared = false;
  };
  // What each part of a letter begins with, and what has been added to the part.
  struct Part {
    std::string head;
    std::string content;
    std::string left;  // lines for the identity
    std::int64_t leftLines = 0;
    std::vector<std::string> names;
  };

  void ReadPairing();
  void ReadIdentity();
  Carrying ReadCarrying();
  void WriteCarrying(const Carrying& carrying);

  void TakeLetters();
  Letter Open(const std::filesystem::path& file) const;
  bool SaysNothingNew(const Letter& letter);
  void TakeFact(std::string_view wire);
  void Book(const Fact& proposal);
  void Establish(const Fact& answer);
  void NoteRead(const Letter& letter);
  bool Holds(std::string_view hash);

  void Propose();
  bool ProposeNext();

  void PutLetters();
  void AddFact(Part& part, std::string_view field);
  void PutPart(Part& part);

  std::string Begun(std::string_view kind, std::string_view name, std::string_view month) const;
  std::string Sign(std::string_view message) const;
  // Returns the hash.
  std::string Keep(std::string_view origin, std::string_view kind, std::string_view name, std::string_view month,
                   std::string_view body, std::string_view signature);
  std::string SummaryOfHeld();
  void AppendToTrail(std::string_view action, std::int64_t txn, std::string_view subject, std::string_view changes);

  [[noreturn]] void Fail(const char* what) const;
  sqlite3_stmt* Prepare(const char* sql);
  bool Step(sqlite3_stmt* statement) const;
  template <typename... Values>
  void Run(sqlite3_stmt* statement, const Values&... values);
  template <typename... Values>
  bool Find(sqlite3_stmt* statement, const Values&... values);
  void Commit();

  struct Closer {
    void operator()(sqlite3* database) const noexcept;
    void operator()(sqlite3_stmt* statement) const noexcept;
  };

  static constexpr std::size_t kKeyBytes = 32;
  static constexpr std::size_t kSecretBytes = 64;
  using Key = std::array<unsigned char, kKeyBytes>;

  std::function<Moment()> now_;
  std::string systemUser_;
  std::filesystem::path identity_;
  std::filesystem::path folder_;
  std::array<unsigned char, kSecretBytes> secret_{};
  Key public_{};
  Key partnerKey_{};
  std::string pairing_;
  std::string partner_;          // as the pairing calls it
  std::string relationPartner_;  // and the relation, with the realm
  std::int64_t relation_ = 0;
  std::int64_t dueTo_ = 0;
  std::string dueToName_;
  std::string currency_;
  std::int64_t left_ = 0;
  std::unique_ptr<sqlite3, Closer> database_;
  std::vector<std::unique_ptr<sqlite3_stmt, Closer>> statements_;
  std::vector<sqlite3_stmt*> found_;  // those that have yielded a row in this transaction
  sqlite3_stmt* begin_;
  sqlite3_stmt* commit_;
  sqlite3_stmt* entered_;
  sqlite3_stmt* setState_;
  sqlite3_stmt* confirm_;
  sqlite3_stmt* insertFact_;
  sqlite3_stmt* hasFact_;
  sqlite3_stmt* insertOutbox_;
  sqlite3_stmt* insertInbox_;
  sqlite3_stmt* isKnown_;
  sqlite3_stmt* rule_;
  sqlite3_stmt* insertHeader_;
  sqlite3_stmt* insertLine_;
  sqlite3_stmt* post_;
  sqlite3_stmt* insertRow_;
  sqlite3_stmt* sent_;
  sqlite3_stmt* hashes_;
  sqlite3_stmt* notShown_;
  sqlite3_stmt* hasNotShown_;
  sqlite3_stmt* ofThePairing_;
  sqlite3_stmt* markShown_;
  sqlite3_stmt* markAllShown_;
  sqlite3_stmt* carrying_;
  sqlite3_stmt* setCarrying_;
  sqlite3_stmt* setLookedFor_;
  sqlite3_stmt* lastOfTrail_;
  sqlite3_stmt* appendToTrail_;
};

}  // namespace bench
