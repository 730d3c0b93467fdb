// The value pass, the generation loop and the Prep record.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <sstream>

#include "TestSupport.h"
#include "common/Environment.h"
#include "factors/Discrete.h"
#include "sampling/GenerationLoop.h"
#include "sampling/LatinSampler.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RandomSampler.h"
#include "SampleFileRoundTrip.h"
#include "SamplingFixtures.h"

namespace tarvex {
namespace {

using namespace tarvex::testing;
using namespace tarvex::test;

std::unique_ptr<Discrete> discreteFactor(const std::string& name) {
    auto d = std::make_unique<Discrete>();
    EXPECT_EQ(d->setName(name), 1);
    d->clear();
    EXPECT_EQ(d->addPoint(std::make_unique<Interval>(1.0, 1.0, 0.25)), 1);
    EXPECT_EQ(d->addPoint(std::make_unique<Interval>(2.0, 2.0, 0.5)), 1);
    EXPECT_EQ(d->addPoint(std::make_unique<Interval>(5.0, 5.0, 0.25)), 1);
    return d;
}

PrepConfiguration latinConfiguration(int32_t rows, int mode) {
    PrepConfiguration config;
    EXPECT_EQ(config.factors.addFactor(uniformFactor("a", 2.0, 4.0)), 1);
    EXPECT_EQ(config.factors.addFactor(normalFactor("n", 10.0, 2.0)), 1);
    EXPECT_EQ(config.factors.addFactor(constantFactor("k", 0.5)), 1);
    EXPECT_EQ(config.factors.addFactor(relationFactor("r", "a*k+n")), 1);
    EXPECT_EQ(config.factors.addFactor(discreteFactor("d")), 1);
    EXPECT_EQ(config.factors.setMatrixValue(0, 1, 0.7), 1);
    config.factors.correlationMode = mode;
    auto latin = std::make_unique<LatinSampler>();
    EXPECT_EQ(latin->setSamples(rows), 1);
    EXPECT_EQ(latin->setSeed(2024), 1);
    config.sampler = std::move(latin);
    return config;
}

// The stored values and the statistics as raw bytes: equal only if every
// double is bit for bit the same.
std::string storeAndStatisticsBytes(PrepConfiguration& config) {
    std::vector<double> values;
    for (int32_t c = 0; c < config.samples.columnCount(); ++c)
        for (double v : column(config.samples, c)) values.push_back(v);
    values.push_back(double(config.samples.rowCount()));
    if (const SampleStatistics* s = config.sampleStatistics.get()) {
        for (int32_t i = 0; i < s->size(); ++i) {
            for (int32_t j = 0; j < s->size(); ++j) values.push_back(s->correlation(i, j));
            for (int k = 0; k < 4; ++k) values.push_back(s->moment(i, k));
        }
    }
    return std::string(reinterpret_cast<const char*>(values.data()), values.size() * sizeof(double));
}

std::string recordOf(const PrepConfiguration& config) {
    std::ostringstream out;
    config.write(out);
    return out.str();
}

TEST(PrepConfiguration, ValuePassMapsDesignToFactorValues) {
    PrepConfiguration config = latinConfiguration(200, kImanConoverCorrelation);
    config.prepareGeneration();
    // The design alone, stopped at 50.
    int p = 0;
    for (int target = 1; target <= 50; ++target) p = config.generate(target);
    ASSERT_EQ(p, 50);
    sampValues design(config.samples);
    for (int target = 51; p < 100; ++target) {
        p = config.generate(target);
        ASSERT_GE(p, 0) << config.sampler->errorText();
    }
    ASSERT_EQ(config.hasStatistics, 1);
    ASSERT_TRUE(config.sampleStatistics);
    for (int32_t r = 0; r < 200; ++r) {
        double u[5], x[5];
        ASSERT_EQ(design.getRow(r, u), 1);
        ASSERT_EQ(config.samples.getRow(r, x), 1);
        // Uniform on [2, 4] and the Normal through independent formulas.
        EXPECT_NEAR(x[0], 2.0 + 2.0 * u[0], 1e-9);
        // The Normal is truncated at the defaults 0.001 and 0.999: u is
        // squeezed linearly into that span.
        EXPECT_NEAR(0.5 * std::erfc(-(x[1] - 10.0) / (2.0 * std::sqrt(2.0))), 0.001 + 0.998 * u[1], 1e-6);
        EXPECT_EQ(x[2], 0.5);
        // The relation sees its inputs as "%g" text: six digits.
        EXPECT_NEAR(x[3], x[0] * 0.5 + x[1], 1e-5 * (std::fabs(x[0]) + std::fabs(x[1])));
        const double expectedPoint = u[4] < 0.25 ? 1.0 : (u[4] < 0.75 ? 2.0 : 5.0);
        EXPECT_EQ(x[4], expectedPoint) << u[4];
    }
    EXPECT_NEAR(config.sampleStatistics->mean(2), 0.5 * 200.0 / 199.0, 1e-12) << "mean divides by n - 1";
    // Rank correlation survives the monotone mapping.
    EXPECT_NEAR(spearman(column(config.samples, 0), column(config.samples, 1)), 0.7, 0.1);
}

TEST(PrepConfiguration, UnpreparableFactorAbortsWithItsPosition) {
    PrepConfiguration config;
    ASSERT_EQ(config.factors.addFactor(uniformFactor("a")), 1);
    ASSERT_EQ(config.factors.addFactor(uniformFactor("b")), 1);
    ASSERT_EQ(config.factors.addFactor(normalFactor("bad", 1.0, 0.0)), 1);  // no inverse table with sd 0
    auto random = std::make_unique<RandomSampler>();
    ASSERT_EQ(random->setSamples(30), 1);
    config.sampler = std::move(random);
    EXPECT_EQ(runGeneration(config, nullptr).result, kGenerationFailed);
    EXPECT_EQ(config.sampler->errorText(),
              "I cannot calculate the inverse cumulative of factor 3 : generation aborted");
    EXPECT_EQ(config.samples.rowCount(), 0);
    EXPECT_EQ(config.hasStatistics, 0);
    EXPECT_FALSE(config.sampleStatistics);
}

TEST(PrepConfiguration, StopLeavesNothingBehind) {
    PrepConfiguration config = latinConfiguration(100, kNoCorrelation);
    int calls = 0;
    EXPECT_EQ(runGeneration(config, [&](int percent) { return ++calls < 70 && percent >= 0; }).result, kGenerationStopped);
    EXPECT_EQ(calls, 70);
    EXPECT_EQ(config.samples.rowCount(), 0);
    EXPECT_EQ(config.hasStatistics, 0);
    EXPECT_FALSE(config.sampleStatistics);
}

// A correlation that cannot be imposed leaves a sample made without it; the
// loop says so in the words the user is shown, and the next generation that
// succeeds has nothing to say.
TEST(PrepConfiguration, UncorrelatedSampleIsReportedByTheLoop) {
    const std::string notPositive =
        "The Iman Conover Matrix is not positive definited.\nNo correlation can be calculated.";
    const std::string steinEmpty = "The Stein correlation sample is empty.\nNo correlation can be calculated.";
    const std::string steinNarrow =
        "The Stein correlation sample has fewer columns than the stochastic factors.\n"
        "The factors beyond its columns are not correlated.";
    auto configuration = [](std::unique_ptr<Sampler> sampler, int factors, int mode) {
        PrepConfiguration config;
        for (int i = 0; i < factors; ++i)
            EXPECT_EQ(config.factors.addFactor(uniformFactor(std::string(1, char('a' + i)))), 1);
        config.factors.correlationMode = mode;
        EXPECT_EQ(sampler->setSamples(40), 1);
        config.sampler = std::move(sampler);
        return config;
    };
    // An imported sample of 40 rows in which the second column falls as the
    // first rises.
    std::vector<double> stein;
    for (int r = 0; r < 40; ++r) stein.insert(stein.end(), {double(r), double(-r)});

    struct Case {
        const char* what;
        PrepConfiguration config;
        std::string warning;
    };
    std::vector<Case> cases;
    cases.push_back({"Latin, impossible matrix", configuration(std::make_unique<LatinSampler>(), 0, 0), notPositive});
    makeImpossibleCorrelations(cases.back().config.factors);
    cases.push_back({"Random, impossible matrix", configuration(std::make_unique<RandomSampler>(), 0, 0), notPositive});
    makeImpossibleCorrelations(cases.back().config.factors);
    cases.push_back({"empty Stein sample", configuration(std::make_unique<LatinSampler>(), 2, kSteinCorrelation),
                     steinEmpty});
    cases.push_back({"narrow Stein sample", configuration(std::make_unique<LatinSampler>(), 3, kSteinCorrelation),
                     steinNarrow});
    cases.back().config.factors.steinInfo.assign(40, 2, stein);
    cases.push_back({"Stein sample as wide as the factors",
                     configuration(std::make_unique<LatinSampler>(), 2, kSteinCorrelation), ""});
    cases.back().config.factors.steinInfo.assign(40, 2, stein);
    for (Case& c : cases) {
        const GenerationOutcome outcome = runGeneration(c.config, nullptr);
        EXPECT_EQ(outcome.result, kGenerationDone) << c.what;
        EXPECT_EQ(outcome.warningText, c.warning) << c.what;
        EXPECT_EQ(c.config.warningText(), c.warning) << c.what;
        EXPECT_EQ(c.config.samples.rowCount(), 40) << c.what;
    }
    // Where the Stein sample has the column, its order is taken.
    EXPECT_NEAR(spearman(column(cases[3].config.samples, 0), column(cases[3].config.samples, 1)), -1.0, 1e-12);

    // A matrix that can be carried: the warning of the run before is gone.
    PrepConfiguration& fixed = cases[0].config;
    EXPECT_EQ(fixed.factors.setMatrixValue(1, 2, 0.9), 1);
    const GenerationOutcome outcome = runGeneration(fixed, nullptr);
    EXPECT_EQ(outcome.result, kGenerationDone);
    EXPECT_EQ(outcome.warningText, "");
    EXPECT_EQ(fixed.warningText(), "");
}

TEST(PrepConfiguration, SameSeedSameSampleThroughTheLoop) {
    PrepConfiguration one = latinConfiguration(300, kImanConoverCorrelation);
    PrepConfiguration two = latinConfiguration(300, kImanConoverCorrelation);
    ASSERT_EQ(runGeneration(one, nullptr).result, kGenerationDone);
    ASSERT_EQ(runGeneration(two, nullptr).result, kGenerationDone);
    EXPECT_EQ(recordOf(one), recordOf(two));
    EXPECT_EQ(two.sampler->setSeed(2025), 1);
    ASSERT_EQ(runGeneration(two, nullptr).result, kGenerationDone);
    EXPECT_NE(column(one.samples, 0), column(two.samples, 0));
}

TEST(PrepConfiguration, SampleFileRoundTripIsByteIdentical) {
    ScratchDir dir;
    CurrentDirGuard guard(dir.path());
    ASSERT_EQ(Environment::instance().directories().setPrepDirectory(dir.path().string()), 1);
    PrepConfiguration config = latinConfiguration(120, kImanConoverCorrelation);
    config.sampleFile = dir.file("first.sam");
    {
        // Saved before any generation: no statistics, the flag's line ends
        // the same.
        std::istringstream unsampled(recordOf(config));
        PrepConfiguration read;
        ASSERT_EQ(read.read(unsampled), 1);
        EXPECT_EQ(read.factors.factorCount(), 5);
        EXPECT_EQ(recordOf(read), recordOf(config));
    }
    ASSERT_EQ(runGeneration(config, nullptr).result, kGenerationDone);
    ASSERT_EQ(config.writeSampleFile(dir.file("first.sam")), 1);
    const std::string first = readFile(dir.file("first.sam"));
    // The record ends with the file name and an empty line.
    EXPECT_EQ(first.substr(first.size() - config.sampleFile.size() - 2), config.sampleFile + "\n\n");

    std::filesystem::current_path("/");
    PrepConfiguration back;
    ASSERT_EQ(back.readSampleFile(dir.file("first.sam")), 1) << back.errorText();
    // Loading moved the current directory to the recorded one.
    EXPECT_EQ(std::filesystem::current_path(), dir.path());
    EXPECT_EQ(back.sampleFile, config.sampleFile);
    EXPECT_EQ(back.hasStatistics, 1);
    ASSERT_TRUE(back.sampler);
    EXPECT_EQ(back.sampler->methodId(), 2);
    EXPECT_EQ(back.sampler->seed(), 2024);
    EXPECT_EQ(back.samples.rowCount(), 120);
    ASSERT_EQ(back.writeSampleFile(dir.file("second.sam")), 1);
    EXPECT_EQ(readFile(dir.file("second.sam")), first);

    // The second newline stays unread: the next record starts right after it.
    std::istringstream in(first + "next record\n");
    PrepConfiguration third;
    ASSERT_EQ(third.read(in), 1);
    std::string line;
    std::getline(in, line);
    EXPECT_EQ(line, "");
    std::getline(in, line);
    EXPECT_EQ(line, "next record");

    // A deep copy writes the same record.
    PrepConfiguration copy(back);
    EXPECT_EQ(recordOf(copy), recordOf(back));
    PrepConfiguration assigned;
    assigned = copy;
    EXPECT_EQ(recordOf(assigned), first);
    Environment::instance().directories().clear(RememberedDirectories::Prep);
}

// Factors defined, no method chosen yet: the record has no method section,
// and must still read back, also with a record behind it.
TEST(PrepConfiguration, RecordWithoutAMethodReadsBack) {
    ScratchDir dir;
    CurrentDirGuard guard(dir.path());
    for (const std::string& directory : {std::string(), dir.path().string()}) {
        SCOPED_TRACE(directory);
        if (directory.empty()) Environment::instance().directories().clear(RememberedDirectories::Prep);
        else ASSERT_EQ(Environment::instance().directories().setPrepDirectory(directory), 1);
        PrepConfiguration config = latinConfiguration(4, kNoCorrelation);
        config.sampler.reset();
        config.sampleFile = "kept.sam";
        const std::string record = recordOf(config);
        ASSERT_NE(record.find("\n" + directory + "\nkept.sam\n\n"), std::string::npos);
        std::istringstream in(record + "next\n");
        PrepConfiguration back = latinConfiguration(4, kNoCorrelation);
        ASSERT_EQ(back.read(in), 1);
        EXPECT_EQ(back.sampler, nullptr);
        EXPECT_EQ(back.sampleFile, "kept.sam");
        EXPECT_EQ(back.factors.factorCount(), 5);
        EXPECT_EQ(recordOf(back), record);
        std::string line;
        ASSERT_TRUE(std::getline(in, line) && std::getline(in, line));
        EXPECT_EQ(line, "next");
    }
    Environment::instance().directories().clear(RememberedDirectories::Prep);
}

TEST(PrepConfiguration, BadSampleFilesLeaveTheConfigurationAsItWas) {
    PrepConfiguration config = latinConfiguration(6, kNoCorrelation);
    auto random = std::make_unique<RandomSampler>();
    ASSERT_EQ(random->setSamples(6), 1);
    config.sampler = std::move(random);
    // The Random section reads back too.
    PrepConfiguration back;
    const auto [good, again] = sampleFileRoundTrip(config, back);
    EXPECT_EQ(again, good);
    ASSERT_TRUE(back.sampler);
    EXPECT_EQ(back.sampler->methodName(), "Random");
    EXPECT_EQ(back.sampler->numSamples(), 6);
    const std::string before = recordOf(config);

    ScratchDir dir;
    CurrentDirGuard guard(dir.path());

    std::vector<std::pair<std::string, std::string>> bad;
    bad.emplace_back("truncated", good.substr(0, good.size() / 2));
    bad.emplace_back("empty", "");
    {
        std::string t = good;
        const size_t at = t.find('\t', t.find("\n0\n") + 3);
        t.replace(at - 1, 1, "x");
        bad.emplace_back("letters in the store", t);
    }
    {
        std::string t = good;
        t.replace(t.find("0\n6\n"), 4, "0\n9\n");  // external, then the row count
        bad.emplace_back("more rows announced", t);
    }
    {
        std::string t = good;
        const size_t at = t.find("5\nRandom\n");
        ASSERT_NE(at, std::string::npos);
        t.replace(at, 1, "9");
        bad.emplace_back("unknown method", t);
    }
    {
        std::string t = good;
        const size_t at = t.find("5\nRandom\n") + 9;
        t.replace(at, 1, "z");
        bad.emplace_back("letters in the method section", t);
    }
    for (const auto& [what, text] : bad) {
        writeFile(dir.file("bad.sam"), text);
        EXPECT_EQ(config.readSampleFile(dir.file("bad.sam")), 0) << what;
        EXPECT_EQ(config.errorText(), "Error reading samples file") << what;
        EXPECT_EQ(recordOf(config), before) << what;
    }
    EXPECT_EQ(config.readSampleFile(dir.file("missing.sam")), 0);
    EXPECT_EQ(config.errorText(), "Error reading samples file");
    EXPECT_EQ(recordOf(config), before);
}

TEST(PrepConfiguration, ExternalSampleFile) {
    ScratchDir dir;
    writeFile(dir.file("ext.txt"), "3\n2\nalpha first factor\nb2\n1.5 2\n-3e2\t4\n0 0.25\n");
    PrepConfiguration config;
    ASSERT_EQ(config.loadExternalSample(dir.file("ext.txt")), 1) << config.errorText();
    EXPECT_EQ(config.external, 1);
    EXPECT_EQ(config.hasStatistics, 1);
    EXPECT_EQ(config.sampleFile, dir.file("ext.txt"));
    ASSERT_EQ(config.factors.factorCount(), 2);
    EXPECT_EQ(config.factors.getFactor(0)->name(), "alpha");
    EXPECT_EQ(config.factors.getFactor(1)->name(), "b2") << "a digit after the first character is accepted";
    ASSERT_TRUE(config.sampler);
    EXPECT_EQ(config.sampler->methodId(), 5);
    EXPECT_EQ(config.sampler->numSamples(), 3);
    EXPECT_EQ(config.sampler->seed(), 1);
    EXPECT_EQ(column(config.samples, 0), (std::vector<double>{1.5, -300.0, 0.0}));
    EXPECT_EQ(column(config.samples, 1), (std::vector<double>{2.0, 4.0, 0.25}));
    EXPECT_NEAR(config.sampleStatistics->mean(0), (1.5 - 300.0) / 2.0, 1e-12);

    // No generation request touches an external sample: the loop finishes at
    // once, and neither a start nor a stop of a generation empties the store
    // or drops the statistics.
    const std::string before = recordOf(config);
    const std::string bytes = storeAndStatisticsBytes(config);
    int steps = 0;
    EXPECT_EQ(runGeneration(config, [&](int) { return ++steps < 0; }).result, kGenerationDone);
    EXPECT_EQ(steps, 0);
    EXPECT_EQ(storeAndStatisticsBytes(config), bytes);
    config.prepareGeneration();
    EXPECT_EQ(config.generate(51), 100);
    config.cancelGeneration();
    EXPECT_EQ(storeAndStatisticsBytes(config), bytes);
    EXPECT_EQ(config.hasStatistics, 1);
    EXPECT_EQ(recordOf(config), before);

    const char* refused[] = {
        "3a\n2\nx\ny\n1 2 3 4 5 6\n",         // a letter in the first line
        "3\n2.0\nx\ny\n1 2 3 4 5 6\n",        // a point in the second
        "3 \n2\nx\ny\n1 2 3 4 5 6\n",         // a blank
        "0\n2\nx\ny\n",                       // no samples
        "3\n0\n",                             // no factors
        "3\n2\n9x\ny\n1 2 3 4 5 6\n",         // a name beginning with a digit
        "3\n2\n_x\ny\n1 2 3 4 5 6\n",         // or with a forbidden character
        "3\n2\n\xC3\xA9t\xC3\xA9\ny\n1 2 3 4 5 6\n",  // "é", UTF-8
        "3\n2\n\xE9t\xE9\ny\n1 2 3 4 5 6\n",  // "é", Latin-1
        "3\n2\nx\n\ny\n1 2 3 4 5 6\n",        // an empty name
        "3\n2\nx\ny\n1 2 3 4 5\n",            // fewer values than announced
        "3\n2\nx\ny\n1 2 3 four 5 6\n",       // a word among the values
        "3\n2\nx\n",                          // truncated
    };
    for (const char* text : refused) {
        writeFile(dir.file("bad.txt"), text);
        EXPECT_EQ(config.loadExternalSample(dir.file("bad.txt")), 0) << text;
        EXPECT_EQ(config.errorText(), "Error reading external samples file") << text;
        EXPECT_EQ(recordOf(config), before) << text;
    }
}

}  // namespace
}  // namespace tarvex
