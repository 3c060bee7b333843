/* The public headers serve programs in C: each compiles as C, alone or beside the others and the system's own. */
#include <ravo/engine_abi.h>
#include <ravo/engine_records.h>
#include <ravo/frame_slot.h>
#include <ravo/log_abi.h>
#include <ravo/platform.h>
#include <ravo/ravo.h>
#if defined(_WIN32)
#include <windows.h>
#endif
