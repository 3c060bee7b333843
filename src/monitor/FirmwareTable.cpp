#include "FirmwareTable.h"

#include <algorithm>

namespace QX_MONITOR {

namespace {

constexpr std::uint8_t kSystemType = 1;
constexpr std::uint8_t kEndType = 127;
constexpr std::uint8_t kEndLength = 4;
constexpr std::size_t kManufacturerOffset = 4;
// Hosts know the machines by the string of this byte, and by no model where the structure is not longer than
// kLongestWithoutModel. That the two are one apart is wanted: the names would change for some machines.
constexpr std::size_t kModelOffset = 24;
constexpr std::uint8_t kLongestWithoutModel = 25;

class Table {
 public:
  explicit Table(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

  // The place of the system's structure; without one, the place at which the search ended.
  [[nodiscard]] std::size_t FindSystem() const {
    std::size_t place = 0;
    while (place < bytes_.size() && At(place) != kSystemType) {
      if (At(place) == kEndType && LengthOf(place) == kEndLength) break;
      place = EndOfStrings(place + LengthOf(place));
    }
    return place;
  }

  [[nodiscard]] std::uint8_t At(std::size_t place) const { return place < bytes_.size() ? bytes_[place] : 0; }
  [[nodiscard]] std::uint8_t LengthOf(std::size_t structure) const { return At(structure + 1); }

  // The string whose number stands in a byte of the structure. A number above the last string's gives an empty one.
  [[nodiscard]] std::string StringAt(std::size_t structure, std::size_t offset) const {
    std::size_t place = structure + LengthOf(structure);
    const std::uint8_t number = At(structure + offset);
    if (number == 0 || At(place) == 0) return "Null String";
    for (std::uint8_t i = 1; i < number && At(place) != 0; ++i) place = EndOfString(place) + 1;
    if (At(place) == 0) return "";
    return std::string(bytes_.begin() + static_cast<std::ptrdiff_t>(place),
                       bytes_.begin() + static_cast<std::ptrdiff_t>(EndOfString(place)));
  }

 private:
  // The place of the next NUL, or the table's end.
  [[nodiscard]] std::size_t EndOfString(std::size_t place) const {
    while (place < bytes_.size() && bytes_[place] != 0) ++place;
    return place;
  }

  // The place behind the next two NULs, or the table's end.
  [[nodiscard]] std::size_t EndOfStrings(std::size_t place) const {
    while (place + 1 < bytes_.size() && (bytes_[place] != 0 || bytes_[place + 1] != 0)) ++place;
    return std::min(place + 2, bytes_.size());
  }

  std::span<const std::uint8_t> bytes_;
};

std::string Trimmed(const std::string& text) {
  constexpr const char* kWhite = " \t\n\v\f\r";
  const std::size_t first = text.find_first_not_of(kWhite);
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(kWhite) - first + 1);
}

}  // namespace

MachineNames ParseFirmwareTable(std::span<const std::uint8_t> structures) {
  const Table table(structures);
  const std::size_t system = table.FindSystem();
  MachineNames names;
  if (table.LengthOf(system) > kLongestWithoutModel) names.model = table.StringAt(system, kModelOffset);
  names.manufacturer = Trimmed(table.StringAt(system, kManufacturerOffset));
  return names;
}

}  // namespace QX_MONITOR
