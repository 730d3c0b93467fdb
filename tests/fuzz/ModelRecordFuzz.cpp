// Model records: what reads whole writes a record that reads again, its text
// no longer changing from the second writing on; a failed read keeps only
// runs that are on disk.
#include <sstream>

#include "FuzzSupport.h"
#include "model/ModelConfiguration.h"

namespace tarvex {
namespace {

bool readRecord(const std::string& text, ModelConfiguration& configuration) {
    std::istringstream in(text);
    configuration.read(in);
    return !in.fail();
}

}  // namespace

TARVEX_FUZZ_TARGET(ModelRecord, 1000) {
    ModelConfiguration configuration;
    const bool read = readRecord(std::string(input), configuration);
    std::vector<double> values;
    for (int32_t r = 0; r < configuration.runCount(); ++r)
        fuzz::check(configuration.readRun(r, values) == 1, "a run counted is not in the data file");
    if (!read) return fuzz::Outcome::Refused;

    const std::string first = fuzz::textOf(configuration);
    ModelConfiguration again, third;
    fuzz::check(readRecord("\n" + first, again), "the record read does not load once written:\n" + first);
    fuzz::check(again.runCount() == configuration.runCount() && again.outputCount() == configuration.outputCount(),
                "written and read back, the results have other sizes");
    const std::string second = fuzz::textOf(again);
    fuzz::check(readRecord("\n" + second, third) && fuzz::sameText(fuzz::textOf(third), second),
                "the written record keeps changing:\n" + second);
    return fuzz::Outcome::Accepted;
}

}  // namespace tarvex
