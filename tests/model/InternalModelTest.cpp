#include "model/InternalModel.h"

#include <gtest/gtest.h>

#include <cmath>

#include "factors/Evaluator.h"

using namespace tarvex;

namespace {

InternalModel modelWith(std::initializer_list<const char*> variables) {
    InternalModel m;
    for (const char* v : variables) EXPECT_EQ(m.addVariable(v), 1) << v;
    return m;
}

std::vector<int32_t> list(std::initializer_list<int32_t> v) { return v; }

} // namespace

TEST(InternalModel, DefaultsAndEmptyNames) {
    InternalModel m;
    EXPECT_EQ(m.name(), "noname");
    EXPECT_EQ(m.fileName(), "nofile");
    EXPECT_EQ(m.errorText(), "noerror");
    // An empty name or file name falls back to the default.
    m.setName("ishigami");
    m.setFileName("/x/y.imd");
    m.setName("");
    m.setFileName("");
    EXPECT_EQ(m.name(), "noname");
    EXPECT_EQ(m.fileName(), "nofile");

    ASSERT_EQ(m.addVariable("a"), 1);
    ASSERT_EQ(m.addExpression(0, "y", "a", 1), 1);
    ASSERT_EQ(m.addVariable("2a"), 0);  // leaves an error text for clear to reset
    m.clear();
    EXPECT_EQ(m.numVariables(), 0);
    EXPECT_EQ(m.numExpressions(), 0);
    EXPECT_EQ(m.errorText(), "noerror");
}

TEST(InternalModel, NameRule) {
    InternalModel m;
    for (const char* bad : {"2x", "a b", "a-b", "a/b", "x£", "çx", "a\"b", "a\\b", "a.b", "a<b", "", "9"}) {
        EXPECT_EQ(m.addVariable(bad), 0) << bad;
        EXPECT_EQ(m.errorText(), "Incorrect factor name") << bad;
    }
    EXPECT_EQ(m.numVariables(), 0);
    // The underscore, letters of other scripts and a digit after the start pass.
    for (const char* good : {"a_b", "x2", "é", "_u"}) EXPECT_EQ(m.addVariable(good), 1) << good;
    EXPECT_EQ(m.addVariable("x2"), 0);
    EXPECT_EQ(m.errorText(), "Factor already inserted in the list");
    EXPECT_EQ(m.numVariables(), 4);

    EXPECT_EQ(m.renameVariable(0, "2x"), 0);
    EXPECT_EQ(m.errorText(), "Incorrect factor name");
    EXPECT_EQ(m.renameVariable(0, "é"), 0);
    EXPECT_EQ(m.errorText(), "Factor already inserted in the list");
    EXPECT_EQ(m.variableName(0), "a_b");
    // A name the calculator cannot read as a name makes every check fail.
    EXPECT_EQ(m.addExpression(0, "y", "x2", 1), 0);
    EXPECT_EQ(m.errorText(), "Current expression cannot be evaluated\n Syntax error.");

    InternalModel e = modelWith({"x2"});
    EXPECT_EQ(e.addExpression(0, "a b", "x2", 1), 0);
    EXPECT_EQ(e.errorText(), "Incorrect expression name");
    EXPECT_EQ(e.addExpression(0, "2y", "x2", 1), 0);
    EXPECT_EQ(e.errorText(), "Incorrect expression name");
    EXPECT_EQ(e.addExpression(0, "y", "x2", 1), 1);
    EXPECT_EQ(e.addExpression(1, "y", "x2", 1), 0);
    EXPECT_EQ(e.errorText(), "Expression name already in the list");
    EXPECT_EQ(e.addExpression(3, "z", "x2", 1), 0);
    EXPECT_EQ(e.errorText(), "Index out of range");
    EXPECT_EQ(e.numExpressions(), 1);

    // "%" is outside the name rule's set, but no calculator name either.
    InternalModel p = modelWith({"a%b", "c"});
    EXPECT_EQ(p.addExpression(0, "y", "c", 1), 0);
    EXPECT_EQ(p.errorText(), "Current expression cannot be evaluated\n Syntax error.");
}

