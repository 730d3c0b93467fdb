// Looking files up through the panel search path, and pictures by their panels' names.
#include <gtest/gtest.h>

#include <filesystem>

#include "PanelTestSupport.h"
#include "TestSupport.h"
#include "panels/layer/Bitmaps.h"
#include "panels/layer/SearchPath.h"

using namespace tarvex;
using namespace tarvex::test;
namespace fs = std::filesystem;

namespace {

// An installation with the four panel directories, bitmaps and help beside them.
struct Tree {
    ScratchDir dir;
    std::string root;
    Tree() : root(dir.path().string()) {
        for (const char* d : {"Preprocessor/PrepPanels", "Tarvex/TarvexPanels", "Postprocessor/VelsPanels", "ILOG",
                              "bitmaps", "help", "Preprocessor/bitmaps"})
            fs::create_directories(dir.path() / d);
        useInstallation(root);
    }
    ~Tree() { SearchPath::clear(); }
    std::string put(const std::string& rel, const std::string& content = "x") {
        writeFile((dir.path() / rel).string(), content);
        return (dir.path() / rel).lexically_normal().string();
    }
};

TEST(SearchPath, DirectoriesAreTriedInTheirOrder) {
    Tree t;
    ASSERT_EQ(SearchPath::directories().size(), 4u);
    EXPECT_EQ(SearchPath::directories()[0], t.root + "/Preprocessor/PrepPanels");
    EXPECT_EQ(SearchPath::directories()[3], t.root + "/ILOG");

    const std::string vels = t.put("Postprocessor/VelsPanels/PShared.ui");
    EXPECT_EQ(SearchPath::find("PShared.ui"), vels);
    const std::string tarvex = t.put("Tarvex/TarvexPanels/PShared.ui");
    EXPECT_EQ(SearchPath::find("PShared.ui"), tarvex);  // the earlier directory wins
    EXPECT_EQ(SearchPath::find("PNone.ui"), "");
    EXPECT_EQ(SearchPath::find(""), "");
    // A directory is not a file.
    EXPECT_EQ(SearchPath::find("../bitmaps"), "");
    // Absolute names are taken as they are.
    EXPECT_EQ(SearchPath::find(tarvex), tarvex);
    EXPECT_EQ(SearchPath::find(t.root + "/none.ui"), "");
}

TEST(SearchPath, RelativePicturesClimbOutOfEachPanelDirectory) {
    Tree t;
    // "../bitmaps/x" from the panel directories reaches <root>/bitmaps only through ILOG...
    const std::string top = t.put("bitmaps/logo.gif");
    EXPECT_EQ(SearchPath::findPicture("../bitmaps/logo.gif"), top);
    // ...unless a subsystem keeps its own bitmaps beside its panels.
    const std::string prep = t.put("Preprocessor/bitmaps/logo.gif");
    EXPECT_EQ(SearchPath::findPicture("../bitmaps/logo.gif"), prep);
}

TEST(SearchPath, PicturesFallBackToPngThenSvgOfTheSameStem) {
    Tree t;
    const std::string svg = t.put("help/fast.svg", "<svg/>");
    EXPECT_EQ(SearchPath::findPicture("../help/fast.bmp"), svg);
    const std::string png = t.put("help/fast.png");
    EXPECT_EQ(SearchPath::findPicture("../help/fast.bmp"), png);
    const std::string bmp = t.put("help/fast.bmp");
    EXPECT_EQ(SearchPath::findPicture("../help/fast.bmp"), bmp);  // the name itself first
    // Plain lookups never substitute.
    EXPECT_EQ(SearchPath::find("../help/sobol.bmp"), "");
    t.put("help/sobol.png");
    EXPECT_EQ(SearchPath::find("../help/sobol.bmp"), "");
    EXPECT_EQ(SearchPath::findPicture("../help/nothing.gif"), "");
}

TEST(Bitmaps, ShippedPicturesAreFoundByTheirPanelsNames) {
    PanelTestBase base;
    EXPECT_EQ(Bitmaps::registerReader("gif"), 1);
    EXPECT_EQ(Bitmaps::registerReader("bmp"), 1);
    EXPECT_TRUE(Bitmaps::isRegistered("gif"));
    EXPECT_FALSE(Bitmaps::isRegistered("xyz"));
    EXPECT_EQ(Bitmaps::read("../bitmaps/oleagg.gif").size(), QSize(24, 20));
    EXPECT_EQ(Bitmaps::read("../bitmaps/oleaggInv.gif").size(), QSize(24, 20));
    // Every picture a panel of the shell names, present and readable.
    for (const char* name :
         {"../bitmaps/arrow.gif", "../bitmaps/arrowDown.gif", "../bitmaps/tarvex.gif", "../help/fast.bmp",
          "../help/fixed.bmp", "../help/random.bmp", "../help/lptau.bmp", "../help/morris.bmp", "../help/repLatin.bmp",
          "../help/sobol.bmp", "../help/truncation.bmp", "../help/QFast.bmp", "../help/QFixed.bmp",
          "../help/QLatin.bmp", "../help/QLpTau.bmp", "../help/QMorris.bmp", "../help/QRandom.bmp",
          "../help/QRepLatin.bmp", "../help/QSobol.bmp", "../help/Ishigami.bmp", "../help/Linear.bmp",
          "../help/SobolG0.bmp", "../help/SobolG1.bmp", "../help/SobolG2.bmp", "../help/SobolG3.bmp"})
        EXPECT_FALSE(Bitmaps::read(name).isNull()) << name;
    // Level E has no description picture.
    EXPECT_TRUE(Bitmaps::read("../help/LevelE.bmp").isNull());
}

TEST(Bitmaps, AFileThatIsNoPictureReadsAsNone) {
    PanelTestBase base;
    Tree t;
    t.put("bitmaps/broken.gif", "not a picture");
    EXPECT_TRUE(Bitmaps::read("../bitmaps/broken.gif").isNull());
}

}  // namespace
