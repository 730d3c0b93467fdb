#include "factors/ExpressionCompiler.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <unordered_map>

namespace tarvex {
namespace {

enum class Tk : uint8_t {
    End, BadComment, Name, Number, Invalid,
    Pow, Mul, Div, Add, Sub, Lt, Le, Gt, Ge, Eq, Ne, And, Or,
    Not, Question, Colon, Semicolon, Comma, LParen, RParen,
    Assign, AddAssign, SubAssign, MulAssign, DivAssign,
};

struct Token {
    Tk kind = Tk::End;
    std::size_t start = 0;
    std::size_t end = 0;
    int line = 1;
    int column = 1;
};

struct FunctionEntry {
    const char* name;
    ExprFunction id;
    int arity;
};

// Sorted by byte order: looked up by binary search.
constexpr FunctionEntry kFunctions[] = {
    {"acos", ExprFunction::Acos, 1},  {"asin", ExprFunction::Asin, 1},   {"atan", ExprFunction::Atan, 1},
    {"atan2", ExprFunction::Atan2, 2}, {"cos", ExprFunction::Cos, 1},    {"cosh", ExprFunction::Cosh, 1},
    {"exp", ExprFunction::Exp, 1},    {"fabs", ExprFunction::Fabs, 1},   {"fmod", ExprFunction::Fmod, 2},
    {"log", ExprFunction::Log, 1},    {"log10", ExprFunction::Log10, 1}, {"sin", ExprFunction::Sin, 1},
    {"sinh", ExprFunction::Sinh, 1},  {"sqrt", ExprFunction::Sqrt, 1},   {"tan", ExprFunction::Tan, 1},
    {"tanh", ExprFunction::Tanh, 1},
};

const FunctionEntry* findFunction(std::string_view name) {
    const FunctionEntry* first = std::begin(kFunctions);
    const FunctionEntry* last = std::end(kFunctions);
    const FunctionEntry* it = std::lower_bound(first, last, name,
        [](const FunctionEntry& e, std::string_view n) { return std::string_view(e.name) < n; });
    return (it != last && std::string_view(it->name) == name) ? it : nullptr;
}

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }

// Tokens that may follow a complete operand somewhere in the grammar. Anything
// else right behind an operand is an error before any reduction is made.
bool canFollowOperand(Tk k) {
    switch (k) {
    case Tk::End: case Tk::Pow: case Tk::Mul: case Tk::Div: case Tk::Add: case Tk::Sub:
    case Tk::Lt: case Tk::Le: case Tk::Gt: case Tk::Ge: case Tk::Eq: case Tk::Ne:
    case Tk::And: case Tk::Or: case Tk::Question: case Tk::Colon: case Tk::Semicolon:
    case Tk::Comma: case Tk::RParen:
        return true;
    default:
        return false;
    }
}

bool assignKindOf(Tk k, AssignKind& out) {
    switch (k) {
    case Tk::Assign: out = AssignKind::Set; return true;
    case Tk::AddAssign: out = AssignKind::Add; return true;
    case Tk::SubAssign: out = AssignKind::Sub; return true;
    case Tk::MulAssign: out = AssignKind::Mul; return true;
    case Tk::DivAssign: out = AssignKind::Div; return true;
    default: return false;
    }
}

struct BinaryLevel {
    Tk ops[4];
    int count;
    const char* rightOperand;
};

// Left-associative levels, lowest precedence first.
constexpr BinaryLevel kLevels[] = {
    {{Tk::Or}, 1, "logical and expression"},
    {{Tk::And}, 1, "equality expression"},
    {{Tk::Eq, Tk::Ne}, 2, "relational expression"},
    {{Tk::Lt, Tk::Le, Tk::Gt, Tk::Ge}, 4, "additive expression"},
    {{Tk::Add, Tk::Sub}, 2, "multiplicative expression"},
    {{Tk::Mul, Tk::Div}, 2, "factor"},
};
constexpr int kLevelCount = sizeof(kLevels) / sizeof(kLevels[0]);

ExprOp binaryOp(Tk k) {
    switch (k) {
    case Tk::Or: return ExprOp::Or;
    case Tk::And: return ExprOp::And;
    case Tk::Eq: return ExprOp::Eq;
    case Tk::Ne: return ExprOp::Ne;
    case Tk::Lt: return ExprOp::Lt;
    case Tk::Le: return ExprOp::Le;
    case Tk::Gt: return ExprOp::Gt;
    case Tk::Ge: return ExprOp::Ge;
    case Tk::Add: return ExprOp::Add;
    case Tk::Sub: return ExprOp::Sub;
    case Tk::Mul: return ExprOp::Mul;
    default: return ExprOp::Div;
    }
}

class Compiler {
public:
    Compiler(std::string_view text, int firstLine, ExprProgram& program)
        : s_(text.substr(0, std::min(text.size(), text.find('\0')))), p_(program), line_(firstLine) {}

