#include "monitor/FirmwareTable.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using QX_MONITOR::MachineNames;
using QX_MONITOR::ParseFirmwareTable;
using Bytes = std::vector<std::uint8_t>;

// A structure with the numbers of its strings at 4 and 24, and 0 in its other fields.
Bytes Structure(std::uint8_t type, std::uint8_t length, const std::vector<std::string>& strings,
                std::uint8_t manufacturer = 1, std::uint8_t model = 2) {
  Bytes bytes(length, 0);
  bytes[0] = type;
  bytes[1] = length;
  if (length > 4) bytes[4] = manufacturer;
  if (length > 24) bytes[24] = model;
  for (const std::string& text : strings) bytes.insert(bytes.end(), text.c_str(), text.c_str() + text.size() + 1);
  bytes.insert(bytes.end(), strings.empty() ? 2 : 1, 0);
  return bytes;
}

Bytes operator+(Bytes left, const Bytes& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

const Bytes kBios = Structure(0, 24, {"Maker of firmware", "7"});
const Bytes kEnd = Structure(127, 4, {});

TEST(FirmwareTable, TellsManufacturerAndModelOfTheFirstSystem) {
  const struct {
    const char* name;
    Bytes table;
    std::string manufacturer;
    std::string model;
  } cases[] = {
      {"behind others", kBios + Structure(2, 8, {}) + Structure(1, 27, {"Acme", "Anvil"}) + kEnd, "Acme", "Anvil"},
      {"two systems", Structure(1, 27, {"Acme", "Anvil"}) + Structure(1, 27, {"Other", "Name"}), "Acme", "Anvil"},
      {"maker is trimmed, model is not", Structure(1, 27, {" \tAcme Ltd\r\n ", " Anvil "}), "Acme Ltd", " Anvil "},
      {"maker is blank", Structure(1, 27, {"  ", "Anvil"}), "", "Anvil"},
      {"length 26 has a model", Structure(1, 26, {"Acme", "Anvil"}), "Acme", "Anvil"},
      {"length 25 has none", Structure(1, 25, {"Acme", "Anvil"}), "Acme", ""},
      {"numbers are 0", Structure(1, 27, {"Acme", "Anvil"}, 0, 0), "Null String", "Null String"},
      {"no strings", Structure(1, 27, {}), "Null String", "Null String"},
      {"numbers above the last", Structure(1, 27, {"Acme"}, 3, 255) + Structure(2, 8, {"Next"}), "", ""},
      {"system only after the end", kBios + kEnd + Structure(1, 27, {"Acme", "Anvil"}), "Null String", ""},
      {"an end of another length", Structure(127, 6, {}) + Structure(1, 27, {"Acme", "Anvil"}), "Acme", "Anvil"},
      {"the last structure's bytes stand in", kBios + Structure(127, 4, {"\x02", "Of the end"}), "Of the end", ""},
      {"no system", kBios, "Null String", ""},
      {"nothing", {}, "Null String", ""},
      {"lengths of 0", Bytes(64, 0), "Null String", ""},
      {"lengths beyond the end", Bytes(64, 255), "Null String", ""},
      {"a system longer than the table", {1, 255, 0, 0, 1}, "Null String", "Null String"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const MachineNames names = ParseFirmwareTable(c.table);
    EXPECT_EQ(names.manufacturer, c.manufacturer);
    EXPECT_EQ(names.model, c.model);
  }
}

}  // namespace
