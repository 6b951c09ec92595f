// The library's version record: one constant, filled in by the loader (its
// three text pointers are the library's only relocated data).
#include "frame/frame.h"

#ifndef LUXVM_TARGET_TAG
#error "LUXVM_TARGET_TAG must name the build's target tag"
#endif

namespace {
constexpr LuxLibraryVersion kVersion = {
    6,
    1,
    137,
    781,
    {LUXVM_TARGET_TAG[0], LUXVM_TARGET_TAG[1], sizeof(LUXVM_TARGET_TAG) > 3 ? LUXVM_TARGET_TAG[2] : '\0',
     '\0'},
    "libluxvm" LUXVM_TARGET_TAG ".so.6.1",
    "6.1 build 137.56",
    "Mar 17 2010",
};
}  // namespace

LUXVM_EXPORT const LuxLibraryVersion* luxvmGetLibVersion(void) { return &kVersion; }
