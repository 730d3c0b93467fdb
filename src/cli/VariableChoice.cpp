#include "cli/VariableChoice.h"

#include <algorithm>

#include "model/ModelConfiguration.h"
#include "postproc/OutputExpression.h"
#include "postproc/VariableSelection.h"

namespace tarvex::cli {

namespace {

std::string unknownOutput(const std::string& name, const std::vector<std::string>& outputs) {
    std::string text = "No output named \"" + name + "\"; the outputs are:";
    for (const std::string& o : outputs) text += " " + o;
    return text;
}

// "OUTPUT=REST", split at the last '=' (output names hold none).
bool splitAssignment(const std::string& text, std::string& output, std::string& rest) {
    const std::size_t eq = text.rfind('=');
    if (eq == std::string::npos) return false;
    output = text.substr(0, eq);
    rest = text.substr(eq + 1);
    return true;
}

bool isOutput(const std::string& name, const std::vector<std::string>& outputs) {
    return std::find(outputs.begin(), outputs.end(), name) != outputs.end();
}

CommandOutcome oneVariable(const VariableRequest& request, const ModelConfiguration& model,
                           std::vector<std::string>& entries) {
    const std::vector<std::string>& outputs = model.outputNames();
    double minimum = 0.0, maximum = 0.0;
    const bool haveRange = outputTimeRange(model, minimum, maximum) != 0;
    std::string output, rest;
    switch (request.kind) {
    case VariableRequest::kVariable: {
        OutputReference reference;
        if (!parseReference(request.text, outputs, reference)) {
            // An output with something in brackets that is neither "max" nor a time.
            const std::string name = request.text.substr(0, request.text.find('['));
            if (name != request.text && isOutput(name, outputs)) return CommandOutcome::usage(kWrongValueText);
            return CommandOutcome::usage(unknownOutput(name, outputs));
        }
        if (reference.kind == OutputReference::kAtTime) {
            const std::size_t open = request.text.rfind('[');
            const std::string time = request.text.substr(open + 1, request.text.size() - open - 2);
            if (!haveRange || !checkSingleTime(time, minimum, maximum).empty())
                return CommandOutcome::usage(kWrongValueText);
        }
        entries.push_back(request.text);
        return CommandOutcome::success();
    }
    case VariableRequest::kMaximum:
        if (!isOutput(request.text, outputs)) return CommandOutcome::usage(unknownOutput(request.text, outputs));
        entries.push_back(maxVariableName(request.text));
        return CommandOutcome::success();
    case VariableRequest::kAtTime: {
        if (!splitAssignment(request.text, output, rest)) return CommandOutcome::usage("--at takes OUTPUT=TIME: " + request.text);
        if (!isOutput(output, outputs)) return CommandOutcome::usage(unknownOutput(output, outputs));
        double time = 0.0;
        if (!haveRange || !checkSingleTime(rest, minimum, maximum).empty() || !parseFieldNumber(rest, time))
            return CommandOutcome::usage(kWrongValueText);
        entries.push_back(timeVariableName(output, time));
        return CommandOutcome::success();
    }
    case VariableRequest::kTimes: {
        if (!splitAssignment(request.text, output, rest))
            return CommandOutcome::usage("--times takes OUTPUT=LOWER:UPPER:STEP: " + request.text);
        if (!isOutput(output, outputs)) return CommandOutcome::usage(unknownOutput(output, outputs));
        const std::size_t c1 = rest.find(':');
        const std::size_t c2 = c1 == std::string::npos ? std::string::npos : rest.find(':', c1 + 1);
        if (c2 == std::string::npos || rest.find(':', c2 + 1) != std::string::npos)
            return CommandOutcome::usage("--times takes OUTPUT=LOWER:UPPER:STEP: " + request.text);
        const std::string lower = rest.substr(0, c1), upper = rest.substr(c1 + 1, c2 - c1 - 1),
                          step = rest.substr(c2 + 1);
        if (!haveRange) return CommandOutcome::usage(kWrongBoundValueText);
        if (std::string refused = checkTimeBounds(lower, upper, step, minimum, maximum); !refused.empty())
            return CommandOutcome::usage(refused);
        double lo = 0.0, hi = 0.0, by = 0.0;
        (void)parseFieldNumber(lower, lo);
        (void)parseFieldNumber(upper, hi);
        (void)parseFieldNumber(step, by);
        const std::vector<std::string> names = multiTimeNames(output, lo, hi, by);
        entries.insert(entries.end(), names.begin(), names.end());
        return CommandOutcome::success();
    }
    case VariableRequest::kExpression:
        if (!checkOutputExpression(request.text, outputs)) return CommandOutcome::usage(kExpressionErrorText);
        entries.push_back(request.text);
        return CommandOutcome::success();
    }
    return CommandOutcome::usage("Unknown variable request");
}

}  // namespace

CommandOutcome resolveVariables(const std::vector<VariableRequest>& requests, const ModelConfiguration& model,
                                std::vector<std::string>& entries) {
    for (const VariableRequest& request : requests) {
        if (CommandOutcome o = oneVariable(request, model, entries); o.status != kExitSuccess) return o;
    }
    return CommandOutcome::success();
}

}  // namespace tarvex::cli
