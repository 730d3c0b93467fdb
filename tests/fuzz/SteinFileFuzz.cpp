// Stein files, imported as factors of their own and then attached to those
// factors: a file that makes factors can be attached to them, and the list
// it makes, when its names are names a factor file holds, goes through a
// factor file unchanged from the second writing on.
#include <algorithm>
#include <cctype>
#include <sstream>

#include "FuzzSupport.h"
#include "correlation/FactorFile.h"
#include "correlation/FactorList.h"
#include "factors/FactorName.h"

namespace tarvex {
namespace {

}  // namespace

TARVEX_FUZZ_TARGET(SteinFile, 1500) {
    const std::string path = fuzz::scratchInput(input);
    FactorList list;
    if (!list.importStein(path, 1)) return fuzz::Outcome::Refused;
    const int columns = list.steinInfo.columnCount();
    fuzz::check(list.factorCount() == columns, "the import made another number of factors than columns");

    FactorList attached = list;
    fuzz::check(attached.importStein(path, 2) == 1, "a file that made factors cannot be attached to them");
    fuzz::check(attached.correlationMode == kSteinCorrelation && attached.steinInfo.rowCount() == list.steinInfo.rowCount(),
                "the attached sample differs from the imported one");

    // Names of up to 255 characters come in, with any character after the
    // first; only those a factor file can hold (short, one word, no forbidden
    // character) can go through one.
    for (int i = 0; i < list.factorCount(); ++i) {
        const std::string& name = list.getFactor(i)->name();
        const bool oneWord = std::none_of(name.begin(), name.end(), [](char c) { return std::isspace(static_cast<unsigned char>(c)); });
        if (name.size() > kMaxFactorNameLength || !oneWord || !isValidFactorName(name)) return fuzz::Outcome::Accepted;
    }
    const std::string first = fuzz::textOf(list);
    FactorList again, third;
    std::istringstream in1(first);
    fuzz::check(readFactorListInto(in1, again) == 1, "the imported factors do not load once written:\n" + first);
    const std::string second = fuzz::textOf(again);
    std::istringstream in2(second);
    fuzz::check(readFactorListInto(in2, third) == 1 && fuzz::sameText(fuzz::textOf(third), second),
                "the written text keeps changing:\n" + second);
    return fuzz::Outcome::Accepted;
}

}  // namespace tarvex