TEST(InternalModel, WordTestLooksAtTheFirstOccurrenceOnly) {
    EXPECT_TRUE(InternalModel::usesName("a", "a"));
    EXPECT_TRUE(InternalModel::usesName("a", "2*a"));
    EXPECT_TRUE(InternalModel::usesName("a", "sin( a )"));
    EXPECT_TRUE(InternalModel::usesName("a", "b -   a   + 1"));
    EXPECT_TRUE(InternalModel::usesName("a", "  a"));
    EXPECT_FALSE(InternalModel::usesName("ab", "abc+ab"));
    EXPECT_FALSE(InternalModel::usesName("a", "ab+a"));
    EXPECT_FALSE(InternalModel::usesName("a", "ba"));
    EXPECT_FALSE(InternalModel::usesName("x", "x1 + x"));
    EXPECT_FALSE(InternalModel::usesName("x", "x,y"));
    EXPECT_FALSE(InternalModel::usesName("x", "2x"));
    EXPECT_FALSE(InternalModel::usesName("x", "y"));
    EXPECT_FALSE(InternalModel::usesName("", "y"));

    // Variables a and ab, expression ab+a: the test for a says no, so a can be
    // deleted while the expression uses it.
    InternalModel m = modelWith({"a", "ab"});
    ASSERT_EQ(m.addExpression(0, "y", "ab+a", 1), 1);
    EXPECT_TRUE(m.variables()[0].usedBy.empty());
    EXPECT_EQ(m.variables()[1].usedBy, list({0}));
    EXPECT_EQ(m.removeVariable(1), 0);
    EXPECT_EQ(m.errorText(), "Factor currently in use, I can't delete it");
    EXPECT_EQ(m.removeVariable(0), 1);
    EXPECT_EQ(m.variableName(0), "ab");
}

TEST(InternalModel, VariableOperations) {
    InternalModel m;
    EXPECT_EQ(m.removeVariable(0), 0);
    EXPECT_EQ(m.errorText(), "No Factor to delete");
    m = modelWith({"a", "b", "c"});
    EXPECT_EQ(m.removeVariable(3), 0);
    EXPECT_EQ(m.errorText(), "Factor to remove not found");
    EXPECT_EQ(m.removeVariable(-1), 0);
    EXPECT_EQ(m.numVariables(), 3);

    m.moveVariable(0, 2);
    EXPECT_EQ(m.variableName(0), "b");
    EXPECT_EQ(m.variableName(2), "a");
    m.moveVariable(0, 3);
    m.moveVariable(-1, 0);
    EXPECT_EQ(m.variableName(0), "b");
    EXPECT_EQ(m.variableName(1), "c");
    EXPECT_EQ(m.variableName(5), "");
    EXPECT_EQ(m.errorText(), "Index out of range");

    // Renaming follows the first use in each user's text only.
    ASSERT_EQ(m.addExpression(0, "y", "a + a * 2", 1), 1);
    ASSERT_EQ(m.renameVariable(2, "q"), 1);
    EXPECT_EQ(m.expressionText(0), "q + a * 2");
    EXPECT_EQ(m.variableName(2), "q");
    EXPECT_EQ(m.variables()[2].usedBy, list({0}));
}

