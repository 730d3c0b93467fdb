// Internal model files (.imd): a refused file leaves a cleared model with a
// reason, and what loads writes a file that loads again, its text no longer
// changing from the second writing on.
#include <sstream>

#include "FuzzSupport.h"
#include "model/InternalModel.h"

namespace tarvex {
namespace {

std::string textOf(InternalModel& model) {
    std::ostringstream out;
    model.write(out);
    return out.str();
}

bool loads(const std::string& text, InternalModel& model) {
    return model.readFile(fuzz::ScratchFiles::instance().write("written.imd", text)) == 1;
}

}  // namespace

TARVEX_FUZZ_TARGET(InternalModelFile, 2500) {
    InternalModel model;
    fuzz::check(model.addVariable("kept") == 1, "a plain variable was refused");
    if (!model.readFile(fuzz::scratchInput(input))) {
        fuzz::check(model.numVariables() == 0 && model.numExpressions() == 0, "a refused file left a model behind");
        fuzz::check(!model.errorText().empty() && model.errorText() != "noerror", "a refused file gave no reason");
        return fuzz::Outcome::Refused;
    }
    const std::string first = textOf(model);
    InternalModel again, third;
    fuzz::check(loads(first, again), "the model read does not load once written (" + again.errorText() + "):\n" + first);
    fuzz::check(again.numExpressions() == model.numExpressions() && again.numVariables() == model.numVariables(),
                "written and read back, the model has other sizes");
    const std::string second = textOf(again);
    fuzz::check(loads(second, third) && fuzz::sameText(textOf(third), second), "the written text keeps changing:\n" + second);
    return fuzz::Outcome::Accepted;
}

}  // namespace tarvex
