// The series of the extended inverse sine and cosine: the polynomial core
// that both evaluate, on a head h, a tail l and t = h + l.
#pragma once

#include "scalar/extended.h"

namespace lux::x80 {

// asin t - t for 0.25 <= |t| <= 0.5: P[18], P[19] are 1/6 and 3/40 cut, P[0],
// P[1] their rests.
inline constexpr OrkX80Slot kAsinP[20] = {
    slot(0x3FF0, 0xAAAAAAAAAAAAA6C3ull),  // 4.0690104166666664408e-05
    slot(0xBFEE, 0xCCCCCCCCCCB010DDull),  // -1.2207031249998442137e-05
    slot(0x3FFA, 0xB6DB6DB6DB6C665Eull),  // 0.044642857142856852415
    slot(0x3FF9, 0xF8E38E38E4928D22ull),  // 0.030381944444473348022
    slot(0x3FF9, 0xB745D1741FB15458ull),  // 0.022372159089164050244
    slot(0x3FF9, 0x8E27627FC31E0C15ull),  // 0.017352764492986734457
    slot(0x3FF8, 0xE4CCCAB15F6C53FBull),  // 0.013964841787575083681
    slot(0x3FF8, 0xBD43EEC0A130D62Cull),  // 0.011551840931605153115
    slot(0x3FF8, 0x9FEC9B2505D12803ull),  // 0.0097610011181049147894
    slot(0x3FF8, 0x8994F84CB3D7C8E9ull),  // 0.0083973336029976464873
    slot(0x3FF7, 0xED9A644B9976EBF2ull),  // 0.0072510709498591870495
    slot(0x3FF7, 0xE0CBAF278FE185ABull),  // 0.0068602185484670100482
    slot(0x3FF6, 0xEDA04D0965EB32D5ull),  // 0.0036258876874836641277
    slot(0x3FF8, 0xD9B7D893A2485751ull),  // 0.013288461208990761872
    slot(0xBFF9, 0x95C394CB1B7E3A64ull),  // -0.018281736957632490487
    slot(0x3FFA, 0xCAD73E22F028F11Full),  // 0.049521677704442476631
    slot(0xBFFA, 0xDA62FBBB5A2C344Aull),  // -0.053317054107206600377
    slot(0x3FFA, 0xA709ABAB5C15445Bull),  // 0.04078070696210051721
    slot(0x3FFC, 0xAAA0000000000000ull),  // 0.1666259765625
    slot(0x3FFB, 0x99A0000000000000ull),  // 0.07501220703125
};
// asin t - t for |t| < 0.25: P1[12] is 1/6 cut.
inline constexpr OrkX80Slot kAsinP1[13] = {
    slot(0x3FF0, 0xAAAAAAAAAAAAAA45ull),  // 4.0690104166666664408e-05
    slot(0x3FFB, 0x99999999999999C4ull),  // 0.074999999999999997224
    slot(0x3FFA, 0xB6DB6DB6DB6D44C2ull),  // 0.044642857142857046704
    slot(0x3FF9, 0xF8E38E38E42EB98Dull),  // 0.030381944444462263138
    slot(0x3FF9, 0xB745D17419B769C6ull),  // 0.02237215908899419306
    slot(0x3FF9, 0x8E276288523D9B65ull),  // 0.017352764555262200491
    slot(0x3FF8, 0xE4CCC63D185BB5E8ull),  // 0.013964837639269351774
    slot(0x3FF8, 0xBD4492FCC966A166ull),  // 0.011551993887357538127
    slot(0x3FF8, 0x9FDDAB5A1ED5D6F2ull),  // 0.0097574399337479935518
    slot(0x3FF8, 0x8A750B5F4DEFA97Bull),  // 0.0084507571275187296639
    slot(0x3FF7, 0xDD5A2BEBE7917F3Cull),  // 0.0067551340542278265344
    slot(0x3FF8, 0x9910A6D3C4A1C288ull),  // 0.0093423489734708459187
    slot(0x3FFC, 0xAAA0000000000000ull),  // 0.1666259765625
};
// asin x - x for 2^-12 <= |x| < 2^-7.
inline constexpr OrkX80Slot kAsinP2[4] = {
    slot(0x3FFC, 0xAAAAAAAAAAAAAAA8ull),  // 0.16666666666666665741
    slot(0x3FFB, 0x9999999999A35123ull),  // 0.075000000000004313216
    slot(0x3FFA, 0xB6DB6DA9D2265CFFull),  // 0.044642856953154813615
    slot(0x3FF9, 0xF8EAD3BC1D5C897Eull),  // 0.030385411781860553054
};
// asin x - x for 2^-18 <= |x| < 2^-12.
inline constexpr OrkX80Slot kAsinP3[2] = {
    slot(0x3FFC, 0xAAAAAAAAAAAA8F9Bull),  // 0.16666666666666657415
    slot(0x3FFB, 0x99999A24E2BE9F00ull),  // 0.075000004053748015043
};
// asin x - x for 2^-75 <= |x| < 2^-18.
inline constexpr OrkX80Slot kAsinP4[1] = {
    slot(0x3FFC, 0xAAAAAAAAAF8AAAABull),  // 0.16666666666777510408
};

// pi/2 and pi in two ten-byte parts, the first with 32 significant bits.
inline constexpr OrkX80Slot kPi02[2] = {slot(0x3FFF, 0xC90FDAA200000000ull),
                                        slot(0x3FDD, 0x85A308D313198A2Eull)};
inline constexpr OrkX80Slot kPi00[2] = {slot(0x4000, 0xC90FDAA200000000ull),
                                        slot(0x3FDE, 0x85A308D313198A2Eull)};

inline constexpr uint32_t kAsinHalfAngleField = 16382;  // |x| >= 0.5
inline constexpr uint32_t kAsinWideField = 16381;       // t >= 0.25: the wide form

// asin t = t + t^3 (m + V): m the cut leading term times h^2, V the rest.
struct AsinCore {
  ld V, m;
};
inline AsinCore asin_core(ld h, ld l, ld t, bool wide) {
  const ld g = h * h;
  const ld d = (h + t) * l;
  const ld f = (g + (g + d)) * d;
  const ld w = g * g + f;
  if (wide) {
    const auto P = [](int i) { return value(kAsinP[i]); };
    const ld A =
        ((((((((P(17) * w + P(15)) * w + P(13)) * w + P(11)) * w + P(9)) * w + P(7)) * w + P(5)) * w + P(3)) *
             w +
         P(1)) *
        w;
    const ld B =
        (w * (((((((P(16) * w + P(14)) * w + P(12)) * w + P(10)) * w + P(8)) * w + P(6)) * w + P(4)) * w +
              P(2)) +
         P(0)) *
        (g + d);
    const ld u = P(18) * g + P(19) * (g * g);
    const ld m = split_by(u, dbl(kTwo52H)).h;
    return {(d * P(18) + (f * P(19) + (A + B))) + (u - m), m};
  }
  const auto P = [](int i) { return value(kAsinP1[i]); };
  const ld A = (((((P(11) * w + P(9)) * w + P(7)) * w + P(5)) * w + P(3)) * w + P(1)) * w;
  const ld B = (w * ((((P(10) * w + P(8)) * w + P(6)) * w + P(4)) * w + P(2)) + P(0)) * (g + d);
  const ld m = P(12) * g;
  return {d * P(12) + (B + A), m};
}

// The half-angle argument: sqrt((1 - |x|)/2) as h + l (h short), t = h + l.
struct HalfAngle {
  ld h, l, t;
};
inline HalfAngle half_angle(ld ax) {
  const ld a = (1.0L - ax) * 0.5L;
  const Split sa = split_by(a, dbl(kTwo32H));
  const ld y = orksqrtl_scalar(sa.h + sa.l);
  const Split sy = split_by(y, dbl(kTwo52H));
  const ld h = sy.h, yl = sy.l;
  const ld g = h * h;
  const ld l = (yl + (sa.l + ((sa.h - g) - h * yl)) / (h + yl)) * 0.5L;
  return {h, l, h + l};
}

}  // namespace lux::x80
