// Every file the program saves, written while the disk fills up midway: the
// save reports its failure, the former file stays byte for byte, and no
// temporary file is left beside it. That the writer they share survives a
// failure at any byte is proven with the writer; here each format shows that it
// saves through it.
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>

#include "TestSupport.h"
#include "app/ConfigDatFile.h"
#include "app/DemoRepair.h"
#include "app/StartupFile.h"
#include "common/AtomicFileWriter.h"
#include "common/Environment.h"
#include "correlation/FactorFile.h"
#include "correlation/FactorList.h"
#include "factors/TabulatedValuesFile.h"
#include "factors/Uniform.h"
#include "model/InternalModel.h"
#include "sampling/GenerationLoop.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RandomSampler.h"

namespace tarvex {
namespace {

namespace fs = std::filesystem;

std::unique_ptr<Uniform> uniform(const std::string& name, double b) {
    auto u = std::make_unique<Uniform>();
    EXPECT_EQ(u->setName(name), 1);
    u->clear();
    EXPECT_EQ(u->addInterval(std::make_unique<Interval>(0.0, b, 1.0)), 1);
    return u;
}

// Saves version 0 or 1 of one format's content to `path`; 1 on success.
using Save = std::function<int(const std::string& path, int version)>;

void checkFailedSavesKeepTheFormerFile(const std::string& format, const Save& save) {
    SCOPED_TRACE(format);
    test::ScratchDir dir;
    const std::string path = dir.file("file");
    ASSERT_EQ(save(path, 0), 1);
    const std::string former = test::readFile(path);
    // The size of the new content tells where midway is.
    test::ScratchDir probe;
    ASSERT_EQ(save(probe.file("file"), 1), 1);
    const int64_t size = static_cast<int64_t>(fs::file_size(probe.file("file")));
    ASSERT_NE(test::readFile(probe.file("file")), former);

    for (int64_t bytes : {int64_t{1}, size / 2}) {
        {
            ScopedWriteFailure full(bytes);
            EXPECT_EQ(save(path, 1), 0) << "failing after " << bytes << " of " << size << " bytes";
        }
        EXPECT_EQ(test::readFile(path), former) << bytes;
        EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator()), 1) << bytes;
    }
    ASSERT_EQ(save(path, 1), 1);
    EXPECT_EQ(test::readFile(path), test::readFile(probe.file("file")));
}

TEST(SaveFailure, EveryFormatKeepsItsFormerFile) {
    checkFailedSavesKeepTheFormerFile(".fac", [](const std::string& path, int version) {
        FactorList list;
        EXPECT_EQ(list.addFactor(uniform("a", 1.0 + version)), 1);
        EXPECT_EQ(list.addFactor(uniform("b", 2.0)), 1);
        std::string error;
        return saveFactorFile(path, list, error);
    });
    checkFailedSavesKeepTheFormerFile("tabulated values", [](const std::string& path, int version) {
        std::vector<TabulatedRow> rows(static_cast<std::size_t>(3 + 40 * version));
        std::string error;
        return saveTabulatedValues(path, TabulatedKind::Intervals, rows, error);
    });
    checkFailedSavesKeepTheFormerFile(".sam", [](const std::string& path, int version) {
        PrepConfiguration config;
        EXPECT_EQ(config.factors.addFactor(uniform("a", 1.0)), 1);
        EXPECT_EQ(config.factors.addFactor(uniform("b", 3.0)), 1);
        auto random = std::make_unique<RandomSampler>();
        EXPECT_EQ(random->setSamples(200), 1);
        EXPECT_EQ(random->setSeed(7 + version), 1);
        config.sampler = std::move(random);
        if (runGeneration(config, nullptr).result != kGenerationDone) return 0;
        return config.writeSampleFile(path);
    });
    checkFailedSavesKeepTheFormerFile(".imd", [](const std::string& path, int version) {
        InternalModel model;
        EXPECT_EQ(model.addVariable("x"), 1);
        EXPECT_EQ(model.addExpression(0, "y", version == 0 ? "x*2" : "x*x + sin(x) / 3", 1), 1);
        return model.writeFile(path);
    });
    checkFailedSavesKeepTheFormerFile("config.dat", [](const std::string& path, int version) {
        // Remembering a directory moves into it.
        test::CurrentDirGuard stay(fs::current_path());
        RememberedDirectories directories;
        if (!directories.set(RememberedDirectories::Prep, version == 0 ? "/tmp" : "/usr")) return 0;
        return ConfigDatFile::write(path, directories);
    });
    checkFailedSavesKeepTheFormerFile("Tarvex.cfg", [](const std::string& path, int version) {
        StartupFile startup;
        startup.installLine = version == 0 ? "/opt/tarvex" : "/usr/local/lib/tarvex-2";
        startup.mark = version;
        return startup.write(path);
    });
}

TEST(SaveFailure, ADemoRepairThatFailsKeepsTheCase) {
    test::ScratchDir dir;
    fs::create_directory(dir.path() / "Demo");
    const std::string dem = (dir.path() / "Demo" / "linear.dem").string();
    const std::string shipped = "[MAINDIR]/Demo/linear.sam\nother line\n";
    test::writeFile(dem, shipped);
    {
        ScopedWriteFailure full(10);
        EXPECT_EQ(DemoRepair::repairFile(dir.path().string(), "linear"), 0);
    }
    EXPECT_EQ(test::readFile(dem), shipped);
    EXPECT_EQ(std::distance(fs::directory_iterator(dir.path() / "Demo"), fs::directory_iterator()), 1);
    EXPECT_EQ(DemoRepair::repairFile(dir.path().string(), "linear"), 1);
    EXPECT_EQ(test::readFile(dem), dir.path().string() + "/Demo/linear.sam\nother line\n\n");
}

}  // namespace
}  // namespace tarvex
