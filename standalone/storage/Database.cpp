#include "standalone/storage/Database.h"

#include "standalone/storage/PreparedStatement.h"
#include "standalone/values/Errors.h"
#include "standalone/values/Text.h"

namespace standalone {

Database::Database(std::filesystem::path name) : name_(std::move(name)) {}

Database::~Database() = default;

void Database::Begin(Access access) {
  if (inUnit_) throw UnitOfWorkError("A unit of work is already open.");
  if (access == Access::kWrite && !whyNotWriting_.empty()) throw UnitOfWorkError(whyNotWriting_);
  spoiled_ = {};
  mayBeSaved_ = false;
  isPartSaved_ = false;
  if (!BeginTransaction(access)) {
    const Failure failure = WhyFailed();
    if (failure.kind == Failure::Kind::kInUse) throw UnitOfWorkError(failure.complaint);
    Fail(failure);
  }
  inUnit_ = true;
  access_ = access;
  if (access == Access::kRead) return;
  try {
    NoticeOtherWriters();
  } catch (...) {
    Rollback();
    throw;
  }
  readVersionAtBegin_ = readVersion_;
  rowsWrittenAtBegin_ = RowsWritten();
}

void Database::Commit() {
  if (!inUnit_) throw UnitOfWorkError("There is no unit of work to commit.");
  NoticeLostUnit();
  if (IsSpoiled()) ThrowSpoiled();
  DropWhatTheUnitKept();
  const CommitOutcome outcome = CommitTransaction();
  if (outcome != CommitOutcome::kSaved) {
    spoiled_ = WhyFailed();
    mayBeSaved_ = outcome == CommitOutcome::kUnknown && HasUnitWritten();
    ThrowSpoiled();
  }
  inUnit_ = false;
  hasNoticedOthers_ = false;
  if (HasUnitWritten() && onSaved_) onSaved_();
}

// A unit that has asked for nothing to be written ends like any other, and what was read is kept.
void Database::TakeBack() {
  NoticeLostUnit();
  if (inUnit_ && IsSpoiled()) ThrowSpoiled();
  if (inUnit_ && !HasUnitAsked()) {
    Commit();
  } else {
    Rollback();
  }
}

void Database::Rollback() noexcept {
  if (!inUnit_) return;
  inUnit_ = false;
  hasNoticedOthers_ = false;
  ForgetWhatWasRead();
  DropWhatTheUnitKept();
  RollBackTransaction();
}

// A unit sees one state of the company, so that asking once in it is enough.
void Database::NoticeOtherWriters() {
  RequireUsable(Writes::kNothing);
  std::int64_t version = 0;
  if (!ReadOthersVersion(version)) Fail();
  if (version != othersVersion_) {
    ForgetWhatWasRead();
    if (std::string why = WhyOthersStopThis(); !why.empty()) {
      Spoil(std::move(why));
      ThrowSpoiled();
    }
  }
  othersVersion_ = version;
  hasNoticedOthers_ = true;
}

void Database::DropWhatTheUnitKept() noexcept {
  for (UnitBound* const kept : unitBound_) kept->Drop();
}

void Database::ForgetWhatWasRead() noexcept {
  ++readVersion_;
  ++listsVersion_;
}

void Database::RequireUsable(Writes writes) {
  if (!inUnit_) throw UnitOfWorkError("The company file is only worked on within a unit of work.");
  NoticeLostUnit();
  if (IsSpoiled()) ThrowSpoiled();
  if (writes == Writes::kNothing) return;
  if (access_ != Access::kWrite) throw UnitOfWorkError("A unit of work for reading does not write.");
  ++readVersion_;
  if (writes == Writes::kLists) ++listsVersion_;
}

void Database::Fail(const Failure& failure) {
  ForgetWhatWasRead();
  hasNoticedOthers_ = false;
  const bool isConstraint = failure.kind == Failure::Kind::kConstraint;
  if (inUnit_) {
    NoticeLostUnit();
    if (isConstraint && !IsSpoiled()) throw ConstraintViolation(failure.reason);
    spoiled_ = failure;
    ThrowSpoiled();
  }
  if (isConstraint) throw ConstraintViolation(failure.reason);
  if (failure.kind == Failure::Kind::kInUse) throw FileInUse(failure.complaint);
  if (failure.kind == Failure::Kind::kDamaged) throw DamagedFile(failure.complaint, failure.reason);
  throw CompanyFileError(failure.complaint);
}

void Database::Spoil(std::string reason) {
  spoiled_.complaint = "The company file " + PathText(name_) + " cannot be worked on (" + reason + ").";
  spoiled_.reason = std::move(reason);
  spoiled_.kind = Failure::Kind::kOther;
}

void Database::ThrowSpoiled() const {
  if (mayBeSaved_) throw OutcomeUnknown("It is not known whether the work was saved. " + spoiled_.complaint);
  if (spoiled_.kind == Failure::Kind::kDamaged) throw DamagedFile(spoiled_.complaint, spoiled_.reason);
  const std::string saved = isPartSaved_ ? "Only what came before the question was saved. " : "Nothing was saved. ";
  throw UnitOfWorkError(saved + spoiled_.complaint);
}

// The engine rolls back by itself after some failures, a full disk among them. What follows would then find nothing and
// write what nobody commits.
void Database::NoticeLostUnit() {
  if (inUnit_ && !IsSpoiled() && !HasTransaction()) Spoil("the database engine undid the work");
}

UnitBound::UnitBound(Database& database) : database_(database) {
  database_.unitBound_.push_back(this);
}

UnitBound::~UnitBound() {
  std::erase(database_.unitBound_, this);
}

UnitOfWork::UnitOfWork(Database& database, Access access) : database_(database) {
  database_.Begin(access);
}

UnitOfWork::~UnitOfWork() {
  database_.Rollback();
}

void UnitOfWork::Commit() {
  database_.Commit();
}

void UnitOfWork::TakeBack() {
  database_.TakeBack();
}

void OutsideUnit(Database& database, const std::function<void()>& work) {
  if (!database.InUnit()) {
    work();
    return;
  }
  const Access access = database.UnitAccess();
  const bool isPartSaved = database.isPartSaved_ || database.HasUnitWritten();
  const auto beginAgain = [&] {
    database.Begin(access);
    database.isPartSaved_ = isPartSaved;
  };
  database.Commit();
  try {
    work();
  } catch (...) {
    // Whoever catches it goes on working.
    beginAgain();
    throw;
  }
  beginAgain();
}

}  // namespace standalone
