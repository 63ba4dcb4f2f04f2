#pragma once

#include <string>

namespace desk {

// What one of the two companies has said about a request, and what decides nothing.
struct Remark {
  std::string id;          // of its own
  bool isDispute = false;  // of the company that is asked; otherwise a note
  bool isOurs = false;
  std::string text;
};

}  // namespace desk
