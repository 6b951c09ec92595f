// Lane values as text: parsing what a user types and printing results with
// their bit patterns.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace luxtk {

// Parses one real component of `bits` (32 or 64) width into its encoding.
// Accepts decimal ("1.5", "-2e-3"), hexadecimal floating point ("0x1.8p+1"),
// a raw bit pattern ("0x3ff8000000000000", at most 8 or 16 hex digits),
// "nan", "-nan", "snan", "inf", "-inf".  Returns false on malformed text.
bool parse_component(std::string_view text, int bits, uint64_t* encoding);

// Parses a lane: one component, or "re,im" when `complex`.  Writes the
// element's bytes to `out`.
bool parse_lane(std::string_view text, int bits, bool complex, void* out);

// "1.5 [0x3ff8000000000000]"; complex lanes as "re, im [bits, bits]".
std::string format_lane(const void* lane, int bits, bool complex);
std::string format_component(uint64_t encoding, int bits);

inline double bits_to_double(uint64_t b) { return __builtin_bit_cast(double, b); }
inline uint64_t double_bits(double d) { return __builtin_bit_cast(uint64_t, d); }
inline float bits_to_float(uint32_t b) { return __builtin_bit_cast(float, b); }
inline uint32_t float_bits(float f) { return __builtin_bit_cast(uint32_t, f); }

// Hexadecimal floating-point text of a value ("0x1.62e42fefa39efp+9").
std::string hexfloat(double v);

}  // namespace luxtk
