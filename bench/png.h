// A minimal PNG writer for the benchmark chart: 8-bit palette images, one
// zlib stream of fixed-Huffman deflate blocks.  No external library: the
// chart is drawn where only the C++ runtime is at hand.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace luxbench {

struct Rgb {
  uint8_t r, g, b;
};

// A palette image: one byte per pixel, an index into `palette`.
struct IndexedImage {
  int width = 0, height = 0;
  std::vector<Rgb> palette;     // at most 256 entries
  std::vector<uint8_t> pixels;  // width * height, row by row from the top
};

uint32_t crc32(const uint8_t* data, size_t size, uint32_t crc = 0);
uint32_t adler32(const uint8_t* data, size_t size, uint32_t adler = 1);

// A zlib stream (RFC 1950) holding `data` in one fixed-Huffman deflate block
// (RFC 1951).  Matches are looked for only at distance 1 and at distance
// `stride`: runs along a row and repeats of the row above, which is where a
// chart's redundancy lies.
std::vector<uint8_t> zlib_compress(const std::vector<uint8_t>& data, size_t stride);

// The PNG file (signature, IHDR, PLTE, IDAT, IEND) of the image.
std::vector<uint8_t> encode_png(const IndexedImage& img);
bool write_png(const std::string& path, const IndexedImage& img);

}  // namespace luxbench