TEST(InternalModel, CheckExpression) {
    const std::string syntax = "Current expression cannot be evaluated\n Syntax error.";
    const std::string unknown = "Current expression cannot be evaluated.\n Unknown Variable.";
    // The trial values are never zero, so a division by a variable passes,
    // while a division by zero itself does not. An assignment to a name of
    // the model is allowed, to another name not.
    const std::pair<const char*, std::string> refused[] = {
        {"a +", syntax}, {"a + c", unknown}, {"pow(a, 2)", syntax}, {"a / (b - b)", syntax}, {"tmp = a", unknown}};
    InternalModel m = modelWith({"a", "b"});
    for (const auto& [text, message] : refused) {
        EXPECT_EQ(m.addExpression(0, "y", text, 1), 0) << text;
        EXPECT_EQ(m.errorText(), message) << text;
    }
    EXPECT_EQ(m.addExpression(0, "y", "1 / a", 1), 1);
    EXPECT_EQ(m.addExpression(1, "z", "b = a * 2", 0), 1);
    EXPECT_EQ(m.numExpressions(), 2);

    // A later expression that does not exist yet is unknown; once it exists,
    // an expression placed before it may name it.
    InternalModel f = modelWith({"x"});
    EXPECT_EQ(f.addExpression(0, "first", "later + 1", 1), 0);
    EXPECT_EQ(f.errorText(), "Current expression cannot be evaluated.\n Unknown Variable.");
    ASSERT_EQ(f.addExpression(0, "later", "x * 2", 0), 1);
    EXPECT_EQ(f.addExpression(0, "first", "later + 1", 1), 1);
    EXPECT_EQ(f.expressionName(0), "first");
    EXPECT_EQ(f.expressionName(1), "later");
}

TEST(InternalModel, UsedByRecordsTheLengthBeforeInsertion) {
    InternalModel m = modelWith({"x", "y"});
    ASSERT_EQ(m.addExpression(0, "e1", "x * 2", 0), 1);
    ASSERT_EQ(m.addExpression(1, "e2", "e1 + y", 1), 1);
    EXPECT_EQ(m.variables()[0].usedBy, list({0}));
    EXPECT_EQ(m.variables()[1].usedBy, list({1}));
    EXPECT_EQ(m.expressions()[0].usedBy, list({1}));
    // Inserted in front, the new expression is still recorded as index 2.
    ASSERT_EQ(m.addExpression(0, "e0", "x + e2", 1), 1);
    EXPECT_EQ(m.variables()[0].usedBy, list({0, 2}));
    EXPECT_EQ(m.expressions()[2].usedBy, list({2}));
    EXPECT_EQ(m.expressions()[0].name, "e0");
    EXPECT_EQ(m.expressions()[0].value, 0.0);
    EXPECT_TRUE(m.expressions()[0].usedBy.empty());
}

TEST(InternalModel, ModifyAndRemoveExpressions) {
    InternalModel m = modelWith({"x", "y"});
    ASSERT_EQ(m.addExpression(0, "e1", "x * 2", 0), 1);
    ASSERT_EQ(m.addExpression(1, "e2", "e1 + y", 1), 1);
    ASSERT_EQ(m.addExpression(2, "e3", "e1*e1", 1), 1);

    EXPECT_EQ(m.modifyExpression(0, "e2", "x", 0), 0);
    EXPECT_EQ(m.errorText(), "Variable already inserted in the list");
    EXPECT_EQ(m.modifyExpression(0, "e1", "x +", 0), 0);
    EXPECT_EQ(m.errorText(), "Current expression cannot be evaluated\n Syntax error.");
    EXPECT_EQ(m.modifyExpression(7, "e1", "x", 0), 0);
    EXPECT_EQ(m.errorText(), "Expression not found");

    // A new name is written into the users' texts, first occurrence only.
    ASSERT_EQ(m.modifyExpression(0, "base", "y * 3", 0), 1);
    EXPECT_EQ(m.expressionText(1), "base + y");
    EXPECT_EQ(m.expressionText(2), "base*e1");
    EXPECT_TRUE(m.variables()[0].usedBy.empty());
    EXPECT_EQ(m.variables()[1].usedBy, list({1, 0}));
    EXPECT_EQ(m.expressions()[0].usedBy, list({1, 2}));
    EXPECT_EQ(m.removeVariable(0), 1);  // x is no longer used

    EXPECT_EQ(m.removeExpression(0), 0);
    EXPECT_EQ(m.errorText(), "The expression is in use, I can't delete it");
    EXPECT_EQ(m.removeExpression(3), 0);
    EXPECT_EQ(m.errorText(), "Expression not found");
    ASSERT_EQ(m.removeExpression(2), 1);
    EXPECT_EQ(m.expressions()[0].usedBy, list({1}));
    EXPECT_EQ(m.numExpressions(), 2);
}

