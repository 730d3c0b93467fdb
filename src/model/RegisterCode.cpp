#include "model/RegisterCode.h"

#include <cmath>
#include <cstring>
#include <map>
#include <tuple>
#include <unordered_map>

namespace tarvex {

bool RegisterCode::translate(const ExprProgram& program, int resultName) {
    code_.clear();
    constants_.clear();
    inputNames_.clear();
    inputRegisters_.clear();
    for (const ExprInstr& in : program.code)
        if (in.op == ExprOp::Fail) return false;

    std::vector<int32_t> current(program.names.size(), -1);  // register holding each symbol now
    std::vector<int32_t> stack;
    std::map<std::tuple<int, int, int32_t, int32_t, int32_t>, int32_t> seen;
    std::unordered_map<uint64_t, int32_t> constantRegister;
    bool resultStored = false;

    auto newRegister = [&](double value) {
        constants_.push_back(value);
        return static_cast<int32_t>(constants_.size() - 1);
    };
    auto symbol = [&](int32_t name) {
        int32_t& r = current[static_cast<std::size_t>(name)];
        if (r < 0) {
            r = newRegister(0.0);
            inputNames_.push_back(name);
            inputRegisters_.push_back(r);
        }
        return r;
    };
    // The same operation on the same registers is the same value.
    auto emit = [&](ExprOp op, uint8_t kind, int32_t a, int32_t b = -1, int32_t c = -1) {
        const auto key = std::make_tuple(static_cast<int>(op), static_cast<int>(kind), a, b, c);
        auto it = seen.find(key);
        if (it != seen.end()) return it->second;
        const int32_t dst = newRegister(0.0);
        code_.push_back(Instr{op, kind, dst, a, b, c});
        seen.emplace(key, dst);
        return dst;
    };
    auto pop = [&]() {
        const int32_t r = stack.back();
        stack.pop_back();
        return r;
    };

    for (const ExprInstr& in : program.code) {
        switch (in.op) {
        case ExprOp::Const: {
            uint64_t bits = 0;
            std::memcpy(&bits, &in.value, sizeof bits);
            auto it = constantRegister.find(bits);
            if (it == constantRegister.end()) it = constantRegister.emplace(bits, newRegister(in.value)).first;
            stack.push_back(it->second);
            break;
        }
        case ExprOp::Load: stack.push_back(symbol(in.index)); break;
        case ExprOp::Store: {
            const int32_t x = stack.back();
            int32_t value = x;
            if (static_cast<AssignKind>(in.kind) != AssignKind::Set) value = emit(ExprOp::Store, in.kind, symbol(in.index), x);
            current[static_cast<std::size_t>(in.index)] = value;
            stack.back() = value;
            if (in.index == resultName) resultStored = true;
            break;
        }
        case ExprOp::Neg:
        case ExprOp::Not: stack.push_back(emit(in.op, 0, pop())); break;
        case ExprOp::Select: {
            const int32_t y = pop();
            const int32_t x = pop();
            const int32_t c = pop();
            stack.push_back(emit(in.op, 0, c, x, y));
            break;
        }
        case ExprOp::Call: {
            const int32_t b = in.index == 2 ? pop() : -1;
            const int32_t a = in.index >= 1 ? pop() : -1;
            stack.push_back(emit(in.op, in.kind, a, b));
            break;
        }
        case ExprOp::Pop: stack.pop_back(); break;
        case ExprOp::Fail: return false;
        default: {  // the binary operators
            const int32_t b = pop();
            const int32_t a = pop();
            stack.push_back(emit(in.op, 0, a, b));
            break;
        }
        }
    }
    if (!resultStored) {
        code_.clear();
        return false;
    }
    result_ = current[static_cast<std::size_t>(resultName)];

    // Keep what the result needs, and every checked division: its check may
    // stop the program even when its value is never used.
    std::vector<uint8_t> live(constants_.size(), 0);
    live[static_cast<std::size_t>(result_)] = 1;
    std::vector<Instr> kept;
    for (std::size_t k = code_.size(); k-- > 0;) {
        const Instr& in = code_[k];
        if (!live[static_cast<std::size_t>(in.dst)] && in.op != ExprOp::Div) continue;
        for (int32_t r : {in.a, in.b, in.c})
            if (r >= 0) live[static_cast<std::size_t>(r)] = 1;
        kept.push_back(in);
    }
    code_.assign(kept.rbegin(), kept.rend());
    return true;
}

void RegisterCode::prepare(double* registers) const {
    std::memcpy(registers, constants_.data(), constants_.size() * sizeof(double));
}

int RegisterCode::run(double* r, double& result) const {
    using detail::truth;
    for (const Instr& in : code_) {
        switch (in.op) {
        case ExprOp::Neg: r[in.dst] = -r[in.a]; break;
        case ExprOp::Not: r[in.dst] = truth(r[in.a] == 0.0); break;
        case ExprOp::Pow: r[in.dst] = std::pow(r[in.a], r[in.b]); break;
        case ExprOp::Mul: r[in.dst] = r[in.a] * r[in.b]; break;
        case ExprOp::Div:
            if (r[in.b] == 0.0) return 1;
            r[in.dst] = r[in.a] / r[in.b];
            break;
        case ExprOp::Add: r[in.dst] = r[in.a] + r[in.b]; break;
        case ExprOp::Sub: r[in.dst] = r[in.a] - r[in.b]; break;
        case ExprOp::Lt: r[in.dst] = truth(r[in.a] < r[in.b]); break;
        case ExprOp::Le: r[in.dst] = truth(r[in.a] <= r[in.b]); break;
        case ExprOp::Gt: r[in.dst] = truth(r[in.a] > r[in.b]); break;
        case ExprOp::Ge: r[in.dst] = truth(r[in.a] >= r[in.b]); break;
        case ExprOp::Eq: r[in.dst] = truth(r[in.a] == r[in.b]); break;
        case ExprOp::Ne: r[in.dst] = truth(r[in.a] != r[in.b]); break;
        case ExprOp::And: r[in.dst] = truth(r[in.a] != 0.0 && r[in.b] != 0.0); break;
        case ExprOp::Or: r[in.dst] = truth(r[in.a] != 0.0 || r[in.b] != 0.0); break;
        case ExprOp::Select: r[in.dst] = r[in.a] != 0.0 ? r[in.b] : r[in.c]; break;
        case ExprOp::Call: {
            const double args[2] = {in.a >= 0 ? r[in.a] : 0.0, in.b >= 0 ? r[in.b] : 0.0};
            r[in.dst] = detail::callFunction(static_cast<ExprFunction>(in.kind), args);
            break;
        }
        case ExprOp::Store:  // a combined assignment; "/=" divides without a check
            switch (static_cast<AssignKind>(in.kind)) {
            case AssignKind::Add: r[in.dst] = r[in.a] + r[in.b]; break;
            case AssignKind::Sub: r[in.dst] = r[in.a] - r[in.b]; break;
            case AssignKind::Mul: r[in.dst] = r[in.a] * r[in.b]; break;
            case AssignKind::Div: r[in.dst] = r[in.a] / r[in.b]; break;
            case AssignKind::Set: break;
            }
            break;
        default: break;
        }
    }
    result = r[result_];
    return 0;
}

} // namespace tarvex
