#pragma once

namespace desk {

// What becomes of a change that is dated on a day on which the books are closed: it is refused, or an administrator has
// it made all the same.
enum class ClosedDays { kRefused, kChangedAllTheSame };

}  // namespace desk
