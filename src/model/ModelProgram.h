#pragma once
// The internal model evaluated from a compiled form, row after row, with the
// results of building and parsing the text of every equation for every row.
//
// The text of equation i binds every variable and every earlier expression by
// "name = <%g of its value>;" in front of "rEsUlTtOtAl = <text>", against a
// fresh symbol table. What that text computes depends only on:
//  - the value each binding gives a name: the "%g" text of the value read as
//    the calculator reads a real; where a name is bound twice (a variable and
//    an expression of the same name), the binding nearest the equation wins,
//    which is the earliest in the model's order;
//  - whether the table overflows: bindings and the equation's own names can
//    only fail by filling it, and a text without jumps touches every name it
//    holds, so that is a matter of counting distinct names once;
//  - the equation itself, replayed from its compiled form (as register
//    code, see RegisterCode.h).
// Each value is rounded once per row, however many later equations bind it.
// Rows where a bound value is infinite or NaN (the calculator reads those as
// the names "inf" and "nan"), and models whose names are no plain calculator
// names, go through CompiledExpression, which covers every case.
#include <cstdint>
#include <memory>
#include <vector>

#include "factors/CompiledExpression.h"
#include "factors/ExpressionProgram.h"
#include "model/ModelExpression.h"
#include "model/ModelVariable.h"
#include "model/RegisterCode.h"

namespace tarvex {

class ModelProgram {
public:
    ModelProgram(const std::vector<ModelVariable>& variables, const std::vector<ModelExpression>& expressions);

    // Evaluates every expression in order on one row, storing each value in
    // expressions[i].value. Returns 1, or 0 at the first failing expression
    // (the earlier ones keep their new values).
    [[nodiscard]] int run(const double* values, std::vector<ModelExpression>& expressions);

private:
    struct Equation {
        ExprProgram body;
        // The body as register code, when it translates; its registers and,
        // per input register, the bound value that fills it (-1: 0.0).
        bool useRegisters = false;
        RegisterCode code;
        std::vector<double> registers;
        std::vector<int32_t> inputSource;
        // Per body name: the index in the bound values that gives it its
        // value, or -1 for a name no binding gives (it starts at 0.0).
        std::vector<int32_t> source;
        int32_t resultSlot = 0;
        // More distinct names than the symbol table holds: every row fails.
        bool overflows = false;
        std::unique_ptr<CompiledExpression> exact;  // built on first need
        std::vector<std::string> names;             // bindings of `exact`
        std::string text;
    };

    // Both return 0 with `result` set, non-zero when the equation fails.
    [[nodiscard]] int runExact(Equation& eq, double& result);
    [[nodiscard]] int runCompiled(Equation& eq, double& result);

    std::size_t variableCount_ = 0;
    bool plainNames_ = true;
    std::vector<Equation> equations_;
    std::vector<uint8_t> needed_;   // bound value k is read by some equation
    std::vector<double> raw_;       // values as they are, variables then expressions
    std::vector<double> rounded_;   // as the calculator reads their "%g" text
    std::vector<double> slots_;
    std::vector<double> stack_;
};

} // namespace tarvex
