// External sample files: a refused file leaves the configuration as it was;
// an accepted one gives a factor per column, statistics, and a sample whose
// text reads back to the same text.
#include <sstream>

#include "FuzzSupport.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

TARVEX_FUZZ_TARGET(ExternalSample, 200) {
    PrepConfiguration configuration;
    configuration.sampleFile = "kept.sam";
    if (!configuration.loadExternalSample(fuzz::scratchInput(input))) {
        fuzz::check(configuration.errorText() == kReadExternalErrorText, "refused with " + configuration.errorText());
        fuzz::check(configuration.sampleFile == "kept.sam" && configuration.external == 0 &&
                        configuration.factors.factorCount() == 0,
                    "a refused file changed the configuration");
        return fuzz::Outcome::Refused;
    }
    const int32_t columns = configuration.samples.columnCount();
    fuzz::check(configuration.external == 1 && configuration.hasStatistics == 1 &&
                    configuration.factors.factorCount() == columns && configuration.samples.rowCount() >= 1,
                "an accepted file left an incomplete configuration");

    // Its factors have no distribution, so a sample file of it can't be
    // loaded again; the sample itself must survive its text form.
    std::ostringstream first;
    configuration.samples.write(first);
    sampValues again;
    std::istringstream in(first.str());
    again.read(in);
    fuzz::check(!in.fail() && again.rowCount() == configuration.samples.rowCount() && again.columnCount() == columns,
                "the sample does not read back from its text:\n" + first.str());
    std::ostringstream second;
    again.write(second);
    fuzz::check(second.str() == first.str(), "the sample's text changes when read back:\n" + first.str());
    return fuzz::Outcome::Accepted;
}

}  // namespace tarvex
