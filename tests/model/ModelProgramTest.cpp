// The compiled evaluation of the internal model against the reference that
// builds and parses the text of every equation for every row.
#include "model/InternalModel.h"
#include "model/BoundValue.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

using namespace tarvex;

namespace {

class ModelGenerator {
public:
    explicit ModelGenerator(uint64_t seed) : rng_(seed) {}

    uint64_t pick(uint64_t n) { return n ? rng_() % n : 0; }
    bool chance(double p) { return std::uniform_real_distribution<double>(0, 1)(rng_) < p; }

    double value() {
        switch (pick(16)) {
        case 0: return 0.0;
        case 1: return -0.0;
        case 2: return 1234567.8;
        case 3: return std::numeric_limits<double>::infinity();
        case 4: return -std::numeric_limits<double>::infinity();
        case 5: return std::numeric_limits<double>::quiet_NaN();
        case 6: return 5e-320;  // subnormal
        case 7: return 0.5;
        case 8: return 999999.5;
        case 9: return 1.0000005;
        case 10: return std::ldexp(std::uniform_real_distribution<double>(-1, 1)(rng_), static_cast<int>(pick(200)) - 100);
        default: return std::uniform_real_distribution<double>(-10, 10)(rng_);
        }
    }

    std::string operand(const std::vector<std::string>& names) {
        if (!names.empty() && chance(0.7)) return names[pick(names.size())];
        static const char* numbers[] = {"0", "1", "2", "0.5", "3e2", "1.5E-3", "12345.678", "7"};
        return numbers[pick(sizeof numbers / sizeof numbers[0])];
    }

    // Texts over every construct of the language: the compiled form turns
    // them into register code, reuses repeated computations and drops unused
    // ones, so repeats, discarded statements and assignments of every kind
    // are generated on purpose.
    std::string text(const std::vector<std::string>& names, int depth = 0) {
        static const char* binary[] = {"+", "-", "*", "/", "**", "<", "<=", ">", ">=", "==", "!=", "&&", "||"};
        static const char* assign[] = {" = ", " += ", " -= ", " *= ", " /= "};
        std::string t;
        switch (depth > 2 ? 0 : pick(12)) {
        case 1: t = "sin(" + text(names, depth + 1) + ")"; break;
        case 2: t = "(" + text(names, depth + 1) + ")"; break;
        case 3: t = "-" + operand(names); break;
        case 4: t = "!" + operand(names); break;
        // A division that fails on some rows and not on others.
        case 5: t = operand(names) + " / (" + operand(names) + " > 0.5)"; break;
        case 6:
            if (!names.empty()) {
                t = names[pick(names.size())] + assign[pick(5)] + text(names, depth + 1);
                break;
            }
            [[fallthrough]];
        case 7: {
            const std::string e = text(names, depth + 1);
            t = "(" + e + ") * (" + e + ") + sqrt(" + e + ")";
            break;
        }
        case 8: t = (pick(2) ? "atan2(" : "fmod(") + text(names, depth + 1) + ", " + operand(names) + ")"; break;
        case 9: t = operand(names) + " ? " + text(names, depth + 1) + " : " + operand(names); break;
        case 10: t = "log(" + operand(names) + ") + exp(" + operand(names) + ")"; break;
        default: t = operand(names);
        }
        const uint64_t terms = depth > 2 ? 0 : pick(3);
        for (uint64_t i = 0; i < terms; ++i) t += std::string(" ") + binary[pick(13)] + " " + operand(names);
        // A second statement: its value is dropped, its division check is not.
        if (depth == 0 && chance(0.15)) t += "; " + text(names, 1);
        return t;
    }

    // A model of a few variables and expressions. Names repeat across the two
    // lists, include the names non-finite values print as, and expressions are
    // inserted anywhere, so that some refer to expressions further down.
    InternalModel model() {
        static const char* pool[] = {"a", "b", "c", "x1", "x2", "y", "z", "inf", "nan", "t_0", "rEsUlTtOtAl"};
        const std::size_t poolSize = sizeof pool / sizeof pool[0];
        InternalModel m;
        const uint64_t variables = 1 + pick(5);
        // A name drawn twice is refused the second time; the model just has fewer.
        for (uint64_t j = 0; j < variables; ++j) (void)m.addVariable(pool[pick(poolSize)]);
        const uint64_t expressions = 1 + pick(7);
        for (int tries = 0; tries < 40 && m.numExpressions() < static_cast<int>(expressions); ++tries) {
            std::vector<std::string> names;
            for (const ModelVariable& v : m.variables()) names.push_back(v.name);
            for (const ModelExpression& e : m.expressions()) names.push_back(e.name);
            const std::string name = pool[pick(poolSize)];
            const int position = static_cast<int>(pick(static_cast<uint64_t>(m.numExpressions()) + 1));
            // Refused when the name is taken: the loop draws again.
            (void)m.addExpression(position, name, text(names), static_cast<int16_t>(pick(2)));
        }
        return m;
    }

private:
    std::mt19937_64 rng_;
};

bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

} // namespace

