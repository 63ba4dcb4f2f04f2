#pragma once

#include <cstdint>
#include <string_view>

namespace standalone {

// Bytes that are no text.
struct Blob {
  std::string_view bytes;
};

// A statement that an engine has prepared. Parameters count from 1, columns from 0. What answers false, and a step that
// has failed, is explained by the database's WhyFailed().
class PreparedStatement {
 public:
  enum class Outcome { kRow, kDone, kFailed };

  PreparedStatement() = default;
  PreparedStatement(const PreparedStatement&) = delete;
  PreparedStatement& operator=(const PreparedStatement&) = delete;
  virtual ~PreparedStatement() = default;

  virtual bool OnlyReads() const noexcept = 0;

  virtual bool Bind(int parameter, std::int64_t value) = 0;
  // Texts and bytes stay alive while the rows are read.
  virtual bool Bind(int parameter, std::string_view value) = 0;
  virtual bool Bind(int parameter, Blob value) = 0;
  virtual bool BindNull(int parameter) = 0;

  virtual Outcome Step() = 0;
  virtual void Reset() noexcept = 0;

  // Of the row that the last step went to; 0 and empty for null. Texts and bytes are valid until the next step.
  virtual std::int64_t Int64(int column) const = 0;
  virtual std::string_view Text(int column) const = 0;
  virtual std::string_view Bytes(int column) const = 0;
};

}  // namespace standalone
