#include "standalone/desk/Openings.h"

#include <utility>

namespace desk {

namespace {

Opening OpeningOf(const standalone::Opening& done) {
  Opening opening{.broughtForward = {}, .onlyRead = done.onlyRead};
  if (done.migrated) {
    opening.broughtForward = BroughtForward{.from = done.migrated->from,
                                            .to = done.migrated->to,
                                            .before = done.migrated->before,
                                            .left = done.migrated->left};
  }
  return opening;
}

}  // namespace

standalone::OpenOptions HowToOpen(bool networkShare, std::function<void(const Opening& opening)> tell) {
  standalone::OpenOptions how;
  how.networkShares.mayBeWorkedOn = networkShare;
  if (tell) {
    how.tell = [tell = std::move(tell)](const standalone::Opening& done) {
      tell(OpeningOf(done));
    };
  }
  return how;
}

}  // namespace desk
