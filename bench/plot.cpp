#include "plot.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace luxbench {

namespace {

enum Color : uint8_t {
  kWhite,
  kInk,
  kGrey,
  kGridMajor,
  kGridMinor,
  kLuxvm,
  kGlibc,
  kLibmvec,
  kSleef,
  kOther,
  kBand,
};

std::vector<Rgb> palette() {
  return {{255, 255, 255}, {20, 20, 20},  {110, 110, 110}, {190, 190, 190}, {228, 228, 228}, {31, 111, 197},
          {224, 138, 44},  {58, 154, 74}, {142, 91, 181},  {150, 150, 150}, {243, 245, 249}};
}

uint8_t peer_color(const std::string& name) {
  if (name.rfind("glibc", 0) == 0) return kGlibc;
  if (name.rfind("libmvec", 0) == 0) return kLibmvec;
  if (name.rfind("SLEEF", 0) == 0) return kSleef;
  return kOther;
}

std::string number(double v) {
  char b[32];
  std::snprintf(b, sizeof b, v < 10 ? "%.2f" : v < 100 ? "%.1f" : "%.0f", v);
  return b;
}

// One bar group: a table's in-cache rows on its first range.
struct Bar {
  std::string label;
  double value;
  uint8_t color;
};
struct Group {
  std::string title, subtitle;
  std::vector<Bar> exports, peers;
};

std::vector<Group> groups_of(const std::vector<FamilyResult>& results) {
  std::vector<Group> out;
  for (const FamilyResult& r : results)
    for (const Table& t : r.tables) {
      if (t.rows.empty()) continue;
      const Row& first = t.rows.front();
      Group g;
      g.title = r.family + " " + t.type;
      g.subtitle = first.range + ", " + std::to_string(first.n) + " elements";
      for (const Row& row : t.rows)
        if (row.range == first.range && row.n == first.n)
          g.exports.push_back({row.export_name, row.cycles, kLuxvm});
      for (size_t k = 0; k < t.peers.size() && k < first.peers.size(); ++k)
        g.peers.push_back({t.peers[k], first.peers[k], peer_color(t.peers[k])});
      out.push_back(g);
    }
  return out;
}

constexpr int kWidth = 960;
constexpr int kMargin = 10;
constexpr int kRow = 11;     // one bar
constexpr int kBarTall = 8;  // the bar within its row
constexpr int kHeader = 14;  // a group's title line
constexpr int kGap = 8;      // between groups
constexpr int kValueRoom = 64;

// Positions on the logarithmic axis.
struct Axis {
  double lo, hi;  // whole decades
  int x0, x1;
  int at(double v) const {
    const double c = std::clamp(v, lo, hi);
    return x0 + int(std::lround((x1 - x0) * std::log10(c / lo) / std::log10(hi / lo)));
  }
};

int bar_end(const Axis& a, const Bar& b) { return b.value > 0 ? a.at(b.value) : a.x0; }

// The marks of the axis: 1, 2 and 5 times the powers of ten within it.
template <class F>
void for_marks(const Axis& a, F&& f) {
  for (double d = std::pow(10.0, std::floor(std::log10(a.lo) + 1e-9)); d < a.hi * 1.01; d *= 10)
    for (const int m : {1, 2, 5})
      if (d * m >= a.lo * 0.99 && d * m <= a.hi * 1.01) f(d * m, m == 1);
}

void draw_grid(Canvas& c, const Axis& a, int y0, int y1) {
  for_marks(a, [&](double v, bool decade) { c.vline(a.at(v), y0, y1, decade ? kGridMajor : kGridMinor); });
}

// Decades are labelled, and the left end when it is not one and leaves room.
void draw_ticks(Canvas& c, const Axis& a, int y) {
  int free_from = 0;
  for_marks(a, [&](double v, bool decade) {
    if (!decade && v > a.lo * 1.01) return;
    char b[32];
    std::snprintf(b, sizeof b, "%g", v);
    const int w = Canvas::text_width(b);
    const int x = std::clamp(a.at(v) - w / 2, 0, kWidth - w);
    if (x < free_from) return;
    free_from = c.text(x, y, b, kGrey) + 12;
  });
}

// The largest of 1, 2, 5 times a power of ten at or below v.
double mark_below(double v) {
  const double d = std::pow(10.0, std::floor(std::log10(v)));
  return v >= 5 * d ? 5 * d : v >= 2 * d ? 2 * d : d;
}

}  // namespace

