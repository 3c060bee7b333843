#include "../SystemInfo.h"

#include <sys/utsname.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

#include "ProcStat.h"

namespace QX_MONITOR {

namespace {

constexpr const char* kFirmwareFile = "/sys/firmware/dmi/tables/DMI";

std::string FirstLine(const char* path) {
  std::string line;
  std::getline(std::ifstream(path), line);
  return line;
}

std::uint64_t HundredNsFromTicks(std::uint64_t ticks) {
  return static_cast<std::uint64_t>(static_cast<double>(NsFromTicks(ticks)) / 100);
}

}  // namespace

SystemCpuTime ReadSystemCpuTime() {
  std::ifstream stat("/proc/stat");
  std::string label;
  std::uint64_t user = 0, nice = 0, system = 0, idle = 0, ioWait = 0, interrupts = 0, softInterrupts = 0, stolen = 0;
  if (!(stat >> label >> user >> nice >> system >> idle >> ioWait >> interrupts >> softInterrupts >> stolen)) return {};
  SystemCpuTime time{};
  time.idle = HundredNsFromTicks(idle + ioWait);
  time.kernel = HundredNsFromTicks(system + idle + ioWait + interrupts + softInterrupts + stolen);
  time.user = HundredNsFromTicks(user + nice);
  time.total = time.kernel + time.user;
  return time;
}

std::string OsVersion() {
  utsname system{};
  uname(&system);
  unsigned major = 0;
  unsigned minor = 0;
  unsigned build = 0;
  static_cast<void>(std::sscanf(system.release, "%u.%u.%u", &major, &minor, &build));
  return std::to_string(major) + '.' + std::to_string(minor) + '.' + std::to_string(build);
}

MachineNames ReadMachineNames() {
  std::ifstream table(kFirmwareFile, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(table), std::istreambuf_iterator<char>()};
  if (bytes.empty()) return {FirstLine("/sys/class/dmi/id/sys_vendor"), FirstLine("/sys/class/dmi/id/product_name")};
  return ParseFirmwareTable({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
}

}  // namespace QX_MONITOR
