#include "standalone/storage/sqlite/SchemaSteps.h"

#include "standalone/storage/sqlite/Schema.h"

namespace standalone {

SchemaSpan SchemaSteps() noexcept {
  return kSchemaSteps;
}

std::string_view SchemaDigest() noexcept {
  return kSchemaDigest;
}

}  // namespace standalone
