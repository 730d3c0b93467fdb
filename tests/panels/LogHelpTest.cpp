// The log file viewer, the help pictures, the quick help, the about panel and the help set.
#include <gtest/gtest.h>

#include <QLabel>
#include <QTextBrowser>
#include <QUrl>
#include <filesystem>

#include "PanelTestSupport.h"
#include "TestSupport.h"
#include "common/Environment.h"
#include "panels/layer/HelpSystem.h"
#include "panels/PAbout.h"
#include "panels/PHelp.h"
#include "panels/PLogFile.h"

using namespace tarvex;
using namespace tarvex::test;

namespace {

class LogHelpTest : public ::testing::Test, public PanelTestBase {};

TEST_F(LogHelpTest, TheLogPanelStartsWithoutAFile) {
    PLogFile log;
    ASSERT_EQ(log.isLoaded(), 1) << log.errorText();
    EXPECT_EQ(log.name(), "LogFile");
    EXPECT_EQ(log.title(), "Log File Panel");
    EXPECT_EQ(log.window()->size(), QSize(470, 465));
    EXPECT_EQ(log.getLabel("MFileName"), "No file selected");
    EXPECT_EQ(log.getText("TeText"), "");
    EXPECT_EQ(log.kindOf("TeText"), GadgetKind::Text);
    EXPECT_EQ(log.kindOf("MFileName"), GadgetKind::MessageLabel);
}

TEST_F(LogHelpTest, LinesAreShownWholeAndAnEmptyFileGivesAnEmptyText) {
    ScratchDir dir;
    const std::string longLine(100000, 'x');
    writeFile(dir.file("model.log"), "first line\n" + longLine + "\r\n\nlast without end");
    writeFile(dir.file("empty.log"), "");
    PLogFile log(dir.file("model.log"));  // the second constructor loads at once
    EXPECT_EQ(log.getLabel("MFileName"), dir.file("model.log"));
    EXPECT_EQ(log.getText("TeText"), "first line\n" + longLine + "\n\nlast without end");

    EXPECT_EQ(log.load(dir.file("empty.log")), 1);
    EXPECT_EQ(log.getLabel("MFileName"), dir.file("empty.log"));
    EXPECT_EQ(log.getText("TeText"), "");
}

TEST_F(LogHelpTest, AFileThatCannotBeOpenedIsReportedAndChangesNothing) {
    ScratchDir dir;
    writeFile(dir.file("ok.log"), "kept\n");
    DialogScript dialogs;
    PLogFile log(dir.file("ok.log"));
    EXPECT_EQ(log.load(dir.file("missing.log")), 0);
    EXPECT_EQ(log.load(dir.path().string() + "/"), 0);  // a directory is no file to show
    ASSERT_EQ(dialogs->messages.size(), 2u);
    EXPECT_EQ(dialogs->messages[0].title, "Error");
    EXPECT_EQ(dialogs->messages[0].text, "Error opening file");
    EXPECT_EQ(dialogs->messages[0].kind, MessageKind::Error);
    EXPECT_EQ(log.getLabel("MFileName"), dir.file("ok.log"));
    EXPECT_EQ(log.getText("TeText"), "kept");

    PLogFile fresh(dir.file("missing.log"));
    EXPECT_EQ(fresh.getLabel("MFileName"), "No file selected");
}

TEST_F(LogHelpTest, FileOpenOffersTheChooserInTheModelDirectoryAndRemembersWhereItEnded) {
    ScratchDir dir;
    std::filesystem::create_directories(dir.path() / "models" / "run1");
    writeFile(dir.file("models/run1/out.log"), "done\n");
    RememberedDirectories& dirs = Environment::instance().directories();
    CurrentDirGuard cwd(dir.path());
    ASSERT_EQ(dirs.setModelDirectory(dir.file("models")), 1);
    DialogScript dialogs;
    dialogs->answerFile(dir.file("models/run1/out.log"));
    dialogs->answerFile("");
    PLogFile log;
    log.invokeCallback("fileOpen");
    ASSERT_EQ(dialogs->choosers.size(), 1u);
    const FileRequest& shown = dialogs->choosers[0];
    EXPECT_EQ(shown.title, "Open log file");
    EXPECT_EQ(shown.directory, dir.file("models"));
    EXPECT_EQ(shown.patterns, std::vector<std::string>{"*.*"});
    EXPECT_EQ(shown.descriptions, std::vector<std::string>{"*.* (all files)"});
    EXPECT_FALSE(shown.save);
    EXPECT_EQ(dirs.modelDirectory(), dir.file("models/run1"));
    EXPECT_EQ(log.getText("TeText"), "done");
    // A cancelled chooser leaves everything as it was.
    log.invokeCallback("fileOpen");
    EXPECT_EQ(dirs.modelDirectory(), dir.file("models/run1"));
    EXPECT_EQ(log.getText("TeText"), "done");
    dirs.clear(RememberedDirectories::Model);
}

TEST_F(LogHelpTest, CloseEndsTheModalLogPanel) {
    int shown = 0;
    ModalHook hook([&](Panel& p) {
        ++shown;
        p.invokeCallback("close");
        EXPECT_EQ(p.isShown(), 0);
        return 0;
    });
    showLog();
    EXPECT_EQ(shown, 1);
}

TEST_F(LogHelpTest, TheDemoDescriptionShowsTheCasesPicture) {
    std::vector<std::string> seen;
    QSize picture;
    QSize panelSize;
    ModalHook hook([&](Panel& p) {
        seen = {p.name(), p.title(), p.getLabel("MlTitle")};
        picture = qobject_cast<QLabel*>(p.getObject("IcText"))->pixmap().size();
        panelSize = p.window()->size();
        p.invokeCallback("dismiss");
        return 0;
    });
    showHelpPanel("Ishigami");
    EXPECT_EQ(seen, (std::vector<std::string>{"Help", "Help - Ishigami", "Ishigami model description"}));
    EXPECT_EQ(picture, QSize(420, 210));
    EXPECT_GE(panelSize.width(), 420);
    EXPECT_GE(panelSize.height(), 210);
    // A case without a picture gives an empty panel.
    showHelpPanel("LevelE");
    EXPECT_EQ(seen[2], "LevelE model description");
    EXPECT_TRUE(picture.isEmpty());
}

TEST_F(LogHelpTest, HintPanelsShowTheirPictureTitleAndHeadingOnce) {
    struct Expected {
        const char* caller;
        const char* title;
        const char* heading;
        const char* picture;
    };
    const Expected table[] = {
        {"PFast", "Help - Fast", "Pratictioner's Hint. Fast", "../help/fast.bmp"},
        {"PFixed", "Help - Fixed Samples", "Pratictioner's Hint. Fixed Samples", "../help/fixed.bmp"},
        {"PLatin", "Help - Latin HyperCube", "Pratictioner's Hint. Latin HyperCube", "../help/random.bmp"},
        {"PLpTau", "Help - QuasiRandom LpTau", "Pratictioner's Hint. QuasiRandom LpTau", "../help/lptau.bmp"},
        {"PMorris", "Help - Morris", "Pratictioner's Hint. Morris", "../help/morris.bmp"},
        {"PRandom", "Help - Random", "Pratictioner's Hint. Random", "../help/random.bmp"},
        {"PRepLatin", "Help - replicated Latin hypercube", "Pratictioner's Hint. rep Latin", "../help/repLatin.bmp"},
        {"PSobol", "Help - Sobol", "Pratictioner's Hint. Sobol", "../help/sobol.bmp"},
        {"PTruncation", "Help - Default Truncation", "Pratictioner's Hint. Default Truncation",
         "../help/truncation.bmp"},
    };
    for (const Expected& e : table) {
        int helpOpen = 0;
        int opened = 0;
        int nested = -1;
        ModalHook hook([&](Panel& p) {
            ++opened;
            EXPECT_EQ(helpOpen, 1);
            EXPECT_EQ(p.title(), e.title);
            EXPECT_EQ(p.getLabel("MlTitle"), e.heading);
            EXPECT_FALSE(qobject_cast<QLabel*>(p.getObject("IcText"))->pixmap().isNull());
            nested = showHint(e.caller, helpOpen);  // a second press while it is open
            return 0;
        });
        EXPECT_EQ(showHint(e.caller, helpOpen), 1) << e.caller;
        EXPECT_EQ(opened, 1) << e.caller;
        EXPECT_EQ(nested, 0) << e.caller;
        EXPECT_EQ(helpOpen, 0) << e.caller;
        ASSERT_NE(findHint(e.caller), nullptr);
        EXPECT_STREQ(findHint(e.caller)->bitmap, e.picture);
    }
    int helpOpen = 0;
    EXPECT_EQ(showHint("PUnknown", helpOpen), 0);
    EXPECT_EQ(findHint("PUnknown"), nullptr);
}

TEST_F(LogHelpTest, QuickHelpAndAbout) {
    PQuickHelp quick;
    ASSERT_EQ(quick.isLoaded(), 1) << quick.errorText();
    EXPECT_EQ(quick.name(), "Quick");
    EXPECT_EQ(quick.title(), "Quick Help");
    EXPECT_EQ(quick.window()->size(), QSize(223, 135));
    EXPECT_EQ(quick.showPicture("../help/QLatin.bmp"), 1);
    EXPECT_EQ(qobject_cast<QLabel*>(quick.getObject("IcText"))->pixmap().size(), QSize(210, 100));
    EXPECT_EQ(quick.showPicture("../help/QNone.bmp"), 0);

    PAbout about;
    EXPECT_EQ(about.name(), "Tarvex about");
    EXPECT_EQ(about.title(), "Tarvex About Panel");
    EXPECT_EQ(about.getLabel("MLText"), "Software Version: 2.2.1");
}

TEST_F(LogHelpTest, TheHelpSetHasAPagePerEntryPointAndASearch) {
    ASSERT_FALSE(HelpSystem::helpDirectory().empty());
    EXPECT_EQ(HelpSystem::pageForTopic("PMainPanel"), "PMainPanel.html");
    EXPECT_EQ(HelpSystem::pageForTopic("PLogFile"), "PLogFile.html");
    EXPECT_EQ(HelpSystem::pageForTopic("PLatin"), "sampling.html");
    EXPECT_EQ(HelpSystem::pageForTopic("PTruncation"), "sampling.html");
    EXPECT_EQ(HelpSystem::pageForTopic("PNoPage"), "index.html");
    EXPECT_EQ(HelpSystem::pageForTopic(""), "index.html");

    // F1 on the log panel opens its topic.
    PLogFile log;
    log.pressKey(Qt::Key_F1);
    EXPECT_EQ(HelpSystem::currentPage(), "PLogFile.html");

    const auto hits = HelpSystem::search("elementary effects");
    std::vector<std::string> files;
    for (const auto& h : hits) files.push_back(h.first);
    EXPECT_NE(std::find(files.begin(), files.end(), "sampling.html"), files.end());
    EXPECT_EQ(std::find(files.begin(), files.end(), "PLogFile.html"), files.end());
    EXPECT_TRUE(HelpSystem::search("zzzunfound").empty());
    // Every page but the search page itself, each with its title.
    const auto all = HelpSystem::search("");
    EXPECT_GE(all.size(), 8u);
    for (const auto& [file, title] : all) {
        EXPECT_NE(file, "search.html");
        EXPECT_FALSE(title.empty()) << file;
    }
    HelpSystem::openSearch("Morris");
    EXPECT_EQ(HelpSystem::currentPage(), "search:Morris");
    EXPECT_EQ(HelpSystem::viewer()->getLabel("TSearch"), "Morris");
    HelpSystem::openSearch("");
    EXPECT_EQ(HelpSystem::currentPage(), "search.html");
    // Following a link of a page shows the linked page.
    HelpSystem::openIndex();
    auto* browser = qobject_cast<QTextBrowser*>(HelpSystem::viewer()->getObject("TeHelp"));
    ASSERT_NE(browser, nullptr);
    EXPECT_TRUE(browser->toPlainText().contains("Tarvex help"));
    browser->setSource(QUrl("demo.html"));
    EXPECT_EQ(HelpSystem::currentPage(), "demo.html");
    EXPECT_TRUE(browser->toPlainText().contains("Level E"));
}

TEST(HelpSystemAbsent, WithoutTheHelpSetTheViewerSaysSo) {
    qtApp();
    ScratchDir dir;
    SearchPath::clear();
    SearchPath::append(dir.path().string());
    EXPECT_EQ(HelpSystem::helpDirectory(), "");
    EXPECT_EQ(HelpSystem::pageForTopic("PMainPanel"), "index.html");
    EXPECT_TRUE(HelpSystem::search("").empty());
    testing::internal::CaptureStderr();  // the viewer's own panel file is missing too
    HelpSystem::openIndex();
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(HelpSystem::currentPage(), "index.html");
    HelpSystem::shutdown();
}

}  // namespace
