#include "app/ConfigurationDescription.h"

#include <cstdio>

#include "model/ModelConfiguration.h"
#include "sampling/PrepConfiguration.h"

namespace tarvex {

namespace {

std::string format(const char* pattern, unsigned long value) {
    char line[96];
    std::snprintf(line, sizeof line, pattern, value);
    return line;
}

const char* correlationLine(int32_t mode) {
    switch (mode) {
        case kTreeCorrelation: return "Correlation method selected: Dependence tree";
        case kImanConoverCorrelation: return "Correlation method selected: Iman Conover";
        case kNoCorrelation: return "Correlation method selected: None";
        case kSteinCorrelation: return "Correlation method selected: Stein sample";
        default: return "Correlation method selected: unknown";
    }
}

// The store keeps one file line per factor (order 1) or per run (order 0).
constexpr int32_t kOrderedByFactor = 1;

}  // namespace

std::string ConfigurationDescription::prep(const PrepConfiguration& p, Variant variant) {
    const char* heading = "Internal Configuration";
    if (variant == Variant::Saved || variant == Variant::SavedSample) heading = "Saved Configuration";
    if (variant == Variant::External) heading = "External Configuration";
    if (variant == Variant::Demo) heading = "Demo Configuration";

    const unsigned long toGenerate = p.sampler ? static_cast<unsigned long>(p.sampler->numSamples()) : 0UL;
    const auto generated = static_cast<unsigned long>(p.samples.rowCount());
    std::string size;
    switch (variant) {
        case Variant::Internal:
        case Variant::Demo: size = format("Samples to generate: %lu", toGenerate); break;
        case Variant::Saved: size = format("Generated samples: %lu", generated); break;
        case Variant::SavedSample:
        case Variant::External: size = format("Generated sample size: %lu", generated); break;
    }
    const bool singular = variant == Variant::SavedSample || variant == Variant::External;
    const bool byFactor = p.samples.order() == kOrderedByFactor;

    std::string text = heading;
    text += "\n" + format("Total factors: %lu", static_cast<unsigned long>(p.factors.factorCount()));
    text += "\nSampling method selected: " + (p.sampler ? p.sampler->methodName() : std::string());
    text += "\n";
    text += variant == Variant::External ? "Correlation method selected: unknown" : correlationLine(p.factors.correlationMode);
    text += "\n" + size;
    text += singular ? "\nSample file:" : "\nSamples file:";
    text += "\n   " + p.sampleFile;
    if (variant == Variant::External) return text;
    if (variant == Variant::SavedSample)
        text += byFactor ? "\nSample ordered by Factor" : "\nSample ordered by Run";
    else
        text += byFactor ? "\nSamples ordered by Factor" : "\nSamples ordered by Run";
    return text;
}

bool ConfigurationDescription::isInternal(const ModelConfiguration& m) {
    return m.kind() == ModelConfiguration::kInternal && m.internalModel() != nullptr;
}

std::string ConfigurationDescription::model(const ModelConfiguration& m) {
    if (!isInternal(m)) {
        std::string text = "External model executable:\n";
        text += m.kind() == ModelConfiguration::kNoModel ? "   No model selected" : "   " + m.executable();
        text += "\n\nModel output file:\n   " + m.outputFile();
        return text;
    }
    const InternalModel& im = *m.internalModel();
    std::string text = "Internal model executable:\n   " + im.fileName();
    text += "\nNumber of equations: \n   " + std::to_string(im.numExpressions());
    text += "\nOutput Variables: ";
    // The outputs are the expressions of type 1, in their order.
    for (const ModelExpression& e : im.expressions())
        if (e.type == 1) text += "\n   " + e.name;
    return text;
}

const char* ConfigurationDescription::modelLine(const ModelConfiguration& m) {
    return isInternal(m) ? "Internal model selection" : "External model selection";
}

}  // namespace tarvex
