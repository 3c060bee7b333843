#pragma once

#include <sys/types.h>

#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <string_view>

#include "../Singleton.h"

namespace TESSARIN_COMMON {

// The names that this process keeps in the system, so that they go away when it ends with exit, on whatever thread and
// with clients and frames still coming in: what is open or mapped stays, its name is removed, and nothing new can be
// named from then on. Any thread.
class NameRegistry : public Singleton<NameRegistry> {
 public:
  enum class Kind { Socket, Segment, Semaphore, OwnerMark };  // at the end removed in this order

  // Runs `make`, which creates the object, and remembers its name if it returns true. False, with errno set, if that
  // fails, if there is no memory for the name, or if the process is ending.
  [[nodiscard]] bool Add(Kind kind, const std::string& name, const std::function<bool()>& make);
  // Removes the object's name from the system, unless the end of the process did so.
  void Remove(Kind kind, const std::string& name) noexcept;

 private:
  friend class Singleton<NameRegistry>;

  struct Entry {
    Kind kind;
    std::string name;
  };
  // A name is looked up without a copy, since destructors do so.
  struct EntryView {
    Kind kind;
    std::string_view name;
  };
  struct Before {
    using is_transparent = void;
    template <class Left, class Right>
    bool operator()(const Left& left, const Right& right) const {
      if (left.kind != right.kind) return left.kind < right.kind;
      return std::string_view(left.name) < std::string_view(right.name);
    }
  };

  NameRegistry();
  void End();

  const pid_t process_;  // a forked child must not remove its parent's names
  std::mutex mutex_;
  std::set<Entry, Before> names_;
  bool ending_ = false;
};

}  // namespace TESSARIN_COMMON