    void run() {
        lex();
        const char* what = "expressions";
        for (;;) {
            parseExpression(what);
            if (failed_) return;
            if (tok_.kind == Tk::Semicolon) {
                emit(ExprOp::Pop, -1);
                lex();
                what = "expression";
                continue;
            }
            if (tok_.kind == Tk::End) {
                emit(ExprOp::Pop, -1);
                return;
            }
            syntaxError();
            return;
        }
    }

private:
    // ---- scanner -------------------------------------------------------
    char at(std::size_t i) const { return i < s_.size() ? s_[i] : '\0'; }

    void advance() {
        const char c = s_[pos_++];
        if (c == '\n') {
            ++line_;
            col_ = 1;
        } else if (c == '\t') {
            col_ = ((col_ - 1) / 8 + 1) * 8 + 1;
        } else {
            ++col_;
        }
    }

    // Skips blanks and comments; false when a "/*" comment runs to the end.
    bool skipWhite() {
        while (pos_ < s_.size()) {
            const char c = s_[pos_];
            if (c == ' ' || c == '\t' || c == '\v' || c == '\f' || c == '\r' || c == '\n') {
                advance();
            } else if (c == '/' && at(pos_ + 1) == '*') {
                advance();
                advance();
                for (;;) {
                    if (pos_ >= s_.size()) return false;
                    if (s_[pos_] == '*' && at(pos_ + 1) == '/') {
                        advance();
                        advance();
                        break;
                    }
                    advance();
                }
            } else if (c == '/' && at(pos_ + 1) == '/') {
                while (pos_ < s_.size() && s_[pos_] != '\n') advance();
            } else {
                break;
            }
        }
        return true;
    }

    // Makes the next token current. A number is only classified here; it is
    // read by scanNumber when the grammar takes it.
    void lex() {
        const bool closed = skipWhite();
        tok_.start = pos_;
        tok_.line = line_;
        tok_.column = col_;
        if (!closed) {
            tok_.kind = Tk::BadComment;
            tok_.end = pos_;
            return;
        }
        if (pos_ >= s_.size()) {
            tok_.kind = Tk::End;
            tok_.end = pos_;
            return;
        }
        const char c = s_[pos_];
        const char n = at(pos_ + 1);
        if (isLetter(c)) {
            while (pos_ < s_.size() && (isLetter(s_[pos_]) || isDigit(s_[pos_]))) advance();
            tok_.kind = Tk::Name;
            tok_.end = pos_;
            return;
        }
        if (isDigit(c) || c == '.') {
            tok_.kind = Tk::Number;
            tok_.end = pos_;
            return;
        }
        int width = 1;
        switch (c) {
        case '*': tok_.kind = n == '*' ? Tk::Pow : n == '=' ? Tk::MulAssign : Tk::Mul; width = (n == '*' || n == '=') ? 2 : 1; break;
        case '/': tok_.kind = n == '=' ? Tk::DivAssign : Tk::Div; width = n == '=' ? 2 : 1; break;
        case '+': tok_.kind = n == '=' ? Tk::AddAssign : Tk::Add; width = n == '=' ? 2 : 1; break;
        case '-': tok_.kind = n == '=' ? Tk::SubAssign : Tk::Sub; width = n == '=' ? 2 : 1; break;
        case '<': tok_.kind = n == '=' ? Tk::Le : Tk::Lt; width = n == '=' ? 2 : 1; break;
        case '>': tok_.kind = n == '=' ? Tk::Ge : Tk::Gt; width = n == '=' ? 2 : 1; break;
        case '=': tok_.kind = n == '=' ? Tk::Eq : Tk::Assign; width = n == '=' ? 2 : 1; break;
        case '!': tok_.kind = n == '=' ? Tk::Ne : Tk::Not; width = n == '=' ? 2 : 1; break;
        case '&': tok_.kind = n == '&' ? Tk::And : Tk::Invalid; width = n == '&' ? 2 : 1; break;
        case '|': tok_.kind = n == '|' ? Tk::Or : Tk::Invalid; width = n == '|' ? 2 : 1; break;
        case '?': tok_.kind = Tk::Question; break;
        case ':': tok_.kind = Tk::Colon; break;
        case ';': tok_.kind = Tk::Semicolon; break;
        case ',': tok_.kind = Tk::Comma; break;
        case '(': tok_.kind = Tk::LParen; break;
        case ')': tok_.kind = Tk::RParen; break;
        default: tok_.kind = Tk::Invalid; break;
        }
        for (int i = 0; i < width; ++i) advance();
        tok_.end = pos_;
    }

