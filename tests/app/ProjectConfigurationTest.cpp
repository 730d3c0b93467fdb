// The project and its file: every combination of parts saved and read back,
// the header rules of the reader, failed saves and loads that change nothing,
// and config.dat rewritten by every project object.
#include <gtest/gtest.h>

#include <filesystem>

#include "../postproc/PostprocFixtures.h"
#include "TestSupport.h"
#include "app/ProjectConfiguration.h"
#include "common/AtomicFileWriter.h"
#include "common/Environment.h"

namespace tarvex {
namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::ScratchDir;
using test::writeFile;

// Without an installation directory no config.dat is touched; the process's
// remembered directories are put back after each test.
class ProjectFile : public ::testing::Test {
protected:
    ProjectFile() : here_(dir.path()), saved_(Environment::instance().directories()) {
        Environment::instance().directories() = RememberedDirectories();
    }
    ~ProjectFile() override { Environment::instance().directories() = saved_; }

    // The parts named by `mask` (1 Prep, 2 Model, 4 Vels).
    void fill(ProjectConfiguration& project, int mask) {
        if (mask & 1) {
            PrepConfiguration prep = test::randomPrep(2);
            prep.sampleFile = dir.file("sample.sam");
            project.setPrep(prep);
        }
        if (mask & 2) {
            ModelConfiguration model;
            test::readResults(model, dir, test::kTimedOutput);
            project.setModel(model);
        }
        if (mask & 4) {
            VelsConfiguration vels;
            vels.setOutputs(2, {"Y", "Z"});
            EXPECT_EQ(vels.addVariable("Y[max]"), 1);
            project.setVels(vels);
        }
    }

    ScratchDir dir;

private:
    test::CurrentDirGuard here_;
    RememberedDirectories saved_;
};

TEST_F(ProjectFile, EveryCombinationOfPartsReadsBack) {
    ASSERT_EQ(Environment::instance().directories().setPrepDirectory(dir.path().string()), 1);
    for (int mask = 0; mask < 8; ++mask) {
        SCOPED_TRACE(mask);
        ProjectConfiguration project;
        fill(project, mask);
        const std::string path = dir.file("p" + std::to_string(mask) + ".psc");
        ASSERT_EQ(project.save(path), 1);
        EXPECT_EQ(project.fileName(), path);
        const std::string text = readFile(path);
        EXPECT_EQ(text.starts_with("Prep Configuration\n"), (mask & 1) != 0);
        EXPECT_EQ(text.starts_with("No Prep Configuration\nModel Configuration\n"), mask == 2 || mask == 6);
        EXPECT_EQ(text.find("\nNo Model Configuration\n") != std::string::npos || text.starts_with("No Prep Configuration\nNo Model"),
                  (mask & 2) == 0);
        EXPECT_EQ(text.ends_with("\nNo Vels Configuration\n"), (mask & 4) == 0);
        if (mask == 1) {
            EXPECT_TRUE(text.ends_with(dir.file("sample.sam") + "\n\nNo Model Configuration\nNo Vels Configuration\n"));
        }
        if (mask == 0) {
            EXPECT_EQ(text, "No Prep Configuration\nNo Model Configuration\nNo Vels Configuration\n");
        }

        ProjectConfiguration back;
        fs::current_path("/");
        ASSERT_EQ(back.load(path), 1);
        EXPECT_EQ(back.fileName(), path);
        // Loading moves to the directory saved with the Prep part.
        EXPECT_EQ(fs::current_path() == dir.path(), (mask & 1) != 0);
        EXPECT_EQ(back.hasPrep, mask & 1);
        EXPECT_EQ(back.hasModel, (mask >> 1) & 1);
        EXPECT_EQ(back.hasVels, (mask >> 2) & 1);
        if (mask & 1) {
            EXPECT_EQ(back.prep.samples.rowCount(), 2);
            EXPECT_EQ(back.prep.factors.factorCount(), 2);
            EXPECT_EQ(back.prep.sampleFile, dir.file("sample.sam"));
        }
        if (mask & 2) {
            EXPECT_EQ(back.model.outputNames(), (std::vector<std::string>{"Y", "Z"}));
            std::vector<double> run;
            ASSERT_EQ(back.model.readRun(1, run), 1);
            EXPECT_EQ(run, (std::vector<double>{2, 40, 4, 50, 8, 60}));
        }
        if (mask & 4) {
            EXPECT_EQ(back.vels.selectedVariables, (std::vector<std::string>{"Y[max]"}));
        }
        ASSERT_EQ(back.save(dir.file("again.psc")), 1);
        EXPECT_EQ(readFile(dir.file("again.psc")), text);
    }
    // A name given relative keeps naming the same file after the load has
    // moved to the directory saved in it.
    fs::create_directory(dir.file("sub"));
    fs::copy_file(dir.file("p1.psc"), dir.file("sub/p1.psc"));
    fs::current_path(dir.file("sub"));
    ProjectConfiguration relative;
    ASSERT_EQ(relative.load("p1.psc"), 1);
    EXPECT_EQ(fs::current_path(), dir.path());
    EXPECT_EQ(relative.fileName(), dir.file("sub/p1.psc"));
}

TEST_F(ProjectFile, AFailedSaveLeavesTheFormerFile) {
    ProjectConfiguration project;
    fill(project, 3);
    // A project without a file name has nowhere to go.
    EXPECT_EQ(project.fileName(), "NO FILE");
    EXPECT_EQ(project.save(), 0);
    EXPECT_FALSE(fs::exists(dir.file("NO FILE")));
    const std::string path = dir.file("kept.psc");
    ASSERT_EQ(project.save(path), 1);
    const std::string former = readFile(path);
    fill(project, 4);
    for (int64_t bytes : {int64_t{1}, int64_t(former.size() / 2), int64_t(former.size())}) {
        ScopedWriteFailure full(bytes);
        EXPECT_EQ(project.save(), 0) << bytes;
        EXPECT_EQ(readFile(path), former) << bytes;
    }
    EXPECT_EQ(project.save(dir.file("no-such-dir/p.psc")), 0);
    EXPECT_FALSE(fs::exists(dir.file("no-such-dir")));
    std::size_t files = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(dir.path())) ++files;
    EXPECT_EQ(files, 2u);  // the project and the model's output file, no temporary left
}

