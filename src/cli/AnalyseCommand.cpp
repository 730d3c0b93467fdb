#include "cli/AnalyseCommand.h"

#include <algorithm>
#include <filesystem>
#include <ostream>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/AnalysisInput.h"
#include "cli/Console.h"
#include "cli/SensitivityReport.h"
#include "cli/SensitivitySlots.h"
#include "cli/UaReport.h"
#include "cli/VariableChoice.h"
#include "common/AtomicFileWriter.h"
#include "postproc/OutputTable.h"
#include "postproc/OutputTableBuilder.h"
#include "postproc/SensitivityClasses.h"
#include "postproc/UaCurves.h"
#include "postproc/UaTableFile.h"
#include "postproc/VariableSelection.h"
#include "sampling/Sampler.h"

namespace tarvex::cli {

namespace {

// The path as it stands when it cannot be made absolute (a current
// directory that was removed): the reader then reports it.
std::string absolutePath(const std::string& path) {
    std::error_code ec;
    const std::filesystem::path made = path.empty() ? std::filesystem::path() : std::filesystem::absolute(path, ec);
    return ec || path.empty() ? path : made.string();
}

// The saved table of the uncertainty panel for every variable, one after the
// other, each with the sheet of points of the chosen scale.
CommandOutcome saveUaTables(const std::string& path, const UaStats& stats, int scale) {
    std::vector<std::vector<std::vector<std::string>>> sheets;
    for (int32_t i = 0; i < stats.variableCount; ++i) {
        UaCurves curves;
        // The logarithmic table exists only for a variable above 0.
        if ((scale == 1 && !(stats.minimum(i) > 0.0)) || !buildUaCurves(stats, i, scale, curves)) {
            const std::string* name = stats.name(i);
            return CommandOutcome::failure("No logarithmic scale for " + (name ? *name : std::string()) +
                                           ": its minimum is not above 0");
        }
        sheets.push_back(uaPointsSheet(curves));
    }
    const bool saved = saveFileAtomically(path, [&](std::ostream& out) {
        for (int32_t i = 0; i < stats.variableCount; ++i) {
            if (i > 0) out << '\n';
            writeUaTable(out, stats, i, sheets[std::size_t(i)]);
        }
    });
    return saved ? CommandOutcome::success() : CommandOutcome::failure(kCannotSaveFileText);
}

}  // namespace

AnalyseCommand::AnalyseCommand(CLI::App& parent) {
    app_ = parent.add_subcommand("analyse", "Uncertainty and sensitivity analysis of a post-processor file (.spc)");
    app_->alias("analyze");
    app_->add_option("input", inputFile_, "Post-processor file (.spc)")->required()->type_name("FILE");
    varOpt_ = app_->add_option("--var", vars_, "Variable: an output, OUTPUT[max] or OUTPUT[TIME] (repeatable)")
                  ->allow_extra_args(false)
                  ->type_name("TEXT");
    maxOpt_ = app_->add_option("--max", maxima_, "An output's maximum over time (repeatable)")
                  ->allow_extra_args(false)
                  ->type_name("OUTPUT");
    atOpt_ = app_->add_option("--at", atTimes_, "An output at one time, OUTPUT=TIME (repeatable)")
                 ->allow_extra_args(false)
                 ->type_name("OUTPUT=TIME");
    timesOpt_ = app_->add_option("--times", times_,
                                 "An output at the times LOWER, LOWER+STEP, ... below UPPER (repeatable)")
                    ->allow_extra_args(false)
                    ->type_name("OUTPUT=LOWER:UPPER:STEP");
    exprOpt_ = app_->add_option("--expr", expressions_, "An expression over outputs, e.g. \"Y[max]/Z[0]\" (repeatable)")
                   ->allow_extra_args(false)
                   ->type_name("TEXT");
    app_->add_option("--confidence", confidence_, "Level of the bounds on the mean")
        ->check(CLI::IsMember({0.75, 0.9, 0.95, 0.975, 0.99, 0.995, 0.9995}))
        ->capture_default_str();
    app_->add_flag("--no-sensitivity", noSensitivity_, "Uncertainty statistics only");
    app_->add_option("--measure", measures_, "Sensitivity values to print, by column name (repeatable; all by default)")
        ->allow_extra_args(false);
    app_->add_option("--table-measure", tableMeasure_, "Regression measure of the saved sensitivity table")
        ->check(CLI::IsMember(regressionMeasureNames()))
        ->capture_default_str();
    app_->add_option("--ua-table", uaTable_, "Write the uncertainty tables to FILE")->type_name("FILE");
    app_->add_option("--sa-table", saTable_, "Write the sensitivity table to FILE")->type_name("FILE");
    app_->add_option("--scale", scale_, "Scale of the points in the uncertainty tables")
        ->check(CLI::IsMember({"linear", "log"}))
        ->capture_default_str();
    app_->add_flag("--json", json_, "Print the results as JSON");
}

std::vector<VariableRequest> AnalyseCommand::requestsInOrder() const {
    struct Source {
        const CLI::Option* option;
        const std::vector<std::string>* values;
        VariableRequest::Kind kind;
        std::size_t next;
    };
    Source sources[] = {{varOpt_, &vars_, VariableRequest::kVariable, 0},
                        {maxOpt_, &maxima_, VariableRequest::kMaximum, 0},
                        {atOpt_, &atTimes_, VariableRequest::kAtTime, 0},
                        {timesOpt_, &times_, VariableRequest::kTimes, 0},
                        {exprOpt_, &expressions_, VariableRequest::kExpression, 0}};
    std::vector<VariableRequest> requests;
    for (const CLI::Option* option : app_->parse_order()) {
        for (Source& s : sources) {
            if (s.option != option || s.next >= s.values->size()) continue;
            requests.push_back({s.kind, (*s.values)[s.next++]});
        }
    }
    return requests;
}

CommandOutcome AnalyseCommand::run(Console& console) {
    if (noSensitivity_ && (!saTable_.empty() || !measures_.empty()))
        return CommandOutcome::usage("--no-sensitivity contradicts --sa-table and --measure");
    // Reading the file moves the current directory to the one it names.
    const std::string input = absolutePath(inputFile_);
    uaTable_ = absolutePath(uaTable_);
    saTable_ = absolutePath(saTable_);

    AnalysisInput loaded;
    if (CommandOutcome o = loadAnalysisInput(input, loaded); o.status != kExitSuccess) return o;

    std::vector<std::string> entries;
    const std::vector<VariableRequest> requests = requestsInOrder();
    if (requests.empty()) {
        entries = loaded.vels.selectedVariables;
    } else if (CommandOutcome o = resolveVariables(requests, loaded.model, entries); o.status != kExitSuccess) {
        return o;
    }
    if (entries.empty()) return CommandOutcome::usage(kNoVariableSelectedText);
    return analyse(console, loaded, entries);
}

CommandOutcome AnalyseCommand::analyse(Console& console, AnalysisInput& input, const std::vector<std::string>& entries) {
    OutputTable table;
    std::string error;
    if (!buildOutputTable(input.model, entries, table, error)) return CommandOutcome::failure(error);
    const int32_t variables = table.columnCount();

    UaStats ua;
    ua.setTchebyConfidence(confidence_);
    ua.compute(entries, table);

    // The sensitivity class of the file's sampling method.
    const Sampler* sampler = input.prep.sampler.get();
    const std::string methodName = sampler ? sampler->methodName() : std::string();
    std::unique_ptr<SensitivityStats> stats;
    std::optional<SlotLayout> layout;
    std::vector<SlotColumn> columns;
    CommandOutcome outcome = CommandOutcome::success();
    if (!noSensitivity_) {
        if (sampler) stats = createSensitivityForMethod(sampler->methodId());
        if (!stats) {
            console.err << "tarvex-batch: no sensitivity class is available for the "
                        << (sampler ? methodName : std::string("unknown")) << " method: uncertainty analysis only\n";
        } else {
            stats->variableCount = variables;
            if (!stats->compute(input.prep, table)) {
                outcome = CommandOutcome::failure(stats->errorText);
                stats.reset();
            } else if (!(layout = slotLayout(*stats))) {
                console.err << "tarvex-batch: the values of sensitivity class " << stats->typeId
                            << " have no names: uncertainty analysis only\n";
                stats.reset();
            }
        }
    }
    if (stats) {
        for (const SlotColumn& c : layout->columns) {
            if (measures_.empty() || std::find(measures_.begin(), measures_.end(), c.name) != measures_.end())
                columns.push_back(c);
        }
        for (const std::string& m : measures_) {
            if (std::none_of(columns.begin(), columns.end(), [&](const SlotColumn& c) { return c.name == m; })) {
                std::string known;
                for (const SlotColumn& c : layout->columns) known += " \"" + c.name + "\"";
                return CommandOutcome::usage("No sensitivity value named \"" + m + "\"; the " + layout->title +
                                             " are:" + known);
            }
        }
    }

    if (json_) {
        nlohmann::json result{{"input", std::filesystem::path(inputFile_).filename().string()},
                              {"method", methodName},
                              {"variables", entries},
                              {"uncertainty", uaJson(ua)},
                              {"sensitivity", nullptr}};
        if (stats) result["sensitivity"] = sensitivityJson(*stats, layout->title, columns, entries);
        // Names come from files: bytes that are no UTF-8 are replaced, not fatal.
        console.out << result.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
    } else {
        writeUaText(console.out, ua);
        if (stats) {
            console.out << '\n';
            writeSensitivityText(console.out, *stats, layout->title + " (" + methodName + ")", columns, entries);
        }
    }

    if (!uaTable_.empty()) {
        if (CommandOutcome o = saveUaTables(uaTable_, ua, scale_ == "log" ? 1 : 0); o.status != kExitSuccess) return o;
    }
    if (!saTable_.empty()) {
        if (!stats) {
            if (outcome.status != kExitSuccess) return outcome;
            return CommandOutcome::failure("No sensitivity table to write: no sensitivity measures were computed");
        }
        ResultTableRequest request;
        for (int32_t v = 0; v < variables; ++v) request.variables.push_back(v);
        request.variableNames = entries;
        const auto& names = regressionMeasureNames();
        request.measure = int32_t(std::find(names.begin(), names.end(), tableMeasure_) - names.begin());
        if (!saveFileAtomically(saTable_, [&](std::ostream& out) { stats->writeTable(out, request); }))
            return CommandOutcome::failure(kCannotSaveFileText);
    }
    return outcome;
}

}  // namespace tarvex::cli
