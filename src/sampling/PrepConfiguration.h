#pragma once
// The pre-processor's part of a project: factor list, sampling method, the
// generated sample with its statistics, and the sample file it is saved to.
//
// Generation runs in two halves behind one percent: the sampler fills the
// store with design-space numbers up to 50, then the value pass maps every
// stochastic cell through its factor's inverse cumulative distribution, keeps
// constants, and evaluates relations last on the finished row, up to 100.
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "correlation/FactorList.h"
#include "sampling/SampleStatistics.h"
#include "sampling/Sampler.h"
#include "sampling/sampValues.h"

namespace tarvex {

inline constexpr const char* kReadSamplesErrorText = "Error reading samples file";
inline constexpr const char* kReadExternalErrorText = "Error reading external samples file";
inline constexpr const char* kWriteSamplesErrorText =
    "Error trying to write to the Sample file.\nIs it locked by another application?";

class PrepConfiguration {
public:
    PrepConfiguration();
    // Deep copies: the sampler is re-created by its class.
    PrepConfiguration(const PrepConfiguration& other);
    PrepConfiguration& operator=(const PrepConfiguration& other);
    ~PrepConfiguration();

    // Starts a generation: empty store, fresh sampling order, factor names,
    // sampler reset, no statistics.
    void prepareGeneration();
    // Carries the generation on to `target` percent: the integer percent
    // reached, 100 once finished, -1 on failure (the sampler's errorText says
    // why). An external sample is finished already.
    [[nodiscard]] int generate(int target);
    void cancelGeneration();
    // prepareGeneration and cancelGeneration leave an external sample, its
    // store and its statistics, untouched.

    // The warning of the last generation, "" when there is none: the text of
    // a correlation that could not be imposed, the sample being made without
    // it. Every front end shows it once the generation is done.
    const std::string& warningText() const { return warningText_; }

    // The Prep record: the whole of a .sam file and the first record of the
    // project files. The reader fills this object; callers that must keep
    // theirs on failure read into a temporary (readSampleFile does).
    void write(std::ostream& out) const;
    // 1, or 0 with the stream in its fail state.
    [[nodiscard]] int read(std::istream& in);

    // A .sam file. On failure errorText is "Error reading samples file" (or
    // the write error) and the configuration is as it was.
    [[nodiscard]] int writeSampleFile(const std::string& fileName);
    [[nodiscard]] int readSampleFile(const std::string& fileName);
    // A sample made elsewhere (see ExternalSampleFile.cpp): plain factors, a
    // default Random sampler, statistics. On failure errorText is "Error
    // reading external samples file" and the configuration is as it was.
    [[nodiscard]] int loadExternalSample(const std::string& fileName);

    void swap(PrepConfiguration& other) noexcept;

    FactorList factors;
    std::unique_ptr<Sampler> sampler;
    sampValues samples;
    std::string sampleFile;
    std::unique_ptr<SampleStatistics> sampleStatistics;
    int32_t hasStatistics = 0;
    int32_t external = 0;
    const std::string& errorText() const { return errorText_; }

private:
    [[nodiscard]] int valuePass(int target);
    int32_t rowsForPercent(int target, int32_t rows, double cells) const;
    void setSamplerError(const std::string& text);

    std::string errorText_ = kNoErrorsText;
    std::vector<std::string> factorNames_;  // filled by prepareGeneration
    int32_t nextFactor_ = -1;  // cursor of the value pass: factor position, -1 before it starts
    int32_t nextRow_ = 0;      // and sample index
    int percent_ = 0;  // last percent of the value pass
    std::string warningText_;
    std::vector<double> chunk_;  // cells of the current column on their way through the inverse
};

}  // namespace tarvex
