// The progress panels on their own, and the runs of the main panel as the user sees
// them through the drain of the event queue: the gauge of an internal run, stops,
// external script models, and the end of the program asked for in the middle of a run.
#include <signal.h>

#include <QCloseEvent>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QLabel>
#include <QPointer>
#include <cmath>
#include <limits>

#include "MainWorkflowFixture.h"
#include "model/gui/PExternalModel.h"
#include "model/gui/PGenerate.h"

using namespace tarvex;
using namespace tarvex::test;

namespace {

using Strings = std::vector<std::string>;

class ProgressPanels : public ::testing::Test, public PanelTestBase {};

TEST_F(ProgressPanels, TheGaugeTakesOnlyPercentagesAndStopEndsNothingButTheWait) {
    PGenerate panel("generation", "Sample generation");
    ASSERT_EQ(panel.isLoaded(), 1) << panel.errorText();
    EXPECT_EQ(panel.title(), "Sample generation");
    EXPECT_EQ(panel.window()->size(), QSize(376, 156));
    for (const char* g : {"RgPercentage", "MlPercentage", "MlFileName", "TeTitle"})
        EXPECT_NE(panel.getObject(g), nullptr) << g;
    panel.setPercentage(0);
    EXPECT_EQ(panel.getLabel("MlPercentage"), "0%");
    panel.setPercentage(99.9);  // truncated
    EXPECT_EQ(panel.getLabel("MlPercentage"), "99%");
    EXPECT_EQ(panel.gaugeValue("RgPercentage"), 99);
    for (double outside : {100.5, -0.1, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        panel.setPercentage(outside);
        EXPECT_EQ(panel.getLabel("MlPercentage"), "99%") << outside;
        EXPECT_EQ(panel.gaugeValue("RgPercentage"), 99) << outside;
    }
    panel.setPercentage(100);
    EXPECT_EQ(panel.getLabel("MlPercentage"), "100%");
    EXPECT_EQ(panel.gaugeValue("RgPercentage"), 100);

    panel.show();
    EXPECT_EQ(panel.continueRun, 1);
    panel.invokeCallback("stop");
    EXPECT_EQ(panel.continueRun, 0);
    EXPECT_EQ(panel.isShown(), 0);

    // Closing the window is the stop button: the panel stays for its loop to delete.
    PExternalModel external("external model execution", "External model execution");
    external.show();
    QPointer<QWidget> window = external.window();
    window->close();
    QCoreApplication::processEvents();
    EXPECT_EQ(external.continueRun, 0);
    EXPECT_FALSE(window.isNull());
    EXPECT_EQ(external.isShown(), 0);
}

TEST_F(ProgressPanels, TheAnimationMovesOneFrameAlongTheSevenIcons) {
    PExternalModel panel("external model execution", "External model execution");
    ASSERT_EQ(panel.isLoaded(), 1) << panel.errorText();
    EXPECT_EQ(panel.window()->size(), QSize(430, 220));
    // Fourteen pictures of our own, all different.
    std::vector<QImage> frames;
    for (int i = 0; i < 14; ++i) {
        ASSERT_FALSE(panel.frame(i).isNull()) << i;
        frames.push_back(panel.frame(i).toImage());
        for (int j = 0; j < i; ++j) EXPECT_NE(frames[i], frames[j]) << i << " " << j;
    }
    auto shown = [&](int icon) {
        auto* label = qobject_cast<QLabel*>(panel.getObject("icon" + std::to_string(icon)));
        const QImage image = label->pixmap().toImage();
        for (int f = 0; f < 14; ++f)
            if (image == frames[f]) return f;
        return -1;
    };
    // The counter runs 1 .. 14 and then 0: over 30 steps, frame (counter + i - 1) mod 14
    // on icon i, where the counter is the step number modulo 15.
    for (int n = 1; n <= 30; ++n) {
        panel.step();
        const int counter = n % 15;
        EXPECT_EQ(panel.frameCounter(), counter) << n;
        for (int icon = 1; icon <= 7; ++icon) EXPECT_EQ(shown(icon), (counter + icon - 1) % 14) << n << " " << icon;
    }
}

// ------------------------------------------------------------ runs through the main panel

class MainPanelRuns : public MainWorkflow {
protected:
    // The Monte Carlo stage with a saved sample of `rows` rows and `model` selected.
    void ready(int32_t rows, ModelConfiguration model) {
        const std::string sample = writeSample(rows);
        make();
        press("BMonteCarlo");
        choose(1);
        dialogs->answerFile(sample);
        press("BOld");
        panel->project().model.swap(model);
        panel->project().hasModel = 1;
        press("BSelectInput");  // accepted as is: the model set above
        ASSERT_EQ(panel->isSensitive("BStart"), 1);
    }
    ModelConfiguration internal() {
        ModelConfiguration m;
        m.setInternalModel(std::make_unique<InternalModel>(sumModel()));
        return m;
    }
    ModelConfiguration external(const std::string& executable) {
        ModelConfiguration m;
        m.setExternal(executable, dir.file("out.txt"), 0);
        m.setKind(ModelConfiguration::kExternal);
        return m;
    }
    void pressStop() {
        Panel* progress = panel->progressPanel();
        ASSERT_NE(progress, nullptr);
        auto* stop = progress->window()->findChild<QPushButton*>("BStop");
        ASSERT_NE(stop, nullptr);
        stop->click();
    }
};

TEST_F(MainPanelRuns, AFiftyRowInternalRunShowsEveryOtherPercent) {
    ready(50, internal());
    Strings seen;
    DrainHook drains([&] {
        Panel* progress = panel->progressPanel();
        EXPECT_NE(progress, nullptr);
        if (!progress) return 1;
        EXPECT_EQ(progress->isShown(), 1);
        EXPECT_EQ(progress->window()->windowModality(), Qt::ApplicationModal);
        seen.push_back(progress->getLabel("MlPercentage"));
        EXPECT_EQ(std::to_string(progress->gaugeValue("RgPercentage")) + "%", seen.back());
        if (seen.size() == 50) {
            EXPECT_EQ(progress->title(), "Model execution");
            EXPECT_EQ(progress->getLabel("MlFileName"), "Model name:  sum");
            EXPECT_EQ(progress->getText("TeTitle"), "MODEL EXECUTION");
            saveShot(*progress->window(), "progress-generate");
        }
        return 1;
    });
    press("BStart");
    // A row is two percent: each target of one percent shows its even value twice,
    // and the target that reaches 100 ends the run.
    Strings expected;
    for (int drain = 1; drain <= 98; ++drain) expected.push_back(std::to_string(2 * ((drain + 1) / 2)) + "%");
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(panel->progressPanel(), nullptr);
    EXPECT_EQ(panel->isSensitive("BAnalyse"), 1);
    EXPECT_EQ(panel->isSensitive("BSeeLog"), 1);
    EXPECT_EQ(panel->project().model.runCount(), 50);
    EXPECT_TRUE(dialogs->messages.empty());
}

TEST_F(MainPanelRuns, AStoppedInternalRunLeavesNoAnalysisAndServesNothingElse) {
    ready(200, internal());
    int drains = 0;
    std::string before;
    DrainHook hook([&] {
        // Meanwhile the user clicks everywhere: every callback returns before touching anything.
        if (++drains == 1) {
            before = state();
            const std::size_t choosers = dialogs->choosers.size();
            for (const char* cb : PMainPanelBase::kCallbacks) {
                const std::string name = cb;
                if (name != "terminate" && name != "help" && name != "helpSearch") panel->invokeCallback(name);
            }
            EXPECT_EQ(state(), before);
            EXPECT_EQ(dialogs->choosers.size(), choosers);
            EXPECT_TRUE(dialogs->messages.empty());
            EXPECT_TRUE(modals.empty());
            EXPECT_EQ(panel->getLabel("MlPrepVels"), "Monte Carlo execution");
        }
        if (drains == 3) pressStop();
        return 1;
    });
    press("BStart");
    EXPECT_EQ(drains, 3);
    EXPECT_EQ(panel->progressPanel(), nullptr);
    EXPECT_EQ(panel->isSensitive("BAnalyse"), 0);
    EXPECT_EQ(panel->isSensitive("BSeeLog"), 1);
    EXPECT_EQ(panel->project().hasVels, 0);
    EXPECT_EQ(panel->busy(), 0);
    EXPECT_TRUE(dialogs->messages.empty());
}

TEST_F(MainPanelRuns, ExternalScriptModels) {
    // Exit code 3: reported, its output never read.
    ready(3, external(script("three.sh", "printf '1\\nz\\ntime = no\\n3\\n7\\n8\\n9\\n' > out.txt\nexit 3\n")));
    press("BStart");
    EXPECT_EQ(messages(), Strings{"Error|Model execution returned with error code"});
    EXPECT_EQ(panel->isSensitive("BAnalyse"), 0);
    EXPECT_EQ(panel->isSensitive("BSeeLog"), 1);
    EXPECT_EQ(panel->progressPanel(), nullptr);

    // Writing its output, run in the installation directory on the sample file.
    const std::string sample = panel->project().prep.sampleFile;
    ModelConfiguration good = external(script("good.sh", "test \"$1\" = '" + sample +
                                                             "' || exit 5\nprintf '1\\ny\\ntime = no\\n3\\n1\\n2\\n3\\n' > out.txt\n"));
    panel->project().model.swap(good);
    int drains = 0;
    DrainHook hook([&] {
        if (++drains == 1) {
            Panel* progress = panel->progressPanel();
            EXPECT_NE(progress, nullptr);
            if (!progress) return 1;
            EXPECT_EQ(progress->title(), "External model execution");
            EXPECT_EQ(progress->getLabel("MlModelName"), dir.file("good.sh"));
            EXPECT_EQ(progress->getLabel("MlFileName"), sample);
        }
        return 1;
    });
    press("BStart");
    EXPECT_EQ(messages().size(), 1u);
    EXPECT_EQ(panel->isSensitive("BAnalyse"), 1);
    EXPECT_EQ(panel->project().vels.outputCount(), 1);
    EXPECT_EQ(panel->project().model.runCount(), 3);
}

TEST_F(MainPanelRuns, AStoppedExternalModelIsGoneWithinASecond) {
    ready(3, external(script("hang.sh", "echo $$ > pid.txt\nexec sleep 30\n")));
    QElapsedTimer sinceStop;
    DrainHook hook([&] {
        Panel* progress = panel->progressPanel();
        if (progress && !sinceStop.isValid() && !readFile(dir.file("pid.txt")).empty()) {
            saveShot(*progress->window(), "progress-external");
            sinceStop.start();
            pressStop();
        }
        return 1;
    });
    press("BStart");
    ASSERT_TRUE(sinceStop.isValid());
    EXPECT_LT(sinceStop.elapsed(), 1000);
    const pid_t pid = std::stoi(readFile(dir.file("pid.txt")));
    EXPECT_EQ(::kill(pid, 0), -1);
    EXPECT_TRUE(dialogs->messages.empty());
    EXPECT_EQ(panel->isSensitive("BAnalyse"), 0);
    EXPECT_EQ(panel->progressPanel(), nullptr);
}

TEST_F(MainPanelRuns, ClosingTheMainWindowDuringARunEndsTheProgramAfterIt) {
    ready(200, internal());
    PMainPanel* main = panel.release();
    QPointer<QWidget> window = main->window();
    int drains = 0;
    {
        DrainHook hook([&] {
            if (++drains == 2) {
                window->close();
                EventQueue::dispatchPending();  // the close reaches the panel now, mid-run
            }
            EXPECT_FALSE(window.isNull());  // never beneath the loop
            return 1;
        });
        qobject_cast<QPushButton*>(main->getObject("BStart"))->click();
    }
    // The close stopped the run; the panel goes once the callback has returned.
    EXPECT_LE(drains, 3);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_TRUE(window.isNull());
    EXPECT_TRUE(std::filesystem::exists(dir.file("config.dat")));
}

}  // namespace
