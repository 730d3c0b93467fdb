// Project files (.psc): a refused file leaves the project as it was, and what
// loads writes a file that loads again with the same parts, its text no
// longer changing from the second writing on.
#include <sstream>

#include "FuzzSupport.h"
#include "app/ProjectConfiguration.h"

namespace tarvex {
namespace {

std::string textOf(const ProjectConfiguration& project) {
    std::ostringstream out;
    project.write(out);
    return out.str();
}

bool loads(const std::string& text, ProjectConfiguration& project) {
    return project.load(fuzz::ScratchFiles::instance().write("written.psc", text)) == 1;
}

}  // namespace

TARVEX_FUZZ_TARGET(ProjectFile, 200) {
    ProjectConfiguration project;
    PrepConfiguration marker;
    marker.sampleFile = "kept.sam";
    project.setPrep(marker);
    if (!project.load(fuzz::scratchInput(input))) {
        fuzz::check(project.fileName() == kNoProjectFile && project.hasPrep == 1 && project.hasModel == 0 &&
                        project.hasVels == 0 && project.prep.sampleFile == "kept.sam" &&
                        project.prep.factors.factorCount() == 0 && project.model.runCount() == 0,
                    "a refused file changed the project");
        return fuzz::Outcome::Refused;
    }
    const std::string first = textOf(project);
    ProjectConfiguration again, third;
    fuzz::check(loads(first, again), "the project read does not load once written:\n" + first);
    fuzz::check(again.hasPrep == project.hasPrep && again.hasModel == project.hasModel &&
                    again.hasVels == project.hasVels && again.model.runCount() == project.model.runCount() &&
                    again.prep.samples.rowCount() == project.prep.samples.rowCount(),
                "written and read back, the project has other parts or sizes");
    const std::string second = textOf(again);
    fuzz::check(loads(second, third) && fuzz::sameText(textOf(third), second),
                "the written text keeps changing:\n" + second);
    return fuzz::Outcome::Accepted;
}

}  // namespace tarvex
