#pragma once

#include "common/oracle.h"

namespace luxtest {
// Seed and size of the sweeps, from the command line.
extern luxtk::SweepOptions g_sweep;
}  // namespace luxtest
