// The cost of the desktop program's interface on a long run: an internal model over
// 1,000,000 sample rows run through the main panel offscreen (gauge panel, a drain of
// the event queue at every percent) and through the batch tool's interface (progress
// on the terminal), the same controller operation on the same project; then how long
// a stopped external model takes to be gone.
//   QT_QPA_PLATFORM=offscreen build/bench/gui/GuiRunBench [rows]
#include <signal.h>

#include <QApplication>
#include <QPushButton>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "app/ProjectConfiguration.h"
#include "app/RunController.h"
#include "cli/BatchInterface.h"
#include "cli/Console.h"
#include "common/Environment.h"
#include "factors/Interval.h"
#include "factors/Uniform.h"
#include "model/InternalModel.h"
#include "panels/PMainPanel.h"
#include "panels/layer/EventQueue.h"
#include "panels/layer/SearchPath.h"
#include "sampling/RandomSampler.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using namespace tarvex;

double seconds(Clock::time_point from) { return std::chrono::duration<double>(Clock::now() - from).count(); }

// Three uniform factors on [-pi, pi] at random, generated in memory.
PrepConfiguration ishigamiSample(int32_t rows, const std::string& file) {
    PrepConfiguration prep;
    for (const char* name : {"x1", "x2", "x3"}) {
        auto u = std::make_unique<Uniform>();
        (void)u->setName(name);
        u->clear();
        (void)u->addInterval(std::make_unique<Interval>(-3.14159265358979, 3.14159265358979, 1.0));
        (void)prep.factors.addFactor(std::move(u));
    }
    auto sampler = std::make_unique<RandomSampler>();
    (void)sampler->setSamples(rows);
    prep.sampler = std::move(sampler);
    prep.sampleFile = file;
    prep.prepareGeneration();
    int percent = 0;
    for (int target = 1; target <= 100 && percent >= 0 && percent < 100; ++target) percent = prep.generate(target);
    return prep;
}

ModelConfiguration ishigamiModel() {
    auto m = std::make_unique<InternalModel>();
    (void)m->setName("ishigami");
    (void)m->addVariable("x1");
    (void)m->addVariable("x2");
    (void)m->addVariable("x3");
    (void)m->addExpression(0, "y", "sin(x1) + 7 * sin(x2) ** 2 + 0.1 * x3 ** 4 * sin(x1)", 1);
    ModelConfiguration model;
    model.setInternalModel(std::move(m));
    return model;
}

void give(ProjectConfiguration& project, const PrepConfiguration& prep, const ModelConfiguration& model) {
    project.setPrep(prep);
    project.setModel(model);
}

}  // namespace

int main(int argc, char** argv) {
    const int32_t rows = argc > 1 ? std::atoi(argv[1]) : 1000000;
    QApplication app(argc, argv);
    const fs::path scratch = fs::temp_directory_path() / ("tarvex-guibench-" + std::to_string(::getpid()));
    fs::create_directories(scratch);
    Environment::instance().setMainDir(scratch.string());
    SearchPath::clear();
    for (const char* d : {"/Preprocessor/PrepPanels", "/Tarvex/TarvexPanels", "/Postprocessor/VelsPanels", "/ILOG"})
        SearchPath::append(std::string(TARVEX_STAGE_DIR) + d);

    std::printf("generating %d rows...\n", rows);
    const PrepConfiguration prep = ishigamiSample(rows, (scratch / "s.sam").string());
    const ModelConfiguration model = ishigamiModel();

    // The batch tool's interface and the main panel offscreen (pressing Start on a
    // saved sample), taken in turns; the machine is shared, so the best of three each.
    std::ostringstream out;
    std::ostringstream err;
    cli::Console console{out, err, false, [] { return std::chrono::duration<double>(Clock::now().time_since_epoch()).count(); }};
    double batch = 1e30;
    double gui = 1e30;
    int drains = 0;
    for (int round = 0; round < 3; ++round) {
        {
            cli::BatchInterface ui(console, cli::QuestionPolicy{}, true);
            RunController controller(ui, scratch.string());
            give(controller.project(), prep, model);
            (void)controller.setMonteCarloMode(1);
            const auto t = Clock::now();
            const int ok = controller.runModel(1);
            batch = std::min(batch, seconds(t));
            if (ok != 1 || controller.project().model.runCount() != rows) std::printf("batch run incomplete\n");
        }
        {
            PMainPanel panel("PMainPanel", "Tarvex", 0, 0, 730, 480, scratch.string());
            give(panel.project(), prep, model);
            panel.invokeCallback("monteCarlo");
            (void)panel.setSelectorIndex("SelSamplesSource", 1);
            panel.invokeCallback("changeSel");
            panel.show();
            drains = 0;
            EventQueue::setDrainHook([&drains] {
                ++drains;
                return EventQueue::dispatchPending();
            });
            const auto t = Clock::now();
            panel.invokeCallback("start");
            gui = std::min(gui, seconds(t));
            EventQueue::setDrainHook(nullptr);
            if (panel.isSensitive("BAnalyse") != 1 || panel.project().model.runCount() != rows)
                std::printf("GUI run incomplete\n");
        }
    }
    std::printf("internal model, %d rows (best of 3): batch interface %.3f s, main panel %.3f s (%d drains), "
                "overhead %.2f %%\n",
                rows, batch, gui, drains, 100.0 * (gui - batch) / batch);

    // An external model stopped at its first poll.
    const fs::path hang = scratch / "hang.sh";
    std::ofstream(hang) << "#!/bin/sh\nexec sleep 30\n";
    fs::permissions(hang, fs::perms::owner_all);
    {
        PMainPanel panel("PMainPanel", "Tarvex", 0, 0, 730, 480, scratch.string());
        PrepConfiguration small = ishigamiSample(10, (scratch / "small.sam").string());
        (void)small.writeSampleFile(small.sampleFile);
        ModelConfiguration external;
        external.setExternal(hang.string(), (scratch / "out.txt").string(), 0);
        external.setKind(ModelConfiguration::kExternal);
        give(panel.project(), small, external);
        panel.invokeCallback("monteCarlo");
        (void)panel.setSelectorIndex("SelSamplesSource", 1);
        Clock::time_point stopped{};
        EventQueue::setDrainHook([&] {
            if (stopped == Clock::time_point{} && panel.progressPanel()) {
                stopped = Clock::now();
                panel.progressPanel()->window()->findChild<QPushButton*>("BStop")->click();
            }
            return EventQueue::dispatchPending();
        });
        panel.invokeCallback("start");
        EventQueue::setDrainHook(nullptr);
        std::printf("external model stopped: gone %.1f ms after the stop\n", 1000.0 * seconds(stopped));
    }
    std::error_code ec;
    fs::remove_all(scratch, ec);
    return 0;
}
