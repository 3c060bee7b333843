#include "Thread.h"

#include <memory>
#include <new>

#include "ThreadPlatform.h"

namespace TESSARIN_TASK {

namespace {

struct StartRecord {
  Thread* thread;
  Runnable* body;
};

}  // namespace

void EnterThread(Thread& thread, Runnable* body) {
  if (thread.slot_ != nullptr) thread.slot_->Set(&thread);
  NameCurrentThread(thread.name_);
  if (body != nullptr) body->Run(&thread);
}

Thread::Thread(ThreadLocalSlot* slot) : slot_(slot) {}

Thread::~Thread() {
  stop_ = true;
  if (handle_ != 0) AbandonNativeThread(handle_);
}

bool Thread::SetName(const std::string& name, int /*reserved*/) {
  if (IsRunning()) return false;
  name_ = name;
  return true;
}

bool Thread::Start(Runnable* body) try {
  if (IsRunning() || (slot_ != nullptr && !slot_->Works())) return false;
  stop_ = false;
  auto record = std::make_unique<StartRecord>(StartRecord{this, body});
  const NativeThread native = StartNativeThread(
      [](void* argument) {
        const std::unique_ptr<StartRecord> own(static_cast<StartRecord*>(argument));
        EnterThread(*own->thread, own->body);
      },
      record.get());
  if (native.handle == 0) return false;
  static_cast<void>(record.release());  // the thread frees it
  handle_ = native.handle;
  id_ = native.id;
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

void Thread::Join() {
  if (!IsRunning()) return;
  JoinNativeThread(handle_);
  handle_ = 0;
  id_ = 0;
}

void Thread::StopAndJoin() {
  Stop();
  Join();
}

void Thread::SetPriority(int priority) {
  if (IsRunning()) SetNativePriority(handle_, priority);
}

Thread* Thread::Current() const {
  return slot_ != nullptr ? static_cast<Thread*>(slot_->Get()) : nullptr;
}

void Thread::ClearCurrent() {
  if (slot_ != nullptr) slot_->Set(nullptr);
}

}  // namespace TESSARIN_TASK
