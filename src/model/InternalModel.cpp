#include "model/InternalModel.h"

#include <algorithm>

#include "factors/CompiledExpression.h"
#include "factors/Evaluator.h"
#include "factors/ExpressionCompiler.h"
#include "factors/OneLine.h"
#include "factors/TrialRandom.h"
#include "model/ModelProgram.h"
#include "model/NameCharacters.h"

namespace tarvex {

static_assert(InternalModel::kMaxNameLength == static_cast<std::size_t>(kCharacterStackSize));
static_assert(InternalModel::kMaxNameLength <= InternalModel::kMaxLineLength);

namespace {

// Characters a name may not hold; the blank included.
constexpr std::string_view kForbiddenNameCharacters = " /*-+()|!£$&=?'^[]#@ç,;.:-<>\\\"";

bool isOperator(char c) { return c == '*' || c == '+' || c == '-' || c == '/' || c == '(' || c == ')'; }

// Replaces the first occurrence of `from` in `text` by `to`.
void replaceFirst(std::string& text, const std::string& from, const std::string& to) {
    if (from.empty()) return;
    const std::size_t pos = text.find(from);
    if (pos != std::string::npos) text.replace(pos, from.size(), to);
}

// Whether the texts of `users` still fit a line of the model file once the
// first `from` in each has become `to`.
bool renamedTextsFit(const std::vector<int32_t>& users, const std::vector<ModelExpression>& expressions,
                     const std::string& from, const std::string& to) {
    for (int32_t user : users) {
        if (user < 0 || static_cast<std::size_t>(user) >= expressions.size()) continue;
        std::string text = expressions[static_cast<std::size_t>(user)].text;
        replaceFirst(text, from, to);
        if (text.size() > InternalModel::kMaxLineLength) return false;
    }
    return true;
}

bool validIndex(int index, std::size_t size) { return index >= 0 && static_cast<std::size_t>(index) < size; }

// Removes one entry equal to `index`, searching from the end of the list.
void removeLastOccurrence(std::vector<int32_t>& list, int32_t index) {
    for (std::size_t k = list.size(); k-- > 0;) {
        if (list[k] == index) {
            list.erase(list.begin() + static_cast<std::ptrdiff_t>(k));
            return;
        }
    }
}

} // namespace

InternalModel::InternalModel() = default;
InternalModel::~InternalModel() = default;

InternalModel::InternalModel(const InternalModel& other)
    : name_(other.name_), fileName_(other.fileName_), errorText_(other.errorText_),
      variables_(other.variables_), expressions_(other.expressions_) {}

InternalModel& InternalModel::operator=(const InternalModel& other) {
    if (this != &other) {
        name_ = other.name_;
        fileName_ = other.fileName_;
        errorText_ = other.errorText_;
        variables_ = other.variables_;
        expressions_ = other.expressions_;
        program_.reset();
    }
    return *this;
}

InternalModel::InternalModel(InternalModel&& other) noexcept = default;
InternalModel& InternalModel::operator=(InternalModel&& other) noexcept = default;

int InternalModel::fail(const char* text) {
    errorText_ = text;
    return 0;
}

void InternalModel::changed() { program_.reset(); }

// The file gives the name back as the first word of its line, so a name of
// blanks only is no name.
int InternalModel::setName(const std::string& name) {
    if (!fitsOneLine(name, kMaxLineLength)) return fail(kModelLineText);
    name_ = name.find_first_not_of(" \t\v\f") == std::string::npos ? "noname" : name;
    return 1;
}

int InternalModel::setFileName(const std::string& path) {
    if (!fitsOneLine(path, kMaxLineLength)) return fail(kModelLineText);
    fileName_ = path.empty() ? "nofile" : path;
    return 1;
}

bool InternalModel::validName(const std::string& name) {
    if (name.empty()) return false;
    if (name[0] >= '0' && name[0] <= '9') return false;
    for (char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F) return false;
    }
    return !containsCharacterOf(name, kForbiddenNameCharacters);
}

bool InternalModel::usesName(const std::string& name, const std::string& text) {
    if (name.empty()) return false;
    const std::size_t pos = text.find(name);
    if (pos == std::string::npos) return false;
    std::size_t after = pos + name.size();
    while (after < text.size() && text[after] == ' ') ++after;
    if (after < text.size() && !isOperator(text[after])) return false;
    if (pos > 0) {
        std::size_t k = pos - 1;
        while (k > 0 && text[k] == ' ') --k;
        if (text[k] != ' ' && !isOperator(text[k])) return false;
    }
    return true;
}

bool InternalModel::variableNameTaken(const std::string& name) const {
    return std::any_of(variables_.begin(), variables_.end(), [&](const ModelVariable& v) { return v.name == name; });
}

int InternalModel::addVariable(const std::string& name) {
    if (!validName(name)) return fail("Incorrect factor name");
    if (name.size() > kMaxNameLength) return fail(kModelNameLengthText);
    if (variableNameTaken(name)) return fail("Factor already inserted in the list");
    variables_.push_back(ModelVariable{name, {}});
    changed();
    return 1;
}

