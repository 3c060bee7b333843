/* A frame slot: the shared memory through which one video stream's frames leave Ravo. Ravo writes, any process of the
 * same user reads. C11 or C++.
 *
 * NAMES. The event "shareMemoryUpdate" announces a slot's path, "<digits>_<digits>_<digits>"; a path is never used
 * twice by one server.
 *                 Windows                            Linux
 *   segment       file mapping "<path>"              shm_open("/<path>")
 *   main event    auto-reset "qx_ctl_<path>_main"    semaphore "/qx_ctl_<path>_main", its value never above 1
 *   side event    auto-reset "qx_ctl_<path>_side"    semaphore "/qx_ctl_<path>_side", likewise
 * Both events are set after each frame. An event wakes one waiter, so that each serves one reader.
 *
 * BYTES. A segment holds one buffer: the header below, then the planes without gap or padding. All words are 32 bits,
 * little-endian. Apart from the waiting on events nothing flows back to the writer; it never waits for a reader.
 *
 * ORDER OF STORES of the writer, for frame number N:
 *   1. reservedFlag, width, stride1, stride2, rotation, flip, renderTimeMs, colorSpace
 *   2. state = RAVO_SLOT_WRITING
 *   3. height, stride0
 *   4. the planes
 *   5. format (not stored for RAVO_FRAME_NO_PIXELS)
 *   6. counter = N
 *   7. state = RAVO_SLOT_COMPLETE, then both events
 *
 * READING. ravo_slot_copy does all of this; the pieces are there for readers that convert while they read.
 *   a. ravo_slot_begin: state is COMPLETE; take the header; its planes lie within the segment.
 *   b. Copy the planes. They may change meanwhile, so nothing is to be decided by them yet.
 *   c. ravo_slot_unchanged: state is COMPLETE still, and then all other words are what they were. If not, the copy is
 *      torn: throw it away and wait for the event, which the writer sets when it is done.
 * The order within c matters, and is why a bare comparison of two headers would not do: the counter must be loaded
 * after the state. Had any byte of a copy come from step 4 of a later frame, then the state was WRITING before, so the
 * second look finds WRITING, or finds COMPLETE of that later frame and then its counter.
 *
 * WHAT REMAINS. The words of step 1 change while the state still says COMPLETE. A writer that is held up between its
 * first store and step 2, for as long as a whole read takes, shows width, stride1, stride2, rotation, flip, render time
 * and colour space of frame N + 1 with the pixels, height, stride0, format and counter of frame N; both looks find the
 * same. Pixels are never mixed and no read leaves the segment. Two things contain it:
 *   - These words, the render time apart, change seldom, and width and rotation not without an announcement. While they
 *     equal those of the last frame that was accepted, at worst the render time is that of the next frame.
 *   - When they differ, look once more after some milliseconds with ravo_slot_unchanged before believing them: a
 *     writer that was held up has gone on to WRITING by then. */
#ifndef RAVO_FRAME_SLOT_H
#define RAVO_FRAME_SLOT_H

#include <stddef.h>
#include <stdint.h>
#include <string.h>
#if defined(_MSC_VER) && !defined(__clang__)
#include <intrin.h>
#endif

