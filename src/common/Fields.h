#pragma once

#include <cstddef>
#include <tuple>
#include <type_traits>

// One field list a record, in wire order, serves the reader (JsonNode) and the writer (JsonWriter):
//   template <> inline constexpr auto kFields<ProxyConfig> = Fields(
//       Field{"proxyType", &ProxyConfig::proxyType, Narrow::Int32OnWrite},
//       Field{"proxyIp", &ProxyConfig::proxyIp});
namespace TESSARIN_COMMON {

enum class Narrow {
  None,
  Int32OnWrite,  // an enumeration of the client, held in 64 bits and cast to 32 when written
};

template <class Record, class Member>
struct Field {
  constexpr Field(const char* fieldName, Member Record::*fieldMember, Narrow fieldNarrow = Narrow::None)
      : name(fieldName), member(fieldMember), narrow(fieldNarrow) {}

  const char* name;
  Member Record::*member;
  Narrow narrow;
};

template <class... Rows>
constexpr auto Fields(Rows... rows) {
  return std::tuple<Rows...>(rows...);
}

// The field list of a record type; types without one are no records.
template <class T>
inline constexpr auto kFields = nullptr;

template <class T>
concept Record = !std::is_null_pointer_v<std::remove_cv_t<decltype(kFields<T>)>>;

// Calls visit(field) for each field of a record, in wire order.
template <Record T, class Visit>
constexpr void ForEachField(Visit&& visit) {
  std::apply([&](const auto&... field) { (visit(field), ...); }, kFields<T>);
}

}  // namespace TESSARIN_COMMON
