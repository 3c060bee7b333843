#pragma once

namespace TESSARIN_COMMON {

// Base of the process-wide objects. The object is made on first use and is never destroyed: the process ends by
// exit(0) on one thread while others still run, and none of them may find it gone.
template <class T>
class Singleton {
 public:
  static T& GetInstance() {
    static T* const instance = new T;
    return *instance;
  }

  Singleton(const Singleton&) = delete;
  Singleton& operator=(const Singleton&) = delete;

 protected:
  Singleton() = default;
  ~Singleton() = default;
};

}  // namespace TESSARIN_COMMON
