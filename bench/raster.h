// Drawing on a palette image: filled rectangles, lines and text in a built-in
// 5x8 bitmap font (printable ASCII), enough for a bar chart.
#pragma once

#include <string_view>

#include "png.h"

namespace luxbench {

class Canvas {
 public:
  Canvas(int width, int height, uint8_t background);
  const IndexedImage& image() const { return img_; }
  IndexedImage& image() { return img_; }
  int width() const { return img_.width; }
  int height() const { return img_.height; }

  // Clipped to the image; empty when x1 <= x0 or y1 <= y0 (half-open).
  void fill(int x0, int y0, int x1, int y1, uint8_t color);
  void hline(int x0, int x1, int y, uint8_t color) { fill(x0, y, x1, y + 1, color); }
  void vline(int x, int y0, int y1, uint8_t color) { fill(x, y0, x + 1, y1, color); }
  // Every other pixel of a vertical line.
  void dotted_vline(int x, int y0, int y1, uint8_t color);
  // Text with its top left corner at (x, y); each character advances 6 pixels,
  // a line is 8 pixels tall (7 above the baseline, 1 below).  Characters
  // outside printable ASCII draw as '?'.  Returns the x after the text.
  int text(int x, int y, std::string_view s, uint8_t color);
  // The same text drawn twice, one pixel apart: a bold face for headings.
  int bold_text(int x, int y, std::string_view s, uint8_t color);
  static int text_width(std::string_view s) { return int(s.size()) * 6; }

 private:
  void set(int x, int y, uint8_t color) {
    if (x >= 0 && y >= 0 && x < img_.width && y < img_.height)
      img_.pixels[size_t(y) * img_.width + x] = color;
  }
  IndexedImage img_;
};

}  // namespace luxbench
