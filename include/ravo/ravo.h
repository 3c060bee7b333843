/* What the Ravo library exports for the host process that loads it. All strings are NUL-terminated UTF-8. The library
 * is loaded once and is never unloaded: its threads run until the process ends. */
#ifndef RAVO_RAVO_H
#define RAVO_RAVO_H

#include <stddef.h>
#include <stdint.h>

#ifndef __cplusplus
#include <stdbool.h>
#endif

#include "platform.h"

#if defined(RAVO_BUILD)
#define RAVO_API RAVO_EXPORT
#else
#define RAVO_API RAVO_IMPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Tells the host that the server stops. Called on the thread that calls uninit_ravo, if that is how the stop begins,
 * and once more, or for the only time, on a thread of the server just before the process ends. A host must take both
 * calls, and must not wait in them for the server's end. */
typedef void(RAVO_CALL* RavoUninitCallback)(void);

/* Runs the server on the calling thread, which becomes the thread of its message loop.
 *   options          JSON text of the start-up options; read before the server starts and not kept
 *   uninit_callback  may be null; kept for the life of the process
 * The result is -1 at once if the text is null, if the options cannot be read, or if the system has no threads or no
 * memory for the server; all but the first leave a line in the log, which without a logger is on standard error.
 * Otherwise the function stays for the life of the server, and the end of the server, by uninit_ravo or by the loss of
 * its client, ends the process with exit(0) from a thread of the server: the result 0 is hardly ever seen. Called once
 * in a process. */
RAVO_API int32_t RAVO_CALL init_ravo(const char* options, RavoUninitCallback uninit_callback);

/* Asks the server to stop and returns at once with 0: the process then ends by itself. May be called from any thread
 * but not from a signal handler. Without a server that runs, the process ends all the same. */
RAVO_API int32_t RAVO_CALL uninit_ravo(void);

/* True: the library is loaded and can be called. Touches nothing; any thread, at any time. */
RAVO_API bool RAVO_CALL ping_ravo(void);

/* Feeds one request into the server as if the client had sent it: `length` bytes of JSON, one message, copied before
 * the call returns. The reply goes to the client. May be called from any thread once init_ravo has begun to serve. */
RAVO_API void RAVO_CALL testCallapi(const char* request, uint32_t length);

/* SAMPLING. The calls below watch the machine, this process and its threads. They need no server and keep no state but
 * the machine's names and the symbols; any thread may call, the ones that walk stacks (getThread*Stack*, sym*) one at a
 * time. Nothing fails with a message: what cannot be read is 0, empty or a status of -1.
 *
 * What a call allocates comes from the heap of this library and goes back to it through the release export that the
 * call names, never through the host's own free. A list with a count of 0 still has an array to release. Strings that
 * are given in are borrowed for the call. Times are in ticks of 100 ns, or in ns, as each says. */

/* Times of all processors together since the start of the machine, in ticks of 100 ns. Made by way of a double. */
typedef struct SystemCpuTime {
  uint64_t total;  /* kernel + user */
  uint64_t idle;   /* counted within kernel too */
  uint64_t kernel; /* includes idle */
  uint64_t user;
} SystemCpuTime;

/* One process. With a status of -1 the rest is 0: no such process, or not ours to read. */
typedef struct ProcessPerformance {
  int64_t status;       /* 0 or -1 */
  uint64_t cpuTime;     /* kernel and user time in ns, divided by the number of processors of the machine */
  uint64_t memoryBytes; /* what the process has in memory: working set, resident set */
} ProcessPerformance;

/* One thread of this process. */
typedef struct ThreadBasicPerformance {
  uint64_t threadId;   /* the system's id */
  char* name;          /* "<name>(<id>)", or "thread <id>" for a thread without a name */
  uint64_t userTime;   /* ns */
  uint64_t kernelTime; /* ns */
  uint64_t reserved;   /* 0 */
} ThreadBasicPerformance;

