// The .imd text form of the internal model.
#include <fstream>
#include <new>
#include <sstream>

#include "model/InternalModel.h"
#include "model/NameCharacters.h"
#include "common/AtomicFileWriter.h"
#include "common/TextLines.h"

namespace tarvex {

namespace {

constexpr std::size_t kLineBuffer = 4096;
static_assert(InternalModel::kMaxLineLength == kLineBuffer - 1);

// Characters the reader refuses in a variable's name, and at its start also
// the digits. Stricter than the editor's rule: it refuses the underscore.
constexpr std::string_view kVariableStartRefused = "0123456789|\\!\"£$%&/()=?'^ìèé[]+*çò@à°#ù§;,:._- ";
constexpr std::string_view kVariableRefused = "|\\!\"£$%&/()=?'^ìèé[]+*çò@à°#ù§;,:._- ";

// The first white-space delimited word of a line; false when there is none.
bool firstWord(const std::string& line, std::string& word) {
    std::istringstream s(line);
    return static_cast<bool>(s >> word);
}

} // namespace

void InternalModel::write(std::ostream& out) {
    errorText_ = "noerror";
    ClassicNumbers classic(out);
    out << name_ << '\n' << variables_.size() << '\n';
    for (const ModelVariable& v : variables_) {
        out << v.name << '\n' << v.usedBy.size() << '\n';
        if (!v.usedBy.empty()) {
            for (int32_t index : v.usedBy) out << index << '\t';
            out << '\n';
        }
    }
    if (variables_.empty()) out << '\n';
    out << expressions_.size() << '\n';
    for (const ModelExpression& e : expressions_)
        out << e.name << '\n' << e.text << '\n' << e.type << '\n' << e.usedBy.size() << '\n';
    out << fileName_ << '\n';
}

void InternalModel::read(std::istream& in) {
    ClassicNumbers classic(in);
    clear();
    errorText_ = "Error reading model file";
    // Any failure below leaves a cleared model behind; `message` is the text
    // it reports.
    auto failWith = [&](const char* message) {
        clear();
        errorText_ = message;
        in.setstate(std::ios::failbit);
    };
    const char* const kReadError = "Error reading model file";

    std::string line;
    std::string word;
    if (!readLineInBuffer(in, line, kLineBuffer) || !firstWord(line, word)) return failWith(kReadError);
    setName(word);

    long variableCount = 0;
    if (!(in >> variableCount)) return failWith(kReadError);
    skipLine(in);
    for (long j = 0; j < variableCount; ++j) {
        if (!readLineInBuffer(in, line, kLineBuffer) || !firstWord(line, word)) return failWith(kReadError);
        if (startsWithCharacterOf(word, kVariableStartRefused) || containsCharacterOf(word, kVariableRefused))
            return failWith(kReadError);
        if (!addVariable(word)) return failWith(kReadError);
        long used = 0;
        if (!(in >> used)) return failWith(kReadError);
        // The stored lists are not trusted: adding the expressions rebuilds them.
        for (long k = 0; k < used; ++k) {
            long dropped = 0;
            if (!(in >> dropped)) return failWith(kReadError);
        }
        skipLine(in);
    }
    if (variableCount == 0) skipLine(in);

    long expressionCount = 0;
    if (!(in >> expressionCount)) return failWith(kReadError);
    if (expressionCount < 0) return failWith("Error reading number of outputs variables!");
    if (expressionCount > kMaxReadExpressions)
        return failWith("Too much model outputs variables found: max output var = 500");
    skipLine(in);
    for (long i = 0; i < expressionCount; ++i) {
        std::string name;
        std::string text;
        if (!readLineInBuffer(in, name, kLineBuffer) || !readLineInBuffer(in, text, kLineBuffer)) return failWith(kReadError);
        int16_t type = 0;
        long used = 0;
        if (!(in >> type >> used)) return failWith(kReadError);
        if (!addExpression(static_cast<int>(i), name, text, type)) return failWith("Error in adding an expression");
        skipLine(in);
    }
    if (!readLineInBuffer(in, line, kLineBuffer)) return failWith(kReadError);
    setFileName(line);
    errorText_.clear();
}

int InternalModel::writeFile(const std::string& path) {
    if (!saveFileAtomically(path, [this](std::ostream& out) { write(out); })) return fail("Error writing model file");
    return 1;
}

// Running out of memory on a hostile file is a failed read, like any other.
int InternalModel::readFile(const std::string& path) try {
    std::ifstream in(path);
    if (!in) {
        clear();
        return fail("Error reading model file");
    }
    read(in);
    return in.fail() ? 0 : 1;
} catch (const std::bad_alloc&) {
    clear();
    return fail("Error reading model file");
}

} // namespace tarvex
