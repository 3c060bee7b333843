// What a host asks about the machine, processes and threads, and the releases of all lists. Nothing calls these from
// inside.
#include <ravo/ravo.h>

#include <span>

#include "common/FfiMemory.h"
#include "log/RustLogger.h"
#include "monitor/LibMonitorSystem.h"
#include "monitor/ProcessInfo.h"
#include "monitor/SystemInfo.h"
#include "monitor/ThreadList.h"
#include "monitor/ThreadName.h"

namespace {

using QX_MONITOR::LibMonitorSystem;
using TESSARIN_COMMON::NewList;
using TESSARIN_COMMON::NewText;

template <class T>
std::span<T> Elements(const FfiList& list) {
  return {static_cast<T*>(list.data), static_cast<std::size_t>(list.count)};
}

// The system knows processes by 32 bits, and hosts keep ids in 64.
std::uint32_t SystemId(std::uint64_t id) {
  return static_cast<std::uint32_t>(id);
}

ThreadBasicPerformance RecordOf(std::uint32_t id) {
  const QX_MONITOR::ThreadHandle thread = QX_MONITOR::OpenThreadById(id, QX_MONITOR::ThreadAccess::Query);
  const std::string name = QX_MONITOR::ShownName(ThreadName(thread, id), id);
  const QX_MONITOR::ThreadTimes times = ReadThreadTimes(thread);
  return {id, NewText(name), times.userNs, times.kernelNs, 0};
}

}  // namespace

extern "C" {

SystemCpuTime RAVO_CALL getSystemCpuTime(void) {
  return QX_MONITOR::ReadSystemCpuTime();
}

char* RAVO_CALL getOsVersionString(void) {
  return NewText(QX_MONITOR::OsVersion());
}

char* RAVO_CALL getManufacturer(void) {
  return NewText(LibMonitorSystem::GetInstance().Manufacturer());
}

char* RAVO_CALL getModel(void) {
  return NewText(LibMonitorSystem::GetInstance().Model());
}

ProcessPerformance RAVO_CALL getProcessPerformance(std::uint64_t processId) {
  return QX_MONITOR::ReadProcessPerformance(SystemId(processId));
}

bool RAVO_CALL isProcessExist(std::uint64_t processId) {
  return QX_MONITOR::ProcessExists(SystemId(processId));
}

FfiList RAVO_CALL getThreadPerformance(void) {
  std::vector<ThreadBasicPerformance> records;
  for (const std::uint32_t id : QX_MONITOR::OwnThreads()) records.push_back(RecordOf(id));
  return NewList(records);
}

void RAVO_CALL releeaseThreadBasicPerformanceListFFI(FfiList* list) {
  for (const auto& record : Elements<ThreadBasicPerformance>(*list)) std::free(record.name);
  std::free(list->data);
}

void RAVO_CALL releeaseThreadExtendPerformanceListFFI(FfiList* list) {
  for (const auto& record : Elements<ThreadExtendPerformance>(*list)) {
    std::free(record.name);
    for (char* const frame : std::span(record.stack, static_cast<std::size_t>(record.stackCount))) std::free(frame);
    std::free(record.stack);
  }
  std::free(list->data);
}

void RAVO_CALL releaseStringArrayFFI(FfiList* list) {
  for (char* const text : Elements<char*>(*list)) std::free(text);
  std::free(list->data);
}

void RAVO_CALL releaseCppStringFFI(char* text) {
  std::free(text);
}

std::uint64_t RAVO_CALL SMCInit(void) {
  return 0;
}

void RAVO_CALL SMCUnInit(void) {}

TemperatureInfo RAVO_CALL getTemperature(void) {
  return {};
}

void RAVO_CALL setRustLogger(RavoLogCallback info, RavoLogCallback warning, RavoLogCallback error) {
  TESSARIN_LOG::RustLogger::GetInstance().SetCallbacks(info, warning, error);
}

}  // extern "C"
