#include "partners/Carrying.h"

#include "partners/Books.h"
#include "standalone/desk/Exchange.h"

namespace partners {

std::size_t Carry(Companies& companies, std::size_t who) {
  std::size_t put = 0;
  for (const desk::CarriedWith& with : desk::RunExchange(companies.Open(who))) {
    if (!with.failure.empty()) throw Violation("carrying with " + with.partner + " failed: " + with.failure);
    put += with.put;
  }
  return put;
}

}  // namespace partners
