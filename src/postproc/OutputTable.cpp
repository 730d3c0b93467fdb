#include "postproc/OutputTable.h"

#include <limits>

namespace tarvex {

double OutputTable::value(int32_t row, int32_t column) {
    double x = 0.0;
    if (!getColumnValue(row, column, &x)) return std::numeric_limits<double>::quiet_NaN();
    return x;
}

int OutputTable::column(int32_t column, int32_t count, double* values) {
    if (column < 0 || column >= columnCount() || count < 0 || count > rowCount()) return 0;
    for (int32_t r = 0; r < count; ++r)
        if (!getColumnValue(r, column, values + r)) return 0;
    return 1;
}

}  // namespace tarvex
