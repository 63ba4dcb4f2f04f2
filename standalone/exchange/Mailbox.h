#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/exchange/Octets.h"

namespace exchange {

// A mailbox as a whole cannot be reached or written: its folder is gone, its disk is full, a right is missing. The
// message names it and says what to do. The books lose nothing by it; carrying goes on with other partners.
class MailboxError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// What taking an envelope has met.
enum class Finding {
  kWhole,
  // Somebody else has taken it, or it never was there.
  kGone,
  // It is still being written, as far as one can tell; it is left for the next time.
  kUnfinished,
  // The system does not let this user read it; it is left, and worth telling.
  kUnreadable,
  // It can never be an envelope, and was not read for that: to be set aside.
  kTooLarge,
  kBroken,
  kNoFile,
};

struct TakenEnvelope {
  Finding finding = Finding::kGone;
  // Those of a whole one, otherwise empty.
  std::string bytes;
  // Why it is not whole, as a sentence for people; it names no file.
  std::string reason;
};

// Where the envelopes of a company lie until who they are addressed to has taken them. Several programs may use one at
// a time, on several machines; what lies there was put by anybody. The order of names is a hint at the order in which
// they were put and no more. All throw MailboxError.
class Mailbox {
 public:
  virtual ~Mailbox() = default;

  // Puts an envelope as a whole or not at all; its name, by which it is asked for.
  virtual std::string Put(std::string_view address, std::string_view bytes) = 0;
  // The names of what lies there for an address, in ascending order; those that others have given come in front, as
  // they do not tell when it was put. Nothing is read for it.
  virtual std::vector<std::string> List(std::string_view address) = 0;
  // One that was listed, unless it is larger than that many bytes. It stays where it is.
  virtual TakenEnvelope Take(std::string_view name, std::size_t most) = 0;
  // Removes one whose content is in the books. One that is gone already is fine.
  virtual void Acknowledge(std::string_view name) = 0;
  // Puts one that is not for the books out of the way, where a person finds it with the reason, and never removes it.
  // One that is gone already is fine.
  virtual void SetAside(std::string_view name, std::string_view reason) = 0;
  // Whether one that was put lies there still.
  virtual bool LiesThere(std::string_view name) = 0;

 protected:
  Mailbox() = default;
  Mailbox(const Mailbox&) = default;
  Mailbox& operator=(const Mailbox&) = default;
};

inline constexpr std::size_t kAddressDigits = 16;

// The address of whoever has that key: the first digits of its SHA-256, in small letters.
std::string AddressOf(const PublicKey& key);

// Whether a text has the form of an address.
bool IsAddress(std::string_view text) noexcept;

}  // namespace exchange
