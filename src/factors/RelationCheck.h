#pragma once
// The relation editor's test of an expression before it is applied or the
// editor closes. Unlike Relation::setExpression, which runs the expression
// with every name at 0.0, it binds each listed factor to a fresh non-zero
// trial value, so "a / b" passes here and is refused there.
#include <string>
#include <vector>

namespace tarvex {

// 1 when the expression evaluates with every factor of `listedFactors` bound
// ("%s = %s;\n%s", the value printed by "%g", the last factor bound first)
// and every name the evaluation meets is one of `listedFactors`; else 0.
[[nodiscard]] int checkRelationExpression(const std::string& expression, const std::vector<std::string>& listedFactors);

} // namespace tarvex
