#include "factors/RelationCheck.h"

#include <algorithm>

#include "factors/CompiledExpression.h"
#include "factors/Evaluator.h"
#include "factors/TrialRandom.h"

namespace tarvex {

int checkRelationExpression(const std::string& expression, const std::vector<std::string>& listedFactors) {
    // Values are drawn in list order; each binding goes in front of the text
    // built so far.
    std::string text = expression;
    for (const std::string& name : listedFactors) text = name + " = " + formatBoundValue(trialRandom()) + ";\n" + text;

    Evaluator& ev = Evaluator::instance();
    ev.clearSymbols();
    if (ev.evaluate(text) != 0) return 0;
    for (const SymbolRecord& s : ev.symbolTable()) {
        if (std::find(listedFactors.begin(), listedFactors.end(), s.name) == listedFactors.end()) return 0;
    }
    return 1;
}

} // namespace tarvex
