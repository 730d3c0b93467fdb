// Model output files: whatever is read, a failure included, leaves the runs
// it counts on disk; what reads whole goes through a Model record and back,
// its text no longer changing from the second writing on.
#include <sstream>

#include "FuzzSupport.h"
#include "model/MessageSink.h"
#include "model/ModelConfiguration.h"

namespace tarvex {
namespace {

class Silent : public MessageSink {
public:
    void warning(const std::string&, const std::string&) override {}
    void error(const std::string&, const std::string&) override {}
};

// The reader drops the end of the line before the record first.
bool readRecord(const std::string& text, ModelConfiguration& configuration) {
    std::istringstream in("\n" + text);
    configuration.read(in);
    return !in.fail();
}

}  // namespace

TARVEX_FUZZ_TARGET(ModelOutput, 1000) {
    ModelConfiguration configuration;
    configuration.setExternal("model", fuzz::scratchInput(input), 0);
    Silent messages;
    const int read = configuration.readModelOutput(messages);
    std::vector<double> values;
    for (int32_t r = 0; r < configuration.runCount(); ++r)
        fuzz::check(configuration.readRun(r, values) == 1, "a run counted is not in the data file");
    if (!read) return fuzz::Outcome::Refused;

    const std::string first = fuzz::textOf(configuration);
    ModelConfiguration again, third;
    fuzz::check(readRecord(first, again), "the output read does not load as a record:\n" + first);
    fuzz::check(again.runCount() == configuration.runCount() && again.outputCount() == configuration.outputCount(),
                "written and read back, the results have other sizes");
    const std::string second = fuzz::textOf(again);
    fuzz::check(readRecord(second, third) && fuzz::sameText(fuzz::textOf(third), second), "the written record keeps changing:\n" + second);
    return fuzz::Outcome::Accepted;
}

}  // namespace tarvex
