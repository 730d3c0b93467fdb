// The run controller's terminal user: its messages on one line, the
// regeneration question answered by policy, and Ctrl-C turned into a stop
// request for the operation in progress only.
#include <gtest/gtest.h>

#include <csignal>
#include <sstream>

#include "app/RunController.h"
#include "cli/BatchInterface.h"
#include "cli/Console.h"

namespace tarvex::cli {
namespace {

std::atomic<int> g_ownHandlerCalls{0};
extern "C" void ownHandler(int) { ++g_ownHandlerCalls; }

struct Terminal {
    std::ostringstream out, err;
    Console console{out, err, false, [] { return 0.0; }};
};

TEST(BatchInterface, MessagesAndQuestionsOnTheErrorStream) {
    Terminal t;
    BatchInterface ui(t.console, QuestionPolicy{false}, true);
    ui.message(MessageKind::Error, "Error", "Model execution returned with error code");
    ui.warning("Warning", "  two\n lines  ");
    ui.message(MessageKind::Information, "", "no title");
    EXPECT_EQ(t.err.str(),
              "tarvex-batch: Error: Model execution returned with error code\n"
              "tarvex-batch: Warning: two lines\n"
              "tarvex-batch: no title\n");
    EXPECT_EQ(ui.errorCount(), 1);
    EXPECT_EQ(t.out.str(), "");

    // The policy refuses a new sample: "^No", the second button.
    t.err.str("");
    EXPECT_EQ(ui.ask(Question{"Question", kRegenerateText, {"^Yes", "^No"}}), 1);
    EXPECT_EQ(t.err.str(),
              "tarvex-batch: Question: One sample set already exists. Do you want to delete the existing one and "
              "create a new one now? No\n");
    // Any other question takes its first button.
    EXPECT_EQ(ui.ask(Question{"Question", "Proceed?", {"^Proceed", "^Cancel"}}), 0);
    BatchInterface yes(t.console, QuestionPolicy{true}, true);
    EXPECT_TRUE(yes.askYesNo("Question", kRegenerateText));

    FileChoice choice;
    EXPECT_FALSE(ui.chooseFile(FileRequest{"Open", "/tmp", {{"*.psc", "*.psc (project's files)"}}, false}, choice));
    EXPECT_TRUE(choice.path.empty());
}

TEST(BatchInterface, InterruptStopsOnlyTheOperationInProgress) {
    Terminal t;
    struct sigaction own {}, before {};
    own.sa_handler = ownHandler;
    sigemptyset(&own.sa_mask);
    ASSERT_EQ(::sigaction(SIGINT, &own, &before), 0);
    {
        BatchInterface ui(t.console, QuestionPolicy{}, true);
        ui.beginProgress(ProgressRequest{ProgressKind::Gauge, "generation", "Sample generation", "", "", ""});
        EXPECT_FALSE(ui.stopRequested());
        ASSERT_EQ(std::raise(SIGINT), 0);
        EXPECT_EQ(g_ownHandlerCalls.load(), 0);  // caught by the operation, not the former handler
        ui.waitForPoll();                        // returns at once: the flag is up
        EXPECT_TRUE(ui.stopRequested());
        EXPECT_TRUE(ui.stopRequested());  // stays until the end
        ui.endProgress();
        EXPECT_TRUE(ui.interrupted());

        // Between operations the former handler is back.
        ASSERT_EQ(std::raise(SIGINT), 0);
        EXPECT_EQ(g_ownHandlerCalls.load(), 1);
        // A new operation starts without the old stop.
        ui.beginProgress(ProgressRequest{ProgressKind::Animation, "external model execution", "External model execution",
                                         "", "s.sam", "model.sh"});
        EXPECT_FALSE(ui.stopRequested());
        EXPECT_FALSE(ui.interrupted());
        ui.endProgress();
    }
    ASSERT_EQ(std::raise(SIGINT), 0);
    EXPECT_EQ(g_ownHandlerCalls.load(), 2);
    ::sigaction(SIGINT, &before, nullptr);
}

TEST(BatchInterface, PanelsAreAcceptedAndProgressIsDrawn) {
    Terminal t;
    BatchInterface ui(t.console, QuestionPolicy{}, false);
    ui.beginProgress(ProgressRequest{ProgressKind::Gauge, "model execution", "Model execution", "", "", ""});
    ui.setPercentage(0);
    ui.setPercentage(55);
    ui.setPercentage(100);
    ui.endProgress();
    // Not a terminal: a plain line each time a tenth is passed.
    EXPECT_EQ(t.err.str(), "Model execution: 0%\nModel execution: 50%\nModel execution: 100%\n");
    EXPECT_EQ(ui.showAbout(false), PanelOutcome::Accepted);
    EXPECT_EQ(ui.showHelpPanel("ishigami", true), PanelOutcome::Accepted);
}

}  // namespace
}  // namespace tarvex::cli