TEST(ModelProgram, DirectRoundingEqualsPrintingAndParsing) {
    std::mt19937_64 rng(99);
    auto check = [](double v) {
        const double fast = boundValue(v);
        const double text = boundValueByText(v);
        return sameBits(fast, text);
    };
    // Any bit pattern of a finite double.
    for (int n = 0; n < 1000000; ++n) {
        uint64_t bits = rng();
        double v;
        std::memcpy(&v, &bits, sizeof v);
        if (!std::isfinite(v)) continue;
        ASSERT_TRUE(check(v)) << v;
    }
    // Six-digit midpoints and their neighbours, where the rounding is decided
    // by the last bits, over the whole range of exponents; exact ties among
    // them (integers such as 1234565 and dyadic fractions).
    for (int e = -320; e <= 300; ++e) {
        for (int n = 0; n < 60; ++n) {
            const double digits = 100000 + static_cast<double>(rng() % 900000) + 0.5;
            const double v = digits * std::pow(10.0, e);
            for (double w : {v, std::nextafter(v, 0.0), std::nextafter(v, 1e308), -v})
                ASSERT_TRUE(check(w)) << w;
        }
        const double p = std::pow(10.0, e);
        for (double w : {p, std::nextafter(p, 0.0), std::nextafter(p, 1e308), 999999.5 * p, 9.999995 * p})
            ASSERT_TRUE(check(w)) << w;
    }
    for (double w : {1234565.0, 1234575.0, 0.5, 2.5, 0.1234565, 1.0000005, 5e-324, 2.2250738585072014e-308,
                     1.7976931348623157e308, -0.0, 0.0, 1e-5, 0.0001, 99999.95, 999999.0, 1e6})
        EXPECT_TRUE(check(w)) << w;
}

TEST(ModelProgram, BoundValueIsTheValueOfTheGText) {
    // Independent of the calculator: "%g" then strtod, which is correctly
    // rounded. The calculator's digit-by-digit reading may differ from strtod
    // in the last bit, so compare within one part in 1e15 and demand the
    // six-digit rounding itself exactly.
    std::mt19937_64 rng(7);
    for (int n = 0; n < 20000; ++n) {
        const double v = std::ldexp(std::uniform_real_distribution<double>(-1, 1)(rng), static_cast<int>(rng() % 120) - 60);
        char text[64];
        std::snprintf(text, sizeof text, "%g", v);
        const double expected = std::strtod(text, nullptr);
        const double got = boundValue(v);
        ASSERT_NEAR(got, expected, std::fabs(expected) * 1e-15) << text;
    }
    EXPECT_EQ(boundValue(1234567.8), 1234570.0);
    EXPECT_EQ(boundValue(0.5), 0.5);
    EXPECT_EQ(boundValue(2.0), 2.0);
    EXPECT_TRUE(std::signbit(boundValue(-0.0)));
    EXPECT_EQ(boundValue(0.123456789), 0.123457);
}

TEST(ModelProgram, RandomModelsMatchTheTextForm) {
    ModelGenerator gen(20261121);
    int models = 0, goodRows = 0, failedRows = 0, overflowModels = 0;
    for (int n = 0; n < 600; ++n) {
        InternalModel textModel = gen.model();
        if (textModel.numExpressions() == 0) continue;
        ++models;
        InternalModel fastModel = textModel;
        const int outputs = textModel.numOutputs();
        for (int r = 0; r < 25; ++r) {
            std::vector<double> row;
            for (int j = 0; j < textModel.numVariables(); ++j) row.push_back(gen.value());
            std::vector<double> textOut(static_cast<std::size_t>(outputs) + 1, -7.0);
            std::vector<double> fastOut(static_cast<std::size_t>(outputs) + 1, -7.0);
            const int textStatus = textModel.evaluateText(row.data(), textOut.data());
            const int fastStatus = fastModel.evaluate(row.data(), fastOut.data());
            ASSERT_EQ(textStatus, fastStatus) << "model " << n << " row " << r;
            (textStatus ? goodRows : failedRows)++;
            for (std::size_t k = 0; k < textOut.size(); ++k)
                ASSERT_TRUE(sameBits(textOut[k], fastOut[k])) << "model " << n << " row " << r << " output " << k;
            for (int i = 0; i < textModel.numExpressions(); ++i) {
                const double a = textModel.expressions()[static_cast<std::size_t>(i)].value;
                const double b = fastModel.expressions()[static_cast<std::size_t>(i)].value;
                ASSERT_TRUE(sameBits(a, b) || (std::isnan(a) && std::isnan(b)))
                    << "model " << n << " row " << r << " expression " << i << ": " << a << " vs " << b;
            }
            if (!textStatus) {
                EXPECT_EQ(fastModel.errorText(), "Error evaluating model");
                EXPECT_EQ(textModel.errorText(), "Error evaluating model");
            }
        }
    }
    (void)overflowModels;
    EXPECT_GT(models, 500);
    EXPECT_GT(goodRows, 5000);
    EXPECT_GT(failedRows, 500);
}