    // Kind of the token after the current one, without moving.
    Tk peekKind() {
        const std::size_t pos = pos_;
        const int line = line_, col = col_;
        const Token saved = tok_;
        lex();
        const Tk k = tok_.kind;
        pos_ = pos;
        line_ = line;
        col_ = col;
        tok_ = saved;
        return k;
    }

    // Reads the real at the current token; a malformed one stops the parse at
    // the character where a digit was wanted.
    bool scanNumber(double& value) {
        std::size_t end = pos_;
        const int status = scanReal(s_, end, value);
        while (pos_ < end) advance();
        if (status == 1) failAt("Missing fraction part", line_, col_);
        if (status == 2) failAt("Missing exponent", line_, col_);
        return status == 0;
    }

    // ---- output --------------------------------------------------------
    void emit(ExprOp op, int stackDelta, uint8_t kind = 0, int32_t index = 0, double value = 0.0) {
        ExprInstr in;
        in.op = op;
        in.kind = kind;
        in.index = index;
        in.value = value;
        in.line = tok_.line;
        in.column = tok_.column;
        p_.code.push_back(in);
        sp_ += stackDelta;
        p_.maxStack = std::max(p_.maxStack, sp_);
    }

    void failAt(std::string text, int line, int column, bool stackOverflow = false) {
        ExprInstr in;
        in.op = ExprOp::Fail;
        in.kind = stackOverflow ? 1 : 0;
        in.index = static_cast<int32_t>(p_.messages.size());
        in.line = line;
        in.column = column;
        p_.messages.push_back(std::move(text));
        p_.code.push_back(in);
        failed_ = true;
    }

    void failHere(const char* text) { failAt(text, tok_.line, tok_.column); }

    void syntaxError() {
        switch (tok_.kind) {
        case Tk::End:
        case Tk::BadComment: failHere("Unexpected end of text"); return;
        case Tk::Name: failHere("Unexpected name"); return;
        case Tk::Number: failHere("Unexpected real"); return;
        default: break;
        }
        const unsigned char c = static_cast<unsigned char>(s_[tok_.start]);
        if (c >= 0x20 && c < 0x7f && c != '\\') {
            failHere((std::string("Unexpected '") + static_cast<char>(c) + "'").c_str());
        } else {
            failHere("Unexepected input");
        }
    }

    int intern(const Token& t) {
        const std::string_view name = s_.substr(t.start, t.end - t.start);
        auto [it, inserted] = names_.try_emplace(name, static_cast<int>(p_.names.size()));
        if (inserted) p_.names.emplace_back(name);
        return it->second;
    }

    // The characters of a name are held until the name is reduced; assignment
    // targets and called names stay held while their right part is read.
    bool holdName(int length) {
        if (pending_ + length > kCharacterStackSize) {
            const int fits = kCharacterStackSize - pending_;
            failAt("Character Stack Overflow", tok_.line, tok_.column + fits + 1);
            return false;
        }
        return true;
    }

