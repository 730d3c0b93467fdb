#include "postproc/OutputTable.h"

#include <limits>

namespace tarvex {

double OutputTable::value(int32_t row, int32_t column) {
    double x = 0.0;
    if (!getColumnValue(row, column, &x)) return std::numeric_limits<double>::quiet_NaN();
    return x;
}

}  // namespace tarvex
