/* What the Ravo library exports for the host process that loads it. All strings are NUL-terminated UTF-8. The library
 * is loaded once and is never unloaded: its threads run until the process ends. */
#ifndef RAVO_RAVO_H
#define RAVO_RAVO_H

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
 * The result is -1 at once if the text is null or the options cannot be read; the latter leaves a line in the log,
 * which without a logger is on standard error. Otherwise the function stays for the life of the server, and the end
 * of the server, by uninit_ravo or by the loss of its client, ends the process with exit(0) from a thread of the
 * server: the result 0 is hardly ever seen. Called once in a process. */
RAVO_API int32_t RAVO_CALL init_ravo(const char* options, RavoUninitCallback uninit_callback);

/* Asks the server to stop and returns at once with 0: the process then ends by itself. May be called from any thread
 * but not from a signal handler. Without a server that runs, the process ends all the same. */
RAVO_API int32_t RAVO_CALL uninit_ravo(void);

/* True: the library is loaded and can be called. Touches nothing; any thread, at any time. */
RAVO_API bool RAVO_CALL ping_ravo(void);

/* Feeds one request into the server as if the client had sent it: `length` bytes of JSON, one message, copied before
 * the call returns. The reply goes to the client. May be called from any thread once init_ravo has begun to serve. */
RAVO_API void RAVO_CALL testCallapi(const char* request, uint32_t length);

/* The types of the exports, for hosts that look them up by name. */
typedef int32_t(RAVO_CALL* RavoInitFunction)(const char* options, RavoUninitCallback uninit_callback);
typedef int32_t(RAVO_CALL* RavoUninitFunction)(void);
typedef bool(RAVO_CALL* RavoPingFunction)(void);
typedef void(RAVO_CALL* RavoTestCallFunction)(const char* request, uint32_t length);

#ifdef __cplusplus
}
#endif

#endif
