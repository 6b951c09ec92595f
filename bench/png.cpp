#include "png.h"

#include <algorithm>
#include <array>
#include <fstream>

namespace luxbench {

namespace {

// CRC-32 of ISO 3309 (reflected polynomial 0xEDB88320), a byte at a time.
std::array<uint32_t, 256> crc_table() {
  std::array<uint32_t, 256> t{};
  for (uint32_t n = 0; n < 256; ++n) {
    uint32_t c = n;
    for (int k = 0; k < 8; ++k) c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
    t[n] = c;
  }
  return t;
}

// Deflate writes its bit fields from the least significant bit of each byte.
class BitWriter {
 public:
  explicit BitWriter(std::vector<uint8_t>& out) : out_(out) {}
  void bits(uint32_t value, int count) {
    for (int i = 0; i < count; ++i) push((value >> i) & 1);
  }
  // Huffman codes go most significant bit first.
  void code(uint32_t value, int count) {
    for (int i = count - 1; i >= 0; --i) push((value >> i) & 1);
  }
  void flush() {
    if (used_) out_.push_back(acc_);
    acc_ = 0;
    used_ = 0;
  }

 private:
  void push(uint32_t bit) {
    acc_ |= uint8_t(bit << used_);
    if (++used_ == 8) flush();
  }
  std::vector<uint8_t>& out_;
  uint8_t acc_ = 0;
  int used_ = 0;
};

// The fixed literal/length code of RFC 1951, 3.2.6.
void put_symbol(BitWriter& w, int sym) {
  if (sym < 144)
    w.code(0x30 + sym, 8);
  else if (sym < 256)
    w.code(0x190 + (sym - 144), 9);
  else if (sym < 280)
    w.code(sym - 256, 7);
  else
    w.code(0xC0 + (sym - 280), 8);
}

constexpr int kLengthBase[29] = {3,  4,  5,  6,  7,  8,  9,  10, 11,  13,  15,  17,  19,  23, 27,
                                 31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
constexpr int kLengthExtra[29] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                  2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
constexpr int kDistBase[30] = {1,    2,    3,    4,    5,    7,    9,    13,    17,    25,
                               33,   49,   65,   97,   129,  193,  257,  385,   513,   769,
                               1025, 1537, 2049, 3073, 4097, 6145, 8193, 12289, 16385, 24577};
constexpr int kDistExtra[30] = {0, 0, 0, 0, 1, 1, 2, 2,  3,  3,  4,  4,  5,  5,  6,
                                6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12, 13, 13};

void put_match(BitWriter& w, int length, int distance) {
  int l = 28;
  while (kLengthBase[l] > length) --l;
  put_symbol(w, 257 + l);
  w.bits(uint32_t(length - kLengthBase[l]), kLengthExtra[l]);
  int d = 29;
  while (kDistBase[d] > distance) --d;
  w.code(uint32_t(d), 5);
  w.bits(uint32_t(distance - kDistBase[d]), kDistExtra[d]);
}

void put_be32(std::vector<uint8_t>& out, uint32_t v) {
  for (int s = 24; s >= 0; s -= 8) out.push_back(uint8_t(v >> s));
}

void put_chunk(std::vector<uint8_t>& out, const char type[4], const std::vector<uint8_t>& data) {
  put_be32(out, uint32_t(data.size()));
  const size_t start = out.size();
  out.insert(out.end(), type, type + 4);
  out.insert(out.end(), data.begin(), data.end());
  put_be32(out, crc32(out.data() + start, out.size() - start));
}

}  // namespace

uint32_t crc32(const uint8_t* data, size_t size, uint32_t crc) {
  static const std::array<uint32_t, 256> table = crc_table();
  crc = ~crc;
  for (size_t i = 0; i < size; ++i) crc = table[(crc ^ data[i]) & 0xFF] ^ (crc >> 8);
  return ~crc;
}

uint32_t adler32(const uint8_t* data, size_t size, uint32_t adler) {
  uint32_t a = adler & 0xFFFF, b = adler >> 16;
  for (size_t i = 0; i < size; ++i) {
    a = (a + data[i]) % 65521;
    b = (b + a) % 65521;
  }
  return (b << 16) | a;
}

std::vector<uint8_t> zlib_compress(const std::vector<uint8_t>& data, size_t stride) {
  // CMF 0x78: deflate with a 32 KiB window; FLG 0x01 makes CMF*256+FLG a
  // multiple of 31.  Distances stay within the window.
  std::vector<uint8_t> out = {0x78, 0x01};
  if (stride < 1 || stride > 32768) stride = 1;
  BitWriter w(out);
  w.bits(1, 1);  // final block
  w.bits(1, 2);  // fixed Huffman codes
  const size_t n = data.size();
  auto match = [&](size_t i, size_t dist) {
    size_t len = 0;
    if (dist == 0 || i < dist) return len;
    const size_t most = std::min<size_t>(258, n - i);
    while (len < most && data[i + len] == data[i + len - dist]) ++len;
    return len;
  };
  for (size_t i = 0; i < n;) {
    const size_t run = match(i, 1), up = match(i, stride);
    const size_t len = std::max(run, up);
    if (len >= 3) {
      put_match(w, int(len), int(up >= run ? stride : 1));
      i += len;
    } else {
      put_symbol(w, data[i]);
      ++i;
    }
  }
  put_symbol(w, 256);
  w.flush();
  put_be32(out, adler32(data.data(), n));
  return out;
}

std::vector<uint8_t> encode_png(const IndexedImage& img) {
  std::vector<uint8_t> out = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  std::vector<uint8_t> ihdr;
  put_be32(ihdr, uint32_t(img.width));
  put_be32(ihdr, uint32_t(img.height));
  ihdr.insert(ihdr.end(), {8, 3, 0, 0, 0});  // 8 bits, palette, deflate, filter set 0, no interlace
  put_chunk(out, "IHDR", ihdr);
  std::vector<uint8_t> plte;
  for (const Rgb& c : img.palette) plte.insert(plte.end(), {c.r, c.g, c.b});
  put_chunk(out, "PLTE", plte);
  // Each row is preceded by its filter type, 0 (none): the compressor finds
  // the repeats of the row above by itself.
  const size_t stride = size_t(img.width) + 1;
  std::vector<uint8_t> raw(stride * size_t(img.height));
  for (int y = 0; y < img.height; ++y) {
    raw[stride * y] = 0;
    std::copy_n(img.pixels.begin() + ptrdiff_t(y) * img.width, img.width,
                raw.begin() + ptrdiff_t(stride * y) + 1);
  }
  put_chunk(out, "IDAT", zlib_compress(raw, stride));
  put_chunk(out, "IEND", {});
  return out;
}

bool write_png(const std::string& path, const IndexedImage& img) {
  const std::vector<uint8_t> bytes = encode_png(img);
  std::ofstream f(path, std::ios::binary);
  f.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
  return bool(f);
}

}  // namespace luxbench
