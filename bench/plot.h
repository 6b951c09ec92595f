// The chart beside docs/performance.md: per family and element type, the
// in-cache cycles per element of each export and of each peer on the first
// (typical) range, as horizontal bars on one logarithmic scale.
#pragma once

#include <string>
#include <vector>

#include "raster.h"
#include "report.h"

namespace luxbench {

// The chart of the results, drawn; `caption` goes under the title.
Canvas draw_chart(const std::vector<FamilyResult>& results, const std::string& caption);

}  // namespace luxbench
