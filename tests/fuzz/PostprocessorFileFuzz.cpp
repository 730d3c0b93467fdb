// Post-processor files (.spc): a refused file leaves all three parts as they
// were, and what loads writes a file that loads again, its text no longer
// changing from the second writing on.
#include <sstream>

#include "FuzzSupport.h"
#include "model/ModelConfiguration.h"
#include "postproc/PostprocessorFile.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {
namespace {

std::string textOfAll(const PrepConfiguration& prep, const ModelConfiguration& model, const VelsConfiguration& vels) {
    std::ostringstream out;
    writePostprocessorText(out, prep, model, vels);
    return out.str();
}

bool loads(const std::string& text, PrepConfiguration& prep, ModelConfiguration& model, VelsConfiguration& vels) {
    std::istringstream in(text);
    return readPostprocessorText(in, prep, model, vels) == 1;
}

}  // namespace

TARVEX_FUZZ_TARGET(PostprocessorFile, 200) {
    PrepConfiguration prep;
    prep.sampleFile = "kept.sam";
    ModelConfiguration model;
    VelsConfiguration vels;
    vels.setOutputs(1, {"kept"});
    fuzz::check(vels.addVariable("kept") == 1, "the marker was refused");
    if (!loadPostprocessorFile(fuzz::scratchInput(input), prep, model, vels)) {
        fuzz::check(prep.sampleFile == "kept.sam" && prep.factors.factorCount() == 0 && model.runCount() == 0 &&
                        vels.selectedVariables == std::vector<std::string>{"kept"} && vels.outputCount() == 1,
                    "a refused file changed the project");
        return fuzz::Outcome::Refused;
    }
    const std::string first = textOfAll(prep, model, vels);
    PrepConfiguration prep2, prep3;
    ModelConfiguration model2, model3;
    VelsConfiguration vels2, vels3;
    fuzz::check(loads(first, prep2, model2, vels2), "the project read does not load once written:\n" + first);
    fuzz::check(vels2.selectedVariables == vels.selectedVariables && vels2.outputCount() == vels.outputCount() &&
                    vels2.uncertainty.variableCount == vels.uncertainty.variableCount,
                "written and read back, the post-processor part has other sizes");
    const std::string second = textOfAll(prep2, model2, vels2);
    fuzz::check(loads(second, prep3, model3, vels3) && fuzz::sameText(textOfAll(prep3, model3, vels3), second),
                "the written text keeps changing:\n" + second);
    return fuzz::Outcome::Accepted;
}

}  // namespace tarvex
