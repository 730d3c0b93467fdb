#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "factors/CompiledExpression.h"
#include "factors/Evaluator.h"

namespace tarvex {
namespace {

using Names = std::vector<std::string>;

struct PathResult {
    int failed;
    double value;
    ExprFailure failure;
};

PathResult textPath(const Names& names, const std::vector<double>& row, const std::string& expression) {
    Evaluator& ev = Evaluator::instance();
    ev.clearSymbols();
    const int status = ev.evaluate(bindingProgram(names, row.data(), expression));
    return {status != 0, readBindingResult(), {ev.evalErrorText(), ev.evalErrorLine(), ev.evalErrorColumn()}};
}

PathResult fastPath(CompiledExpression& c, const std::vector<double>& row) {
    double value = 0.0;
    const int status = c.evaluate(row.data(), value);
    return {status != 0, value, c.failure()};
}

bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// Compares the two paths on one row; returns whether the row failed.
bool expectSame(CompiledExpression& c, const Names& names, const std::vector<double>& row,
                const std::string& expression) {
    const PathResult t = textPath(names, row, expression);
    const PathResult f = fastPath(c, row);
    EXPECT_EQ(t.failed, f.failed) << expression;
    EXPECT_TRUE(sameBits(t.value, f.value)) << expression << ": " << t.value << " vs " << f.value;
    EXPECT_EQ(t.failure.text, f.failure.text) << expression;
    EXPECT_EQ(t.failure.line, f.failure.line) << expression;
    EXPECT_EQ(t.failure.column, f.failure.column) << expression;
    return t.failed;
}

// Random texts of the calculator language, mostly well formed, with names
// that rows bind, names they don't, "inf" and "nan", constants of every
// written form, every operator and function, and now and then a broken one.
class TextGenerator {
public:
    explicit TextGenerator(uint64_t seed) : rng_(seed) {}

    std::string body() {
        std::string text = expression(0);
        while (chance(0.2)) text += ";" + space() + expression(0);
        if (chance(0.1)) mutate(text);
        return text;
    }

    double value() {
        switch (pick(12)) {
        case 0: return 0.0;
        case 1: return -0.0;
        case 2: return 1.0;
        case 3: return std::numeric_limits<double>::infinity();
        case 4: return -std::numeric_limits<double>::infinity();
        case 5: return pick(2) ? std::numeric_limits<double>::quiet_NaN() : -std::numeric_limits<double>::quiet_NaN();
        case 6: return std::ldexp(uniform(), static_cast<int>(pick(2100)) - 1075);  // anything from subnormal to huge
        case 7: return std::round(uniform() * 1e7) / 10.0;                        // rounding at the 6th digit
        case 8: return static_cast<double>(pick(7)) - 3.0;
        default: return (uniform() - 0.5) * std::pow(10.0, static_cast<double>(pick(13)) - 6.0);
        }
    }

    bool chance(double p) { return uniform() < p; }
    uint64_t pick(uint64_t n) { return rng_() % n; }

private:
    double uniform() { return std::uniform_real_distribution<double>(0.0, 1.0)(rng_); }

    std::string space() {
        switch (pick(10)) {
        case 0: return "";
        case 1: return "\t";
        case 2: return "\n";
        case 3: return "/* c */";
        case 4: return " // line\n";
        default: return " ";
        }
    }

    std::string name() {
        static const char* pool[] = {"a", "b", "c", "d", "e", "t", "u", "inf", "nan", "rEsUlTtOtAl"};
        return pool[pick(chance(0.9) ? 7 : 10)];
    }

    std::string number() {
        static const char* pool[] = {"0", "1", "2", "2.5", ".5", "1.", "0.1", "3e2", "1.5E-3", "12345.678",
                                     "1e400", "7e-320", "0.000123457", "1e4294967297"};
        return pool[pick(sizeof pool / sizeof pool[0])];
    }

