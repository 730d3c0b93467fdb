#include "model/InternalModel.h"

#include <TestSupport.h>
#include <gtest/gtest.h>

#include <sstream>

using namespace tarvex;

namespace {

InternalModel sampleModel() {
    InternalModel m;
    m.setName("ishigami");
    m.setFileName("/models/ishigami.imd");
    EXPECT_EQ(m.addVariable("x1"), 1);
    EXPECT_EQ(m.addVariable("x2"), 1);
    EXPECT_EQ(m.addVariable("x3"), 1);
    EXPECT_EQ(m.addExpression(0, "s1", "sin(x1)", 0), 1);
    EXPECT_EQ(m.addExpression(1, "y", "s1 + 7 * sin(x2) ** 2 + 0.1 * x3 ** 4 * s1", 1), 1);
    EXPECT_EQ(m.addExpression(2, "y2", "x1*x1", 1), 1);
    return m;
}

std::string text(InternalModel& m) {
    std::ostringstream out;
    m.write(out);
    return out.str();
}

void expectSameModel(const InternalModel& a, const InternalModel& b) {
    EXPECT_EQ(a.name(), b.name());
    EXPECT_EQ(a.fileName(), b.fileName());
    ASSERT_EQ(a.numVariables(), b.numVariables());
    for (int j = 0; j < a.numVariables(); ++j) {
        EXPECT_EQ(a.variables()[j].name, b.variables()[j].name);
        EXPECT_EQ(a.variables()[j].usedBy, b.variables()[j].usedBy);
    }
    ASSERT_EQ(a.numExpressions(), b.numExpressions());
    for (int i = 0; i < a.numExpressions(); ++i) {
        EXPECT_EQ(a.expressions()[i].name, b.expressions()[i].name);
        EXPECT_EQ(a.expressions()[i].text, b.expressions()[i].text);
        EXPECT_EQ(a.expressions()[i].type, b.expressions()[i].type);
        EXPECT_EQ(a.expressions()[i].usedBy, b.expressions()[i].usedBy);
    }
}

void expectCleared(const InternalModel& m) {
    EXPECT_EQ(m.numVariables(), 0);
    EXPECT_EQ(m.numExpressions(), 0);
    EXPECT_EQ(m.name(), "noname");
}

} // namespace

TEST(InternalModelFile, WrittenLineByLine) {
    InternalModel m = sampleModel();
    ASSERT_EQ(m.addVariable("unused"), 1);
    EXPECT_EQ(text(m),
              "ishigami\n4\n"
              "x1\n2\n0\t2\t\n"
              "x2\n1\n1\t\n"
              "x3\n1\n1\t\n"
              "unused\n0\n"
              "3\n"
              "s1\nsin(x1)\n0\n1\n"
              "y\ns1 + 7 * sin(x2) ** 2 + 0.1 * x3 ** 4 * s1\n1\n0\n"
              "y2\nx1*x1\n1\n0\n"
              "/models/ishigami.imd\n");
    EXPECT_EQ(m.errorText(), "noerror");
}

TEST(InternalModelFile, RoundTripRebuildsUsedBy) {
    InternalModel m = sampleModel();
    std::string t = text(m);
    // Stored lists are not trusted: spoil them and read the rebuilt ones.
    const std::string spoiled = "x1\n2\n0\t2\t\n";
    t.replace(t.find(spoiled), spoiled.size(), "x1\n3\n7\t8\t9\t\n");
    std::istringstream in(t);
    InternalModel r;
    r.read(in);
    ASSERT_FALSE(in.fail());
    EXPECT_EQ(r.errorText(), "");
    expectSameModel(m, r);

    // Through a file as well.
    test::ScratchDir dir;
    ASSERT_EQ(m.writeFile(dir.file("m.imd")), 1);
    InternalModel f;
    ASSERT_EQ(f.readFile(dir.file("m.imd")), 1);
    expectSameModel(m, f);
    EXPECT_EQ(f.readFile(dir.file("missing.imd")), 0);
    EXPECT_EQ(f.errorText(), "Error reading model file");
    expectCleared(f);
}