    bool enterLevel() {
        if (depth_ + 1 > kMaxNesting) {
            failAt("Parser stack overflow", tok_.line, tok_.column, true);
            return false;
        }
        ++depth_;
        return true;
    }

    // ---- grammar -------------------------------------------------------
    struct Target {
        int name;
        AssignKind kind;
        int length;
    };

    // expression: conditional expression, or name (op)= expression.
    void parseExpression(const char* what) {
        const std::size_t base = targets_.size();
        while (tok_.kind == Tk::Name) {
            const int length = static_cast<int>(tok_.end - tok_.start);
            if (!holdName(length)) return;
            AssignKind kind;
            if (!assignKindOf(peekKind(), kind)) break;
            targets_.push_back({intern(tok_), kind, length});
            pending_ += length;
            lex();
            lex();
            what = "expression";
        }
        parseConditional(what);
        if (failed_) return;
        while (targets_.size() > base) {
            const Target t = targets_.back();
            targets_.pop_back();
            emit(ExprOp::Store, 0, static_cast<uint8_t>(t.kind), t.name);
            pending_ -= t.length;
        }
    }

    void parseConditional(const char* what) {
        parseBinary(0, what);
        if (failed_) return;
        int selects = 0;
        while (tok_.kind == Tk::Question) {
            if (!enterLevel()) return;
            lex();
            parseExpression("expression");
            if (failed_) return;
            if (tok_.kind != Tk::Colon) {
                syntaxError();
                return;
            }
            --depth_;
            lex();
            parseBinary(0, "conditional expression");
            if (failed_) return;
            ++selects;
        }
        for (int i = 0; i < selects; ++i) emit(ExprOp::Select, -2);
    }

    void parseBinary(int level, const char* what) {
        if (level == kLevelCount) {
            parseFactor(what);
            return;
        }
        const BinaryLevel& L = kLevels[level];
        parseBinary(level + 1, what);
        while (!failed_ && std::find(L.ops, L.ops + L.count, tok_.kind) != L.ops + L.count) {
            const Tk op = tok_.kind;
            lex();
            parseBinary(level + 1, L.rightOperand);
            if (failed_) return;
            emit(binaryOp(op), -1);
        }
    }

    // factor: primary, or primary "**" factor (right-associative).
    void parseFactor(const char* what) {
        parsePrimary(what);
        int powers = 0;
        while (!failed_ && tok_.kind == Tk::Pow) {
            lex();
            parsePrimary("factor");
            ++powers;
        }
        if (failed_) return;
        for (int i = 0; i < powers; ++i) emit(ExprOp::Pow, -1);
    }

    // primary: a prefix "-", "+" or "!" binds tighter than "**".
    void parsePrimary(const char* what) {
        const std::size_t base = unary_.size();
        while (tok_.kind == Tk::Sub || tok_.kind == Tk::Add || tok_.kind == Tk::Not) {
            if (tok_.kind != Tk::Add) unary_.push_back(tok_.kind == Tk::Sub ? ExprOp::Neg : ExprOp::Not);
            lex();
            what = "primary";
        }
        parseAtom(what);
        if (failed_) return;
        while (unary_.size() > base) {
            emit(unary_.back(), 0);
            unary_.pop_back();
        }
    }

    void parseAtom(const char* what) {
        switch (tok_.kind) {
        case Tk::Name: {
            const int length = static_cast<int>(tok_.end - tok_.start);
            if (!holdName(length)) return;
            const Token nameTok = tok_;
            lex();
            if (tok_.kind == Tk::LParen) {
                parseCall(nameTok);
                return;
            }
            if (!canFollowOperand(tok_.kind)) {
                syntaxError();
                return;
            }
            emit(ExprOp::Load, 1, 0, intern(nameTok));
            return;
        }
        case Tk::Number: {
            double v = 0.0;
            if (!scanNumber(v)) return;
            lex();
            if (!canFollowOperand(tok_.kind)) {
                syntaxError();
                return;
            }
            emit(ExprOp::Const, 1, 0, 0, v);
            return;
        }
        case Tk::LParen:
            if (!enterLevel()) return;
            lex();
            parseExpression("expression");
            if (failed_) return;
            if (tok_.kind != Tk::RParen) {
                syntaxError();
                return;
            }
            --depth_;
            lex();
            if (!canFollowOperand(tok_.kind)) syntaxError();
            return;
        case Tk::Invalid:
        case Tk::BadComment:
            syntaxError();
            return;
        default:
            if (what) {
                failHere((std::string("Missing ") + what).c_str());
            } else {
                syntaxError();
            }
            return;
        }
    }

