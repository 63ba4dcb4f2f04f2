#include "standalone/storage/Statement.h"

#include <stdexcept>
#include <string>

namespace standalone {

Rows Statement::Start() {
  if (prepared_ == nullptr) {
    prepared_ = database_.Prepare(sql_);
    if (prepared_ == nullptr) database_.Fail();
    if (writes_ == Writes::kNothing && !prepared_->OnlyReads()) {
      throw std::logic_error("A statement writes and does not say what: " + std::string(sql_));
    }
  }
  database_.RequireUsable(writes_);
  return {database_, *prepared_};
}

}  // namespace standalone
