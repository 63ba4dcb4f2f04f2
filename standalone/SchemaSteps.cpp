#include "standalone/SchemaSteps.h"

#include "standalone/Schema.h"

namespace standalone {

SchemaSpan SchemaSteps() noexcept {
  return kSchemaSteps;
}

}  // namespace standalone
