// The built-in Ishigami example end to end at base size B = 16384
// (8 B = 131072 runs of the first and total order design): one iteration makes the project,
// generates the sample (and writes its file), runs the internal model and
// computes the first and total order indices. Each stage's wall-clock time
// is reported as its own counter (seconds per iteration).
#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include <stdlib.h>

#include "app/RunController.h"
#include "app/demo/DemoCases.h"
#include "cli/BatchInterface.h"
#include "cli/Console.h"
#include "postproc/OutputTable.h"
#include "postproc/OutputTableBuilder.h"
#include "postproc/SensitivityClasses.h"

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void BM_IshigamiExample(benchmark::State& state) {
    const int32_t base = int32_t(state.range(0));
    std::string dir = (std::filesystem::temp_directory_path() / "tarvex-bench-XXXXXX").string();
    if (::mkdtemp(dir.data()) == nullptr) {
        state.SkipWithError("no scratch directory");
        return;
    }
    tarvex::Environment::instance().setMainDir(dir);
    std::ostringstream out, err;
    tarvex::cli::Console console{out, err, false, [] { return 0.0; }};
    const tarvex::DemoCase* demo = tarvex::findDemoCase("ishigami");
    double generation = 0.0, model = 0.0, indices = 0.0;
    for (auto _ : state) {
        tarvex::cli::BatchInterface ui(console, tarvex::cli::QuestionPolicy{}, true);
        tarvex::RunController controller(ui, dir);
        std::string error;
        if (!demo || !tarvex::buildDemoProject(*demo, base, dir + "/ishigami.sam", controller.project(), error) ||
            !controller.setMonteCarloMode(1)) {
            state.SkipWithError("the example could not be made");
            break;
        }
        auto start = Clock::now();
        if (!controller.generateSample()) {
            state.SkipWithError("the generation failed");
            break;
        }
        generation += secondsSince(start);
        start = Clock::now();
        if (!controller.runModel(1)) {
            state.SkipWithError("the model run failed");
            break;
        }
        model += secondsSince(start);
        start = Clock::now();
        tarvex::OutputTable table;
        auto stats = tarvex::createSensitivityForMethod(demo->design.methodId);
        if (!tarvex::buildOutputTable(controller.project().model, {"Y"}, table, error) || !stats) {
            state.SkipWithError("no indices");
            break;
        }
        stats->variableCount = 1;
        if (!stats->compute(controller.project().prep, table)) {
            state.SkipWithError(stats->errorText.c_str());
            break;
        }
        indices += secondsSince(start);
        state.counters["runs"] = controller.project().model.runCount();
    }
    const double n = double(state.iterations());
    if (n > 0) {
        state.counters["generation_s"] = generation / n;
        state.counters["model_s"] = model / n;
        state.counters["indices_s"] = indices / n;
    }
    std::error_code ec;
    std::filesystem::remove_all(dir, ec);
}

BENCHMARK(BM_IshigamiExample)->Arg(16384)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
