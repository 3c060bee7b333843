#pragma once

#include <cstdint>
#include <vector>

namespace TESSARIN_LUMARC {

// A list of the engine's own. It goes back when this goes out of scope, so after the reply has left.
template <class Element, class Free>
class LentList {
 public:
  LentList(Element* elements, std::int32_t count, const Free& free) : elements_(elements), count_(count), free_(free) {}
  ~LentList() { free_(elements_, count_); }
  LentList(const LentList&) = delete;
  LentList& operator=(const LentList&) = delete;

  // Copies that outlive the list.
  template <class Record>
  [[nodiscard]] std::vector<Record> Copy() const {
    return count_ > 0 ? std::vector<Record>(elements_, elements_ + count_) : std::vector<Record>();
  }

 private:
  Element* elements_;
  std::int32_t count_;
  const Free& free_;
};

}  // namespace TESSARIN_LUMARC
