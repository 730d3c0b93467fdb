#include "factors/Constant.h"

#include <istream>
#include <ostream>

namespace tarvex {

// Data line: the value.
void Constant::writeData(std::ostream& out) const {
    out << '\t' << value << '\n';
}

int Constant::readData(std::istream& in) {
    double v = 0.0;
    if (!(in >> v)) return 0;
    value = v;
    return 1;
}

} // namespace tarvex
