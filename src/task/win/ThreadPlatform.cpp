#include "../ThreadPlatform.h"

#include <objbase.h>
#include <windows.h>

#include <iterator>
#include <memory>

#include "../Thread.h"
#include "common/win/Utf16.h"

namespace TESSARIN_TASK {

namespace {

struct Launch {
  ThreadEntry entry;
  void* argument;
};

DWORD WINAPI Enter(void* argument) {
  const std::unique_ptr<Launch> own(static_cast<Launch*>(argument));
  own->entry(own->argument);
  return 0;
}

HANDLE FromHandle(std::uintptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

using SetThreadDescriptionCall = HRESULT(WINAPI*)(HANDLE, PCWSTR);

SetThreadDescriptionCall FindSetThreadDescription() {
  const FARPROC call = GetProcAddress(GetModuleHandleA("Kernel32.dll"), "SetThreadDescription");
  return reinterpret_cast<SetThreadDescriptionCall>(reinterpret_cast<void*>(call));
}

constexpr DWORD kNamingException = 0x406D1388;

LONG CALLBACK SwallowNamingException(EXCEPTION_POINTERS* pointers) {
  return pointers->ExceptionRecord->ExceptionCode == kNamingException ? EXCEPTION_CONTINUE_EXECUTION
                                                                      : EXCEPTION_CONTINUE_SEARCH;
}

// Debuggers read a thread's name from this exception. A handler of our own swallows it afterwards.
void TellDebugger(const std::string& name) {
  const ULONG_PTR words[] = {0x1000, reinterpret_cast<ULONG_PTR>(name.c_str()), GetCurrentThreadId(), 0};
  void* const handler = AddVectoredExceptionHandler(1, SwallowNamingException);
  RaiseException(kNamingException, 0, static_cast<DWORD>(std::size(words)), words);
  RemoveVectoredExceptionHandler(handler);
}

}  // namespace

NativeThread StartNativeThread(ThreadEntry entry, void* argument) {
  auto launch = std::make_unique<Launch>(Launch{entry, argument});
  DWORD id = 0;
  const HANDLE handle = CreateThread(nullptr, 0, Enter, launch.get(), 0, &id);
  if (handle == nullptr) return {};
  static_cast<void>(launch.release());  // the thread frees it
  return {reinterpret_cast<std::uintptr_t>(handle), id};
}

void JoinNativeThread(std::uintptr_t handle) {
  WaitForSingleObject(FromHandle(handle), INFINITE);
  CloseHandle(FromHandle(handle));
}

void AbandonNativeThread(std::uintptr_t handle) {
  TerminateThread(FromHandle(handle), 0);
  CloseHandle(FromHandle(handle));
}

void SetNativePriority(std::uintptr_t handle, int priority) {
  SetThreadPriority(FromHandle(handle), priority);
}

struct AutoResetEvent::State {
  HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
};

AutoResetEvent::AutoResetEvent() : state_(std::make_unique<State>()) {}
AutoResetEvent::~AutoResetEvent() {
  CloseHandle(state_->event);
}

void AutoResetEvent::Set() {
  SetEvent(state_->event);
}
void AutoResetEvent::Wait() {
  WaitForSingleObject(state_->event, INFINITE);
}

long InitialiseThreadRuntime() {
  const HRESULT result = CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  return SUCCEEDED(result) ? 0 : result;
}
void UninitialiseThreadRuntime() {
  CoUninitialize();
}

ThreadLocalSlot::ThreadLocalSlot() : index_(TlsAlloc()) {}
ThreadLocalSlot::~ThreadLocalSlot() {
  TlsFree(static_cast<DWORD>(index_));
}
bool ThreadLocalSlot::Works() const {
  return index_ != TLS_OUT_OF_INDEXES;
}
void ThreadLocalSlot::Set(void* value) {
  TlsSetValue(static_cast<DWORD>(index_), value);
}
void* ThreadLocalSlot::Get() const {
  return TlsGetValue(static_cast<DWORD>(index_));
}

void NameCurrentThread(const std::string& name) {
  static const SetThreadDescriptionCall setDescription = FindSetThreadDescription();
  if (setDescription != nullptr) {
    setDescription(GetCurrentThread(), TESSARIN_COMMON::Utf16FromUtf8(name).c_str());
  }
  if (IsDebuggerPresent() != FALSE) TellDebugger(name);
}

}  // namespace TESSARIN_TASK
