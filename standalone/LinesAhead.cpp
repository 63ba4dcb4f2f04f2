#include "standalone/LinesAhead.h"

#include "host/Enumerations.h"

namespace standalone {

namespace {

// How many rows the pass goes over in search of a line, before it is rather begun anew at that line's row.
constexpr int kMostPassedOver = 8;

enum Column : int {
  kLine,
  kTransaction,
  kType,
  kDate,
  kName,
  kAccount,
  kAmount,
  kMemo,
};

}  // namespace

LinesAhead::LinesAhead(Database& database)
    : database_(database),
      // The liability line comes from the same walk over the lines as its target line. Journal entries alone are called
      // by their memo.
      pass_(database,
            "SELECT l.id, t.id, t.type, t.date, t.name_id, l.account_id, l.amount, "
            "CASE WHEN t.type = 8 THEN l.memo END "
            "FROM me_transaction m "
            "CROSS JOIN txn_line l ON l.id BETWEEN m.target_id AND m.target_id + (m.txn_type = 8) "
            "CROSS JOIN txn t ON t.id = l.txn_id WHERE m.id >= ?1 ORDER BY m.id"),
      rowOfLine_(database, "SELECT id FROM me_transaction WHERE target_id = ?1"),
      stream_(database) {}

void LinesAhead::Expect() {
  stream_.Close();
  lineId_ = 0;
  isExpecting_ = true;
  unit_ = database_.UnitNumber();
  version_ = database_.ReadVersion();
}

bool LinesAhead::GoTo(std::int32_t lineId) {
  if (!IsExpecting() || lineId < 1) return false;
  if (lineId_ == lineId) return true;
  isLiabilityLine_ = lineId_ != 0 && lineId - 1 == lineId_;
  return isLiabilityLine_ ? Advance() && lineId_ == lineId : GoToTarget(lineId);
}

void LinesAhead::Fill(LineView& line) const {
  const Rows& rows = stream_.Get();
  line.txnId = rows.Int32(kTransaction);
  line.txnType = type_;
  line.date = DateOf(rows.Int64(kDate));
  line.nameId = rows.Int32(kName);
  line.accountId = rows.Int32(kAccount);
  line.amount = rows.Int64(kAmount);
  line.hasMemo = line.txnType == kTxnTypeJournalEntry && !isLiabilityLine_;
  if (line.hasMemo) line.memo = rows.Text(kMemo);
}

bool LinesAhead::IsExpecting() {
  if (!isExpecting_) return false;
  if (unit_ == database_.UnitNumber() && version_ == database_.ReadVersion()) return true;
  stream_.Close();
  isExpecting_ = false;
  return false;
}

bool LinesAhead::GoToTarget(std::int32_t targetId) {
  if (!stream_.IsOpen() && StartAt(0) && lineId_ == targetId) return true;
  for (int passed = 0; passed < kMostPassedOver && Advance(); ++passed) {
    if (lineId_ == targetId) return true;
  }
  Rows row = rowOfLine_.Query(targetId);
  // The pass leaves out a row whose line is gone.
  return row.Step() && StartAt(row.Int64(0)) && lineId_ == targetId;
}

bool LinesAhead::StartAt(std::int64_t rowId) {
  stream_.Close();
  stream_.Open(pass_.Query(rowId));
  isAtEnd_ = false;
  return Advance();
}

bool LinesAhead::Advance() {
  // A step beyond the last row would begin again at the first.
  if (isAtEnd_) return false;
  isAtEnd_ = true;
  lineId_ = 0;
  Rows& rows = stream_.Get();
  if (!rows.Step()) return false;
  isAtEnd_ = false;
  lineId_ = rows.Int32(kLine);
  type_ = rows.Int16(kType);
  return true;
}

}  // namespace standalone
