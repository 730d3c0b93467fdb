// The FAST method section of the sample file (to come).
#include <istream>

#include "sampling/FastSampler.h"

namespace tarvex {

void FastSampler::writeItems(std::ostream&) const {}

void FastSampler::readItems(std::istream& in) { in.setstate(std::ios::failbit); }

}  // namespace tarvex