TEST(InternalModelFile, EmptyListsAndTheFirstWordOfTheName) {
    InternalModel m;
    m.setName("empty");
    EXPECT_EQ(text(m), "empty\n0\n\n0\nnofile\n");
    std::istringstream in("my model\n0\n\n0\n/a/b.imd\n");
    InternalModel r;
    r.read(in);
    ASSERT_FALSE(in.fail());
    EXPECT_EQ(r.name(), "my");
    EXPECT_EQ(r.fileName(), "/a/b.imd");
    EXPECT_EQ(r.errorText(), "");

    // Variables but no expressions: the file name line follows the count.
    std::istringstream v("m\n1\na\n0\n0\nf.imd");
    r.read(v);
    ASSERT_FALSE(v.fail());
    EXPECT_EQ(r.numVariables(), 1);
    EXPECT_EQ(r.fileName(), "f.imd");
}

// Whatever the model accepts, its file gives back: lines of at most 4095
// characters, and names of at most 1000, the longest the calculator binds
// when the reader checks each expression again. One character more, or a line
// break, is refused where it enters, and the model stays as it was.
TEST(InternalModelFile, LongestAcceptedLinesReadBack) {
    const std::size_t longestLine = 4095;
    const std::size_t longestName = 1000;
    const std::string variable(longestName, 'v');
    const std::string expression(longestName, 'e');
    const std::string path = "/" + std::string(longestLine - 1, 'p');
    // a + 1 spread over a whole line.
    const std::string longText = "a" + std::string(longestLine - 3, ' ') + "+1";
    InternalModel m;
    ASSERT_EQ(m.setName(std::string(longestLine, 'n')), 1);
    ASSERT_EQ(m.setFileName(path), 1);
    ASSERT_EQ(m.addVariable("a"), 1);
    ASSERT_EQ(m.addVariable(variable), 1);
    ASSERT_EQ(m.addExpression(0, "y", longText, 1), 1);
    // The long names are bound whenever a later expression is checked.
    ASSERT_EQ(m.addExpression(1, expression, "y * 2", 1), 1);
    ASSERT_EQ(m.addExpression(2, "z", "y - 1", 1), 1);
    std::istringstream in(text(m));
    InternalModel r;
    r.read(in);
    ASSERT_FALSE(in.fail()) << r.errorText();
    EXPECT_EQ(r.errorText(), "");
    expectSameModel(m, r);
    const double row[] = {4.0, 0.5};
    double outputs[3] = {};
    ASSERT_EQ(r.evaluate(row, outputs), 1);
    EXPECT_EQ(outputs[0], 5.0);
    EXPECT_EQ(outputs[1], 10.0);
    EXPECT_EQ(outputs[2], 4.0);

    const std::string overLine = "a" + std::string(longestLine - 2, ' ') + "+1";
    const std::string overName(longestName + 1, 'w');
    const std::string before = text(m);
    auto refused = [&](int result, const char* expected, const char* what) {
        EXPECT_EQ(result, 0) << what;
        EXPECT_EQ(m.errorText(), expected) << what;
        EXPECT_EQ(text(m), before) << what;
        m.clearError();
    };
    refused(m.setName(std::string(longestLine + 1, 'n')), kModelLineText, "model name");
    refused(m.setName("two\nlines"), kModelLineText, "model name across lines");
    refused(m.setFileName(path + "p"), kModelLineText, "path");
    refused(m.setFileName("/a\n/b.imd"), kModelLineText, "path across lines");
    refused(m.addVariable(overName), kModelNameLengthText, "variable");
    refused(m.addVariable("b\nc"), "Incorrect factor name", "variable across lines");
    refused(m.renameVariable(0, overName), kModelNameLengthText, "renamed variable");
    refused(m.addExpression(3, overName, "a", 1), kModelNameLengthText, "expression name");
    refused(m.addExpression(3, "w", overLine, 1), kModelLineText, "text");
    refused(m.addExpression(3, "w", "a +\n1", 1), kModelLineText, "text across lines");
    refused(m.modifyExpression(0, "y", overLine, 1), kModelLineText, "new text");
    refused(m.modifyExpression(2, overName, "a", 1), kModelNameLengthText, "new name");
    // The reader adds each expression again, and would refuse this name.
    refused(m.modifyExpression(2, "z z", "a", 1), "Incorrect expression name", "new name with a blank");
    // A rename rewrites the texts that use the name: y's text would grow past
    // a line.
    refused(m.renameVariable(0, "aa"), kModelLineText, "variable rename");
    ASSERT_EQ(m.addExpression(3, "w", "y" + std::string(longestLine - 3, ' ') + "*2", 1), 1);
    const std::string withW = text(m);
    EXPECT_EQ(m.modifyExpression(0, "yy", longText, 1), 0);
    EXPECT_EQ(m.errorText(), kModelLineText);
    EXPECT_EQ(text(m), withW);

    // A name of blanks is no name: the file would give back none.
    ASSERT_EQ(m.setName("   "), 1);
    EXPECT_EQ(m.name(), "noname");
}