    std::string primary(int depth) {
        if (depth > 4) return pick(2) ? name() : number();
        switch (pick(10)) {
        case 0: return "-" + primary(depth + 1);
        case 1: return "!" + primary(depth + 1);
        case 2: return "+" + space() + primary(depth + 1);
        case 3: return "(" + expression(depth + 1) + ")";
        case 4: {
            static const char* fns[] = {"sin", "cos", "exp", "log", "sqrt", "fabs", "atan2", "fmod", "tanh",
                                        "acos", "log10", "pow", "floor"};
            const std::string f = fns[pick(sizeof fns / sizeof fns[0])];
            const bool two = f == "atan2" || f == "fmod" || f == "pow";
            uint64_t args = two ? 2 : 1;
            if (chance(0.1)) args = pick(4);
            std::string call = f + "(";
            for (uint64_t i = 0; i < args; ++i) call += (i ? ", " : "") + expression(depth + 1);
            return call + ")";
        }
        case 5:
        case 6: return number();
        default: return name();
        }
    }

    std::string expression(int depth) {
        static const char* binary[] = {"+", "-", "*", "/", "**", "<", "<=", ">", ">=", "==", "!=", "&&", "||"};
        static const char* assign[] = {"=", "+=", "-=", "*=", "/="};
        if (depth < 4 && chance(0.2)) return name() + space() + assign[pick(5)] + space() + expression(depth + 1);
        std::string text = primary(depth);
        const uint64_t terms = depth > 3 ? 0 : pick(4);
        for (uint64_t i = 0; i < terms; ++i) text += space() + binary[pick(13)] + space() + primary(depth + 1);
        if (depth < 3 && chance(0.1)) text += " ? " + expression(depth + 1) + " : " + primary(depth + 1);
        return text;
    }

    void mutate(std::string& text) {
        static const char junk[] = ";,()=+*?:@\\.e";
        const std::size_t at = pick(text.size() + 1);
        if (pick(2) && at < text.size()) {
            text.erase(at, 1);
        } else {
            text.insert(at, 1, junk[pick(sizeof junk - 1)]);
        }
    }

