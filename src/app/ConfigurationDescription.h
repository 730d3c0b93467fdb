#pragma once
// The texts the main panel shows about a project: the block that describes the
// Prep part (heading, factors, method, correlation, size, sample file, order) in
// the variants of the operation that made it, and the block that describes the
// model.
#include <string>

namespace tarvex {

class ModelConfiguration;
class PrepConfiguration;

class ConfigurationDescription {
public:
    // Who writes the Prep block; each has its own heading and size line.
    enum class Variant {
        Internal,      // configure: "Internal Configuration", the size to generate
        Saved,         // a project or post-processor file: "Saved Configuration", the rows generated
        SavedSample,   // a .sam file: "Saved Configuration", the sample's size, "Sample ..." wording
        External,      // an external sample: "External Configuration", no correlation or order known
        Demo,          // a demonstration case: "Demo Configuration", the size to generate
    };

    // The Prep block, one line per item, joined by '\n'. "Samples to generate" counts
    // what the sampler is set to make; "Generated ..." counts the rows the store holds.
    static std::string prep(const PrepConfiguration& prep, Variant variant);
    // The model block: the executable (or "No model selected" when nothing is to be
    // run) and the output file, or the internal model's file, equation count and
    // output names.
    static std::string model(const ModelConfiguration& model);
    // Whether model() describes an internal model.
    static bool isInternal(const ModelConfiguration& model);
    // The line the main panel shows with the model block.
    static const char* modelLine(const ModelConfiguration& model);
};

}  // namespace tarvex
