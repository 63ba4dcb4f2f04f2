#include "standalone/exchange/Netstrings.h"

#include "standalone/exchange/Errors.h"
#include "standalone/values/Characters.h"

namespace exchange {

namespace {

// Of a length: 9,999,999 is more than all that is ever read at once.
constexpr std::size_t kMostDigitsOfNetstrings = 7;

}  // namespace

void AppendNetstring(std::string& out, std::string_view bytes) {
  out += std::to_string(bytes.size());
  out += ':';
  out += bytes;
  out += ',';
}

std::string_view NetstringReader::Take() {
  const std::size_t length = TakeLength();
  if (bytes_.size() - at_ < length) Refuse("is cut off within a text");
  const std::string_view text = bytes_.substr(at_, length);
  at_ += length;
  if (AtEnd()) Refuse("is cut off before the comma of a text");
  if (bytes_[at_] != ',') Refuse("has no comma behind a text");
  ++at_;
  return text;
}

std::size_t NetstringReader::TakeLength() {
  std::size_t length = 0;
  const std::size_t begin = at_;
  while (!AtEnd() && standalone::IsAsciiDigit(bytes_[at_])) {
    if (at_ - begin == kMostDigitsOfNetstrings) Refuse("has a length that is too long");
    length = length * 10 + static_cast<std::size_t>(bytes_[at_++] - '0');
  }
  if (AtEnd()) Refuse("is cut off before a text");
  if (at_ == begin || bytes_[at_] != ':') Refuse("has no length and colon before a text");
  if (bytes_[begin] == '0' && at_ - begin > 1) Refuse("has a length with leading zeros");
  ++at_;
  return length;
}

void NetstringReader::Refuse(std::string_view why) const {
  throw Malformed(std::string(what_) + " " + std::string(why) + ", at byte " + std::to_string(at_) + ".");
}

}  // namespace exchange
