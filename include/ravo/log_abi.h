/* The two calls of the log library, through which all of Ravo's logging goes. Any library with these two calls takes
 * its place; time stamps, threads, files and rotation are its own affair. Both may be called from any thread. */
#ifndef RAVO_LOG_ABI_H
#define RAVO_LOG_ABI_H

#include <stdint.h>

#include "platform.h"

#if defined(RAVO_LOG_BUILD)
#define RAVO_LOG_API RAVO_EXPORT
#else
#define RAVO_LOG_API RAVO_IMPORT
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Makes the logger of the process. Called at most once, at start-up; lines that come earlier are kept or go to
 * standard error, and are not lost.
 *   version   the option logVersion
 *   path      folder of the log files, UTF-8; empty for standard error
 *   name      name of the logger, "TESSARIN_RAVO_COMMON"
 *   file      stem of the file names, "Ravo"
 *   The three numbers are 0, 7 and 1: no flags, files of the last 7 runs are kept, and lines are also passed on at
 *   once rather than at the end of a batch.
 * All strings are NUL-terminated and are copied. The result is 0 on success, else negative. */
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