#ifdef __cplusplus
extern "C" {
#define RAVO_SLOT_STATIC_ASSERT(condition, text) static_assert(condition, text)
#else
#define RAVO_SLOT_STATIC_ASSERT(condition, text) _Static_assert(condition, text)
#endif

#define RAVO_SLOT_EVENT_PREFIX "qx_ctl_"
#define RAVO_SLOT_MAIN_SUFFIX "_main"
#define RAVO_SLOT_SIDE_SUFFIX "_side"

/* Values of ravo_frame_header.state; 0 before the first frame. */
enum { RAVO_SLOT_WRITING = 1, RAVO_SLOT_COMPLETE = 2 };

/* Values of ravo_frame_header.format, and the bytes of their planes. The halves are rounded down. H is the height, Sn
 * the strides. Ravo itself sends RAVO_FRAME_I420 only: luma, then two chroma planes of half height. */
enum {
  RAVO_FRAME_I420 = 0,     /* H*S0, H*S1/2, H*S2/2 */
  RAVO_FRAME_SINGLE = 1,   /* H*S0 */
  RAVO_FRAME_NV12 = 2,     /* H*S0, H*S1/2 */
  RAVO_FRAME_NO_PIXELS = 3 /* header alone; the word format keeps what the buffer held */
};

/* The header at the start of a buffer. Ravo alone writes it. */
typedef struct ravo_frame_header {
  uint32_t counter;      /*  0: number of the frame within the slot, from 0, modulo 2^32 */
  uint32_t state;        /*  4: RAVO_SLOT_WRITING or RAVO_SLOT_COMPLETE */
  uint32_t reservedFlag; /*  8: 0 */
  uint32_t width;        /* 12: pixels */
  uint32_t height;       /* 16: pixels; rows of plane 0 */
  uint32_t stride0;      /* 20: bytes from row to row of plane 0 */
  uint32_t stride1;      /* 24: the same of plane 1 */
  uint32_t stride2;      /* 28: the same of plane 2 */
  uint32_t rotation;     /* 32: as the engine gives it */
  uint32_t flip;         /* 36: 0 or 1 */
  uint32_t renderTimeMs; /* 40: milliseconds, the low 32 bits */
  uint32_t format;       /* 44: RAVO_FRAME_I420 and so on */
  uint32_t colorSpace;   /* 48: as the engine gives it */
} ravo_frame_header;

#define RAVO_SLOT_HEADER_BYTES 52u
#define RAVO_SLOT_WORDS (RAVO_SLOT_HEADER_BYTES / 4u)

RAVO_SLOT_STATIC_ASSERT(sizeof(ravo_frame_header) == RAVO_SLOT_HEADER_BYTES, "the header has 52 bytes");
RAVO_SLOT_STATIC_ASSERT(offsetof(ravo_frame_header, state) == 4, "state");
RAVO_SLOT_STATIC_ASSERT(offsetof(ravo_frame_header, width) == 12, "width");
RAVO_SLOT_STATIC_ASSERT(offsetof(ravo_frame_header, stride0) == 20, "stride0");
RAVO_SLOT_STATIC_ASSERT(offsetof(ravo_frame_header, rotation) == 32, "rotation");
RAVO_SLOT_STATIC_ASSERT(offsetof(ravo_frame_header, format) == 44, "format");
RAVO_SLOT_STATIC_ASSERT(offsetof(ravo_frame_header, colorSpace) == 48, "colorSpace");

/* Outcomes of the calls below. */
enum {
  RAVO_SLOT_OK = 0,
  RAVO_SLOT_BUSY = 1, /* no complete frame at this moment, or the copy is torn: wait for the event, try again */
  RAVO_SLOT_BAD = 2,  /* the header describes more than the segment holds */
  RAVO_SLOT_SMALL = 3 /* the frame does not fit the destination */
};

/* A load that later loads cannot overtake. `word` is aligned to 4 bytes. */
static inline uint32_t ravo_slot_load(const uint32_t* word) {
#if defined(_MSC_VER) && !defined(__clang__)
  return *(const volatile uint32_t*)word; /* x86, where volatile loads acquire */
#else
  return __atomic_load_n(word, __ATOMIC_ACQUIRE);
#endif
}

/* Keeps the loads of a copy before the loads that check it. x86 keeps loads in order, the compiler has to be told. */
static inline void ravo_slot_copy_done(void) {
#if defined(_MSC_VER) && !defined(__clang__)
  _ReadWriteBarrier();
#elif defined(__x86_64__) || defined(__i386__)
  __atomic_signal_fence(__ATOMIC_SEQ_CST);
#else
  __atomic_thread_fence(__ATOMIC_ACQUIRE);
#endif
}

/* Bytes of plane 0, 1 or 2; 0 for a plane that the format does not have. Cannot overflow. */
static inline uint64_t ravo_frame_plane_bytes(const ravo_frame_header* header, unsigned plane) {
  const uint64_t rows = header->height;
  const uint32_t format = header->format;
  if (plane == 0 && format <= RAVO_FRAME_NV12) return rows * header->stride0;
  if (plane == 1 && (format == RAVO_FRAME_I420 || format == RAVO_FRAME_NV12)) return rows * header->stride1 / 2;
  if (plane == 2 && format == RAVO_FRAME_I420) return rows * header->stride2 / 2;
  return 0;
}

/* Bytes of all planes, or UINT64_MAX if they are more than `limit`. */
static inline uint64_t ravo_frame_data_bytes(const ravo_frame_header* header, uint64_t limit) {
  uint64_t left = limit;
  for (unsigned plane = 0; plane < 3; ++plane) {
    const uint64_t bytes = ravo_frame_plane_bytes(header, plane);
    if (bytes > left) return UINT64_MAX;
    left -= bytes;
  }
  return limit - left;
}

/* Whether the buffer still holds the frame whose header was taken, so that what was copied in between is whole. */
static inline int ravo_slot_unchanged(const void* buffer, const ravo_frame_header* header) {
  const uint32_t* words = (const uint32_t*)buffer;
  uint32_t taken[RAVO_SLOT_WORDS];
  memcpy(taken, header, sizeof(*header));
  ravo_slot_copy_done();
  if (ravo_slot_load(&words[1]) != RAVO_SLOT_COMPLETE) return 0;
  if (ravo_slot_load(&words[0]) != taken[0]) return 0; /* after the state, see above */
  for (unsigned i = 2; i < RAVO_SLOT_WORDS; ++i) {
    if (ravo_slot_load(&words[i]) != taken[i]) return 0;
  }
  return 1;
}

/* Takes the header of a complete frame. `buffer`, aligned to 4 bytes, is the start of the mapped buffer, and
 * `bufferBytes` how much of it is really mapped: not what anybody announced. After RAVO_SLOT_OK all planes that the
 * header tells of lie within the buffer. The header is our own copy: whatever the memory does later, decide by it. */
static inline int ravo_slot_begin(const void* buffer, size_t bufferBytes, ravo_frame_header* header) {
  const uint32_t* words = (const uint32_t*)buffer;
  uint32_t taken[RAVO_SLOT_WORDS];
  if (bufferBytes < RAVO_SLOT_HEADER_BYTES) return RAVO_SLOT_BAD;
  taken[1] = ravo_slot_load(&words[1]);
  if (taken[1] != RAVO_SLOT_COMPLETE) return RAVO_SLOT_BUSY;
  taken[0] = ravo_slot_load(&words[0]);
  for (unsigned i = 2; i < RAVO_SLOT_WORDS; ++i) taken[i] = ravo_slot_load(&words[i]);
  memcpy(header, taken, sizeof(*header));
  if (ravo_frame_data_bytes(header, bufferBytes - RAVO_SLOT_HEADER_BYTES) != UINT64_MAX) return RAVO_SLOT_OK;
  return ravo_slot_unchanged(buffer, header) ? RAVO_SLOT_BAD : RAVO_SLOT_BUSY; /* half old, half new words pass */
}

/* Copies the planes of the present frame to `data`, one behind the other, and its header to `header`. What is in them
 * counts only after RAVO_SLOT_OK. */
static inline int ravo_slot_copy(const void* buffer, size_t bufferBytes, void* data, size_t dataBytes,
                                 ravo_frame_header* header) {
  const int begun = ravo_slot_begin(buffer, bufferBytes, header);
  if (begun != RAVO_SLOT_OK) return begun;
  const uint64_t bytes = ravo_frame_data_bytes(header, dataBytes);
  if (bytes == UINT64_MAX) return RAVO_SLOT_SMALL;
  memcpy(data, (const uint8_t*)buffer + RAVO_SLOT_HEADER_BYTES, (size_t)bytes);
  return ravo_slot_unchanged(buffer, header) ? RAVO_SLOT_OK : RAVO_SLOT_BUSY;
}

#ifdef __cplusplus
}
#endif

#endif
