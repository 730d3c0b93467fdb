#include <gtest/gtest.h>

#include <cmath>

#include <nlohmann/json.hpp>

#include "CliFixtures.h"
#include "cli/SensitivitySlots.h"
#include "model/ModelConfiguration.h"
#include "postproc/PostprocessorFile.h"
#include "postproc/SensitivityClasses.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/GenerationLoop.h"
#include "sampling/LatinSampler.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex::test {
namespace {

constexpr int32_t kRuns = 40;

// A Latin hypercube of a, b and the constant k, run through the internal
// model Y = a + 2 b, Z = a b, saved as a post-processor file. `a` and `b`
// receive the sampled values, for the independent reference.
std::string writeAnalysisFile(const ScratchDir& dir, std::vector<double>& a, std::vector<double>& b) {
    PrepConfiguration prep;
    EXPECT_EQ(prep.factors.addFactor(testing::uniformFactor("a", 1.0, 2.0)), 1);
    EXPECT_EQ(prep.factors.addFactor(testing::uniformFactor("b", 0.0, 1.0)), 1);
    EXPECT_EQ(prep.factors.addFactor(testing::constantFactor("k", 0.5)), 1);
    auto latin = std::make_unique<LatinSampler>();
    EXPECT_EQ(latin->setSamples(kRuns), 1);
    EXPECT_EQ(latin->setSeed(7), 1);
    prep.sampler = std::move(latin);
    EXPECT_EQ(runGeneration(prep, nullptr).result, kGenerationDone);
    a = testing::column(prep.samples, 0);
    b = testing::column(prep.samples, 1);

    ModelConfiguration model;
    auto m = std::make_unique<InternalModel>();
    for (const char* input : {"a", "b", "k"}) EXPECT_EQ(m->addVariable(input), 1);
    EXPECT_EQ(m->addExpression(0, "Y", "a + 2 * b", 1), 1);
    EXPECT_EQ(m->addExpression(1, "Z", "a * b", 1), 1);
    model.setInternalModel(std::move(m));
    EXPECT_EQ(model.prepareInternalRun(kRuns), 1);
    EXPECT_EQ(model.advanceInternalRun(prep.samples, 100.0f), 100);

    VelsConfiguration vels;
    vels.setOutputs(2, {"Y", "Z"});
    EXPECT_EQ(vels.addVariable("Z"), 1);
    EXPECT_EQ(savePostprocessorFile(dir.file("case.spc"), prep, model, vels), 1);
    return dir.file("case.spc");
}

// Moments as the uncertainty analysis defines them: std over N, skewness
// over (N - 1) std^3.
struct Moments {
    double mean = 0, std = 0, skewness = 0, minimum = 1e300, maximum = -1e300;
};
Moments momentsOf(const std::vector<double>& x) {
    Moments m;
    const double n = double(x.size());
    for (double v : x) m.mean += v / n, m.minimum = std::min(m.minimum, v), m.maximum = std::max(m.maximum, v);
    double s2 = 0, s3 = 0;
    for (double v : x) s2 += (v - m.mean) * (v - m.mean), s3 += std::pow(v - m.mean, 3);
    m.std = std::sqrt(s2 / n);
    m.skewness = s3 / ((n - 1) * m.std * m.std * m.std);
    return m;
}

// The model sees its inputs at six significant digits.
double g6(double v) { return std::stod([&] { char t[32]; std::snprintf(t, sizeof t, "%g", v); return std::string(t); }()); }

TEST(AnalyseCommand, UncertaintyOfOutputsAndExpressionsMatchesTheSample) {
    ScratchDir dir;
    std::vector<double> a, b;
    const std::string spc = writeAnalysisFile(dir, a, b);
    const BatchRun run = runInProcess({"analyse", spc, "--var", "Y", "--expr", "Y / Z", "--max", "Z",
                                       "--confidence", "0.95", "--json"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const nlohmann::json result = nlohmann::json::parse(run.out);
    EXPECT_EQ(result["variables"], (std::vector<std::string>{"Y", "Y / Z", "Z[max]"}));
    EXPECT_EQ(result["method"], "Latin Hypercube");
    EXPECT_EQ(result["uncertainty"]["runs"], kRuns);

    std::vector<double> y, ratio, z;
    for (int32_t i = 0; i < kRuns; ++i) {
        // Inputs and results pass at six digits, the file keeps six too.
        const double ai = g6(a[size_t(i)]), bi = g6(b[size_t(i)]);
        y.push_back(g6(ai + 2 * bi));
        z.push_back(g6(ai * bi));
        ratio.push_back(y.back() / z.back());
    }
    const std::vector<double>* columns[] = {&y, &ratio, &z};
    for (int v = 0; v < 3; ++v) {
        const Moments m = momentsOf(*columns[v]);
        const nlohmann::json& got = result["uncertainty"]["variables"][size_t(v)];
        const double tol = 1e-9 * std::max(1.0, std::fabs(m.mean));
        EXPECT_NEAR(got["mean"].get<double>(), m.mean, tol) << v;
        EXPECT_NEAR(got["std"].get<double>(), m.std, tol) << v;
        EXPECT_NEAR(got["variance"].get<double>(), m.std * m.std, tol * std::max(1.0, m.std)) << v;
        EXPECT_NEAR(got["skewness"].get<double>(), m.skewness, 1e-9) << v;
        EXPECT_NEAR(got["minimum"].get<double>(), m.minimum, tol) << v;
        EXPECT_NEAR(got["maximum"].get<double>(), m.maximum, tol) << v;
        // Chebyshev at 0.95: sqrt(1 / 0.05) std / sqrt(N). Student's t at 0.95
        // for 40 degrees of freedom: the mean of the table's rows 30 and 40,
        // (1.697 + 1.684) / 2.
        EXPECT_NEAR(got["Tcheb"].get<double>(), std::sqrt(20.0) * m.std / std::sqrt(40.0), tol) << v;
        EXPECT_NEAR(got["TTest"].get<double>(), 1.6905 * m.std / std::sqrt(40.0), tol) << v;
    }

    // Y = a + 2 b is linear, so its standardized regression coefficients are
    // the coefficients times the factors' spreads over the output's (N - 1
    // divisors cancel); the constant k shows as such.
    const nlohmann::json& records = result["sensitivity"]["variables"][0]["records"];
    ASSERT_EQ(records.size(), 3u);
    std::vector<double> ga, gb;
    for (int32_t i = 0; i < kRuns; ++i) ga.push_back(g6(a[size_t(i)])), gb.push_back(g6(b[size_t(i)]));
    const double sy = momentsOf(y).std;
    EXPECT_NEAR(records[0]["values"]["SRC"].get<double>(), momentsOf(ga).std / sy, 1e-4);
    EXPECT_NEAR(records[1]["values"]["SRC"].get<double>(), 2 * momentsOf(gb).std / sy, 1e-4);
    EXPECT_EQ(records[2]["note"], "Constant");

    // A method whose class is missing still gets its uncertainty analysis.
    {
        const ScopedSensitivityClass none(0, nullptr);
        const BatchRun bare = runInProcess({"analyse", spc, "--var", "Y", "--json"});
        ASSERT_EQ(bare.status, 0) << bare.err;
        EXPECT_EQ(bare.err, "tarvex-batch: no sensitivity class is available for the Latin Hypercube method: "
                            "uncertainty analysis only\n");
        EXPECT_TRUE(nlohmann::json::parse(bare.out)["sensitivity"].is_null());
        const BatchRun table = runInProcess({"analyse", spc, "--var", "Y", "--sa-table", dir.file("sa.txt")});
        EXPECT_EQ(table.status, 1);
        EXPECT_NE(table.err.find("tarvex-batch: No sensitivity table to write: no sensitivity measures were computed\n"),
                  std::string::npos);
        EXPECT_FALSE(std::filesystem::exists(dir.file("sa.txt")));
    }

    // Without variables the file's own selection is analysed; the table
    // names it and prints its mean by the panel's rule.
    const BatchRun text = runInProcess({"analyse", spc, "--no-sensitivity"});
    ASSERT_EQ(text.status, 0) << text.err;
    EXPECT_EQ(text.err, "");
    char mean[32];
    std::snprintf(mean, sizeof mean, "%f", momentsOf(z).mean);
    EXPECT_EQ(text.out.rfind("Uncertainty analysis: 40 runs, confidence 0.75\nvariable", 0), 0u) << text.out;
    EXPECT_NE(text.out.find("\nZ  "), std::string::npos) << text.out;
    EXPECT_NE(text.out.find(std::string(mean).substr(0, 6)), std::string::npos) << text.out;
}

TEST(AnalyseCommand, BadSelectionsAndFilesGiveTheirMessages) {
    ScratchDir dir;
    std::vector<double> a, b;
    const std::string spc = writeAnalysisFile(dir, a, b);
    const struct {
        std::vector<std::string> args;
        int status;
        std::string message;
    } cases[] = {
        {{"--at", "Y=5"}, 2, "tarvex-batch: error: Wrong value\n"},  // the runs have time 0 only
        {{"--var", "Y[1]"}, 2, "tarvex-batch: error: Wrong value\n"},
        {{"--var", "Y[soon]"}, 2, "tarvex-batch: error: Wrong value\n"},
        {{"--times", "Y=0:0:0"}, 2, "tarvex-batch: error: Wrong interval value\n"},
        {{"--expr", "Y + (Z"}, 2, "tarvex-batch: error:    Expression can't be evaluated.\n"},
        {{"--var", "Q"}, 2, "tarvex-batch: error: No output named \"Q\"; the outputs are: Y Z\n"},
        {{"--var", "Y", "--measure", "PEAR", "--no-sensitivity"}, 2,
         "tarvex-batch: error: --no-sensitivity contradicts --sa-table and --measure\n"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> args{"analyse", spc};
        args.insert(args.end(), c.args.begin(), c.args.end());
        const BatchRun run = runInProcess(args);
        EXPECT_EQ(run.status, c.status) << c.message;
        EXPECT_EQ(run.err.substr(0, c.message.size()), c.message);
        if (c.status == 2) {
            EXPECT_NE(run.err.find("Usage: tarvex-batch analyse [OPTIONS] input\n"), std::string::npos);
        }
    }

    writeFile(dir.file("broken.spc"), "0\nnot a sample store\n");
    const BatchRun broken = runInProcess({"analyse", dir.file("broken.spc")});
    EXPECT_EQ(broken.status, 1);
    EXPECT_EQ(broken.err, "tarvex-batch:   Error reading UA/SA file\n");
}

TEST(AnalyseCommand, UncertaintyTablesAreThePanelsSavedTables) {
    ScratchDir dir;
    std::vector<double> a, b;
    const std::string spc = writeAnalysisFile(dir, a, b);
    writeFile(dir.file("ua.txt"), "old");
    const BatchRun run = runInProcess({"analyse", spc, "--var", "Y", "--var", "Z", "--ua-table", dir.file("ua.txt"),
                                       "--no-sensitivity", "--json"});
    ASSERT_EQ(run.status, 0) << run.err;
    const std::string table = readFile(dir.file("ua.txt"));
    EXPECT_EQ(table.rfind("Uncertainty analysis for var Y\n\n      mean: ", 0), 0u) << table.substr(0, 80);
    const std::size_t second = table.find("\nUncertainty analysis for var Z\n\n");
    ASSERT_NE(second, std::string::npos);
    // Five statistics lines, an empty one, a title row and 101 rows of points each.
    EXPECT_EQ(std::count(table.begin(), table.begin() + long(second), '\n'), 2 + 5 + 1 + 1 + 101);

    // A logarithmic sheet of a variable that reaches 0 or below (Y is at most
    // 4) cannot be made, and the former file stays.
    writeFile(dir.file("ua.txt"), "old");
    const BatchRun log = runInProcess({"analyse", spc, "--var", "Y", "--expr", "Y - 4", "--ua-table",
                                       dir.file("ua.txt"), "--scale", "log", "--no-sensitivity"});
    EXPECT_EQ(log.status, 1);
    EXPECT_EQ(log.err, "tarvex-batch: No logarithmic scale for Y - 4: its minimum is not above 0\n");
    EXPECT_EQ(readFile(dir.file("ua.txt")), "old");
}

// A statistics class that fills record r, variable v, slot s with
// 100 r + 10 v + s, and leaves the constant uncomputed: it shows where each
// value lands in the printed tables.
struct NumberedStats : SensitivityStats {
    static inline int32_t slots = 21;
    explicit NumberedStats(int32_t id) : SensitivityStats(id) {}
    int compute(PrepConfiguration& configuration, OutputTable&) override {
        records.clear();
        factorCount = configuration.factors.factorCount();
        for (int32_t r = 0; r < factorCount; ++r) {
            IndexRecord record;
            record.name = configuration.factors.getFactor(r)->name();
            record.kind = factorKindOf(configuration.factors.getFactor(r)->typeName());
            for (int32_t v = 0; v < variableCount; ++v)
                for (int32_t s = 0; s < slots; ++s) record.values.push_back(100.0 * r + 10.0 * v + s);
            records.push_back(record);
        }
        computed = 1;
        return 1;
    }
    std::unique_ptr<SensitivityStats> clone() const override { return std::make_unique<NumberedStats>(*this); }
    void writeTable(std::ostream& out, const ResultTableRequest& request) const override {
        out << "Numbered\n";
        writeSheet(out, request, request.measure);
    }

protected:
    int32_t slotCount(const IndexRecord&) const override { return slots; }
};

TEST(AnalyseCommand, SensitivityValuesLandUnderTheirNames) {
    ScratchDir dir;
    std::vector<double> a, b;
    const std::string spc = writeAnalysisFile(dir, a, b);
    ScopedSensitivityClass regression(0, [] { return std::unique_ptr<SensitivityStats>(new NumberedStats(0)); });

    const BatchRun run = runInProcess({"analyse", spc, "--var", "Y", "--var", "Z", "--json", "--sa-table",
                                       dir.file("sa.txt"), "--table-measure", "SRC"});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.err, "");
    const nlohmann::json sa = nlohmann::json::parse(run.out)["sensitivity"];
    EXPECT_EQ(sa["typeId"], 0);
    ASSERT_EQ(sa["columns"].size(), 21u);
    EXPECT_EQ(sa["columns"][6], "Smirnov");
    const nlohmann::json& z = sa["variables"][1];
    EXPECT_EQ(z["name"], "Z");
    EXPECT_EQ(z["records"][1]["name"], "b");
    EXPECT_EQ(z["records"][1]["values"]["PEAR"], 110.0);
    EXPECT_EQ(z["records"][1]["values"]["SRRC"], 115.0);
    EXPECT_EQ(z["records"][1]["values"]["PRCC rank"], 120.0);
    EXPECT_EQ(z["records"][1]["values"]["Smirnov significant"], 130.0);
    EXPECT_EQ(z["records"][2]["note"], "Constant");
    EXPECT_TRUE(z["records"][2]["values"].empty());
    // The saved table shows the chosen measure, SRC, slot 4.
    EXPECT_EQ(readFile(dir.file("sa.txt")),
              "Numbered\n                    \t                   Y\t                   Z\t\n"
              "                   a\t              4.0000\t             14.0000\t\n"
              "                   b\t            104.0000\t            114.0000\t\n"
              "                   k\t            Constant\t            Constant\t\n");

    // Text: the chosen columns only, in the order of the class.
    const BatchRun text = runInProcess({"analyse", spc, "--var", "Y", "--measure", "SRC", "--measure", "PEAR"});
    ASSERT_EQ(text.status, 0) << text.err;
    EXPECT_NE(text.out.find("Sensitivity analysis: Regression and rank measures (Latin Hypercube)\n\nY\n"
                            "factor      PEAR       SRC\n"
                            "a              0    4.0000\n"
                            "b       100.0000  104.0000\n"
                            "k       Constant\n"),
              std::string::npos)
        << text.out;
    const BatchRun unknown = runInProcess({"analyse", spc, "--var", "Y", "--measure", "Sigma"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.err.rfind("tarvex-batch: error: No sensitivity value named \"Sigma\"", 0), 0u) << unknown.err;
}

TEST(AnalyseCommand, SobolTermsOfSeveralFactorsHaveNoTotalIndex) {
    struct Terms : NumberedStats {
        Terms() : NumberedStats(4) {}
    } stats;
    stats.variableCount = 1;
    stats.computed = 1;
    stats.records = {{"a", 3, {0.5, 0.75, 0.6}, {"a"}}, {"a,b", 3, {0.125, 0.875}, {"a", "b"}}};
    const auto layout = cli::slotLayout(stats);
    ASSERT_TRUE(layout);
    ASSERT_EQ(layout->columns.size(), 3u);
    const auto index = cli::columnValues(stats, layout->columns[0], 0);
    const auto total = cli::columnValues(stats, layout->columns[1], 0);
    const auto closed = cli::columnValues(stats, layout->columns[2], 0);
    EXPECT_EQ(layout->columns[2].name, "Closed");
    EXPECT_EQ(index[0], 0.5);
    EXPECT_EQ(index[1], 0.125);
    EXPECT_EQ(total[0], 0.75);
    EXPECT_FALSE(total[1].has_value());
    EXPECT_EQ(closed[0], 0.6);
    EXPECT_EQ(closed[1], 0.875);

    // The first-order form: two values everywhere.
    stats.records = {{"a", 3, {0.25, 0.5}, {"a"}}, {"b", 0, {0.0, 0.0}, {"b"}}};
    const auto firstTotal = cli::slotLayout(stats);
    ASSERT_EQ(firstTotal->columns.size(), 2u);
    EXPECT_EQ(cli::columnValues(stats, firstTotal->columns[1], 0)[0], 0.5);
    EXPECT_FALSE(cli::columnValues(stats, firstTotal->columns[1], 0)[1].has_value());  // a constant
    EXPECT_EQ(cli::slotLayout(NumberedStats(5)), std::nullopt);
}

}  // namespace
}  // namespace tarvex::test
