#pragma once
// A calculator program turned into register code for the internal model's
// rows. The calculator's compiled form is a straight-line stack program: no
// jumps, and no effect but the symbols it stores and the division check that
// may stop it. So each value it computes can get a register of its own, a
// store is only a new name for a value, and a computation met a second time
// on the same operands (sin(x1) twice in one equation, say) is the same
// register: its result, and whether its division check passes, cannot differ.
// Every operation still happens with the same operands and the same
// arithmetic as in the stack program, so results are bit for bit the same.
//
// Programs that hold a failure found while parsing are not translated.
#include <cstdint>
#include <vector>

#include "factors/ExpressionProgram.h"

namespace tarvex {

class RegisterCode {
public:
    // Translates `program`. Returns false (and translates nothing) when the
    // program holds a parse failure or never assigns the symbol `resultName`.
    [[nodiscard]] bool translate(const ExprProgram& program, int resultName);

    // Registers the caller fills before each run: inputRegisters()[k] takes
    // the starting value of symbol inputNames()[k] (a name of `program`).
    const std::vector<int32_t>& inputNames() const { return inputNames_; }
    const std::vector<int32_t>& inputRegisters() const { return inputRegisters_; }
    std::size_t registerCount() const { return constants_.size(); }
    // Sets the constant registers of `registers` (registerCount() long).
    void prepare(double* registers) const;

    // Runs the code; returns 0 with `result` set, or 1 when a division by zero stops it.
    [[nodiscard]] int run(double* registers, double& result) const;

private:
    struct Instr {
        ExprOp op;
        uint8_t kind;  // AssignKind of a combined store, or ExprFunction
        int32_t dst, a, b, c;
    };

    std::vector<Instr> code_;
    std::vector<double> constants_;  // per register: its constant, 0 for the others
    std::vector<int32_t> inputNames_;
    std::vector<int32_t> inputRegisters_;
    int32_t result_ = 0;
};

} // namespace tarvex
