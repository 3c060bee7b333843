/* Marks of the C boundaries of Ravo: what leaves a library. All boundaries use the C calling convention. */
#ifndef RAVO_PLATFORM_H
#define RAVO_PLATFORM_H

#if defined(_WIN32)
#define RAVO_EXPORT __declspec(dllexport)
#define RAVO_IMPORT __declspec(dllimport)
#define RAVO_CALL __cdecl
#else
#define RAVO_EXPORT __attribute__((visibility("default")))
#define RAVO_IMPORT
#define RAVO_CALL
#endif

#endif
