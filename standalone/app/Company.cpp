#include "standalone/app/Company.h"

#include "standalone/app/Values.h"

namespace app {

Company::Company(Invocation& invocation, const std::string& file)
    : host_(FilePath(file), invocation.options.user), session_(host_) {
  if (!invocation.options.trace) return;
  host_.Log().SetObserver(
      [&trace = invocation.trace](const Util::Ops::Line& line) { trace.push_back(TraceLineOf(line)); });
}

}  // namespace app
