// The two-argument inverse tangent kernels at full accuracy, as internal
// routines: the Atan2 exports and the complex argument stand on them.
// Arguments and results travel by pointer (never a double by value, which on
// i386 would pass the x87 stack and quiet a signalling NaN).
//
// binary64 (the caller holds the x87 guard 64 and the SSE guard):
//   _orkdAtan2_HA_Pass  four lanes y[0..3], x[0..3]; when all eight
//                       magnitudes lie in [2^-1020, 2^1009) and no |y/x|
//                       is below about 2^-1000, it stores the four results
//                       and returns true, else it stores nothing and
//                       returns false;
//   _orkdAtan2_HA_Lane  one lane: the same arithmetic when both magnitudes
//                       are in that range, else the x87 partial arctangent
//                       (which has the whole special-value table).
//   The two agree bit for bit on a lane in range.
//
// binary32 (the caller holds the SSE guard), in chunks of at most 128 lanes:
//   _orksAtan2_HA_Part1(n, y, x, work)       classes, quotient in double,
//                                            head and tail of the angle;
//   _orksAtan2_HA_Part2(n, y, x, dst, work)  polynomial and quadrant; lanes
//                                            with a magnitude outside
//                                            (2^-125, 2^123), or |y/x|
//                                            below about 2^-100, from fpatan.
//   work holds kAtan2WorkFloats floats: the arrays workT, workLo, workHead.
#pragma once

#include "luxvm.h"

inline constexpr int kAtan2Chunk = 128;
inline constexpr int kAtan2WorkFloats = 3 * kAtan2Chunk;

extern "C" {
__attribute__((visibility("hidden"))) bool _orkdAtan2_HA_Pass(const lux64f* y, const lux64f* x, lux64f* dst);
__attribute__((visibility("hidden"))) void _orkdAtan2_HA_Lane(const lux64f* y, const lux64f* x, lux64f* dst);
__attribute__((visibility("hidden"))) void _orksAtan2_HA_Part1(int n, const lux32f* y, const lux32f* x,
                                                               lux32f* work);
__attribute__((visibility("hidden"))) void _orksAtan2_HA_Part2(int n, const lux32f* y, const lux32f* x,
                                                               lux32f* dst, lux32f* work);
}