Canvas draw_chart(const std::vector<FamilyResult>& results, const std::string& caption) {
  const std::vector<Group> groups = groups_of(results);

  // One scale for every group, in whole decades around all values.
  double lo = 1e300, hi = 0;
  size_t label = 12;
  int height = kMargin + 3 * kHeader + 2 * kRow + kMargin;
  for (const Group& g : groups) {
    for (const auto* bars : {&g.exports, &g.peers})
      for (const Bar& b : *bars) {
        if (b.value > 0) lo = std::min(lo, b.value), hi = std::max(hi, b.value);
        label = std::max(label, b.label.size());
      }
    height += kHeader + kRow * int(g.exports.size() + g.peers.size()) + kGap;
  }
  if (hi <= 0) lo = hi = 1;
  // The left end leaves the shortest bar some length; the right end is the
  // decade above the longest.
  Axis axis{mark_below(lo / 1.5), std::pow(10.0, std::ceil(std::log10(hi))), 0, 0};
  if (axis.hi <= axis.lo) axis.hi = axis.lo * 10;
  axis.x0 = kMargin + Canvas::text_width(std::string(label, 'x')) + 8;
  axis.x1 = kWidth - kMargin - kValueRoom;

  Canvas c(kWidth, height, kWhite);
  c.image().palette = palette();
  int y = kMargin;
  c.bold_text(kMargin, y,
              "luxvm beside its peers: cycles per element, arrays in cache (log scale, shorter is faster)",
              kInk);
  y += kHeader;
  c.text(kMargin, y, caption, kGrey);
  y += kHeader;
  // Legend.
  int x = kMargin;
  for (const auto& [name, color] :
       std::vector<std::pair<const char*, uint8_t>>{{"luxvm export", kLuxvm},
                                                    {"glibc libm", kGlibc},
                                                    {"libmvec", kLibmvec},
                                                    {"SLEEF", kSleef},
                                                    {"plain loop, std::complex", kOther}}) {
    c.fill(x, y, x + 16, y + kBarTall, color);
    x = c.text(x + 20, y, name, kInk) + 14;
  }
  c.dotted_vline(x, y - 1, y + kBarTall + 1, kLuxvm);
  c.text(x + 6, y, "luxvm exports' times, carried through the peers", kInk);
  y += kHeader;
  draw_ticks(c, axis, y);
  y += kRow;

  bool shade = false;
  for (const Group& g : groups) {
    const int rows = int(g.exports.size() + g.peers.size());
    const int bottom = y + kHeader + kRow * rows;
    if (shade) c.fill(0, y - kGap / 2, kWidth, bottom + kGap / 2, kBand);
    shade = !shade;
    const int after = c.bold_text(kMargin, y + 3, g.title, kInk);
    c.text(after + 8, y + 3, g.subtitle, kGrey);
    y += kHeader;
    draw_grid(c, axis, y, bottom);
    // Bars first, then the exports' times through the peers' bars, then the
    // labels, which stay legible over the dotted lines.
    const int top = y;
    for (const auto* bars : {&g.exports, &g.peers})
      for (const Bar& b : *bars) {
        c.fill(axis.x0, y + 1, std::max(bar_end(axis, b), axis.x0 + 1), y + 1 + kBarTall, b.color);
        y += kRow;
      }
    for (const Bar& e : g.exports)
      if (e.value > 0) c.dotted_vline(axis.at(e.value), top + kRow * int(g.exports.size()), bottom, kLuxvm);
    y = top;
    for (const auto* bars : {&g.exports, &g.peers})
      for (const Bar& b : *bars) {
        c.text(kMargin, y + 1, b.label, kInk);
        c.text(bar_end(axis, b) + 4, y + 1, number(b.value), kInk);
        y += kRow;
      }
    y += kGap;
  }
  draw_ticks(c, axis, y);
  return c;
}

}  // namespace luxbench