TEST_F(ProjectFile, HeaderLinesAndDamagedFiles) {
    ProjectConfiguration full;
    fill(full, 7);
    ASSERT_EQ(full.save(dir.file("full.psc")), 1);
    const std::string text = readFile(dir.file("full.psc"));

    // Any line but the positive header is the negative one, up to 99 characters.
    const std::string tail = "No Model Configuration\nNo Vels Configuration\n";
    for (const std::string& first : {std::string("No Prep Configuration"), std::string("whatever"), std::string(99, 'x'),
                                     std::string("Prep Configuration ")}) {
        writeFile(dir.file("neg.psc"), first + "\n" + tail);
        ProjectConfiguration project;
        EXPECT_EQ(project.load(dir.file("neg.psc")), 1) << first;
        EXPECT_EQ(project.hasPrep + project.hasModel + project.hasVels, 0);
    }

    // A load that fails anywhere leaves the project as it was.
    const std::size_t model = text.find("\nModel Configuration\n");
    const std::size_t vels = text.find("\nVels Configuration\n");
    ASSERT_NE(model, std::string::npos);
    ASSERT_NE(vels, std::string::npos);
    const std::vector<std::pair<std::string, std::string>> bad = {
        {"header of 100 characters", std::string(100, 'x') + "\n" + tail},
        {"empty", ""},
        {"cut in the Prep record", text.substr(0, model / 2)},
        {"cut in the Model record", text.substr(0, (model + vels) / 2)},
        {"cut in the Vels record", text.substr(0, vels + 25)},
        {"no line after the Prep record", text.substr(0, model + 1)},
        {"no Vels header", text.substr(0, vels + 1)},
        {"a negative run count", text.substr(0, model) + "\nModel Configuration\nexe\nout\n2\n0\n-1\n0\n"},
    };
    ProjectConfiguration project;
    fill(project, 1);
    ASSERT_EQ(project.save(dir.file("mine.psc")), 1);
    const std::string mine = readFile(dir.file("mine.psc"));
    for (const auto& [what, content] : bad) {
        writeFile(dir.file("bad.psc"), content);
        EXPECT_EQ(project.load(dir.file("bad.psc")), 0) << what;
        EXPECT_EQ(project.fileName(), dir.file("mine.psc")) << what;
        EXPECT_EQ(project.hasPrep, 1);
        EXPECT_EQ(project.hasModel + project.hasVels, 0);
        ASSERT_EQ(project.save(), 1);
        EXPECT_EQ(readFile(dir.file("mine.psc")), mine) << what;
    }
    EXPECT_EQ(project.load(dir.file("missing.psc")), 0);
    EXPECT_EQ(project.fileName(), dir.file("mine.psc"));
}

TEST_F(ProjectFile, AssignCopiesPresentPartsAndResetsTheOthers) {
    ProjectConfiguration source;
    fill(source, 2);
    ASSERT_EQ(source.save(dir.file("source.psc")), 1);
    ProjectConfiguration target;
    fill(target, 5);
    target.assign(source);
    EXPECT_EQ(target.hasPrep, 0);
    EXPECT_EQ(target.hasModel, 1);
    EXPECT_EQ(target.hasVels, 0);
    EXPECT_EQ(target.fileName(), dir.file("source.psc"));
    EXPECT_EQ(target.prep.factors.factorCount(), 0);
    EXPECT_EQ(target.vels.outputCount(), 0);
    // The copy has its own results file with the same values.
    EXPECT_NE(target.model.dataFile(), source.model.dataFile());
    std::vector<double> run;
    ASSERT_EQ(target.model.readRun(0, run), 1);
    EXPECT_EQ(run, (std::vector<double>{1, 10, 5, 20, 3, 30}));

    target.resetAll();
    EXPECT_EQ(target.hasPrep + target.hasModel + target.hasVels, 0);
    EXPECT_EQ(target.model.runCount(), 0);
    EXPECT_EQ(target.model.kind(), ModelConfiguration::kNoModel);
}

TEST(ProjectConfigDat, EveryProjectObjectRewritesConfigDat) {
    ScratchDir install, prepDir, modelDir;
    test::CurrentDirGuard here(install.path());
    const RememberedDirectories saved = Environment::instance().directories();
    Environment env;
    env.setMainDir(install.path().string());
    const std::string contents = prepDir.path().string() + "\n\n" + modelDir.path().string() + "\n\n\n";
    writeFile(install.file("config.dat"), contents);
    {
        ProjectConfiguration project(env);
        // Read at construction: the current directory is the last one set.
        EXPECT_EQ(env.directories().prepDirectory(), prepDir.path().string());
        EXPECT_EQ(fs::current_path(), modelDir.path());
        fs::remove(install.file("config.dat"));
    }
    EXPECT_EQ(readFile(install.file("config.dat")), contents);
    Environment::instance().directories() = saved;
}

}  // namespace
}  // namespace tarvex
