#include "app/demo/DemoCases.h"

#include <memory>
#include <numbers>

#include "app/ProjectConfiguration.h"
#include "factors/Interval.h"
#include "factors/Uniform.h"
#include "model/InternalModel.h"
#include "sampling/SobolSampler.h"

namespace tarvex {

namespace {

constexpr double kPi = std::numbers::pi;

std::vector<DemoCase> makeCases() {
    return {
        {"ishigami",
         "Ishigami function: Y = sin(x1) + 7 sin(x2)^2 + 0.1 x3^4 sin(x1), x1, x2, x3 uniform on [-pi, pi]",
         {{"x1", -kPi, kPi}, {"x2", -kPi, kPi}, {"x3", -kPi, kPi}},
         {{"Y", "sin(x1)+7*sin(x2)**2+0.1*x3**4*sin(x1)", true}},
         {kSobolMethod, 4096}},
    };
}

}  // namespace

const std::vector<DemoCase>& demoCases() {
    static const std::vector<DemoCase> cases = makeCases();
    return cases;
}

const DemoCase* findDemoCase(const std::string& name) {
    for (const DemoCase& c : demoCases())
        if (c.name == name) return &c;
    return nullptr;
}

int buildDemoProject(const DemoCase& demo, int32_t baseSize, const std::string& sampleFile,
                     ProjectConfiguration& project, std::string& error) {
    project.resetAll();
    PrepConfiguration& prep = project.prep;
    for (const DemoFactor& f : demo.factors) {
        auto factor = std::make_unique<Uniform>();
        factor->clear();
        if (!factor->setName(f.name) || !factor->addInterval(std::make_unique<Interval>(f.lower, f.upper, 1.0)) ||
            !prep.factors.addFactor(std::move(factor))) {
            error = "The factor " + f.name + " of the example could not be made";
            return 0;
        }
    }
    const int32_t base = baseSize > 0 ? baseSize : demo.design.baseSize;
    auto sobol = std::make_unique<SobolSampler>();
    if (!sobol->setBaseSize(base)) {
        error = kSobolBadBaseSizeText;
        return 0;
    }
    sobol->setDesignKind(1);
    const int64_t runs = SobolSampler::blockCount(int32_t(demo.factors.size()), 1, 0, false) * int64_t(base);
    if (runs > INT32_MAX || !sobol->setSamples(int32_t(runs))) {
        error = kSobolTooManyRunsText;
        return 0;
    }
    prep.sampler = std::move(sobol);
    prep.sampleFile = sampleFile;
    project.hasPrep = 1;

    auto model = std::make_unique<InternalModel>();
    if (!model->setName(demo.name)) {
        error = model->errorText();
        return 0;
    }
    for (const DemoFactor& f : demo.factors) {
        if (!model->addVariable(f.name)) {
            error = model->errorText();
            return 0;
        }
    }
    int position = 0;
    for (const DemoEquation& e : demo.equations) {
        if (!model->addExpression(position++, e.name, e.text, int16_t(e.output ? 1 : 0))) {
            error = model->errorText();
            return 0;
        }
    }
    project.model.setInternalModel(std::move(model));
    project.hasModel = 1;
    return 1;
}

}  // namespace tarvex
