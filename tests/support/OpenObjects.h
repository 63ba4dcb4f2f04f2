#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

// The host objects of one kind that are open just now. An object that is used or released while it is not open fails
// the test, and so does one that is still open in the end.
template <class Handle, class Object>
class OpenObjects {
 public:
  explicit OpenObjects(std::string kind) : kind_(std::move(kind)) {}
  OpenObjects(const OpenObjects&) = delete;
  OpenObjects& operator=(const OpenObjects&) = delete;
  ~OpenObjects() { EXPECT_TRUE(objects_.empty()) << "left open: " << objects_.size() << " of kind " << kind_; }

  Handle Open(Object object) {
    const Handle handle{++last_};
    objects_.emplace(handle, std::move(object));
    return handle;
  }

  Object& operator[](Handle handle) {
    EXPECT_TRUE(objects_.contains(handle)) << "used while it is not open: a " << kind_;
    return objects_[handle];
  }

  Object Release(Handle handle) {
    auto node = objects_.extract(handle);
    EXPECT_FALSE(node.empty()) << "released while it is not open: a " << kind_;
    return node.empty() ? Object{} : std::move(node.mapped());
  }

  std::size_t Count() const noexcept { return objects_.size(); }

 private:
  std::string kind_;
  std::uint64_t last_ = 0;
  std::map<Handle, Object> objects_;
};
