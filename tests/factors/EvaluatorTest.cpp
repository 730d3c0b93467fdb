#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "factors/Evaluator.h"

namespace tarvex {
namespace {

struct Outcome {
    int status;
    std::string text;
    int line;
    int column;
};

Outcome run(const std::string& text, bool fresh = true) {
    Evaluator& ev = Evaluator::instance();
    if (fresh) ev.clearSymbols();
    const int status = ev.evaluate(text);
    return {status, ev.evalErrorText(), ev.evalErrorLine(), ev.evalErrorColumn()};
}

bool has(const std::string& name) { return Evaluator::instance().findSymbol(name) != nullptr; }

double value(const std::string& name) {
    const SymbolRecord* r = Evaluator::instance().findSymbol(name);
    EXPECT_NE(r, nullptr) << name;
    return r ? r->value : std::nan("");
}

// x after evaluating "x = <expr>" alone.
double calc(const std::string& expr) {
    const Outcome o = run("x = " + expr);
    EXPECT_EQ(o.status, 0) << expr << ": " << o.text;
    return value("x");
}

TEST(Evaluator, PrecedenceAndAssociativity) {
    EXPECT_EQ(calc("2 + 3 * 4 ** 2"), 50.0);
    EXPECT_EQ(calc("10 - 4 - 3"), 3.0);           // left to right
    EXPECT_EQ(calc("64 / 4 / 2"), 8.0);
    EXPECT_EQ(calc("2 ** 3 ** 2"), 512.0);        // right to left
    EXPECT_EQ(calc("2 ** -1"), 0.5);
    EXPECT_EQ(calc("-3 ** 2"), 9.0);              // unary minus binds tighter
    EXPECT_EQ(calc("- -3"), -(-3.0));
    EXPECT_EQ(calc("+-+2"), -2.0);
    EXPECT_EQ(calc("!2 ** 2"), 0.0);              // (!2) ** 2
    EXPECT_EQ(calc("!0 ** 5"), 1.0);
    EXPECT_EQ(calc("3 > 2 > 1"), 0.0);            // (3 > 2) > 1
    EXPECT_EQ(calc("1 < 2 == 1"), 1.0);
    EXPECT_EQ(calc("1 + 2 < 4"), 1.0);
    EXPECT_EQ(calc("1 || 0 && 0"), 1.0);          // && before ||
    EXPECT_EQ(calc("0 && 1 || 1"), 1.0);
    EXPECT_EQ(calc("2 == 2 && 3 != 3"), 0.0);
    EXPECT_EQ(calc("1 ? 2 : 0 ? 3 : 4"), 2.0);    // right to left
    EXPECT_EQ(calc("0 ? 2 : 0 ? 3 : 4"), 4.0);
    EXPECT_EQ(calc("0 ? 2 : 1 ? 3 : 4"), 3.0);
    EXPECT_EQ(calc("1 + 1 ? 5 : 6"), 5.0);
    EXPECT_EQ(calc("0 || 0 ? 5 : 6"), 6.0);
    EXPECT_EQ(calc("(1 + 2) * 3"), 9.0);
    EXPECT_EQ(calc("2 <= 2") + calc("2 >= 3") + calc("2 < 2") + calc("3 > 2"), 2.0);
    // Truth is "not 0.0": NaN counts as true.
    EXPECT_EQ(run("n = 0; n /= 0; x = !n; y = n ? 1 : 2; z = n && 1").status, 0);
    EXPECT_EQ(value("x"), 0.0);
    EXPECT_EQ(value("y"), 1.0);
    EXPECT_EQ(value("z"), 1.0);
}

TEST(Evaluator, Assignments) {
    EXPECT_EQ(run("a = b = c = 4").status, 0);
    EXPECT_EQ(value("a"), 4.0);
    EXPECT_EQ(value("b"), 4.0);
    EXPECT_EQ(value("c"), 4.0);
    EXPECT_EQ(run("a = 7; a += 1; a *= 3; a -= 4; a /= 5").status, 0);
    EXPECT_EQ(value("a"), 4.0);
    // Yields the assigned value.
    EXPECT_EQ(run("a = 1; x = (a += 2) * 10").status, 0);
    EXPECT_EQ(value("x"), 30.0);
    // The target is read when its assignment is reduced, after its right side.
    EXPECT_EQ(run("a = 2; a += a *= 3").status, 0);
    EXPECT_EQ(value("a"), 12.0);
    // An operand is read when it is reduced, before what follows it.
    EXPECT_EQ(run("a = 1; x = a + (a = 10)").status, 0);
    EXPECT_EQ(value("x"), 11.0);
    // "+=" on a new name starts from 0.0.
    EXPECT_EQ(run("q += 5").status, 0);
    EXPECT_EQ(value("q"), 5.0);
    // "/=" does not test its divisor.
    EXPECT_EQ(run("z = 0; z /= 0; x = 5; x /= 0").status, 0);
    EXPECT_TRUE(std::isnan(value("z")));
    EXPECT_TRUE(std::isinf(value("x")));
    // A name never assigned reads as 0.0 and enters the table.
    EXPECT_EQ(run("y = undefinedName + 1").status, 0);
    EXPECT_EQ(value("y"), 1.0);
    EXPECT_EQ(value("undefinedName"), 0.0);
    EXPECT_EQ(run("v = 1 / -0").text, "Divide by Zero");
    // Only names can be assigned.
    EXPECT_EQ(run("(a) = 3").text, "Unexpected '='");
    EXPECT_EQ(run("x = -a = 3").text, "Unexpected '='");
    EXPECT_EQ(run("2 = 3").text, "Unexpected '='");
}

TEST(Evaluator, NothingShortCircuits) {
    EXPECT_EQ(run("x = 0 && (y = 1); w = 1 || (z = 2)").status, 0);
    EXPECT_EQ(value("x"), 0.0);
    EXPECT_EQ(value("y"), 1.0);
    EXPECT_EQ(value("w"), 1.0);
    EXPECT_EQ(value("z"), 2.0);
    EXPECT_EQ(run("x = 0 && 1 / 0").text, "Divide by Zero");
    EXPECT_EQ(run("x = 1 || 1 / 0").text, "Divide by Zero");
    EXPECT_EQ(run("x = 1 ? 1 : 1 / 0").text, "Divide by Zero");
    EXPECT_EQ(run("x = 0 ? 1 / 0 : 1").text, "Divide by Zero");
    EXPECT_EQ(run("x = 1 ? (y = 2) : (z = 3)").status, 0);
    EXPECT_EQ(value("x"), 2.0);
    EXPECT_EQ(value("y"), 2.0);
    EXPECT_EQ(value("z"), 3.0);
    // The third operand is a conditional expression: no assignment there, and
    // nothing is assigned before the error is seen.
    const Outcome o = run("x = 1 ? 2 : y = 3");
    EXPECT_NE(o.status, 0);
    EXPECT_EQ(o.text, "Unexpected '='");
    EXPECT_EQ(o.column, 15);
    EXPECT_EQ(Evaluator::instance().symbolCount(), 0);
}

TEST(Evaluator, RealsAreBuiltDigitByDigit) {
    // The fraction is folded from its last digit with * 0.1, which is not
    // what a correctly rounded conversion gives.
    EXPECT_EQ(calc("0.3"), 3 * 0.1);
    EXPECT_NE(calc("0.3"), 0.3);
    EXPECT_EQ(calc(".12"), (1 + 2 * 0.1) * 0.1);
    EXPECT_EQ(calc("2.5"), 2 + 5 * 0.1);
    EXPECT_EQ(calc("1.5E-3"), (1 + 5 * 0.1) * std::pow(10.0, -3.0));
    EXPECT_EQ(calc("1.5e+3"), 1500.0);
    EXPECT_EQ(calc("3e2"), 300.0);
    EXPECT_EQ(calc("1."), 1.0);
    EXPECT_EQ(calc("1.e2"), 100.0);
    EXPECT_EQ(calc("007"), 7.0);
    // The whole part too accumulates v * 10 + d in doubles.
    double whole = 0.0;
    for (char c : std::string("12345678901234567890")) whole = whole * 10.0 + (c - '0');
    EXPECT_EQ(calc("12345678901234567890"), whole);
    EXPECT_TRUE(std::isinf(calc("1e400")));
    EXPECT_EQ(calc("2e-400"), 0.0);
    // The exponent is a 32-bit integer: 4294967297 wraps to 1.
    EXPECT_EQ(calc("1e4294967297"), 10.0);
    EXPECT_EQ(calc("1e4294967296"), 1.0);
    EXPECT_EQ(calc("1e-4294967297"), std::pow(10.0, -1.0));
    EXPECT_EQ(calc("1e2147483648"), 0.0);  // wraps to -2147483648
    // No white space inside a number.
    EXPECT_EQ(run("x = 2 .5").text, "Unexpected real");
    EXPECT_EQ(run("x = 1.5.2").text, "Unexpected real");
    EXPECT_EQ(run("x = 2x").text, "Unexpected name");
}

TEST(Evaluator, WhiteSpaceNamesAndTable) {
    EXPECT_EQ(run(" \t\v\f\r\n/* lead */ x\n=\r\n1 /* a\n * b */ + // line\n 2 /*/ still comment */").status, 0);
    EXPECT_EQ(value("x"), 3.0);
    EXPECT_EQ(run("x = 3//c\n+1").status, 0);
    EXPECT_EQ(value("x"), 4.0);
    EXPECT_EQ(run("x /* c */ = 3").status, 0);
    EXPECT_EQ(value("x"), 3.0);
    // Case matters; "_" and digits belong to names.
    EXPECT_EQ(run("b = 1; a = 2; C = 3; _ = 4; a1_ = 5; A = 6").status, 0);
    const auto& table = Evaluator::instance().symbolTable();
    ASSERT_EQ(Evaluator::instance().symbolCount(), 6);
    const char* order[] = {"A", "C", "_", "a", "a1_", "b"};  // byte order
    for (int i = 0; i < 6; ++i) EXPECT_EQ(table[static_cast<std::size_t>(i)].name, order[i]);
    EXPECT_EQ(value("A"), 6.0);
    EXPECT_EQ(value("a"), 2.0);
    EXPECT_EQ(run("a b = 1").text, "Unexpected name");
    // Text ends at a NUL.
    EXPECT_EQ(Evaluator::instance().evaluate(std::string_view("y = 1\0 garbage", 14)), 0);
    EXPECT_EQ(value("y"), 1.0);
}

TEST(Evaluator, TableSurvivesEvaluateUntilCleared) {
    EXPECT_EQ(run("a = 1").status, 0);
    EXPECT_EQ(run("b = a + 1", false).status, 0);
    EXPECT_EQ(value("b"), 2.0);
    Evaluator::instance().clearSymbols();
    EXPECT_EQ(Evaluator::instance().symbolCount(), 0);
    EXPECT_FALSE(has("a"));
}

TEST(Evaluator, FailureKeepsEarlierAssignments) {
    Outcome o = run("a = 1; b = 2; c = 1 / 0; d = 4");
    EXPECT_NE(o.status, 0);
    EXPECT_EQ(value("a"), 1.0);
    EXPECT_EQ(value("b"), 2.0);
    EXPECT_FALSE(has("c"));
    EXPECT_FALSE(has("d"));
    EXPECT_NE(run("a = (b = 3) + 1 / 0").status, 0);
    EXPECT_EQ(value("b"), 3.0);
    EXPECT_FALSE(has("a"));
    // Reductions that the next token allows somewhere are made before the
    // error is seen.
    o = run("x = 1 + 2 )");
    EXPECT_EQ(o.text, "Unexpected ')'");
    EXPECT_EQ(value("x"), 3.0);
    // A successful run leaves no diagnostic.
    EXPECT_EQ(run("x = 1").text, "");
    EXPECT_EQ(Evaluator::instance().evalErrorLine(), 0);
}

TEST(Evaluator, FunctionTable) {
    // Volatile arguments: the library's run-time results, not values folded
    // by the compiler with another precision.
    volatile double half = 0.5, one = 1.0, two = 2.0, minusTwo = -2.0, seven = 7.0, three = 3.0;
    volatile double thousand = 1000.0, sixteen = 16.0;
    volatile double a = 3 * 0.1, b = 1 + 7 * 0.1;  // 0.3 and 1.7 as the calculator reads them
    EXPECT_EQ(calc("acos(0.5)"), std::acos(half));
    EXPECT_EQ(calc("asin(0.5)"), std::asin(half));
    EXPECT_EQ(calc("atan(2)"), std::atan(two));
    EXPECT_EQ(calc("atan2(1, 2)"), std::atan2(one, two));
    EXPECT_EQ(calc("cos(2)"), std::cos(two));
    EXPECT_EQ(calc("cosh(2)"), std::cosh(two));
    EXPECT_EQ(calc("exp(2)"), std::exp(two));
    EXPECT_EQ(calc("fabs(-2)"), std::fabs(minusTwo));
    EXPECT_EQ(calc("fmod(7, 3)"), std::fmod(seven, three));
    EXPECT_EQ(calc("log(2)"), std::log(two));
    EXPECT_EQ(calc("log10(1000)"), std::log10(thousand));
    EXPECT_EQ(calc("sin(2)"), std::sin(two));
    EXPECT_EQ(calc("sinh(2)"), std::sinh(two));
    EXPECT_EQ(calc("sqrt(16)"), std::sqrt(sixteen));
    EXPECT_EQ(calc("tan(2)"), std::tan(two));
    EXPECT_EQ(calc("tanh(2)"), std::tanh(two));
    EXPECT_EQ(calc("atan2(0.3, 1.7) + fmod(1.7, 0.3)"),
              std::atan2(a, b) + std::fmod(b, a));
    EXPECT_TRUE(std::isnan(calc("sqrt(-1)")));  // the library's answer, not an error
    for (const char* unknown : {"abs(1)", "floor(1)", "ceil(1)", "pow(1, 2)", "Sin(1)", "ln(1)"})
        EXPECT_EQ(run(std::string("x = ") + unknown).text, "Unknown Function") << unknown;
    for (const char* wrong : {"sin()", "sin(1, 2)", "fmod(1)", "atan2()", "exp(1, 2, 3)"})
        EXPECT_EQ(run(std::string("x = ") + wrong).text, "Wrong Number of Arguments") << wrong;
    // Function names are not symbols; a symbol may share a function's name.
    EXPECT_EQ(run("x = sin(a)").status, 0);
    EXPECT_EQ(Evaluator::instance().symbolCount(), 2);
    EXPECT_EQ(run("sin = 2; x = sin(sin)").status, 0);
    EXPECT_EQ(value("x"), std::sin(2.0));
    // Arguments are full expressions and are computed even when the call fails.
    Outcome o = run("x = foo(y = 3, 1)");
    EXPECT_EQ(o.text, "Unknown Function");
    EXPECT_EQ(value("y"), 3.0);
    EXPECT_FALSE(has("x"));
}

struct ErrorCase {
    const char* text;
    const char* message;
    int line;
    int column;
};

TEST(Evaluator, ErrorTextsAndPositions) {
    // Evaluation errors are placed at the token that completed the failing
    // construct; syntax errors at the offending token; a tab moves to the next
    // multiple of 8, plus 1.
    const ErrorCase cases[] = {
        {"x = 1 / 0", "Divide by Zero", 1, 10},
        {"x = 1 / 0 ;", "Divide by Zero", 1, 11},
        {"x = (1/0)", "Divide by Zero", 1, 9},
        {"\tx = 1/0", "Divide by Zero", 1, 16},
        {"x =\t1/0;", "Divide by Zero", 1, 12},
        {"ab\tc = 1/0", "Unexpected name", 1, 9},
        {"x = 1;\ny = 2;\nz = 1/0", "Divide by Zero", 3, 8},
        {"x = 1 /* a\n\n*/ + 1/0", "Divide by Zero", 3, 9},
        {"z = foo(1)", "Unknown Function", 1, 11},
        {"z = foo(1) ;", "Unknown Function", 1, 12},
        {"z = sin(1, 2) + 1", "Wrong Number of Arguments", 1, 15},
        {"z = fmod(1)", "Wrong Number of Arguments", 1, 12},
        {"", "Missing expressions", 1, 1},
        {"  ", "Missing expressions", 1, 3},
        {"; x = 1", "Missing expressions", 1, 1},
        {"x = 1;", "Missing expression", 1, 7},
        {"x = 1; ;", "Missing expression", 1, 8},
        {"x = ", "Missing expression", 1, 5},
        {"x = (", "Missing expression", 1, 6},
        {"x = ()", "Missing expression", 1, 6},
        {"x = 1 ? ", "Missing expression", 1, 9},
        {"x = 1 ? 2 : ", "Missing conditional expression", 1, 13},
        {"x = 1 || ", "Missing logical and expression", 1, 10},
        {"x = 1 && )", "Missing equality expression", 1, 10},
        {"x = 1 == ;", "Missing relational expression", 1, 10},
        {"x = 1 < *", "Missing additive expression", 1, 9},
        {"x = 1 + ", "Missing multiplicative expression", 1, 9},
        {"x = 1 * ", "Missing factor", 1, 9},
        {"x = 1 ** ,", "Missing factor", 1, 10},
        {"x = -", "Missing primary", 1, 6},
        {"x = sin(1, )", "Missing expression", 1, 12},
        {"x = .", "Missing fraction part", 1, 6},
        {"x = 2e", "Missing exponent", 1, 7},
        {"x = 2e+;", "Missing exponent", 1, 8},
        {"x = a b", "Unexpected name", 1, 7},
        {"x = 1 2", "Unexpected real", 1, 7},
        {"x = (1", "Unexpected end of text", 1, 7},
        {"x = 1 ? 2", "Unexpected end of text", 1, 10},
        {"x = 1 /* open", "Unexpected end of text", 1, 14},
        {"x = 1 /* open\n", "Unexpected end of text", 2, 1},
        {"x = 1 )", "Unexpected ')'", 1, 7},
        {"x = 1 ? 2 , 3", "Unexpected ','", 1, 11},
        {"x = sin(;", "Unexpected ';'", 1, 9},
        {"x = sin(1;", "Unexpected ';'", 1, 10},
        {"x = @", "Unexpected '@'", 1, 5},
        {"x = 1 & 2", "Unexpected '&'", 1, 7},
        {"x = 1 | 2", "Unexpected '|'", 1, 7},
        {"x = 1 = 2", "Unexpected '='", 1, 7},
        {"x = (1)(2)", "Unexpected '('", 1, 8},
        {"x = 1 !2", "Unexpected '!'", 1, 7},
        {"x = 1 \\ 2", "Unexepected input", 1, 7},
        {"x = \x01", "Unexepected input", 1, 5},
        {"x = \xe9", "Unexepected input", 1, 5},
    };
    for (const ErrorCase& c : cases) {
        const Outcome o = run(c.text);
        EXPECT_NE(o.status, 0) << c.text;
        EXPECT_EQ(o.text, c.message) << c.text;
        EXPECT_EQ(o.line, c.line) << c.text;
        EXPECT_EQ(o.column, c.column) << c.text;
    }
}

std::string numberedAssignments(int from, int to) {
    std::string text;
    for (int i = from; i < to; ++i) {
        if (!text.empty()) text += "; ";
        text += "n" + std::to_string(i) + " = " + std::to_string(i);
    }
    return text;
}

TEST(Evaluator, SymbolTableHolds499) {
    ASSERT_EQ(run(numberedAssignments(0, 499)).status, 0);
    EXPECT_EQ(Evaluator::instance().symbolCount(), 499);
    EXPECT_EQ(value("n498"), 498.0);
    // Existing names still work when the table is full.
    EXPECT_EQ(run("n5 = n7 + 1", false).status, 0);
    EXPECT_EQ(value("n5"), 8.0);
    // A 500th name, assigned: fails where the assignment is reduced.
    Outcome o = run("n1 = 11; zz = 7", false);
    EXPECT_EQ(o.text, "Symbol Table Full");
    EXPECT_EQ(o.line, 1);
    EXPECT_EQ(o.column, 16);
    EXPECT_EQ(value("n1"), 11.0);
    EXPECT_FALSE(has("zz"));
    EXPECT_EQ(Evaluator::instance().symbolCount(), 499);
    // ... or read: fails at the token after it.
    o = run("n2 = fresh + 1", false);
    EXPECT_EQ(o.text, "Symbol Table Full");
    EXPECT_EQ(o.column, 12);
    EXPECT_EQ(value("n2"), 2.0);

    // The same in one text: 499 names pass, the 500th fails.
    o = run(numberedAssignments(0, 500));
    EXPECT_EQ(o.text, "Symbol Table Full");
    EXPECT_EQ(Evaluator::instance().symbolCount(), 499);
    EXPECT_FALSE(has("n499"));
}

TEST(Evaluator, CharacterStack) {
    const std::string name1000(1000, 'a');
    EXPECT_EQ(run(name1000 + " = 1").status, 0);
    EXPECT_EQ(value(name1000), 1.0);
    Outcome o = run(std::string(1001, 'a') + " = 1");
    EXPECT_EQ(o.text, "Character Stack Overflow");
    EXPECT_EQ(o.line, 1);
    EXPECT_EQ(o.column, 1002);  // just behind the character that did not fit
    EXPECT_EQ(Evaluator::instance().symbolCount(), 0);

    // An assignment's target is held while its right side is read.
    const std::string a600(600, 'a'), b400(400, 'b'), b401(401, 'b');
    EXPECT_EQ(run(a600 + " = " + b400).status, 0);
    o = run(a600 + " = " + b401);
    EXPECT_EQ(o.text, "Character Stack Overflow");
    EXPECT_EQ(o.column, 604 + 400 + 1);
    // So is a called function's name.
    o = run("x = fmod(" + b401 + std::string(596, 'c') + ", 1)");
    EXPECT_EQ(o.text, "Character Stack Overflow");
    // A name read as a value is let go before the next one is read.
    EXPECT_EQ(run("x = " + a600 + " + " + std::string(600, 'b')).status, 0);
}

std::string callWithArguments(int count) {
    std::string text = "z = fmod(";
    for (int i = 0; i < count; ++i) text += (i ? ", " : "") + std::to_string(i);
    return text + ")";
}

TEST(Evaluator, ArgumentStack) {
    // 200 pending arguments fit; fmod then refuses the count.
    EXPECT_EQ(run(callWithArguments(200)).text, "Wrong Number of Arguments");
    Outcome o = run(callWithArguments(201));
    EXPECT_EQ(o.text, "Argument Stack Full");
    EXPECT_EQ(o.column, static_cast<int>(callWithArguments(201).size()));  // at the closing ")"
    // Arguments of enclosing calls are pending too.
    std::string nested = "z = fmod(";
    for (int i = 0; i < 150; ++i) nested += "1, ";
    nested += "fmod(";
    for (int i = 0; i < 51; ++i) nested += (i ? ", " : "") + std::string("2");
    nested += "))";
    EXPECT_EQ(run(nested).text, "Argument Stack Full");
    // Finished calls give their arguments back.
    std::string sequential = "z = 0";
    for (int i = 0; i < 300; ++i) sequential += " + fmod(7, 4)";
    EXPECT_EQ(run(sequential).status, 0);
    EXPECT_EQ(value("z"), 900.0);
}

TEST(Evaluator, NestingLimit) {
    auto parens = [](int n) { return "x = " + std::string(static_cast<std::size_t>(n), '(') + "1" + std::string(static_cast<std::size_t>(n), ')'); };
    testing::internal::CaptureStderr();
    EXPECT_EQ(run(parens(37)).status, 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(value("x"), 1.0);

    testing::internal::CaptureStderr();
    Outcome o = run(parens(38));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "\nParser stack overflow, line 1, column 42\n");
    EXPECT_NE(o.status, 0);
    EXPECT_EQ(o.column, 42);  // the 38th "("

    // Calls and "?" awaiting ":" nest as well.
    std::string calls = "x = ";
    for (int i = 0; i < 37; ++i) calls += "sin(";
    calls += "0" + std::string(37, ')');
    EXPECT_EQ(run(calls).status, 0);
    testing::internal::CaptureStderr();
    EXPECT_NE(run("y = (" + calls.substr(4) + ")").status, 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "\nParser stack overflow, line 1, column 153\n");
    std::string questions = "x = ";
    for (int i = 0; i < 37; ++i) questions += "1 ? ";
    questions += "5";
    for (int i = 0; i < 37; ++i) questions += " : 0";
    EXPECT_EQ(run(questions).status, 0);
    EXPECT_EQ(value("x"), 5.0);
    testing::internal::CaptureStderr();
    EXPECT_NE(run("x = 1 ? (" + questions.substr(4) + ") : 0").status, 0);
    testing::internal::GetCapturedStderr();

    // Chains that are not nested have no such limit.
    EXPECT_EQ(calc(std::string(1000, '-') + "1"), 1.0);
    std::string sum = "1";
    for (int i = 0; i < 1000; ++i) sum += " + 1";
    EXPECT_EQ(calc(sum), 1001.0);
    std::string powers = "1";
    for (int i = 0; i < 500; ++i) powers += " ** 2";
    EXPECT_EQ(calc(powers), 1.0);
    std::string chain;
    for (int i = 0; i < 100; ++i) chain += "a" + std::to_string(i) + " = ";
    EXPECT_EQ(run(chain + "5").status, 0);
    EXPECT_EQ(value("a99"), 5.0);
    std::string conds = "x = ";
    for (int i = 0; i < 100; ++i) conds += "0 ? 1 : ";
    EXPECT_EQ(calc(conds.substr(4) + "9"), 9.0);
}

} // namespace
} // namespace tarvex
