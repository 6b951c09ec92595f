// The chart's PNG writer, checked by reading its files back with an inflater
// and PNG reader of the test's own, and the report's data comment by a round
// trip (a kept section must draw the same chart as a fresh one).
#include "png.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>

#include "raster.h"
#include "report.h"

namespace luxbench {
namespace {

// Inflates stored and fixed-Huffman blocks (all the writer emits); nullopt
// on anything else or on malformed input.
class Inflater {
 public:
  explicit Inflater(const std::vector<uint8_t>& in) : in_(in) {}

  std::optional<std::vector<uint8_t>> run() {
    std::vector<uint8_t> out;
    for (bool last = false; !last;) {
      last = bits(1);
      const uint32_t type = bits(2);
      if (type == 0) {
        pos_ = (pos_ + 7) & ~size_t(7);
        const uint32_t len = bits(16), nlen = bits(16);
        if ((len ^ 0xFFFF) != nlen) return std::nullopt;
        for (uint32_t k = 0; k < len; ++k) out.push_back(uint8_t(bits(8)));
      } else if (type == 1) {
        if (!fixed_block(out)) return std::nullopt;
      } else {
        return std::nullopt;
      }
      if (bad_) return std::nullopt;
    }
    return out;
  }
  size_t bytes_read() const { return (pos_ + 7) / 8; }

