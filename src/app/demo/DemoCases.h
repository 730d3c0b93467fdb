#pragma once
// The built-in example cases: each a name, its factors, the equations of its
// internal model and the sampling design it is studied with, so that a
// complete project can be made in code without any file. New cases are new
// rows of the same table.
#include <cstdint>
#include <string>
#include <vector>

namespace tarvex {

class ProjectConfiguration;

struct DemoFactor {
    std::string name;
    double lower = 0.0;  // uniform on [lower, upper]
    double upper = 1.0;
};

struct DemoEquation {
    std::string name;
    std::string text;
    bool output = true;
};

struct DemoDesign {
    int32_t methodId = 0;
    int32_t baseSize = 0;  // rows of each base matrix of the Sobol' design
};

struct DemoCase {
    std::string name;
    std::string description;
    std::vector<DemoFactor> factors;
    std::vector<DemoEquation> equations;
    DemoDesign design;
};

// Every case, in the order they are listed to the user.
const std::vector<DemoCase>& demoCases();
// The case called `name`, or none.
const DemoCase* findDemoCase(const std::string& name);

// Fills `project` with the case's Prep part (factors and design of
// `baseSize` rows per block, 0 for the case's own; the sample file at
// `sampleFile`) and its Model part. 1, or 0 with `error` saying why.
[[nodiscard]] int buildDemoProject(const DemoCase& demo, int32_t baseSize, const std::string& sampleFile,
                                   ProjectConfiguration& project, std::string& error);

}  // namespace tarvex