    std::mt19937_64 rng_;
};

TEST(CompiledExpression, RandomTextsAndRowsMatchTheTextForm) {
    TextGenerator gen(20240611);
    const std::vector<Names> sets = {
        {"a", "b", "c"},
        {"a", "b", "c", "d", "e"},
        {"e", "d", "c", "b", "a", "inf"},  // a factor named like what infinity prints as
        {"b", "t", "b"},                   // a repeated name: the copy bound last in the text wins
        {},
    };
    int failedRows = 0, goodRows = 0, fellBack = 0;
    for (int n = 0; n < 1500; ++n) {
        const Names& names = sets[static_cast<std::size_t>(gen.pick(sets.size()))];
        const std::string body = gen.body();
        CompiledExpression c;
        c.compile(names, body);
        ASSERT_TRUE(c.usesCompiledForm());
        for (int r = 0; r < 12; ++r) {
            std::vector<double> row;
            for (std::size_t i = 0; i < names.size(); ++i) row.push_back(gen.value());
            if (expectSame(c, names, row, body)) {
                ++failedRows;
            } else {
                ++goodRows;
            }
            if (HasFailure()) return;
        }
    }
    // Names that are not plain names make the binding lines parse otherwise:
    // those rows take the text form.
    const Names odd{"a b", "c"};
    CompiledExpression c;
    c.compile(odd, "c + 1");
    EXPECT_FALSE(c.usesCompiledForm());
    for (int r = 0; r < 20; ++r) {
        expectSame(c, odd, {gen.value(), gen.value()}, "c + 1");
        ++fellBack;
    }
    // Both kinds of row were seen in quantity.
    EXPECT_GT(failedRows, 3000);
    EXPECT_GT(goodRows, 8000);
    EXPECT_EQ(fellBack, 20);
}

TEST(CompiledExpression, PrintedValuesMatchPrintf) {
    // The compiled form prints without printf; the text must be the same.
    int checked = 0;
    auto same = [&](double v) {
        char fast[64], slow[64];
        const int length = printBoundValue(v, fast);
        std::snprintf(slow, sizeof slow, "%g", v);
        ++checked;
        return std::string(fast, static_cast<std::size_t>(length)) == slow;
    };
    std::mt19937_64 rng(3);
    for (int i = 0; i < 300000; ++i) {
        const uint64_t bits = rng();
        double v;
        std::memcpy(&v, &bits, sizeof v);
        ASSERT_TRUE(same(v)) << v;
    }
    // Ties and near-ties at the sixth digit, carries into a new power of ten,
    // the switch between fixed and exponent forms, subnormals.
    for (int m = 100000; m < 1000000; m += 7) {
        for (double v : {m + 0.5, m * 10.0 + 5.0, (m * 10.0 + 5.0) / 1e7, (m * 10.0 + 5.0) * 1e-20, -(m + 0.5)})
            ASSERT_TRUE(same(v)) << v;
    }
    for (int e = -330; e <= 308; ++e) {
        for (double m : {1.0, 9.999995, 9.9999949999, 9.99999500001, 0.5, 5.0, 1.5, 4.94065645841})
            ASSERT_TRUE(same(m * std::pow(10.0, e))) << m << "e" << e;
    }
    for (double v : {0.0, -0.0, 1e-4, 9.99999e-5, 9.999995e-5, 999999.0, 999999.5, 1e6, 123456.5, 0.0001234565})
        ASSERT_TRUE(same(v)) << v;
    EXPECT_GT(checked, 700000);

    // And each value enters as its "%g" text is read.
    TextGenerator gen(7);
    CompiledExpression c;
    c.compile(Names{"x"}, "x");
    for (int i = 0; i < 50000; ++i) {
        const double v = gen.value();
        ASSERT_TRUE(sameBits(textPath(Names{"x"}, {v}, "x").value, fastPath(c, {v}).value)) << formatBoundValue(v);
    }
}

TEST(CompiledExpression, TableLimitReachedThroughBindings) {
    // 498 bound names and the result make 499 symbols; a row with an
    // infinite value also brings in "inf" and no longer fits.
    Names names;
    for (int i = 0; i < 498; ++i) names.push_back("n" + std::to_string(i));
    CompiledExpression c;
    c.compile(names, "n0 + n497");
    std::vector<double> row(names.size(), 2.0);
    EXPECT_FALSE(expectSame(c, names, row, "n0 + n497"));
    EXPECT_EQ(fastPath(c, row).value, 4.0);
    row[200] = -std::numeric_limits<double>::infinity();
    EXPECT_TRUE(expectSame(c, names, row, "n0 + n497"));
    EXPECT_EQ(c.failure().text, "Symbol Table Full");
    EXPECT_EQ(c.failure().line, 499);

    // With 500 names every row fails on a binding line, at a column that
    // depends on the printed value.
    names.push_back("n498");
    names.push_back("n499");
    c.compile(names, "n0");
    row.assign(names.size(), 1.0);
    EXPECT_TRUE(expectSame(c, names, row, "n0"));
    EXPECT_EQ(c.failure().text, "Symbol Table Full");
    EXPECT_EQ(c.failure().line, 500);
    EXPECT_EQ(c.failure().column, 7);  // the ";" of "n0 = 1;"
    row[0] = 1234.5678;
    EXPECT_TRUE(expectSame(c, names, row, "n0"));
    EXPECT_EQ(c.failure().column, 13);  // "n0 = 1234.57;"
}

TEST(CompiledExpression, StaticFailuresHappenEveryRowAfterTheirPrefix) {
    // The first part is assigned before the unknown function stops the row.
    const Names names{"a"};
    CompiledExpression c;
    c.compile(names, "t = a * 2; foo(a)");
    for (double v : {1.0, -3.5, 0.0}) {
        EXPECT_TRUE(expectSame(c, names, {v}, "t = a * 2; foo(a)"));
        EXPECT_EQ(fastPath(c, {v}).value, v * 2);
        EXPECT_EQ(c.failure().text, "Unknown Function");
        EXPECT_EQ(c.failure().line, 2);
    }
    // Nesting beyond the limit reports on standard error each time, as the
    // text does.
    std::string deep(38, '(');
    deep.append("a").append(38, ')');
    c.compile(names, deep);
    testing::internal::CaptureStderr();
    expectSame(c, names, {1.0}, deep);
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_EQ(printed, "\nParser stack overflow, line 2, column 52\n\nParser stack overflow, line 2, column 52\n");
}

} // namespace
} // namespace tarvex