 private:
  uint32_t bit() {
    if (pos_ / 8 >= in_.size()) {
      bad_ = true;
      return 0;
    }
    const uint32_t b = (in_[pos_ / 8] >> (pos_ % 8)) & 1;
    ++pos_;
    return b;
  }
  uint32_t bits(int n) {
    uint32_t v = 0;
    for (int i = 0; i < n; ++i) v |= bit() << i;
    return v;
  }
  uint32_t code(int n) {
    uint32_t v = 0;
    for (int i = 0; i < n; ++i) v = (v << 1) | bit();
    return v;
  }
  int symbol() {
    uint32_t c = code(7);
    if (c <= 23) return int(256 + c);
    c = (c << 1) | bit();
    if (c >= 0x30 && c <= 0xBF) return int(c - 0x30);
    if (c >= 0xC0 && c <= 0xC7) return int(280 + c - 0xC0);
    c = (c << 1) | bit();
    return int(144 + c - 0x190);
  }
  bool fixed_block(std::vector<uint8_t>& out) {
    static constexpr int kLen[29] = {3,  4,  5,  6,  7,  8,  9,  10, 11,  13,  15,  17,  19,  23, 27,
                                     31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195, 227, 258};
    static constexpr int kLenX[29] = {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2,
                                      2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0};
    for (;;) {
      const int s = symbol();
      if (bad_ || s > 285) return false;
      if (s < 256) {
        out.push_back(uint8_t(s));
        continue;
      }
      if (s == 256) return true;
      const int len = kLen[s - 257] + int(bits(kLenX[s - 257]));
      const int d = int(code(5));
      if (d > 29) return false;
      // Distance bases: 1, 2, 3, 4, then doubling in pairs.
      const int extra = d < 4 ? 0 : d / 2 - 1;
      const int base = d < 4 ? d + 1 : (1 << (extra + 1)) + 1 + (d % 2) * (1 << extra);
      const size_t dist = size_t(base) + bits(extra);
      if (dist > out.size()) return false;
      for (int k = 0; k < len; ++k) out.push_back(out[out.size() - dist]);
    }
  }
  const std::vector<uint8_t>& in_;
  size_t pos_ = 0;
  bool bad_ = false;
};

uint32_t be32(const uint8_t* p) {
  return uint32_t(p[0]) << 24 | uint32_t(p[1]) << 16 | uint32_t(p[2]) << 8 | p[3];
}

// The zlib stream's payload, after checking its header and Adler-32 trailer.
std::optional<std::vector<uint8_t>> unzlib(const std::vector<uint8_t>& z) {
  if (z.size() < 6 || (z[0] & 0x0F) != 8 || (z[0] * 256 + z[1]) % 31 != 0 || (z[1] & 0x20))
    return std::nullopt;
  const std::vector<uint8_t> body(z.begin() + 2, z.end());
  Inflater inf(body);
  std::optional<std::vector<uint8_t>> out = inf.run();
  if (!out || inf.bytes_read() + 4 != body.size()) return std::nullopt;
  if (be32(body.data() + inf.bytes_read()) != adler32(out->data(), out->size())) return std::nullopt;
  return out;
}

// Reads back an 8-bit palette PNG without interlace or row filters.
std::optional<IndexedImage> read_png(const std::vector<uint8_t>& f) {
  static constexpr uint8_t kSig[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  if (f.size() < 8 || std::memcmp(f.data(), kSig, 8) != 0) return std::nullopt;
  IndexedImage img;
  std::vector<uint8_t> idat;
  bool end = false;
  for (size_t p = 8; !end;) {
    if (p + 12 > f.size()) return std::nullopt;
    const uint32_t n = be32(&f[p]);
    if (p + 12 + n > f.size()) return std::nullopt;
    const std::string type(reinterpret_cast<const char*>(&f[p + 4]), 4);
    const uint8_t* body = &f[p + 8];
    if (crc32(&f[p + 4], n + 4) != be32(body + n)) return std::nullopt;
    if (type == "IHDR") {
      if (n != 13 || body[8] != 8 || body[9] != 3 || body[10] || body[11] || body[12]) return std::nullopt;
      img.width = int(be32(body));
      img.height = int(be32(body + 4));
    } else if (type == "PLTE") {
      for (uint32_t k = 0; k + 2 < n; k += 3) img.palette.push_back({body[k], body[k + 1], body[k + 2]});
    } else if (type == "IDAT") {
      idat.insert(idat.end(), body, body + n);
    } else if (type == "IEND") {
      end = p + 12 == f.size();
      if (!end) return std::nullopt;
    }
    p += 12 + n;
  }
  const std::optional<std::vector<uint8_t>> raw = unzlib(idat);
  const size_t stride = size_t(img.width) + 1;
  if (!raw || raw->size() != stride * size_t(img.height)) return std::nullopt;
  for (int y = 0; y < img.height; ++y) {
    if ((*raw)[stride * y] != 0) return std::nullopt;
    img.pixels.insert(img.pixels.end(), raw->begin() + ptrdiff_t(stride * y) + 1,
                      raw->begin() + ptrdiff_t(stride * (y + 1)));
  }
  return img;
}

std::vector<uint8_t> bytes(const char* s) { return std::vector<uint8_t>(s, s + std::strlen(s)); }

TEST(Png, ChecksumsOfKnownVectors) {
  const std::vector<uint8_t> digits = bytes("123456789"), wiki = bytes("Wikipedia");
  EXPECT_EQ(crc32(digits.data(), digits.size()), 0xCBF43926u);
  EXPECT_EQ(crc32(nullptr, 0), 0u);
  EXPECT_EQ(adler32(wiki.data(), wiki.size()), 0x11E60398u);
  EXPECT_EQ(adler32(nullptr, 0), 1u);
  // Running checksums continue across pieces.
  EXPECT_EQ(crc32(digits.data() + 4, 5, crc32(digits.data(), 4)), 0xCBF43926u);
  EXPECT_EQ(adler32(wiki.data() + 3, 6, adler32(wiki.data(), 3)), 0x11E60398u);
}

TEST(Png, ZlibRoundTrip) {
  // Every literal value (the 8- and 9-bit codes), runs across every length
  // code including 258 and its neighbours, and repeats at the stride.
  std::vector<std::vector<uint8_t>> cases = {{}, {7}, {1, 1}};
  std::vector<uint8_t> mixed;
  uint32_t state = 12345;
  for (int k = 0; k < 4000; ++k) {
    state = state * 1103515245u + 12345u;
    mixed.push_back(uint8_t(state >> 24));
  }
  cases.push_back(mixed);
  std::vector<uint8_t> runs;
  for (int len = 1; len < 600; len += 1) runs.insert(runs.end(), size_t(len), uint8_t(len));
  cases.push_back(runs);
  std::vector<uint8_t> rows;
  for (int r = 0; r < 40; ++r)
    for (int k = 0; k < 1001; ++k) rows.push_back(uint8_t((k * 7 + (r / 3)) % 251));
  cases.push_back(rows);
  for (const std::vector<uint8_t>& data : cases)
    for (const size_t stride : {size_t(1), size_t(3), size_t(1001), size_t(40000)}) {
      const std::optional<std::vector<uint8_t>> back = unzlib(zlib_compress(data, stride));
      ASSERT_TRUE(back) << data.size() << " bytes, stride " << stride;
      EXPECT_EQ(*back, data) << data.size() << " bytes, stride " << stride;
    }
  // Two rows in three repeat the row above: as matches they cost a few bits
  // per 258 bytes, as literals over a byte each.
  EXPECT_LT(zlib_compress(rows, 1001).size(), rows.size() * 4 / 10);
}

TEST(Png, DrawnImageReadsBack) {
  Canvas c(97, 41, 0);
  c.image().palette = {{255, 255, 255}, {0, 0, 0}, {200, 30, 40}};
  c.fill(-5, 3, 40, 9, 2);  // clipped on the left
  c.fill(90, 30, 200, 60, 2);
  c.hline(0, 97, 40, 1);
  c.dotted_vline(50, 0, 41, 1);
  EXPECT_EQ(c.text(2, 12, "Exp 64f: 3.30 |x| < 10 ~{}", 1), 2 + 6 * 26);
  // Glyphs: '1' has its stem in the middle column, '-' is the middle row.
  Canvas g(6, 8, 0);
  g.text(0, 0, "1", 1);
  for (int y = 0; y < 7; ++y) EXPECT_EQ(g.image().pixels[size_t(y) * 6 + 2], 1) << y;
  Canvas m(6, 8, 0);
  m.text(0, 0, "-", 1);
  for (int x = 0; x < 5; ++x) EXPECT_EQ(m.image().pixels[3 * 6 + size_t(x)], 1) << x;

  const std::optional<IndexedImage> back = read_png(encode_png(c.image()));
  ASSERT_TRUE(back);
  EXPECT_EQ(back->width, 97);
  EXPECT_EQ(back->height, 41);
  ASSERT_EQ(back->palette.size(), 3u);
  EXPECT_EQ(back->palette[2].r, 200);
  EXPECT_EQ(back->palette[2].b, 40);
  EXPECT_EQ(back->pixels, c.image().pixels);
  EXPECT_EQ(back->pixels[3 * 97 + 0], 2);
  EXPECT_EQ(back->pixels[3 * 97 + 40], 0);
  EXPECT_EQ(back->pixels[40 * 97 + 96], 1);
}

TEST(Report, DataCommentRoundTrip) {
  FamilyResult r{"Div", "Notes | with a bar.", {}};
  r.tables.push_back({"64f", {"loop a/b", "std a/b"}, true, {}});
  r.tables[0].rows.push_back(
      {"luxsDiv_64f_A26", "|a|, |b| in [1e-150, 1e150]", 1000, 2.91, {1.17, 0.333333}, -1});
  r.tables[0].rows.push_back({"luxsDiv_64f_A53", "a, b in [1, 2]", 1000000, 11.8125, {1.43, 1e-3}, 0.75});
  r.tables.push_back({"32f", {"loop a/b"}, false, {}});
  r.tables[1].rows.push_back({"luxsDiv_32f_A11", "a, b in [1, 2]", 1000, 0.31, {0.39}, -1});
  Machine m;
  m.date = "2000-01-01";
  const std::string section = family_section(r, m);
  EXPECT_NE(section.find("\nNotes | with a bar.\n"), std::string::npos);
  const FamilyResult back = parse_section("Div", section);
  ASSERT_EQ(back.tables.size(), 2u);
  for (size_t t = 0; t < 2; ++t) {
    EXPECT_EQ(back.tables[t].type, r.tables[t].type);
    EXPECT_EQ(back.tables[t].peers, r.tables[t].peers);
    EXPECT_EQ(back.tables[t].bound, r.tables[t].bound);
    ASSERT_EQ(back.tables[t].rows.size(), r.tables[t].rows.size());
    for (size_t k = 0; k < r.tables[t].rows.size(); ++k) {
      const Row &a = r.tables[t].rows[k], &b = back.tables[t].rows[k];
      EXPECT_EQ(b.export_name, a.export_name);
      EXPECT_EQ(b.range, a.range);
      EXPECT_EQ(b.n, a.n);
      EXPECT_DOUBLE_EQ(b.cycles, a.cycles);
      EXPECT_DOUBLE_EQ(b.bound, a.bound);
      ASSERT_EQ(b.peers.size(), a.peers.size());
      for (size_t p = 0; p < a.peers.size(); ++p) EXPECT_NEAR(b.peers[p], a.peers[p], 1e-6 * a.peers[p]);
    }
  }
  // A section without the comment (an older report) draws nothing.
  EXPECT_TRUE(parse_section("Div", "## Div\n\n| a | b |\n").tables.empty());
}

}  // namespace
}  // namespace luxbench
