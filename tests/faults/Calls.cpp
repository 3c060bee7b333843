// What stands between the tested code and the system: __wrap_X is called in place of X, and __real_X is X.
#include <dlfcn.h>
#include <poll.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <new>

#include "Faults.h"

using faults::IsToFail;
using faults::kMemory;

namespace {

// Fails with the error instead of the call, if its time has come.
template <class Result, class Real, class... Args>
Result OrFail(const char* call, int error, Result failure, Real real, Args... args) {
  if (!IsToFail(call)) return real(args...);
  errno = error;
  return failure;
}

}  // namespace

// The declarations of the linker's names.
#define RAVO_FAULT_AS(call, error, failure, Result, name, parameters, ...)   \
  Result __real_##name parameters;                                           \
  Result __wrap_##name parameters {                                          \
    return OrFail<Result>(call, error, failure, __real_##name, __VA_ARGS__); \
  }
#define RAVO_FAULT(error, failure, Result, name, ...) RAVO_FAULT_AS(#name, error, failure, Result, name, __VA_ARGS__)

extern "C" {

RAVO_FAULT(EMFILE, -1, int, socket, (int domain, int type, int protocol), domain, type, protocol)
RAVO_FAULT(EACCES, -1, int, bind, (int fd, const sockaddr* address, socklen_t size), fd, address, size)
RAVO_FAULT(EADDRINUSE, -1, int, listen, (int fd, int backlog), fd, backlog)
RAVO_FAULT(EMFILE, -1, int, accept4, (int fd, sockaddr* address, socklen_t* size, int flags), fd, address, size, flags)
RAVO_FAULT(EACCES, -1, int, connect, (int fd, const sockaddr* address, socklen_t size), fd, address, size)
RAVO_FAULT(ENOBUFS, -1, int, shutdown, (int fd, int how), fd, how)
RAVO_FAULT(EMFILE, -1, int, eventfd, (unsigned count, int flags), count, flags)
RAVO_FAULT(EINTR, -1, int, poll, (pollfd * fds, nfds_t count, int timeout), fds, count, timeout)
RAVO_FAULT(ENOBUFS, -1, ssize_t, sendmsg, (int fd, const msghdr* message, int flags), fd, message, flags)
RAVO_FAULT(ENOBUFS, -1, ssize_t, send, (int fd, const void* data, size_t size, int flags), fd, data, size, flags)
RAVO_FAULT(ENOMEM, -1, ssize_t, recvmsg, (int fd, msghdr* message, int flags), fd, message, flags)
RAVO_FAULT(EPERM, -1, int, fchmod, (int fd, mode_t mode), fd, mode)
RAVO_FAULT(ENOMEM, -1, int, fstat, (int fd, struct stat* status), fd, status)
RAVO_FAULT(EINVAL, -1, int, sem_getvalue, (sem_t * semaphore, int* value), semaphore, value)
RAVO_FAULT(ENFILE, -1, int, shm_open, (const char* name, int flags, mode_t mode), name, flags, mode)
RAVO_FAULT(ENOMEM, MAP_FAILED, void*, mmap,
           (void* address, size_t size, int protection, int flags, int fd, off_t offset), address, size, protection,
           flags, fd, offset)
RAVO_FAULT(EOVERFLOW, -1, int, sem_post, (sem_t * semaphore), semaphore)
RAVO_FAULT(ENOLCK, -1, int, flock, (int fd, int operation), fd, operation)
RAVO_FAULT(ENOBUFS, -1, int, getsockopt, (int fd, int level, int option, void* value, socklen_t* size), fd, level,
           option, value, size)
RAVO_FAULT(EACCES, -1, int, unlink, (const char* path), path)
RAVO_FAULT(EACCES, -1, int, shm_unlink, (const char* name), name)
RAVO_FAULT(EACCES, -1, int, sem_unlink, (const char* name), name)
RAVO_FAULT(EINVAL, -1, int, sem_close, (sem_t * semaphore), semaphore)
RAVO_FAULT(ENOMEM, -1, int, munmap, (void* address, size_t size), address, size)
RAVO_FAULT(ENOMEM, nullptr, void*, dlopen, (const char* file, int flags), file, flags)
RAVO_FAULT(ENOMEM, nullptr, void*, dlsym, (void* library, const char* name), library, name)
RAVO_FAULT_AS(kMemory, ENOMEM, nullptr, void*, malloc, (size_t size), size)
RAVO_FAULT_AS(kMemory, ENOMEM, nullptr, void*, realloc, (void* memory, size_t size), memory, size)

// These give the error as their result.
RAVO_FAULT(0, ENOSPC, int, posix_fallocate, (int fd, off_t offset, off_t size), fd, offset, size)
RAVO_FAULT(0, EAGAIN, int, pthread_create,
           (pthread_t * thread, const pthread_attr_t* attributes, void* (*entry)(void*), void* argument), thread,
           attributes, entry, argument)
RAVO_FAULT(0, EAGAIN, int, pthread_key_create, (pthread_key_t * key, void (*end)(void*)), key, end)

// Whatever it says, the descriptor is gone.
int __real_close(int fd);
int __wrap_close(int fd) {
  const int result = __real_close(fd);
  return OrFail<int>("close", EIO, -1, [&] { return result; });
}

int __real_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = va_arg(rest, mode_t);
  va_end(rest);
  return OrFail<int>("open", EMFILE, -1, __real_open, path, flags, mode);
}

sem_t* __real_sem_open(const char* name, int flags, ...);
sem_t* __wrap_sem_open(const char* name, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = va_arg(rest, mode_t);
  const unsigned value = va_arg(rest, unsigned);
  va_end(rest);
  return OrFail<sem_t*>("sem_open", ENOSPC, SEM_FAILED, __real_sem_open, name, flags, mode, value);
}

}  // extern "C"

// All C++ memory of the process, the standard library's own included.
void* operator new(std::size_t size) {
  void* const memory = IsToFail(kMemory) ? nullptr : __real_malloc(size != 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t size) {
  return operator new(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
  const auto bytes = static_cast<std::size_t>(alignment);
  void* const memory = IsToFail(kMemory) ? nullptr : std::aligned_alloc(bytes, (size + bytes - 1) / bytes * bytes);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void operator delete(void* memory, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  std::free(memory);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  std::free(memory);
}
