/* Readers are written in C too. */
#include <ravo/frame_slot.h>

int CopySlotFromC(const void* buffer, size_t bufferBytes, void* data, size_t dataBytes, ravo_frame_header* header);

int CopySlotFromC(const void* buffer, size_t bufferBytes, void* data, size_t dataBytes, ravo_frame_header* header) {
  return ravo_slot_copy(buffer, bufferBytes, data, dataBytes, header);
}
