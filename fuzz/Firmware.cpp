// The structures that name the machine, as its firmware has them.
#include "Fuzzer.h"
#include "monitor/FirmwareTable.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto names = QX_MONITOR::ParseFirmwareTable({data, size});
  fuzz::Expect(names.manufacturer.size() + names.model.size() <= 2 * size + 22, "names come out of the table");
  return 0;
}