TEST(InternalModel, FiveHundredExpressionsAtMost) {
    InternalModel m = modelWith({"x"});
    for (int i = 0; i < 500; ++i) ASSERT_EQ(m.addExpression(0, "e" + std::to_string(i), "x", 1), 1) << i;
    EXPECT_EQ(m.addExpression(0, "e500", "x", 1), 0);
    EXPECT_EQ(m.errorText(), "Too much expressions: max number of expression 500");
    // The limit is checked before the name.
    EXPECT_EQ(m.addExpression(0, "2bad", "x", 1), 0);
    EXPECT_EQ(m.errorText(), "Too much expressions: max number of expression 500");
    EXPECT_EQ(m.numExpressions(), 500);
}

TEST(InternalModel, Accessors) {
    InternalModel m = modelWith({"x"});
    ASSERT_EQ(m.addExpression(0, "i0", "x", 0), 1);
    ASSERT_EQ(m.addExpression(1, "o0", "x", 1), 1);
    ASSERT_EQ(m.addExpression(2, "i1", "x", 0), 1);
    ASSERT_EQ(m.addExpression(3, "o1", "x", 1), 1);
    EXPECT_EQ(m.numOutputs(), 2);
    EXPECT_EQ(m.numInternals(), 2);
    EXPECT_EQ(m.outputName(1), "o1");
    EXPECT_EQ(m.internalName(1), "i1");
    EXPECT_EQ(m.outputName(2), "");
    EXPECT_EQ(m.errorText(), "Index out of Range");
    m.clearError();
    EXPECT_EQ(m.internalName(-1), "");
    EXPECT_EQ(m.errorText(), "Index out of Range");
    EXPECT_EQ(m.expressionType(3), 1);
    EXPECT_EQ(m.expressionType(4), -1);
    EXPECT_EQ(m.errorText(), "Index out of range");
    EXPECT_EQ(m.expressionText(4), "");
    EXPECT_EQ(m.expressionName(-1), "");

    ModelExpression e;
    EXPECT_EQ(m.getExpression(9, e), 0);
    ASSERT_EQ(m.getExpression(1, e), 1);
    EXPECT_EQ(e.name, "o0");
    EXPECT_EQ(e.text, "x");
    EXPECT_EQ(e.type, 1);
}

TEST(InternalModel, EvaluationBindsSixDigitValues) {
    InternalModel m = modelWith({"x"});
    ASSERT_EQ(m.addExpression(0, "third", "x / 3", 0), 1);
    ASSERT_EQ(m.addExpression(1, "y", "third * 3", 1), 1);
    ASSERT_EQ(m.addExpression(2, "echo", "x", 1), 1);
    double out[2] = {0, 0};
    double x = 1.0;
    ASSERT_EQ(m.evaluate(&x, out), 1);
    // The intermediate keeps its full value but enters the next equation as 0.333333.
    EXPECT_EQ(m.expressions()[0].value, 1.0 / 3.0);
    EXPECT_DOUBLE_EQ(out[0], 0.999999);
    EXPECT_EQ(out[1], 1.0);
    x = 1234567.8;
    ASSERT_EQ(m.evaluate(&x, out), 1);
    EXPECT_EQ(out[1], 1234570.0);  // 1.23457e+06
    double textOut[2];
    ASSERT_EQ(m.evaluateText(&x, textOut), 1);
    EXPECT_EQ(textOut[1], 1234570.0);
}

