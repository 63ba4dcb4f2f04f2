#include "standalone/books/FactTable.h"

#include <array>
#include <utility>

#include "standalone/values/Errors.h"

namespace standalone {

namespace {

constexpr std::array<std::pair<FactOrigin, std::string_view>, 3> kOrigins{
    {{FactOrigin::kMade, "made"}, {FactOrigin::kCameBack, "came back"}, {FactOrigin::kPartners, "partner"}}};

std::string_view TextOf(FactOrigin origin) noexcept {
  for (const auto& [known, text] : kOrigins) {
    if (known == origin) return text;
  }
  return {};
}

FactOrigin OriginOf(std::string_view stored) {
  for (const auto& [origin, text] : kOrigins) {
    if (text == stored) return origin;
  }
  throw CompanyFileError("The company file is damaged: it has a fact of an unknown origin.");
}

StoredFact ReadFact(const Rows& rows) {
  return {.pairing = rows.Int32(0),
          .hash = std::string(rows.Bytes(1)),
          .origin = OriginOf(rows.Text(2)),
          .kind = std::string(rows.Text(3)),
          .name = std::string(rows.Text(4)),
          .names = std::string(rows.Text(5)),
          .month = std::string(rows.Text(6)),
          .body = std::string(rows.Bytes(7)),
          .signature = std::string(rows.Bytes(8)),
          .shown = rows.Bool(9),
          .setAside = std::string(rows.Text(10))};
}

void ForEach(Rows rows, const std::function<void(const StoredFact& fact)>& take) {
  while (rows.Step()) take(ReadFact(rows));
}

}  // namespace

// A plus before what is ordered by keeps the engine from walking all facts in that order to find a few by name.
FactTable::FactTable(Database& database)
    : insert_(database, Writes::kBookings,
              "INSERT INTO exchange_fact (pairing_id, hash, origin, kind, name, names, month, body, signature, shown, "
              "set_aside) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11) "
              "ON CONFLICT (pairing_id, hash) DO NOTHING"),
      one_(database,
           "SELECT pairing_id, hash, origin, kind, name, names, month, body, signature, shown, set_aside "
           "FROM exchange_fact WHERE pairing_id = ?1 AND hash = ?2"),
      has_(database, "SELECT 1 FROM exchange_fact WHERE pairing_id = ?1 AND hash = ?2"),
      named_(database,
             "SELECT pairing_id, hash, origin, kind, name, names, month, body, signature, shown, set_aside "
             "FROM exchange_fact WHERE pairing_id = ?1 AND kind = ?2 AND name = ?3 ORDER BY +hash"),
      naming_(database,
              "SELECT pairing_id, hash, origin, kind, name, names, month, body, signature, shown, set_aside "
              "FROM exchange_fact WHERE pairing_id = ?1 AND names <> '' AND names = ?2 ORDER BY +hash"),
      last_(database, "SELECT max(id) FROM exchange_fact"),
      notShown_(database,
                "SELECT pairing_id, hash, origin, kind, name, names, month, body, signature, shown, set_aside "
                "FROM exchange_fact WHERE pairing_id = ?1 AND shown = 0 AND id <= ?2 "
                "AND hash NOT IN (SELECT hash FROM exchange_withheld) ORDER BY id"),
      setAside_(database,
                "SELECT pairing_id, hash, origin, kind, name, names, month, body, signature, shown, set_aside "
                "FROM exchange_fact WHERE pairing_id = ?1 AND set_aside <> '' ORDER BY id"),
      anyNotShown_(database,
                   "SELECT 1 FROM exchange_fact WHERE pairing_id = ?1 AND shown = 0 "
                   "AND hash NOT IN (SELECT hash FROM exchange_withheld) LIMIT 1"),
      count_(database,
             "SELECT (SELECT count(*) FROM exchange_fact WHERE pairing_id = ?1) - (SELECT count(*) "
             "FROM exchange_withheld CROSS JOIN exchange_fact USING (hash) WHERE pairing_id = ?1)"),
      hashes_(database,
              "SELECT hash FROM exchange_fact WHERE pairing_id = ?1 "
              "AND hash NOT IN (SELECT hash FROM exchange_withheld) ORDER BY hash"),
      hashesByMonth_(database,
                     "SELECT month, hash FROM exchange_fact WHERE pairing_id = ?1 "
                     "AND hash NOT IN (SELECT hash FROM exchange_withheld) ORDER BY month, +hash"),
      hashesOfMonth_(database,
                     "SELECT hash FROM exchange_fact WHERE pairing_id = ?1 AND month = ?2 "
                     "AND hash NOT IN (SELECT hash FROM exchange_withheld) ORDER BY +hash"),
      markShown_(database, Writes::kBookings,
                 "UPDATE exchange_fact SET shown = 1 WHERE pairing_id = ?1 AND hash = ?2 AND shown = 0"),
      markNotShown_(database, Writes::kBookings,
                    "UPDATE exchange_fact SET shown = 0 WHERE pairing_id = ?1 AND hash = ?2 AND shown = 1"),
      markMonthNotShown_(database, Writes::kBookings,
                         "UPDATE exchange_fact SET shown = 0 WHERE pairing_id = ?1 AND month = ?2 AND shown = 1"),
      markAllShown_(database, Writes::kBookings,
                    "UPDATE exchange_fact SET shown = 1 WHERE pairing_id = ?1 AND shown = 0 "
                    "AND hash NOT IN (SELECT hash FROM exchange_withheld)"),
      updateSetAside_(database, Writes::kBookings,
                      "UPDATE exchange_fact SET set_aside = ?3 WHERE pairing_id = ?1 AND hash = ?2"),
      lastCameBack_(database, "SELECT coalesce(max(id), 0) FROM exchange_fact WHERE origin = 'came back'"),
      countCameBack_(database, "SELECT count(*) FROM exchange_fact WHERE origin = 'came back' AND id > ?1"),
      cameBack_(database,
                "SELECT pairing_id, hash, origin, kind, name, names, month, body, signature, shown, set_aside "
                "FROM exchange_fact WHERE origin = 'came back' AND id > ?1 ORDER BY id"),
      withhold_(database, Writes::kBookings,
                "INSERT INTO exchange_withheld (hash) VALUES (?1) ON CONFLICT (hash) DO NOTHING"),
      anyWithheld_(database, "SELECT 1 FROM exchange_withheld LIMIT 1"),
      withholdNothing_(database, Writes::kBookings, "DELETE FROM exchange_withheld") {}

bool FactTable::Add(const StoredFact& fact) {
  return insert_.Run(fact.pairing, Blob{fact.hash}, TextOf(fact.origin), fact.kind, fact.name, fact.names, fact.month,
                     Blob{fact.body}, Blob{fact.signature}, fact.shown, fact.setAside) == 1;
}

std::optional<StoredFact> FactTable::Find(std::int32_t pairing, std::string_view hash) {
  Rows rows = one_.Query(pairing, Blob{hash});
  if (!rows.Step()) return std::nullopt;
  return ReadFact(rows);
}

bool FactTable::Has(std::int32_t pairing, std::string_view hash) {
  return has_.Query(pairing, Blob{hash}).Step();
}

void FactTable::ForEachOf(std::int32_t pairing, std::string_view kind, std::string_view name,
                          const std::function<void(const StoredFact& fact)>& take) {
  ForEach(named_.Query(pairing, kind, name), take);
}

void FactTable::ForEachNaming(std::int32_t pairing, std::string_view request,
                              const std::function<void(const StoredFact& fact)>& take) {
  ForEach(naming_.Query(pairing, request), take);
}

std::int64_t FactTable::LastNumber() {
  Rows rows = last_.Query();
  return rows.Step() ? rows.Int64(0) : 0;
}

void FactTable::ForEachNotShown(std::int32_t pairing, std::int64_t lastNumber,
                                const std::function<void(const StoredFact& fact)>& take) {
  ForEach(notShown_.Query(pairing, lastNumber), take);
}

void FactTable::ForEachSetAside(std::int32_t pairing, const std::function<void(const StoredFact& fact)>& take) {
  ForEach(setAside_.Query(pairing), take);
}

bool FactTable::HasNotShown(std::int32_t pairing) {
  return anyNotShown_.Query(pairing).Step();
}

std::uint64_t FactTable::Count(std::int32_t pairing) {
  Rows rows = count_.Query(pairing);
  return rows.Step() ? static_cast<std::uint64_t>(rows.Int64(0)) : 0;
}

void FactTable::ForEachHash(std::int32_t pairing, const std::function<void(std::string_view hash)>& take) {
  for (Rows rows = hashes_.Query(pairing); rows.Step();) take(rows.Bytes(0));
}

void FactTable::ForEachMonthsHash(std::int32_t pairing,
                                  const std::function<void(std::string_view month, std::string_view hash)>& take) {
  for (Rows rows = hashesByMonth_.Query(pairing); rows.Step();) take(rows.Text(0), rows.Bytes(1));
}

void FactTable::ForEachHashOf(std::int32_t pairing, std::string_view month,
                              const std::function<void(std::string_view hash)>& take) {
  for (Rows rows = hashesOfMonth_.Query(pairing, month); rows.Step();) take(rows.Bytes(0));
}

std::int64_t FactTable::LastCameBack() {
  Rows rows = lastCameBack_.Query();
  return rows.Step() ? rows.Int64(0) : 0;
}

std::int64_t FactTable::CountCameBackAfter(std::int64_t number) {
  Rows rows = countCameBack_.Query(number);
  return rows.Step() ? rows.Int64(0) : 0;
}

void FactTable::ForEachCameBackAfter(std::int64_t number, const std::function<void(const StoredFact& fact)>& take) {
  ForEach(cameBack_.Query(number), take);
}

void FactTable::Withhold(std::string_view hash) {
  withhold_.Run(Blob{hash});
}

void FactTable::WithholdNothing() {
  if (anyWithheld_.Query().Step()) withholdNothing_.Run();
}

void FactTable::MarkShown(std::int32_t pairing, std::string_view hash) {
  markShown_.Run(pairing, Blob{hash});
}

bool FactTable::MarkNotShown(std::int32_t pairing, std::string_view hash) {
  return markNotShown_.Run(pairing, Blob{hash}) == 1;
}

void FactTable::MarkMonthNotShown(std::int32_t pairing, std::string_view month) {
  markMonthNotShown_.Run(pairing, month);
}

void FactTable::MarkAllShown(std::int32_t pairing) {
  markAllShown_.Run(pairing);
}

void FactTable::SetAside(std::int32_t pairing, std::string_view hash, std::string_view why) {
  updateSetAside_.Run(pairing, Blob{hash}, why);
}

}  // namespace standalone
