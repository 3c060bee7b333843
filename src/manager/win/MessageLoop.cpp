#include "../MessageLoop.h"

#include <process.h>
#include <windows.h>

#include <cstdint>
#include <cstdlib>

#include "log/LogInstance.h"

namespace TESSARIN_LUMARC {

namespace {

using TESSARIN_LOG::Log;

template <class Call>
Call Find(HMODULE module, const char* name) {
  return module == nullptr ? nullptr : reinterpret_cast<Call>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

using SetContextCall = BOOL(WINAPI*)(void* context);
using SetAwarenessCall = HRESULT(WINAPI*)(int awareness);
using SetAwareCall = BOOL(WINAPI*)();
using LockLoaderCall = LONG(WINAPI*)(ULONG flags, ULONG* state, ULONG_PTR* cookie);
using LockProcessCall = void(WINAPI*)();
using HeapOfCCall = std::intptr_t(__cdecl*)();

// The system's values for per-monitor awareness.
void* const kPerMonitor = reinterpret_cast<void*>(-3);
void* const kPerMonitorV2 = reinterpret_cast<void*>(-4);
constexpr int kProcessPerMonitor = 2;

}  // namespace

const char* const kEngineFileSuffix = "\\tessarin-lumarc.dll";

void MessageLoop::Attach() {
  mainThreadId_ = GetCurrentThreadId();
}

void MessageLoop::Run() {
  while (serverRunning_) {
    MSG message = {};
    // A quit message alone does not end the loop; it wakes it to look at the flag.
    if (GetMessageA(&message, nullptr, 0, 0) == 0) continue;
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  for (;;) Sleep(INFINITE);
}

void MessageLoop::Quit() {
  serverRunning_ = false;
  PostThreadMessageA(mainThreadId_, WM_QUIT, 0, 0);
}

// Windows ends the other threads under the locks that the ending thread then needs, to unload and to free. Wine ends
// them wherever they are, and this thread would wait for ever for a lock that one of them had. So there the locks are
// taken between the two steps of exit, in the order of Windows.
void EndProcess() {
  const HMODULE system = GetModuleHandleA("ntdll.dll");
  if (GetProcAddress(system, "wine_get_version") == nullptr) std::exit(0);
  _cexit();
  ULONG_PTR cookie = 0;
  if (const auto lockLoader = Find<LockLoaderCall>(system, "LdrLockLoaderLock")) lockLoader(0, nullptr, &cookie);
  if (const auto lockProcess = Find<LockProcessCall>(system, "RtlAcquirePebLock")) lockProcess();
  const auto heapOfC = Find<HeapOfCCall>(GetModuleHandleA("msvcrt.dll"), "_get_heap_handle");
  if (heapOfC != nullptr) HeapLock(reinterpret_cast<HANDLE>(heapOfC()));
  HeapLock(GetProcessHeap());
  ExitProcess(0);
}

// The modules stay loaded. The oldest call is looked up under a name that systems with other capitals do not have;
// they then stay as they are.
void SetDpiAwareness() {
  const HMODULE user = LoadLibraryExA("user32.dll", nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  const HMODULE shcore = LoadLibraryExA("shcore.dll", nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  const auto setContext = Find<SetContextCall>(user, "SetProcessDpiAwarenessContext");
  const auto setAware = Find<SetAwareCall>(user, "SetProcessDpiAware");
  const auto setAwareness = Find<SetAwarenessCall>(shcore, "SetProcessDpiAwareness");
  if (setContext != nullptr) {
    if (setContext(kPerMonitorV2) == FALSE) {
      setContext(kPerMonitor);
      Log("SET_PROCESS_DPI_AWARENESS_CONTEXT(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE);");
    }
    Log("SET_PROCESS_DPI_AWARENESS_CONTEXT(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2)");
  } else if (setAwareness != nullptr) {
    setAwareness(kProcessPerMonitor);
    Log("SET_PROCESS_DPI_AWARENESS(PROCESS_PER_MONITOR_DPI_AWARE)");
  } else if (setAware != nullptr) {
    setAware();
    Log("SET_PROCESS_DPI_AWARE");
  }
}

}  // namespace TESSARIN_LUMARC