TEST(InternalModel, IshigamiAgainstItsFormula) {
    InternalModel m = modelWith({"x1", "x2", "x3"});
    ASSERT_EQ(m.addExpression(0, "y", "sin(x1) + 7 * sin(x2) ** 2 + 0.1 * x3 ** 4 * sin(x1)", 1), 1);
    // Values with at most six significant digits enter unchanged.
    const double rows[][3] = {{0.5, -1.25, 2.0}, {-3.0, 3.125, -0.75}, {1.5, 0.0, 3.0}};
    for (const auto& r : rows) {
        const double expected = std::sin(r[0]) + 7 * std::pow(std::sin(r[1]), 2) + 0.1 * std::pow(r[2], 4) * std::sin(r[0]);
        double y = 0;
        ASSERT_EQ(m.evaluate(r, &y), 1);
        EXPECT_NEAR(y, expected, 1e-14);
        ASSERT_EQ(m.evaluateText(r, &y), 1);
        EXPECT_NEAR(y, expected, 1e-14);
    }
}

TEST(InternalModel, FailingRowLeavesOutputsUntouched) {
    InternalModel m = modelWith({"x"});
    ASSERT_EQ(m.addExpression(0, "y", "1 / (x != 0.25)", 1), 1);
    double y = -1.0;
    double x = 0.25;
    EXPECT_EQ(m.evaluate(&x, &y), 0);
    EXPECT_EQ(m.errorText(), "Error evaluating model");
    EXPECT_EQ(y, -1.0);
    EXPECT_EQ(m.evaluateText(&x, &y), 0);
    EXPECT_EQ(y, -1.0);
    x = 0.75;
    EXPECT_EQ(m.evaluate(&x, &y), 1);
    EXPECT_EQ(y, 1.0);

    // The compiled form follows edits of the model.
    ASSERT_EQ(m.modifyExpression(0, "y", "x * 4", 1), 1);
    EXPECT_EQ(m.evaluate(&x, &y), 1);
    EXPECT_EQ(y, 3.0);
    InternalModel copy = m;
    ASSERT_EQ(copy.modifyExpression(0, "y", "x * 8", 1), 1);
    EXPECT_EQ(copy.evaluate(&x, &y), 1);
    EXPECT_EQ(y, 6.0);
    EXPECT_EQ(m.evaluate(&x, &y), 1);
    EXPECT_EQ(y, 3.0);
}

TEST(InternalModel, FullSymbolTableFailsEveryRowOnBothPaths) {
    // 490 variables and expressions added in front pass their checks, but the
    // last expression of the list binds 490 + 9 names and the result name.
    InternalModel m;
    for (int j = 0; j < 490; ++j) ASSERT_EQ(m.addVariable("v" + std::to_string(j)), 1);
    for (int i = 0; i < 10; ++i) ASSERT_EQ(m.addExpression(0, "e" + std::to_string(i), "v0 + 1", 1), 1);
    std::vector<double> row(490, 1.5);
    std::vector<double> out(10, -1.0);
    EXPECT_EQ(m.evaluateText(row.data(), out.data()), 0);
    EXPECT_EQ(m.evaluate(row.data(), out.data()), 0);
    // The first nine fit: 490 + 8 bindings + the result name make 499.
    EXPECT_EQ(m.expressions()[8].value, 2.5);
    EXPECT_EQ(out[0], -1.0);
    InternalModel smaller;
    for (int j = 0; j < 490; ++j) ASSERT_EQ(smaller.addVariable("v" + std::to_string(j)), 1);
    for (int i = 0; i < 9; ++i) ASSERT_EQ(smaller.addExpression(0, "e" + std::to_string(i), "v0 + 1", 1), 1);
    EXPECT_EQ(smaller.evaluate(row.data(), out.data()), 1);
    EXPECT_EQ(smaller.evaluateText(row.data(), out.data()), 1);
    EXPECT_EQ(out[8], 2.5);
}
