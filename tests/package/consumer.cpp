#include <cstdio>
#include <vector>

#include "MultiEntity/AttachHost.h"
#include "MultiEntity/MultiEntityDriver.h"

// Without a host the installed library answers, and grants nothing.
int main() {
  std::vector<DBMultiEntityRelation> relations;
  const MEStatusCode status = MultiEntityDriver::GetRelationsList(relations);
  DetachHost();
  std::printf("relations without a host: status %d\n", status);
  return status == MEStatusFeatureDisabled ? 0 : 1;
}
