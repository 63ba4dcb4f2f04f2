#pragma once

// A library that is loaded at run time, for as long as this object lives. One that cannot be loaded fails the test.
class RuntimeLibrary {
 public:
  explicit RuntimeLibrary(const char* file);
  RuntimeLibrary(const RuntimeLibrary&) = delete;
  RuntimeLibrary& operator=(const RuntimeLibrary&) = delete;
  ~RuntimeLibrary();

  // The entry of that name, which fails the test when it is missing.
  template <class Signature>
  Signature* Entry(const char* name) const {
    return reinterpret_cast<Signature*>(Find(name));
  }

  // Whether anybody in this process has that library loaded.
  static bool IsLoaded(const char* file);

 private:
  using AnyEntry = void (*)();
  AnyEntry Find(const char* name) const;

  void* handle_;
};
