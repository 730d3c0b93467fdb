// Factor files: a refused file leaves the caller's list alone, and whatever
// loads writes a file that loads again, its text no longer changing from the
// second writing on.
#include <memory>
#include <sstream>

#include "FuzzSupport.h"
#include "correlation/FactorFile.h"
#include "correlation/FactorList.h"
#include "factors/Constant.h"

namespace tarvex {
namespace {

std::string textOf(const FactorList& list) {
    std::ostringstream out;
    list.write(out);
    return out.str();
}

bool readText(const std::string& text, FactorList& list) {
    std::istringstream in(text);
    return readFactorListInto(in, list) == 1;
}

}  // namespace

TARVEX_FUZZ_TARGET(FactorFile, 2500) {
    FactorList list;
    auto kept = std::make_unique<Constant>();
    (void)kept->setName("keep");
    (void)list.addFactor(std::move(kept));
    if (!readText(std::string(input), list)) {
        fuzz::check(list.factorCount() == 1 && list.getFactor(0)->name() == "keep", "a refused file changed the list");
        return fuzz::Outcome::Refused;
    }
    const std::string first = textOf(list);
    FactorList again, third;
    fuzz::check(readText(first, again), "the list read does not load once written:\n" + first);
    fuzz::check(again.factorCount() == list.factorCount(), "written and read back, the list has another length");
    const std::string second = textOf(again);
    fuzz::check(readText(second, third) && fuzz::sameText(textOf(third), second), "the written text keeps changing:\n" + second);
    return fuzz::Outcome::Accepted;
}

}  // namespace tarvex
