#include "cli/ExampleCommand.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <ostream>
#include <sstream>
#include <vector>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "app/RunController.h"
#include "app/demo/DemoCases.h"
#include "cli/BatchInterface.h"
#include "cli/Console.h"
#include "cli/SensitivitySlots.h"
#include "cli/TextTable.h"
#include "postproc/OutputTable.h"
#include "postproc/OutputTableBuilder.h"
#include "postproc/SensitivityClasses.h"
#include "sampling/SobolSampler.h"

namespace tarvex::cli {

namespace {

namespace fs = std::filesystem;

// The exact indices of the cases that have them, by case name; a case
// without them shows its estimates alone.
// The Ishigami function's indices (a = 7, b = 0.1), from its variance
// decomposition: only x1, x2 and the pair (x1, x3) carry variance.
struct ExactIndices {
    std::vector<double> first, total;
};

ExactIndices ishigamiIndices();

ExactIndices exactIndicesOf(const std::string& name, std::size_t factors) {
    ExactIndices none{std::vector<double>(factors, NAN), std::vector<double>(factors, NAN)};
    if (name != "ishigami") return none;
    return ishigamiIndices();
}

ExactIndices ishigamiIndices() {
    constexpr double a = 7.0, b = 0.1, pi = std::numbers::pi;
    const double pi4 = std::pow(pi, 4), pi8 = std::pow(pi, 8);
    const double v1 = 0.5 * std::pow(1.0 + b * pi4 / 5.0, 2);
    const double v2 = a * a / 8.0;
    const double v13 = b * b * pi8 * (1.0 / 18.0 - 1.0 / 50.0);
    const double v = v1 + v2 + v13;
    return {{v1 / v, v2 / v, 0.0}, {(v1 + v13) / v, v2 / v, v13 / v}};
}

// A directory of our own under the system's temporary one.
bool makeScratch(std::string& dir) {
    std::error_code ec;
    const fs::path base = fs::temp_directory_path(ec);
    if (ec) return false;
    std::string pattern = (base / "tarvex-example-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) return false;
    dir = pattern;
    return true;
}

std::string fixed4(double v) {
    std::ostringstream s;
    s.setf(std::ios::fixed);
    s.precision(4);
    s << v;
    return s.str();
}

// Removes the scratch directory however the command ends.
struct ScratchRemover {
    std::string dir;
    ~ScratchRemover() {
        std::error_code ec;
        if (!dir.empty()) fs::remove_all(dir, ec);
    }
};

}  // namespace

ExampleCommand::ExampleCommand(CLI::App& parent) {
    app_ = parent.add_subcommand("example", "Run a built-in example and compare its indices with the exact ones");
    std::vector<std::string> names;
    for (const DemoCase& c : demoCases()) names.push_back(c.name);
    app_->add_option("case", name_, "The example: ishigami")->required()->check(CLI::IsMember(names));
    baseOpt_ = app_->add_option("--base", base_, "Rows of each base matrix of the Sobol' design (4096 by default)");
    app_->add_option("--keep", keep_, "Work in DIR and keep the project, sample and results there")->type_name("DIR");
    app_->add_flag("--json", json_, "Print the result as JSON");
    app_->add_flag("-q,--quiet", quiet_, "No progress on standard error");
}

CommandOutcome ExampleCommand::run(Console& console) {
    const DemoCase* demo = findDemoCase(name_);
    if (!demo) return CommandOutcome::usage("No example named " + name_);
    if (baseOpt_->count() > 0 && (base_ < 1 || base_ > INT32_MAX)) return CommandOutcome::usage(kSobolBadBaseSizeText);
    const int32_t base = baseOpt_->count() > 0 ? int32_t(base_) : demo->design.baseSize;

    std::string dir;
    ScratchRemover remover;
    if (!keep_.empty()) {
        std::error_code ec;
        fs::create_directories(keep_, ec);
        const fs::path made = fs::absolute(keep_, ec);
        if (ec || !fs::is_directory(made)) return CommandOutcome::failure("Cannot make the directory " + keep_);
        dir = made.string();
    } else {
        if (!makeScratch(dir)) return CommandOutcome::failure("Cannot make a scratch directory");
        remover.dir = dir;
    }

    BatchInterface ui(console, QuestionPolicy{true}, quiet_);
    RunController controller(ui, dir);
    std::string error;
    if (!buildDemoProject(*demo, base, (fs::path(dir) / (demo->name + ".sam")).string(), controller.project(), error))
        return CommandOutcome::failure(error);
    if (!controller.setMonteCarloMode(1)) return CommandOutcome::failure("The example cannot be run");
    ui.catchInterrupts();
    const int ran = controller.runModel(0);
    ui.releaseInterrupts();
    if (ui.interrupted()) return CommandOutcome::failure("Stopped");
    if (!ran) return CommandOutcome::failure("");
    const std::string project = (fs::path(dir) / (demo->name + ".psc")).string();
    if (!keep_.empty() && !controller.saveProject(&project)) return CommandOutcome::failure("");

    ProjectConfiguration& p = controller.project();
    OutputTable table;
    const std::vector<std::string> outputs{demo->equations.back().name};
    if (!buildOutputTable(p.model, outputs, table, error)) return CommandOutcome::failure(error);
    std::unique_ptr<SensitivityStats> stats = createSensitivityForMethod(demo->design.methodId);
    if (!stats) return CommandOutcome::failure("No sensitivity class for the example's design");
    stats->variableCount = table.columnCount();
    if (!stats->compute(p.prep, table)) return CommandOutcome::failure(stats->errorText);
    const std::optional<SlotLayout> layout = slotLayout(*stats);
    if (!layout || layout->columns.size() < 2) return CommandOutcome::failure("The indices have no names");
    const std::vector<std::optional<double>> first = columnValues(*stats, layout->columns[0], 0);
    const std::vector<std::optional<double>> total = columnValues(*stats, layout->columns[1], 0);
    const std::size_t k = demo->factors.size();
    const ExactIndices exact = exactIndicesOf(demo->name, k);
    if (first.size() < k || total.size() < k || exact.first.size() < k || exact.total.size() < k)
        return CommandOutcome::failure("The indices are incomplete");
    auto exactJson = [](double v) { return std::isnan(v) ? nlohmann::json(nullptr) : nlohmann::json(v); };
    auto exactText = [](double v) { return std::isnan(v) ? std::string("-") : fixed4(v); };

    if (json_) {
        nlohmann::json factors = nlohmann::json::array();
        for (std::size_t f = 0; f < k; ++f) {
            factors.push_back({{"name", demo->factors[f].name},
                               {"first", first[f] ? nlohmann::json(*first[f]) : nlohmann::json(nullptr)},
                               {"firstExact", exactJson(exact.first[f])},
                               {"total", total[f] ? nlohmann::json(*total[f]) : nlohmann::json(nullptr)},
                               {"totalExact", exactJson(exact.total[f])}});
        }
        nlohmann::json result{{"case", demo->name},   {"output", outputs.front()}, {"base", base},
                              {"runs", p.model.runCount()}, {"factors", factors}};
        if (!keep_.empty()) result["project"] = project;
        console.out << result.dump(2) << '\n';
    } else {
        console.out << demo->description << '\n'
                    << "Sobol' design, base " << base << ", " << p.model.runCount() << " runs\n\n";
        TextTable text({"Factor", "First order", "Exact", "Total order", "Exact"});
        auto shown = [](const std::optional<double>& v) { return v ? fixed4(*v) : std::string("-"); };
        for (std::size_t f = 0; f < k; ++f)
            text.addRow({demo->factors[f].name, shown(first[f]), exactText(exact.first[f]), shown(total[f]),
                         exactText(exact.total[f])});
        text.write(console.out);
        if (!keep_.empty()) console.out << "\nProject: " << project << '\n';
    }
    return CommandOutcome::success();
}

}  // namespace tarvex::cli
