#pragma once
// `tarvex-batch analyse`: the uncertainty statistics of chosen variables of
// a post-processor file and the sensitivity measures of its sampling
// method, printed as tables or JSON, and the result panels' saved tables
// written on request.
#include <string>
#include <vector>

#include "cli/CommandOutcome.h"

namespace CLI {
class App;
class Option;
}

namespace tarvex::cli {

struct Console;
struct AnalysisInput;
struct VariableRequest;

class AnalyseCommand {
public:
    explicit AnalyseCommand(CLI::App& parent);
    CLI::App* app() const { return app_; }
    CommandOutcome run(Console& console);

private:
    // The variable options in the order they were given on the line.
    std::vector<VariableRequest> requestsInOrder() const;
    CommandOutcome analyse(Console& console, AnalysisInput& input, const std::vector<std::string>& entries);

    CLI::App* app_ = nullptr;
    std::string inputFile_;
    std::vector<std::string> vars_, maxima_, atTimes_, times_, expressions_;
    CLI::Option *varOpt_ = nullptr, *maxOpt_ = nullptr, *atOpt_ = nullptr, *timesOpt_ = nullptr, *exprOpt_ = nullptr;
    double confidence_ = 0.75;
    bool noSensitivity_ = false, json_ = false;
    std::vector<std::string> measures_;
    std::string tableMeasure_ = "PEAR";
    std::string uaTable_, saTable_, scale_ = "linear";
};

}  // namespace tarvex::cli
