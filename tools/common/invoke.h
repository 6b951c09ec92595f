// Calls any export through its address with raw arrays, by its census shape.
#pragma once

#include "census.h"

namespace luxtk {

// Arrays in argument order of the shape: src1 (and src2 for B), the by-value
// x for X (pointer to one element), dst1 (and dst2 for D).  Unused ones may be
// null.  Returns the export's status.
int invoke(const CensusEntry& e, void* fn, const void* src1, const void* src2, const void* x, void* dst1,
           void* dst2, int len);

}  // namespace luxtk