    // name "(" arguments ")": the current token is the "(".
    void parseCall(const Token& nameTok) {
        const int length = static_cast<int>(nameTok.end - nameTok.start);
        pending_ += length;
        if (!enterLevel()) return;
        lex();
        int count = 0;
        if (tok_.kind != Tk::RParen) {
            const char* what = nullptr;  // an empty list is allowed: no construct is missing yet
            for (;;) {
                parseExpression(what);
                if (failed_) return;
                if (tok_.kind != Tk::Comma && tok_.kind != Tk::RParen) {
                    syntaxError();
                    return;
                }
                if (pendingArgs_ + 1 > kArgumentStackSize) {
                    failHere("Argument Stack Full");
                    return;
                }
                ++pendingArgs_;
                ++count;
                if (tok_.kind == Tk::RParen) break;
                lex();
                what = "expression";
            }
        }
        --depth_;
        lex();
        if (!canFollowOperand(tok_.kind)) {
            syntaxError();
            return;
        }
        const FunctionEntry* f = findFunction(s_.substr(nameTok.start, nameTok.end - nameTok.start));
        if (!f) {
            failHere("Unknown Function");
            return;
        }
        if (f->arity != count) {
            failHere("Wrong Number of Arguments");
            return;
        }
        emit(ExprOp::Call, 1 - count, static_cast<uint8_t>(f->id), count);
        pendingArgs_ -= count;
        pending_ -= length;
    }

    std::string_view s_;
    ExprProgram& p_;
    std::size_t pos_ = 0;
    int line_;
    int col_ = 1;
    Token tok_;
    bool failed_ = false;
    int pending_ = 0;
    int pendingArgs_ = 0;
    int depth_ = 0;
    int sp_ = 0;
    std::vector<Target> targets_;
    std::vector<ExprOp> unary_;
    std::unordered_map<std::string_view, int> names_;
};

} // namespace

int scanReal(std::string_view text, std::size_t& pos, double& value) {
    auto at = [&](std::size_t i) { return i < text.size() ? text[i] : '\0'; };
    double whole = 0.0;
    const std::size_t wholeStart = pos;
    while (isDigit(at(pos))) whole = whole * 10.0 + (text[pos++] - '0');
    const bool hasWhole = pos > wholeStart;
    double fraction = 0.0;
    if (at(pos) == '.') {
        ++pos;
        const std::size_t fracStart = pos;
        while (isDigit(at(pos))) ++pos;
        if (pos == fracStart && !hasWhole) return 1;
        // Built from the right: (d + f) * 0.1, digit after digit.
        for (std::size_t i = pos; i > fracStart; --i) fraction = ((text[i - 1] - '0') + fraction) * 0.1;
    }
    double m = whole + fraction;
    if (at(pos) == 'e' || at(pos) == 'E') {
        ++pos;
        bool negative = false;
        if (at(pos) == '+' || at(pos) == '-') negative = text[pos++] == '-';
        if (!isDigit(at(pos))) return 2;
        // A 32-bit exponent, wrapping like the integer it is.
        uint32_t e = 0;
        while (isDigit(at(pos))) e = e * 10u + static_cast<uint32_t>(text[pos++] - '0');
        const int32_t power = static_cast<int32_t>(negative ? 0u - e : e);
        m = m * std::pow(10.0, static_cast<double>(power));
    }
    value = m;
    return 0;
}

void compileExpression(std::string_view text, int firstLine, ExprProgram& program) {
    program.clear();
    Compiler(text, firstLine, program).run();
}

} // namespace tarvex
