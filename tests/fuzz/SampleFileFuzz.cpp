// Sample files (.sam): a refused file leaves the configuration as it was, and
// what loads writes a file that loads again, its text no longer changing from
// the second writing on.
#include <sstream>

#include "FuzzSupport.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {
namespace {

bool loads(const std::string& text, PrepConfiguration& configuration) {
    return configuration.readSampleFile(fuzz::ScratchFiles::instance().write("written.sam", text)) == 1;
}

}  // namespace

TARVEX_FUZZ_TARGET(SampleFile, 200) {
    PrepConfiguration configuration;
    configuration.sampleFile = "kept.sam";
    if (!configuration.readSampleFile(fuzz::scratchInput(input))) {
        fuzz::check(configuration.errorText() == kReadSamplesErrorText, "refused with " + configuration.errorText());
        fuzz::check(configuration.sampleFile == "kept.sam" && configuration.factors.factorCount() == 0 &&
                        configuration.samples.rowCount() == 0,
                    "a refused file changed the configuration");
        return fuzz::Outcome::Refused;
    }
    const std::string first = fuzz::textOf(configuration);
    PrepConfiguration again, third;
    fuzz::check(loads(first, again), "the configuration read does not load once written:\n" + first);
    fuzz::check(again.samples.rowCount() == configuration.samples.rowCount() &&
                    again.samples.columnCount() == configuration.samples.columnCount(),
                "written and read back, the sample has another size");
    const std::string second = fuzz::textOf(again);
    fuzz::check(loads(second, third) && fuzz::sameText(fuzz::textOf(third), second), "the written text keeps changing:\n" + second);
    return fuzz::Outcome::Accepted;
}

}  // namespace tarvex
