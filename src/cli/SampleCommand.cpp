#include "cli/SampleCommand.h"

#include <filesystem>
#include <ostream>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "cli/Console.h"
#include "cli/ProgressBar.h"
#include "correlation/FactorFile.h"
#include "sampling/GenerationLoop.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex::cli {

SampleCommand::SampleCommand(CLI::App& parent) {
    app_ = parent.add_subcommand("sample", "Generate a sample from a factor file (.fac) into a sample file (.sam)");
    app_->add_option("factors", factorFile_, "Factor file (.fac); its correlations are used as it holds them")
        ->required()
        ->type_name("FILE");
    app_->add_option("-o,--output", sampleFile_, "Sample file to write (.sam)")->required()->type_name("FILE");

    sampler_.addTo(*app_);
    app_->add_flag("--json", json_, "Print the result as JSON");
    app_->add_flag("-q,--quiet", quiet_, "No progress on standard error");
}

CommandOutcome SampleCommand::run(Console& console) {
    const SamplerSettings settings = sampler_.settings();

    // Paths are fixed before any reader can move the current directory.
    std::error_code ec;
    const std::filesystem::path absolute = std::filesystem::absolute(sampleFile_, ec);
    const std::string output = ec ? sampleFile_ : absolute.string();

    PrepConfiguration prep;
    std::string error;
    if (!loadFactorFile(factorFile_, prep.factors, error)) return CommandOutcome::failure(error);
    if (CommandOutcome o = makeSampler(settings, prep.factors, prep.sampler); o.status != kExitSuccess) return o;

    ProgressBar bar(console.err, console.errIsTerminal, console.clock, "Generating " + prep.sampler->methodName());
    const GenerationOutcome generated = runGeneration(prep, [&](int percent) {
        if (!quiet_) bar.update(percent);
        return true;
    });
    if (generated.result == kGenerationDone && !quiet_) bar.update(100);
    bar.finish();
    if (generated.result != kGenerationDone) {
        std::string text = prep.sampler->errorText();
        if (text == kNoErrorsText) text = prep.errorText();
        return CommandOutcome::failure(text != kNoErrorsText ? text : "The generation failed");
    }
    if (!generated.warningText.empty()) console.err << "tarvex-batch: warning: " << generated.warningText << '\n';

    prep.sampleFile = output;
    if (!prep.writeSampleFile(output)) return CommandOutcome::failure(prep.errorText());

    if (json_) {
        nlohmann::json result{{"sampleFile", output},
                              {"method", prep.sampler->methodName()},
                              {"methodId", prep.sampler->methodId()},
                              {"samples", prep.sampler->numSamples()},
                              {"rows", prep.samples.rowCount()},
                              {"factors", prep.factors.factorCount()},
                              {"warning", generated.warningText}};
        console.out << result.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
    } else {
        console.out << "Generated samples: " << prep.sampler->numSamples() << '\n'
                    << "Sample file: " << output << '\n';
    }
    return CommandOutcome::success();
}

}  // namespace tarvex::cli
