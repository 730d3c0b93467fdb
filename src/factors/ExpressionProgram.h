#pragma once
// The straight-line form of a calculator text. The language has no jumps: both
// branches of "?:" and both sides of "&&" and "||" are always computed, so a
// text is exactly the sequence of reductions its parser performs. The compiler
// records that sequence once; running it replays the reductions in the same
// order, with the same arithmetic and the same checks, against a symbol table.
// Evaluating a text directly and replaying its program therefore cannot differ.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace tarvex {

enum class ExprOp : uint8_t {
    Const,   // push value
    Load,    // push symbol names[index] (inserted with 0.0 when missing)
    Store,   // symbol names[index] (op)= top; top becomes the symbol's value
    Neg,
    Not,
    Pow,
    Mul,
    Div,     // checks its divisor
    Add,
    Sub,
    Lt,
    Le,
    Gt,
    Ge,
    Eq,
    Ne,
    And,
    Or,
    Select,  // c x y -> c != 0 ? x : y
    Call,    // function `kind` with `index` arguments from the stack
    Pop,     // discards the value of a finished expression
    Fail,    // a failure found while parsing; messages[index]
};

enum class AssignKind : uint8_t { Set, Add, Sub, Mul, Div };

enum class ExprFunction : uint8_t {
    Acos, Asin, Atan, Atan2, Cos, Cosh, Exp, Fabs, Fmod, Log, Log10, Sin, Sinh, Sqrt, Tan, Tanh
};

struct ExprInstr {
    ExprOp op;
    uint8_t kind = 0;     // AssignKind, ExprFunction, or 1 for a Fail that reports stack overflow
    int32_t index = 0;    // name index, argument count or message index
    double value = 0.0;   // constant
    int32_t line = 0;     // where the parser stood when it made this reduction
    int32_t column = 0;
};

struct ExprProgram {
    std::vector<ExprInstr> code;
    std::vector<std::string> names;     // distinct names in order of first mention
    std::vector<std::string> messages;  // texts of Fail instructions
    int maxStack = 0;

    void clear() {
        code.clear();
        names.clear();
        messages.clear();
        maxStack = 0;
    }
};

// The table holds at most this many symbols; inserting one more fails.
inline constexpr int kMaxSymbols = 499;

struct ExprFailure {
    std::string text;
    int line = 0;
    int column = 0;
};

namespace detail {

inline double callFunction(ExprFunction f, const double* a) {
    switch (f) {
    case ExprFunction::Acos: return std::acos(a[0]);
    case ExprFunction::Asin: return std::asin(a[0]);
    case ExprFunction::Atan: return std::atan(a[0]);
    case ExprFunction::Atan2: return std::atan2(a[0], a[1]);
    case ExprFunction::Cos: return std::cos(a[0]);
    case ExprFunction::Cosh: return std::cosh(a[0]);
    case ExprFunction::Exp: return std::exp(a[0]);
    case ExprFunction::Fabs: return std::fabs(a[0]);
    case ExprFunction::Fmod: return std::fmod(a[0], a[1]);
    case ExprFunction::Log: return std::log(a[0]);
    case ExprFunction::Log10: return std::log10(a[0]);
    case ExprFunction::Sin: return std::sin(a[0]);
    case ExprFunction::Sinh: return std::sinh(a[0]);
    case ExprFunction::Sqrt: return std::sqrt(a[0]);
    case ExprFunction::Tan: return std::tan(a[0]);
    case ExprFunction::Tanh: return std::tanh(a[0]);
    }
    return 0.0;
}

inline double truth(bool b) { return b ? 1.0 : 0.0; }

inline int fail(ExprFailure& out, const char* text, const ExprInstr& at) {
    out.text = text;
    out.line = at.line;
    out.column = at.column;
    return 1;
}

} // namespace detail