TEST(InternalModelFile, FiveHundredExpressionsAreWrittenButNotRead) {
    InternalModel m;
    ASSERT_EQ(m.addVariable("x"), 1);
    for (int i = 0; i < 500; ++i) ASSERT_EQ(m.addExpression(0, "e" + std::to_string(i), "x", 1), 1);
    std::istringstream in(text(m));
    InternalModel r;
    r.read(in);
    EXPECT_TRUE(in.fail());
    EXPECT_EQ(r.errorText(), "Too much model outputs variables found: max output var = 500");
    expectCleared(r);

    ASSERT_EQ(m.removeExpression(0), 1);
    std::istringstream again(text(m));
    r.read(again);
    EXPECT_FALSE(again.fail());
    EXPECT_EQ(r.numExpressions(), 499);
}

TEST(InternalModelFile, DamagedFilesClearTheModel) {
    struct Case {
        const char* text;
        const char* error;
    };
    const Case cases[] = {
        {"", "Error reading model file"},
        {"\n0\n\n0\nf\n", "Error reading model file"},                       // empty name
        {"m\nx\n", "Error reading model file"},                                // count not a number
        {"m\n1\n\n0\n0\nf\n", "Error reading model file"},                     // empty variable name
        {"m\n1\na_b\n0\n0\nf\n", "Error reading model file"},                   // underscore refused
        {"m\n1\n2a\n0\n0\nf\n", "Error reading model file"},                    // digit first
        {"m\n1\naé\n0\n0\nf\n", "Error reading model file"},                    // accented letter
        {"m\n2\na\n0\na\n0\n0\nf\n", "Error reading model file"},               // twice the same
        {"m\n1\na\n2\n1\t\n0\nf\n", "Error reading model file"},                // fewer indices
        {"m\n1\na\n0\n-1\nf\n", "Error reading number of outputs variables!"},
        {"m\n1\na\n0\n500\nf\n", "Too much model outputs variables found: max output var = 500"},
        {"m\n1\na\n0\n1\ny\nb + 1\n1\n0\nf\n", "Error in adding an expression"},  // unknown b
        {"m\n1\na\n0\n1\ny\na +\n1\n0\nf\n", "Error in adding an expression"},
        {"m\n1\na\n0\n1\ny\na\nx\n0\nf\n", "Error reading model file"},          // type not a number
        {"m\n1\na\n0\n2\ny\na\n1\n0\n", "Error reading model file"},             // early end
        {"m\n1\na\n0\n1\ny\na\n1\n0\n", "Error reading model file"},             // no file name line
    };
    for (const Case& c : cases) {
        std::istringstream in(c.text);
        InternalModel r = sampleModel();
        r.read(in);
        EXPECT_TRUE(in.fail()) << c.text;
        EXPECT_EQ(r.errorText(), c.error) << c.text;
        expectCleared(r);
    }
    // A line beyond the reader's 4096 characters.
    std::istringstream longName(std::string(5000, 'n') + "\n0\n\n0\nf\n");
    InternalModel r;
    r.read(longName);
    EXPECT_TRUE(longName.fail());
    EXPECT_EQ(r.errorText(), "Error reading model file");
}

// Random damage is the reader fuzz harness's part.
TEST(InternalModelFile, EveryCutIsHandled) {
    InternalModel m = sampleModel();
    const std::string good = text(m);
    const std::size_t lastLine = good.rfind('\n', good.size() - 2) + 1;
    for (std::size_t cut = 0; cut < good.size(); ++cut) {
        std::istringstream in(good.substr(0, cut));
        InternalModel r;
        r.read(in);
        if (cut <= lastLine) {
            // Everything before the file name line is needed.
            EXPECT_TRUE(in.fail()) << cut;
            EXPECT_EQ(r.errorText(), "Error reading model file") << cut;
            expectCleared(r);
        } else {
            EXPECT_FALSE(in.fail()) << cut;
            EXPECT_EQ(r.errorText(), "");
        }
    }
}

TEST(InternalModelFile, WindowsLineEndsAreRead) {
    InternalModel m = sampleModel();
    std::string t = text(m);
    std::string crlf;
    for (char c : t) crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
    std::istringstream in(crlf);
    InternalModel r;
    r.read(in);
    ASSERT_FALSE(in.fail());
    expectSameModel(m, r);
}
