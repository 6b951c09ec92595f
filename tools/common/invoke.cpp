#include "invoke.h"

#include <cstring>

#include "luxvm.h"

namespace luxtk {

namespace {
template <class T>
int invoke_x(void* fn, const void* src, const void* x, void* dst, int len) {
  T xv;
  std::memcpy(&xv, x, sizeof xv);
  return reinterpret_cast<int (*)(const T*, T, T*, int)>(fn)(static_cast<const T*>(src), xv,
                                                             static_cast<T*>(dst), len);
}
}  // namespace

int invoke(const CensusEntry& e, void* fn, const void* src1, const void* src2, const void* x, void* dst1,
           void* dst2, int len) {
  using U = int (*)(const void*, void*, int);
  using B = int (*)(const void*, const void*, void*, int);
  using D = int (*)(const void*, void*, void*, int);
  const std::string_view shape = e.shape;
  if (shape == "B") return reinterpret_cast<B>(fn)(src1, src2, dst1, len);
  if (shape == "D") return reinterpret_cast<D>(fn)(src1, dst1, dst2, len);
  if (shape == "X") {
    const std::string_view t = e.type;
    if (t == "32f") return invoke_x<lux32f>(fn, src1, x, dst1, len);
    if (t == "64f") return invoke_x<lux64f>(fn, src1, x, dst1, len);
    if (t == "32fc") return invoke_x<lux32fc>(fn, src1, x, dst1, len);
    return invoke_x<lux64fc>(fn, src1, x, dst1, len);
  }
  return reinterpret_cast<U>(fn)(src1, dst1, len);  // U, CR, RC
}

}  // namespace luxtk
