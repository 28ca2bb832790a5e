// png_stored.h: RGB565 pictures as 8-bit RGB PNG data, without compression.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zvb {

// One RGB565 row as 8-bit RGB triples (565 values widened by replicating their top bits).
void widen_row(const uint16_t *src, int w, uint8_t *dst);

// Encodes the picture as a PNG file image in memory (malloc'ed, freed by the caller); 1 on
// success.
int png_encode_stored(const uint16_t *pixels, int w, int h, uint8_t **out, size_t *size);

// CRC-32 as PNG chunks use it, continued from `crc` (0 to start).
uint32_t crc32_update(uint32_t crc, const uint8_t *p, size_t n);

}  // namespace zvb