/* The same with the thread's stack, innermost frame first: "<module>---<file>---<function>". */
typedef struct ThreadExtendPerformance {
  uint64_t threadId;
  char* name;
  uint64_t userTime;
  uint64_t kernelTime;
  uint64_t reserved;
  char** stack; /* never null where stackCount is above 0 */
  int32_t stackCount;
} ThreadExtendPerformance;

/* A list of one of the records above, or of strings (char*): the call says which. */
typedef struct FfiList {
  void* data;
  int32_t count;
} FfiList;

/* For hosts of systems that tell temperatures. All zero. */
typedef struct TemperatureInfo {
  uint64_t reserved[2];
} TemperatureInfo;

#ifdef __cplusplus
#define RAVO_STATIC_ASSERT(condition, text) static_assert(condition, text)
#else
#define RAVO_STATIC_ASSERT(condition, text) _Static_assert(condition, text)
#endif
/* The place of a field, or the size of a record, on 32-bit and 64-bit systems. */
#define RAVO_FIELD(record, field, at32, at64) \
  RAVO_STATIC_ASSERT(offsetof(record, field) == (sizeof(void*) == 4 ? (at32) : (at64)), #record "." #field)
#define RAVO_SIZE(record, size32, size64) \
  RAVO_STATIC_ASSERT(sizeof(record) == (sizeof(void*) == 4 ? (size32) : (size64)), #record)

RAVO_FIELD(SystemCpuTime, total, 0, 0);
RAVO_FIELD(SystemCpuTime, idle, 8, 8);
RAVO_FIELD(SystemCpuTime, kernel, 16, 16);
RAVO_FIELD(SystemCpuTime, user, 24, 24);
RAVO_SIZE(SystemCpuTime, 32, 32);
RAVO_FIELD(ProcessPerformance, status, 0, 0);
RAVO_FIELD(ProcessPerformance, cpuTime, 8, 8);
RAVO_FIELD(ProcessPerformance, memoryBytes, 16, 16);
RAVO_SIZE(ProcessPerformance, 24, 24);
RAVO_FIELD(ThreadBasicPerformance, threadId, 0, 0);
RAVO_FIELD(ThreadBasicPerformance, name, 8, 8);
RAVO_FIELD(ThreadBasicPerformance, userTime, 16, 16);
RAVO_FIELD(ThreadBasicPerformance, kernelTime, 24, 24);
RAVO_FIELD(ThreadBasicPerformance, reserved, 32, 32);
RAVO_SIZE(ThreadBasicPerformance, 40, 40);
RAVO_FIELD(ThreadExtendPerformance, threadId, 0, 0);
RAVO_FIELD(ThreadExtendPerformance, name, 8, 8);
RAVO_FIELD(ThreadExtendPerformance, userTime, 16, 16);
RAVO_FIELD(ThreadExtendPerformance, kernelTime, 24, 24);
RAVO_FIELD(ThreadExtendPerformance, reserved, 32, 32);
RAVO_FIELD(ThreadExtendPerformance, stack, 40, 40);
RAVO_FIELD(ThreadExtendPerformance, stackCount, 44, 48);
RAVO_SIZE(ThreadExtendPerformance, 48, 56);
RAVO_FIELD(FfiList, data, 0, 0);
RAVO_FIELD(FfiList, count, 4, 8);
RAVO_SIZE(FfiList, 8, 16);
RAVO_SIZE(TemperatureInfo, 16, 16);

#undef RAVO_SIZE
#undef RAVO_FIELD
#undef RAVO_STATIC_ASSERT

RAVO_API SystemCpuTime RAVO_CALL getSystemCpuTime(void);

/* The system's version as "<major>.<minor>.<build>", and the maker's and the product's name of the machine. Release
 * with releaseCppStringFFI. The machine's names are read once, an empty one on every call; a machine that tells none
 * has "Null String" or an empty text. */
RAVO_API char* RAVO_CALL getOsVersionString(void);
RAVO_API char* RAVO_CALL getManufacturer(void);
RAVO_API char* RAVO_CALL getModel(void);

/* Any process by its id, of which the low 32 bits count. A process that has ended does not exist, even while somebody
 * holds on to it. */
RAVO_API ProcessPerformance RAVO_CALL getProcessPerformance(uint64_t process_id);
RAVO_API bool RAVO_CALL isProcessExist(uint64_t process_id);

/* The threads of this process as ThreadBasicPerformance, in the system's order. Release with
 * releeaseThreadBasicPerformanceListFFI. */
RAVO_API FfiList RAVO_CALL getThreadPerformance(void);

/* The same as ThreadExtendPerformance. On Windows every other thread is stopped once, for as long as its stack is
 * walked. On Linux it is interrupted by a signal, only until its registers and a piece of its stack are copied; one
 * that does not answer within a second has no stack. The calling thread never has one. Symbols are loaded for the call
 * and dropped after it, also those that symInitializeCurrentProcess had loaded. Release with
 * releeaseThreadExtendPerformanceListFFI.
 *   named_only    threads with a name are listed without a stack
 *   max_frames    the frame at which a walk starts counts but is not listed: at most max_frames - 1 are
 *   stop_modules  file names of modules without their folder, compared to the letter; a walk ends before a frame of
 *                 one of them. May be null with a count of 0. */
RAVO_API FfiList RAVO_CALL getThreadPerformanceWithStackInfo(bool named_only, uint64_t max_frames,
                                                             const char* const* stop_modules, uint32_t stop_count);

/* The stack of one other thread of this process, as strings; empty for the calling thread and for one that cannot be
 * sampled. Call symInitializeCurrentProcess first, once. Release with releaseStringArrayFFI. */
RAVO_API FfiList RAVO_CALL getThreadStack(uint64_t thread_id, uint64_t max_frames, const char* const* stop_modules,
                                          uint32_t stop_count);

/* Loads and drops the symbols of this process. What they cost goes to the info callback of setRustLogger, the error of
 * a load to the error callback. False for a failure, as is a drop where nothing is loaded. */
RAVO_API bool RAVO_CALL symInitializeCurrentProcess(void);
RAVO_API bool RAVO_CALL symCleanupCurrentProcess(void);

/* Free the array of a list and what its elements hold; the FfiList itself is the caller's and is left as it is, so a
 * list is released once. The double e of two names is what hosts link against. */
RAVO_API void RAVO_CALL releeaseThreadBasicPerformanceListFFI(FfiList* list);
RAVO_API void RAVO_CALL releeaseThreadExtendPerformanceListFFI(FfiList* list);
RAVO_API void RAVO_CALL releaseStringArrayFFI(FfiList* list);
RAVO_API void RAVO_CALL releaseCppStringFFI(char* text);

/* They do nothing on the systems that this library runs on, and let a host be the same everywhere. SMCInit gives 0. */
RAVO_API uint64_t RAVO_CALL SMCInit(void);
RAVO_API void RAVO_CALL SMCUnInit(void);
RAVO_API TemperatureInfo RAVO_CALL getTemperature(void);

/* Takes one line of the symbol engine's diagnostics; the text is valid during the call. */
typedef void(RAVO_CALL* RavoLogCallback)(const char* text);

/* Sets who takes the diagnostics of the calls above, in place of those set before. Each may be null, which drops its
 * lines, as all do at first. They are called on the thread that makes the call. Any thread, at any time; a call that
 * runs meanwhile may still use the old ones. */
RAVO_API void RAVO_CALL setRustLogger(RavoLogCallback info, RavoLogCallback warning, RavoLogCallback error);

/* The types of the first exports, for hosts that look them up by name. */
typedef int32_t(RAVO_CALL* RavoInitFunction)(const char* options, RavoUninitCallback uninit_callback);
typedef int32_t(RAVO_CALL* RavoUninitFunction)(void);
typedef bool(RAVO_CALL* RavoPingFunction)(void);
typedef void(RAVO_CALL* RavoTestCallFunction)(const char* request, uint32_t length);

#ifdef __cplusplus
}
#endif

#endif
