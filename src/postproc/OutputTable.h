#pragma once
// The values the post-processor analyses: one row per run, in the sampling
// design's run order (the Sobol, Morris, FAST and replicated designs rely on
// it), one column per selected variable. It is the sample store, so that a
// table of millions of runs stays on disk behind the store's window.
#include <cstdint>

#include "sampling/sampValues.h"

namespace tarvex {

class OutputTable : public sampValues {
public:
    using sampValues::sampValues;

    // The columnCount() values of run `i`; 0 when there is no such run.
    [[nodiscard]] int row(int32_t i, double* values) { return getRow(i, values); }
    // One value; NaN outside the table, which no statistic mistakes for a
    // result.
    double value(int32_t row, int32_t column);
    // The first `count` values of column `column`, through the store's
    // column window; 0 when the table has no such column or fewer rows.
    [[nodiscard]] int column(int32_t column, int32_t count, double* values);
};

}  // namespace tarvex
