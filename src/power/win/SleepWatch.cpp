#include "../SleepWatch.h"

#include <windows.h>

#include <utility>

#include "SystemVersion.h"
#include "log/LogInstance.h"

namespace TESSARIN_POWER {

namespace {

using TESSARIN_LOG::Log;

constexpr const wchar_t* kClass = L"MyPowerMessageWindow";

using RegisterCall = HANDLE(WINAPI*)(HANDLE recipient, DWORD flags);
using UnregisterCall = BOOL(WINAPI*)(HANDLE registration);

void LogFailure(const char* call) {
  Log("{} fail errorcode:{}", call, GetLastError());
}

// A call of user32.dll by its name, with the lines that its lack leaves.
template <class Call>
Call FindUserCall(const char* name) {
  const HMODULE user = GetModuleHandleW(L"user32.dll");
  if (user == nullptr) {
    LogFailure("GetModuleHandleW user32.dll");
    return nullptr;
  }
  const auto call = FindCall<Call>(user, name);
  if (call == nullptr) Log("GetProcAddress {} fail errorcode:{}", name, GetLastError());
  return call;
}

// A hidden window, since the system tells windows. Its messages come through the queue of the thread that made it:
// nobody gets them unless that thread takes them out, which is what Serve does.
class MessageWindow final : public SleepWatch {
 public:
  MessageWindow() : wake_(CreateEventW(nullptr, FALSE, FALSE, nullptr)) {}
  ~MessageWindow() override { CloseHandle(wake_); }

  void Open(SleepCallbacks callbacks) override;
  void Close() override;
  [[nodiscard]] bool IsOpen() const override { return window_ != nullptr; }
  void Serve() override;
  void Wake() override { SetEvent(wake_); }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam);
  bool CreateMessageWindow();
  bool RegisterWindowClass();
  void UnregisterWindowClass(const char* line);
  void DestroyMessageWindow();
  void RegisterNotification();
  void UnregisterNotification();

  HWND window_ = nullptr;
  HINSTANCE module_ = nullptr;
  HANDLE notification_ = nullptr;
  const HANDLE wake_;
  SleepCallbacks callbacks_;
};

void MessageWindow::Open(SleepCallbacks callbacks) {
  callbacks_ = std::move(callbacks);
  if (notification_ != nullptr) {
    Log("powerNotifyHandle is not null, already started");
    return;
  }
  if (!CreateMessageWindow()) return;
  if (!IsWindows8OrLater()) {
    Log("win7 or older os version");  // the window is told by the system's broadcast
    return;
  }
  RegisterNotification();
}

void MessageWindow::RegisterNotification() {
  const auto registerFor = FindUserCall<RegisterCall>("RegisterSuspendResumeNotification");
  if (registerFor == nullptr) return;
  notification_ = registerFor(window_, DEVICE_NOTIFY_WINDOW_HANDLE);
  if (notification_ != nullptr) return;
  LogFailure("RegisterSuspendResumeNotification");
  DestroyMessageWindow();
}

void MessageWindow::Close() {
  UnregisterNotification();
  if (window_ != nullptr) DestroyMessageWindow();
}

void MessageWindow::UnregisterNotification() {
  if (notification_ == nullptr) return;
  const auto unregister = FindUserCall<UnregisterCall>("UnregisterSuspendResumeNotification");
  const HANDLE notification = std::exchange(notification_, nullptr);
  if (unregister == nullptr) return;
  if (unregister(notification) == FALSE) LogFailure("UnregisterSuspendResumeNotification");
}

bool MessageWindow::CreateMessageWindow() {
  if (window_ != nullptr) return true;  // from a start without the notification
  if (!RegisterWindowClass()) return false;
  window_ =
      CreateWindowExW(WS_EX_NOACTIVATE, kClass, nullptr, WS_POPUP, 0, 0, 0, 0, nullptr, nullptr, module_, nullptr);
  if (window_ == nullptr) {
    Log("CreateWindowEx fail, errorcode:{}", GetLastError());
    UnregisterWindowClass("UnregisterClass fail, errorcode:{}");
    return false;
  }
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  Log("createPowerMessageWindow success");
  return true;
}

// The module that holds the procedure, which is this library and not the program.
bool MessageWindow::RegisterWindowClass() {
  constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  if (GetModuleHandleExA(kFlags, reinterpret_cast<LPCSTR>(&Procedure), &module_) == FALSE) {
    Log("GetModuleHandleExA fail, errorcode:{}", GetLastError());
    return false;
  }
  WNDCLASSEXW windowClass = {};
  windowClass.cbSize = sizeof windowClass;
  windowClass.lpfnWndProc = &Procedure;
  windowClass.hInstance = module_;
  windowClass.lpszClassName = kClass;
  if (RegisterClassExW(&windowClass) != 0) return true;
  Log("RegisterClassEx fail, errorcode:{}", GetLastError());
  return false;
}

void MessageWindow::UnregisterWindowClass(const char* line) {
  if (UnregisterClassW(kClass, module_) == FALSE) Log(fmt::runtime(line), GetLastError());
}

void MessageWindow::DestroyMessageWindow() {
  if (DestroyWindow(std::exchange(window_, nullptr)) == FALSE) LogFailure("DestroyWindow");
  UnregisterWindowClass("UnregisterClass fail errorcode:{}");
  Log("destroyPowerMessageWindow success");
}

void MessageWindow::Serve() {
  MsgWaitForMultipleObjects(1, &wake_, FALSE, INFINITE, QS_ALLINPUT);
  MSG message = {};
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

LRESULT CALLBACK MessageWindow::Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message != WM_POWERBROADCAST) return DefWindowProcA(window, message, wparam, lparam);
  const auto* self = reinterpret_cast<const MessageWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self != nullptr) ProcessPowerEvent(static_cast<PowerEvent>(wparam), self->callbacks_);
  return TRUE;
}

}  // namespace

std::unique_ptr<SleepWatch> MakeSystemSleepWatch() {
  return std::make_unique<MessageWindow>();
}

}  // namespace TESSARIN_POWER
