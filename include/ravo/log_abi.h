/* The two calls of the log library, through which all of Ravo's logging goes. Any library with these two calls takes
 * its place; time stamps, threads, files and rotation are its own affair. Both may be called from any thread. */
#ifndef RAVO_LOG_ABI_H
#define RAVO_LOG_ABI_H

#include <stdint.h>

#include "platform.h"

#if defined(RAVO_LOG_BUILD)
#define RAVO_LOG_API RAVO_EXPORT
#else
#define RAVO_LOG_API /* plain, so that an import library and a stand-in linked in serve alike */
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Makes the logger of the process. Called at most once, at start-up. Lines that come earlier go to standard error at
 * once, and into the files when they are opened: a process that ends before has shown them.
 *   version   the option logVersion; stands in the first line of the file
 *   path      folder of the log files, UTF-8; empty for standard error
 *   name      name of the logger, "TESSARIN_RAVO_COMMON"
 *   file      stem of the file names, "Ravo"
 *   flags     none are defined: 0
 *   keep      how many runs keep their files, this one included: 7; 0 for all
 *   flush     1: a line reaches the system within a second; 0: when a buffer is full. In both cases a line of level 4
 *             or more does so at once, and all of them when the process exits.
 * All strings are NUL-terminated and are copied. The result is 0 on success, else negative; lines go to standard error
 * then. */
RAVO_LOG_API int32_t RAVO_CALL CreateTessarinLogger(int32_t version, const char* path, const char* name,
                                                    const char* file, int32_t flags, int32_t keep, int32_t flush);

/* Writes one record.
 *   module    for instance "Ravo"
 *   level     3 progress, 4 unexpected but survivable, 5 failure
 *   text      the finished line, UTF-8, without a line end
 * The result is 0 on success; callers ignore it. */
RAVO_LOG_API int32_t RAVO_CALL TessarinLogWrite(const char* module, int32_t level, const char* text);

#ifdef __cplusplus
}
#endif

#endif