// Replays `program` against a symbol table. `Symbols::ref(nameIndex)` returns
// the address of the symbol's value, inserting it with 0.0 when missing, or
// nullptr when the table is full. `stack` must hold program.maxStack doubles.
// Returns 0 on success, 1 with `failure` filled otherwise.
template <class Symbols>
[[nodiscard]] int runProgram(const ExprProgram& program, Symbols& symbols, double* stack, ExprFailure& failure) {
    using detail::truth;
    int sp = 0;
    for (const ExprInstr& in : program.code) {
        switch (in.op) {
        case ExprOp::Const:
            stack[sp++] = in.value;
            break;
        case ExprOp::Load: {
            double* s = symbols.ref(in.index);
            if (!s) return detail::fail(failure, "Symbol Table Full", in);
            stack[sp++] = *s;
            break;
        }
        case ExprOp::Store: {
            double* s = symbols.ref(in.index);
            if (!s) return detail::fail(failure, "Symbol Table Full", in);
            const double x = stack[sp - 1];
            switch (static_cast<AssignKind>(in.kind)) {
            case AssignKind::Set: *s = x; break;
            case AssignKind::Add: *s = *s + x; break;
            case AssignKind::Sub: *s = *s - x; break;
            case AssignKind::Mul: *s = *s * x; break;
            case AssignKind::Div: *s = *s / x; break;  // no test: "/=" divides by zero freely
            }
            stack[sp - 1] = *s;
            break;
        }
        case ExprOp::Neg: stack[sp - 1] = -stack[sp - 1]; break;
        case ExprOp::Not: stack[sp - 1] = truth(stack[sp - 1] == 0.0); break;
        case ExprOp::Pow: --sp; stack[sp - 1] = std::pow(stack[sp - 1], stack[sp]); break;
        case ExprOp::Mul: --sp; stack[sp - 1] = stack[sp - 1] * stack[sp]; break;
        case ExprOp::Div:
            --sp;
            if (stack[sp] == 0.0) return detail::fail(failure, "Divide by Zero", in);
            stack[sp - 1] = stack[sp - 1] / stack[sp];
            break;
        case ExprOp::Add: --sp; stack[sp - 1] = stack[sp - 1] + stack[sp]; break;
        case ExprOp::Sub: --sp; stack[sp - 1] = stack[sp - 1] - stack[sp]; break;
        case ExprOp::Lt: --sp; stack[sp - 1] = truth(stack[sp - 1] < stack[sp]); break;
        case ExprOp::Le: --sp; stack[sp - 1] = truth(stack[sp - 1] <= stack[sp]); break;
        case ExprOp::Gt: --sp; stack[sp - 1] = truth(stack[sp - 1] > stack[sp]); break;
        case ExprOp::Ge: --sp; stack[sp - 1] = truth(stack[sp - 1] >= stack[sp]); break;
        case ExprOp::Eq: --sp; stack[sp - 1] = truth(stack[sp - 1] == stack[sp]); break;
        case ExprOp::Ne: --sp; stack[sp - 1] = truth(stack[sp - 1] != stack[sp]); break;
        case ExprOp::And: --sp; stack[sp - 1] = truth(stack[sp - 1] != 0.0 && stack[sp] != 0.0); break;
        case ExprOp::Or: --sp; stack[sp - 1] = truth(stack[sp - 1] != 0.0 || stack[sp] != 0.0); break;
        case ExprOp::Select:
            sp -= 2;
            stack[sp - 1] = stack[sp - 1] != 0.0 ? stack[sp] : stack[sp + 1];
            break;
        case ExprOp::Call: {
            sp -= in.index;
            const double r = detail::callFunction(static_cast<ExprFunction>(in.kind), stack + sp);
            stack[sp++] = r;
            break;
        }
        case ExprOp::Pop: --sp; break;
        case ExprOp::Fail:
            if (in.kind == 1)
                std::fprintf(stderr, "\nParser stack overflow, line %d, column %d\n", in.line, in.column);
            return detail::fail(failure, program.messages[static_cast<std::size_t>(in.index)].c_str(), in);
        }
    }
    return 0;
}

} // namespace tarvex
