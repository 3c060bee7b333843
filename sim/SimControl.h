/* What the simulated engine offers tests beside the engine's own entries. Resolve these by name from the loaded
 * library. Any thread may call them; strings are NUL-terminated UTF-8 and are copied. */
#ifndef SIM_CONTROL_H
#define SIM_CONTROL_H

#include <ravo/platform.h>

#include <stdbool.h>
#include <stdint.h>

#if defined(RAVO_ENGINE_BUILD)
#define SIM_API RAVO_EXPORT
#else
#define SIM_API /* looked up by name, or linked */
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Calls back the function that was registered through `entry`, on the caller's thread. `arguments` is a JSON array with
 * one element an argument: numbers, booleans, strings (null for a null pointer), objects for records (members that are
 * left out are zero or empty), and one array for a list together with its count. Bytes are a string. False if the entry
 * is no registration, nothing is registered, the arguments do not fit or the engine was destroyed. */
SIM_API bool RAVO_CALL SimFire(const char* entry, const char* arguments);

/* The same, spread over threads: each of `threads` threads fires `times` times. Returns when all are done, with the
 * number of callbacks that were made. */
SIM_API int64_t RAVO_CALL SimFireFromThreads(const char* entry, const char* arguments, int32_t threads, int32_t times);

/* Hands one frame to the function registered through OnVideoCommonFrame, on the caller's thread. `info` is a JSON
 * object with the members of the frame info. False if nothing is registered or the engine was destroyed. */
SIM_API bool RAVO_CALL SimPushFrame(const char* userId, const char* info, const uint8_t* const* planes, int64_t count,
                                    const int64_t* strides);

/* Adds a parameter text, as ServerOptionSetRTCParams does, without a line in the journal. False if it is no JSON
 * object. */
SIM_API bool RAVO_CALL SimSetParams(const char* text);

/* How often an entry was called so far. */
SIM_API int64_t RAVO_CALL SimCallCount(const char* entry);

/* Waits until an entry was called `count` times in all; false after the bound. */
SIM_API bool RAVO_CALL SimWaitForCall(const char* entry, int64_t count, int64_t boundMs);

/* Copies the journal line of an entry's last call, cut to the buffer and terminated; the result is the line's whole
 * length, 0 if there was no call. */
SIM_API int64_t RAVO_CALL SimLastCall(const char* entry, char* buffer, int64_t sizeBytes);

/* How many violations were reported so far. */
SIM_API int64_t RAVO_CALL SimViolationCount(void);

#ifdef __cplusplus
}
#endif

#endif
