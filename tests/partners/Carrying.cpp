#include "partners/Carrying.h"

#include "partners/Books.h"
#include "standalone/desk/Exchange.h"

namespace partners {

Run Carry(Companies& companies, std::size_t who) {
  Run run;
  for (const desk::CarriedWith& with : desk::RunExchange(companies.Open(who))) {
    if (!with.failure.empty()) throw Violation("carrying with " + with.partner + " failed: " + with.failure);
    run.put += with.put;
    run.hasWaiting = run.hasWaiting || !with.waiting.empty();
  }
  return run;
}

}  // namespace partners
