#pragma once
// The search-curve design of the Fourier Amplitude Sensitivity Test (Cukier,
// Fortuin, Shuler, Petschek and Schaibly, J. Chem. Phys. 59, 1973; extended
// test: Saltelli, Tarantola and Chan, Technometrics 41, 1999).
//
// Every stochastic factor i follows x = 1/2 + arcsin(sin(w_i s + phase_i)) / pi
// along a curve s in (-pi, pi), so that x is uniform on [0, 1]; the value pass
// turns x into the factor's value. Three analysis modes:
//  0  classic test, first order effects: one curve of numSamples runs, the
//     factors at interference-free frequencies (2 to 50 factors; the sample
//     size should be at least 8 F + 1, F the highest frequency);
//  1  first and total order effects: one block per stochastic factor, the
//     factor at omegaMax and all others at low complementary frequencies;
//  2  the same on groups: one block per group (its members share omegaMax),
//     then one per stochastic factor in no group.
// In modes 1 and 2 the budget of a block is numSamples / units, at least 65
// runs; a block is `resamples` curves of 8 omegaMax + 1 runs each, with new
// random phases per curve, and numSamples shrinks to the runs actually made.
//
// The design keeps its block table (designTable) for the analysis, and the
// sample file carries it with the groups.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sampling/Sampler.h"

namespace tarvex {

inline constexpr const char* kFastPerUnitSizeText =
    "Sample size too small\nThe sample size must be >= 65 per factor/group";
inline constexpr const char* kFastClassicSizeFormat =
    "Sample size too small\nChoose sample size greater than or equal to %ld";
inline constexpr const char* kFastClassicCountText = "The classic FAST takes from 2 to 50 stochastic factors";
inline constexpr const char* kFastEmptyGroupText = "Group's cardinality equal to 0";
inline constexpr const char* kFastSetTooSmallText = "Sample set to generate too small";

// One row of the block table. Classic mode: the factor's frequency, 1,
// numSamples, numSamples. Modes 1 and 2: omegaMax, resamples, curveLength,
// blockLength.
struct FastBlock {
    int32_t first = 0;
    int32_t second = 0;
    int32_t third = 0;
    int32_t fourth = 0;
    bool operator==(const FastBlock&) const = default;
};

class FastSampler : public Sampler {
public:
    FastSampler();
    // Copies keep the groups and the block table: the analysis of a copied
    // project reads them.
    FastSampler(const FastSampler& other) = default;

    [[nodiscard]] float generate(float targetPercent, sampValues& store, FactorList& factors) override;
    void reset() override;
    std::unique_ptr<Sampler> clone() const override { return std::make_unique<FastSampler>(*this); }
    void readItems(std::istream& in) override;

    // 0 if m is not 0, 1 or 2. A change of mode drops the block table, which
    // describes a design of the other mode.
    [[nodiscard]] int setAnalysisMode(int32_t m);

    // Group editing; every change drops the block table. Names must come back
    // from the sample file as they were: a name longer than 80 characters or
    // holding a line break is refused (0), as is an unknown group.
    [[nodiscard]] int addGroup(const std::string& name);
    // Also removes the group's elements; the later groups' elements move down
    // one index.
    [[nodiscard]] int removeGroup(const std::string& name);
    [[nodiscard]] int addElement(const std::string& groupName, const std::string& factorName);
    [[nodiscard]] int removeElement(const std::string& factorName);
    // Elements of the group, -1 for an unknown group.
    int32_t groupSize(const std::string& name) const;
    // The i-th factor name of the group, or none.
    std::optional<std::string> groupElement(const std::string& name, int32_t i) const;
    int isInGroup(const std::string& factorName) const;

    // Whether numSamples is enough for k stochastic factors in the current
    // mode: 1, or 0 with errorText saying how many runs are needed. The panel
    // asks it before accepting the settings.
    [[nodiscard]] int checkSampleSize(int32_t k);

    int32_t analysisMode() const { return analysisMode_; }
    const std::vector<std::string>& groupNames() const { return groupNames_; }
    const std::vector<std::string>& elementNames() const { return elementNames_; }
    const std::vector<int32_t>& elementGroups() const { return elementGroups_; }
    // Per factor in list order, as last assigned: the classic set, or the
    // frequencies of the last block opened. Not kept in the file.
    const std::vector<int32_t>& frequencies() const { return frequencies_; }
    const std::vector<double>& phases() const { return phases_; }
    // Null when dropped (groups changed) or never made.
    const std::vector<FastBlock>* designTable() const { return designTable_ ? &*designTable_ : nullptr; }
    int32_t numStochastic() const { return numStochastic_; }
    int32_t samplesPerUnit() const { return samplesPerUnit_; }
    int32_t resamples() const { return resamples_; }
    int32_t omegaMax() const { return omegaMax_; }
    int32_t curveLength() const { return curveLength_; }
    int32_t blockLength() const { return blockLength_; }
    int32_t blockStart() const { return blockStart_; }
    int32_t blockEnd() const { return blockEnd_; }
    int32_t currentUnit() const { return currentUnit_; }

protected:
    void writeItems(std::ostream& out) const override;

private:
    // Units of the extended tests, k - E + G: blocks of mode 2; also the
    // count that decides, in modes 1 and 2, whether there is anything to
    // compare.
    int32_t unitCount(int32_t k) const;
    // Rows of the block table for k stochastic factors in the current mode;
    // -1 when no readable table has that many (mode 2 with no unit).
    int32_t tableRows(int32_t k) const;
    void makeDesignTable(int32_t k);
    int32_t membersOf(int32_t group) const;

    [[nodiscard]] int start(FactorList& factors);
    [[nodiscard]] int openBlock(const FactorList& factors);
    void assignFrequencies(const FactorList& factors, int32_t unit, int32_t w, int32_t members);
    void drawPhases();
    [[nodiscard]] int addRun(sampValues& store, const FactorList& factors, int64_t t, int32_t length);
    void setDefaults();

    int32_t analysisMode_ = 0;
    std::vector<std::string> groupNames_;
    std::vector<std::string> elementNames_;
    std::vector<int32_t> elementGroups_;
    std::vector<int32_t> frequencies_;
    std::vector<double> phases_;
    std::optional<std::vector<FastBlock>> designTable_;
    int32_t numStochastic_ = 0;
    int32_t samplesPerUnit_ = 0;
    int32_t resamples_ = 0;
    int32_t omegaMax_ = 0;
    int32_t curveLength_ = 0;
    int32_t blockLength_ = 0;
    int32_t blockStart_ = 0;
    int32_t blockEnd_ = 0;
    int32_t currentUnit_ = -1;
    int32_t units_ = 0;      // blocks of this generation
    bool started_ = false;  // run 0 has been prepared
};

}  // namespace tarvex
