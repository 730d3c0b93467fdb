#pragma once
// A model written as a list of equations inside the program: named inputs, one
// per sample column, and named expressions evaluated in order, some of which
// are the model's outputs. Every operation returns non-zero on success; on
// failure errorText() says why and the model is as it was (the file reader
// excepted, which leaves a cleared model).
//
// Values enter each equation as their "%g" text would be read, so that factor
// values and intermediate results carry six significant digits: that rounding
// is part of the model's result. evaluate() gets there without reading the
// texts again for every row (see ModelProgram.h); evaluateText() is the
// reference that builds and parses the text of every equation for every row.
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "model/ModelExpression.h"
#include "model/ModelVariable.h"

namespace tarvex {

class ModelProgram;

// Refusals of what the model file could not give back.
inline constexpr const char* kModelLineText =
    "The model file keeps each name and expression on one line of at most 4095 characters";
inline constexpr const char* kModelNameLengthText = "A name of the model can hold at most 1000 characters";

class InternalModel {
public:
    static constexpr int kMaxExpressions = 500;
    // The longest line the file reader keeps: the model's name, its path and
    // every expression text fit one such line, or are refused with
    // kModelLineText.
    static constexpr std::size_t kMaxLineLength = 4095;
    // The longest name the calculator can bind. The reader checks every
    // expression again with all names before it bound, so a longer variable
    // or expression name is refused with kModelNameLengthText.
    static constexpr std::size_t kMaxNameLength = 1000;
    // The file reader refuses a count above this one, so a model of exactly
    // kMaxExpressions expressions can be edited and saved but not read back.
    static constexpr int kMaxReadExpressions = 499;

    InternalModel();
    ~InternalModel();
    InternalModel(const InternalModel& other);
    InternalModel& operator=(const InternalModel& other);
    InternalModel(InternalModel&& other) noexcept;
    InternalModel& operator=(InternalModel&& other) noexcept;

    const std::string& name() const { return name_; }
    // An empty name, or one of blanks only, gives "noname".
    int setName(const std::string& name);
    const std::string& fileName() const { return fileName_; }
    // An empty path gives "nofile".
    int setFileName(const std::string& path);
    const std::string& errorText() const { return errorText_; }
    void clearError() { errorText_ = "noerror"; }

    [[nodiscard]] int addVariable(const std::string& name);
    [[nodiscard]] int renameVariable(int index, const std::string& name);
    // Removes the variable at `from` and puts it at `to`; out of range does nothing.
    void moveVariable(int from, int to);
    [[nodiscard]] int removeVariable(int index);

    [[nodiscard]] int addExpression(int position, const std::string& name, const std::string& text, int16_t type);
    [[nodiscard]] int modifyExpression(int position, const std::string& name, const std::string& text, int16_t type);
    [[nodiscard]] int removeExpression(int index);
    [[nodiscard]] int getExpression(int index, ModelExpression& out);

    // Empty text (and -1 for the type) with "Index out of range" when out of range.
    std::string expressionName(int index);
    std::string expressionText(int index);
    int expressionType(int index);
    std::string variableName(int index);
    // The k-th expression of type 1, of type 0; "Index out of Range".
    std::string outputName(int k);
    std::string internalName(int k);
    int numOutputs() const;
    int numInternals() const;
    int numVariables() const { return static_cast<int>(variables_.size()); }
    int numExpressions() const { return static_cast<int>(expressions_.size()); }
    const std::vector<ModelVariable>& variables() const { return variables_; }
    const std::vector<ModelExpression>& expressions() const { return expressions_; }

    // Tries `text` as the expression at `position` with throw-away values for
    // every variable and every expression before it; every name it meets must
    // be a name of the model.
    [[nodiscard]] int checkExpression(int position, const std::string& text);

    // One sample row: values[j] is variable j; outputs receives the value of
    // each expression of type 1, in expression order, and only on success.
    // A failing row gives "Error evaluating model" and 0.
    [[nodiscard]] int evaluate(const double* values, double* outputs);
    // The same result built and parsed as text for every equation of every row.
    [[nodiscard]] int evaluateText(const double* values, double* outputs);

    void clear();

    // The .imd text form. write() first sets errorText to "noerror". read()
    // replaces the model; on any failure the model is cleared, errorText holds
    // "Error reading model file" (or a more precise text) and the stream's
    // failure is set. A good read leaves errorText empty.
    void write(std::ostream& out);
    void read(std::istream& in);
    [[nodiscard]] int writeFile(const std::string& path);
    [[nodiscard]] int readFile(const std::string& path);

    // Whether `text` mentions `name`. Only the first occurrence of `name` is
    // looked at; it counts when it is followed, past blanks, by the end or one
    // of "*+-/()" and preceded, past blanks, by the start or one of " *+-/()".
    // So ab is not found in "abc+ab". Usage tracking and the refusal to delete
    // depend on exactly this answer.
    static bool usesName(const std::string& name, const std::string& text);
    // The name rule shared by variables and expressions. Control characters
    // are refused too: a name is one word on a line of the model file.
    static bool validName(const std::string& name);

private:
    int fail(const char* text);
    void changed();
    bool variableNameTaken(const std::string& name) const;

    std::string name_ = "noname";
    std::string fileName_ = "nofile";
    std::string errorText_ = "noerror";
    std::vector<ModelVariable> variables_;
    std::vector<ModelExpression> expressions_;
    // The compiled form of the current texts, built when first needed.
    std::unique_ptr<ModelProgram> program_;
};

} // namespace tarvex
