// Linked in the place of the program's own steps.
#include "standalone/storage/sqlite/Schema.h"
#include "tests/storage/NextSchema.h"

namespace standalone {

SchemaSpan SchemaSteps() noexcept {
  static const std::vector<const char*> steps =
      ThisVersionAnd({kAddsAColumn, kMakesTransactionsAnew, kReplacesAnIndexAndATrigger, kAddsATable, kDropsATable});
  return steps;
}

std::string_view SchemaDigest() noexcept {
  return {};
}

}  // namespace standalone
