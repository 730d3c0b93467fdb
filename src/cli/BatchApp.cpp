#include "cli/BatchApp.h"

#include <filesystem>
#include <ostream>

#include <CLI/CLI.hpp>

#include "common/Environment.h"

#include "cli/AnalyseCommand.h"
#include "cli/ComposeCommand.h"
#include "cli/Console.h"
#include "cli/ExampleCommand.h"
#include "cli/RunCommand.h"
#include "cli/SampleCommand.h"

namespace tarvex::cli {

namespace {

constexpr const char* kProgram = "tarvex-batch";

std::string usageLine(const CLI::App& app, const CLI::App* sub) {
    const CLI::App* shown = sub ? sub : &app;
    const std::string name = sub ? std::string(kProgram) + " " + sub->get_name() : std::string(kProgram);
    (void)app;
    return CLI::Formatter().make_usage(shown, name);
}

void reportUsage(Console& console, const CLI::App& app, const CLI::App* sub, const std::string& message) {
    const std::string helpOf = sub ? std::string(kProgram) + " " + sub->get_name() : std::string(kProgram);
    console.err << kProgram << ": error: " << message << '\n'
                << usageLine(app, sub) << "Run '" << helpOf << " --help' for more information.\n";
}

// Projects keep the remembered directories in config.dat of the
// installation directory, as the desktop program does; without a start-up
// file that is the directory above the program's own.
void setInstallationDirectory() {
    Environment& environment = Environment::instance();
    if (!environment.mainDir().empty()) return;
    std::error_code ec;
    const std::filesystem::path self = std::filesystem::read_symlink("/proc/self/exe", ec);
    environment.setMainDir(ec ? std::filesystem::current_path(ec).string() : self.parent_path().parent_path().string());
}

}  // namespace

int runBatch(int argc, const char* const* argv, Console& console) {
    CLI::App app{"Tarvex batch tool: samples, model runs, uncertainty and sensitivity analysis from the command line.\n"
                 "Results go to standard output, progress and messages to standard error.",
                 kProgram};
    app.set_version_flag("--version", std::string(kProgram) + " " + TARVEX_VERSION);
    app.require_subcommand(1);
    app.footer("Exit status: 0 success, 1 failure, 2 bad usage.");
    SampleCommand sample(app);
    AnalyseCommand analyse(app);
    RunCommand runCommand(app);
    ComposeCommand compose(app);
    ExampleCommand example(app);

    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return app.exit(e, console.out, console.err);
    } catch (const CLI::CallForAllHelp& e) {
        return app.exit(e, console.out, console.err);
    } catch (const CLI::CallForVersion& e) {
        return app.exit(e, console.out, console.err);
    } catch (const CLI::ParseError& e) {
        const auto parsed = app.get_subcommands();
        // CLI11 only says that a subcommand is required; name the word it took for one.
        std::string message = e.what();
        if (parsed.empty() && argc > 1 && argv[1][0] != '-') message = std::string("Unknown subcommand: ") + argv[1];
        reportUsage(console, app, parsed.empty() ? nullptr : parsed.back(), message);
        return kExitUsage;
    }

    const CLI::App* chosen = app.get_subcommands().front();
    CommandOutcome outcome;
    setInstallationDirectory();
    if (chosen == sample.app()) outcome = sample.run(console);
    else if (chosen == runCommand.app()) outcome = runCommand.run(console);
    else if (chosen == compose.app()) outcome = compose.run(console);
    else if (chosen == example.app()) outcome = example.run(console);
    else outcome = analyse.run(console);

    if (outcome.status == kExitUsage) {
        reportUsage(console, app, chosen, outcome.message);
    } else if (outcome.status != kExitSuccess && !outcome.message.empty()) {
        // An empty message: the failure was told as it happened.
        console.err << kProgram << ": " << outcome.message << '\n';
    }
    console.out.flush();
    return outcome.status;
}

int runBatch(const std::vector<std::string>& args, Console& console) {
    std::vector<const char*> argv{kProgram};
    for (const std::string& a : args) argv.push_back(a.c_str());
    return runBatch(static_cast<int>(argv.size()), argv.data(), console);
}

}  // namespace tarvex::cli
