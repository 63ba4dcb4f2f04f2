#include "standalone/storage/Statement.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace standalone {

Rows Statement::Start() {
  if (prepared_ == nullptr) {
    std::unique_ptr<PreparedStatement> prepared = database_.Prepare(sql_);
    if (prepared == nullptr) database_.Fail();
    if (writes_ == Writes::kNothing && !prepared->OnlyReads()) {
      throw std::logic_error("A statement writes and does not say what: " + std::string(sql_));
    }
    prepared_ = std::move(prepared);
  }
  database_.RequireUsable(writes_);
  return {database_, *prepared_};
}

}  // namespace standalone
