#pragma once

#include <cstddef>
#include <tuple>
#include <type_traits>

#include "Records.h"

namespace sim {

// The parts of a C function's type.
template <class Function>
struct Signature;
template <class R, class... A>
struct Signature<R(A...)> {
  using Result = R;
  using Tuple = std::tuple<A...>;
};
template <class R, class... A>
struct Signature<R (*)(A...)> : Signature<R(A...)> {};

template <class Function>
using ResultOf = typename Signature<Function>::Result;
template <class Function, std::size_t I>
using ArgumentOf = std::tuple_element_t<I, typename Signature<Function>::Tuple>;

// Which arguments of a C function are a list: a pointer to the first element and the number of elements, in this order
// or, where a list ends the arguments, the number first. In JSON the two are one array.
template <class... A>
struct Layout {
  using Tuple = std::tuple<A...>;
  static constexpr std::size_t kSize = sizeof...(A);
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

  template <std::size_t I>
  static constexpr bool IsListPointer() {
    using T = std::tuple_element_t<I, Tuple>;
    if constexpr (std::is_same_v<T, const char*> || !std::is_pointer_v<T>) {
      return false;
    } else {
      return std::is_const_v<std::remove_pointer_t<T>> && kComesInLists<std::remove_const_t<std::remove_pointer_t<T>>>;
    }
  }

  template <std::size_t I>
  static constexpr bool IsNumber() {
    return std::is_integral_v<std::tuple_element_t<I, Tuple>>;
  }

  static constexpr bool CountComesFirst() {
    if constexpr (kSize == 0) {
      return false;
    } else {
      return IsListPointer<kSize - 1>();
    }
  }

  // The place of the list's count; kNone if the argument is no list.
  template <std::size_t I>
  static constexpr std::size_t CountOf() {
    if constexpr (!IsListPointer<I>()) {
      return kNone;
    } else if constexpr (CountComesFirst()) {
      static_assert(I > 0 && IsNumber<I - 1>());
      return I - 1;
    } else {
      static_assert(IsNumber<I + 1>());
      return I + 1;
    }
  }

  // Whether the argument is the count of a list beside it.
  template <std::size_t I>
  static constexpr bool IsCount() {
    bool found = false;
    if constexpr (I > 0) found = found || CountOf<I - 1>() == I;
    if constexpr (I + 1 < kSize) found = found || CountOf<I + 1>() == I;
    return found;
  }
};

}  // namespace sim
