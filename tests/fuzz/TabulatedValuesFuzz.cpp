// Tabulated values files, read as points and as intervals: a refused file
// leaves the rows alone, and what is read writes a text that reads back to
// the same text.
#include <sstream>

#include "FuzzSupport.h"
#include "factors/TabulatedValuesFile.h"

namespace tarvex {

TARVEX_FUZZ_TARGET(TabulatedValues, 2500) {
    bool any = false;
    for (TabulatedKind kind : {TabulatedKind::Points, TabulatedKind::Intervals}) {
        std::vector<TabulatedRow> rows(1, TabulatedRow{7.0, 8.0, 0.5});
        std::istringstream in{std::string(input)};
        if (!readTabulatedValues(in, kind, rows)) {
            fuzz::check(rows.size() == 1 && rows[0].left == 7.0 && rows[0].weight == 0.5,
                        "a refused file changed the rows");
            continue;
        }
        any = true;
        std::ostringstream first;
        writeTabulatedValues(first, kind, rows);
        std::vector<TabulatedRow> again;
        std::istringstream back(first.str());
        fuzz::check(readTabulatedValues(back, kind, again) == 1, "the rows read do not load once written");
        std::ostringstream second;
        writeTabulatedValues(second, kind, again);
        fuzz::check(second.str() == first.str(), "written and read back, the rows differ:\n" + first.str());
    }
    return any ? fuzz::Outcome::Accepted : fuzz::Outcome::Refused;
}

}  // namespace tarvex
