#include "partners/Carrying.h"

#include "partners/Books.h"
#include "standalone/desk/Exchange.h"

namespace partners {

void Carry(Companies& companies, std::size_t who) {
  for (const desk::CarriedWith& with : desk::RunExchange(companies.Open(who))) {
    if (!with.failure.empty()) throw Violation("carrying with " + with.partner + " failed: " + with.failure);
  }
}

}  // namespace partners