int InternalModel::renameVariable(int index, const std::string& name) {
    if (!validName(name)) return fail("Incorrect factor name");
    if (name.size() > kMaxNameLength) return fail(kModelNameLengthText);
    if (variableNameTaken(name)) return fail("Factor already inserted in the list");
    if (!validIndex(index, variables_.size())) return fail("Index out of range");
    ModelVariable& v = variables_[static_cast<std::size_t>(index)];
    if (!renamedTextsFit(v.usedBy, expressions_, v.name, name)) return fail(kModelLineText);
    // Only the first use in each text follows the new name: a text that uses
    // the variable twice keeps the old name in its second place.
    for (int32_t user : v.usedBy)
        if (validIndex(user, expressions_.size())) replaceFirst(expressions_[static_cast<std::size_t>(user)].text, v.name, name);
    v.name = name;
    changed();
    return 1;
}

void InternalModel::moveVariable(int from, int to) {
    if (!validIndex(from, variables_.size()) || !validIndex(to, variables_.size()) || from == to) return;
    ModelVariable moving = std::move(variables_[static_cast<std::size_t>(from)]);
    variables_.erase(variables_.begin() + from);
    variables_.insert(variables_.begin() + to, std::move(moving));
    changed();
}

int InternalModel::removeVariable(int index) {
    if (variables_.empty()) return fail("No Factor to delete");
    if (!validIndex(index, variables_.size())) return fail("Factor to remove not found");
    if (!variables_[static_cast<std::size_t>(index)].usedBy.empty())
        return fail("Factor currently in use, I can't delete it");
    variables_.erase(variables_.begin() + index);
    changed();
    return 1;
}

int InternalModel::checkExpression(int position, const std::string& text) {
    Evaluator& ev = Evaluator::instance();
    ev.clearSymbols();
    // Each binding goes in front of what is there, so the last one prepared
    // stands first, as the model's evaluation does it.
    std::string program = text;
    for (const ModelVariable& v : variables_) program = v.name + " = " + formatBoundValue(trialRandom()) + ";\n" + program;
    const std::size_t before = std::min<std::size_t>(static_cast<std::size_t>(std::max(position, 0)), expressions_.size());
    for (std::size_t m = 0; m < before; ++m)
        program = expressions_[m].name + " = " + formatBoundValue(trialRandom()) + ";\n" + program;
    if (ev.evaluate(program) != 0) return fail("Current expression cannot be evaluated\n Syntax error.");
    // Any expression of the list is accepted here, also one further down.
    for (const SymbolRecord& s : ev.symbolTable()) {
        const bool known = variableNameTaken(s.name) ||
                           std::any_of(expressions_.begin(), expressions_.end(),
                                       [&](const ModelExpression& e) { return e.name == s.name; });
        if (!known) return fail("Current expression cannot be evaluated.\n Unknown Variable.");
    }
    return 1;
}

int InternalModel::addExpression(int position, const std::string& name, const std::string& text, int16_t type) {
    if (expressions_.size() >= static_cast<std::size_t>(kMaxExpressions))
        return fail("Too much expressions: max number of expression 500");
    if (!validName(name)) return fail("Incorrect expression name");
    if (name.size() > kMaxNameLength) return fail(kModelNameLengthText);
    if (std::any_of(expressions_.begin(), expressions_.end(), [&](const ModelExpression& e) { return e.name == name; }))
        return fail("Expression name already in the list");
    if (position < 0 || static_cast<std::size_t>(position) > expressions_.size()) return fail("Index out of range");
    if (!fitsOneLine(text, kMaxLineLength)) return fail(kModelLineText);
    if (!checkExpression(position, text)) return 0;

    // The new index recorded in the users' lists is the length before the
    // insertion, wherever the record goes.
    const auto newIndex = static_cast<int32_t>(expressions_.size());
    for (ModelVariable& v : variables_)
        if (usesName(v.name, text)) v.usedBy.push_back(newIndex);
    for (ModelExpression& e : expressions_)
        if (usesName(e.name, text)) e.usedBy.push_back(newIndex);
    ModelExpression record;
    record.name = name;
    record.text = text;
    record.type = type;
    expressions_.insert(expressions_.begin() + position, std::move(record));
    changed();
    return 1;
}

int InternalModel::modifyExpression(int position, const std::string& name, const std::string& text, int16_t type) {
    if (!validIndex(position, expressions_.size())) return fail("Expression not found");
    // The file reader adds every expression again, so a name that adding
    // refuses would make the whole file unreadable.
    if (!validName(name)) return fail("Incorrect expression name");
    if (name.size() > kMaxNameLength) return fail(kModelNameLengthText);
    for (std::size_t k = 0; k < expressions_.size(); ++k)
        if (static_cast<int>(k) != position && expressions_[k].name == name)
            return fail("Variable already inserted in the list");
    if (!fitsOneLine(text, kMaxLineLength)) return fail(kModelLineText);
    const auto index = static_cast<std::size_t>(position);
    const std::string oldName = expressions_[index].name;
    if (oldName != name && !renamedTextsFit(expressions_[index].usedBy, expressions_, oldName, name))
        return fail(kModelLineText);
    if (!checkExpression(position, text)) return 0;

    if (oldName != name) {
        for (int32_t user : expressions_[index].usedBy)
            if (validIndex(user, expressions_.size())) replaceFirst(expressions_[static_cast<std::size_t>(user)].text, oldName, name);
    }
    for (ModelVariable& v : variables_) removeLastOccurrence(v.usedBy, position);
    for (std::size_t k = 0; k < index; ++k) removeLastOccurrence(expressions_[k].usedBy, position);
    for (ModelVariable& v : variables_)
        if (usesName(v.name, text)) v.usedBy.push_back(position);
    for (std::size_t k = 0; k < index; ++k)
        if (usesName(expressions_[k].name, text)) expressions_[k].usedBy.push_back(position);
    ModelExpression& record = expressions_[index];
    record.name = name;
    record.text = text;
    record.type = type;
    changed();
    return 1;
}

int InternalModel::removeExpression(int index) {
    if (!validIndex(index, expressions_.size())) return fail("Expression not found");
    if (!expressions_[static_cast<std::size_t>(index)].usedBy.empty())
        return fail("The expression is in use, I can't delete it");
    for (ModelVariable& v : variables_) removeLastOccurrence(v.usedBy, index);
    for (ModelExpression& e : expressions_) removeLastOccurrence(e.usedBy, index);
    expressions_.erase(expressions_.begin() + index);
    changed();
    return 1;
}

int InternalModel::getExpression(int index, ModelExpression& out) {
    if (!validIndex(index, expressions_.size())) return fail("Index out of range");
    out = expressions_[static_cast<std::size_t>(index)];
    return 1;
}

std::string InternalModel::expressionName(int index) {
    if (!validIndex(index, expressions_.size())) return fail("Index out of range"), std::string();
    return expressions_[static_cast<std::size_t>(index)].name;
}

std::string InternalModel::expressionText(int index) {
    if (!validIndex(index, expressions_.size())) return fail("Index out of range"), std::string();
    return expressions_[static_cast<std::size_t>(index)].text;
}

int InternalModel::expressionType(int index) {
    if (!validIndex(index, expressions_.size())) return fail("Index out of range"), -1;
    return expressions_[static_cast<std::size_t>(index)].type;
}

std::string InternalModel::variableName(int index) {
    if (!validIndex(index, variables_.size())) return fail("Index out of range"), std::string();
    return variables_[static_cast<std::size_t>(index)].name;
}

std::string InternalModel::outputName(int k) {
    int seen = 0;
    for (const ModelExpression& e : expressions_)
        if (e.type == 1 && seen++ == k) return e.name;
    fail("Index out of Range");
    return std::string();
}

std::string InternalModel::internalName(int k) {
    int seen = 0;
    for (const ModelExpression& e : expressions_)
        if (e.type == 0 && seen++ == k) return e.name;
    fail("Index out of Range");
    return std::string();
}

int InternalModel::numOutputs() const {
    return static_cast<int>(std::count_if(expressions_.begin(), expressions_.end(), [](const ModelExpression& e) { return e.type == 1; }));
}

int InternalModel::numInternals() const {
    return static_cast<int>(std::count_if(expressions_.begin(), expressions_.end(), [](const ModelExpression& e) { return e.type == 0; }));
}

void InternalModel::clear() {
    name_ = "noname";
    fileName_ = "nofile";
    errorText_ = "noerror";
    variables_.clear();
    expressions_.clear();
    changed();
}

int InternalModel::evaluateText(const double* values, double* outputs) {
    std::vector<std::string> names;
    std::vector<double> bound;
    names.reserve(variables_.size() + expressions_.size());
    bound.reserve(variables_.size() + expressions_.size());
    for (std::size_t j = 0; j < variables_.size(); ++j) {
        names.push_back(variables_[j].name);
        bound.push_back(values[j]);
    }
    Evaluator& ev = Evaluator::instance();
    for (ModelExpression& e : expressions_) {
        // A fresh table for every equation: a name that no binding gives (a
        // later expression, say) reads 0, not what another row or another
        // user of the calculator left behind.
        ev.clearSymbols();
        if (ev.evaluate(bindingProgram(names, bound.data(), e.text)) != 0) return fail("Error evaluating model");
        e.value = readBindingResult();
        names.push_back(e.name);
        bound.push_back(e.value);
    }
    int k = 0;
    for (const ModelExpression& e : expressions_)
        if (e.type == 1) outputs[k++] = e.value;
    return 1;
}

int InternalModel::evaluate(const double* values, double* outputs) {
    if (!program_) program_ = std::make_unique<ModelProgram>(variables_, expressions_);
    if (!program_->run(values, expressions_)) return fail("Error evaluating model");
    int k = 0;
    for (const ModelExpression& e : expressions_)
        if (e.type == 1) outputs[k++] = e.value;
    return 1;
}

} // namespace tarvex
