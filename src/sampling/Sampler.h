#pragma once
// The frame of every sampling method: parameters, the resumable generation
// contract, the method table and the method section of the sample file.
//
// generate(targetPercent, store, factors) fills `store` with design-space
// numbers (mostly uniform numbers in (0, 1)) until `progress` reaches
// targetPercent, and returns `progress`; -1.0 on failure, with errorText set.
// All loop state lives in the object, so that the caller can serve window
// events between calls. A method owns the percents from 0 to 50; the value
// pass of PrepConfiguration turns the design into factor values after that.
//
// Phases end when their counters say the work is done, never on the float
// percent alone: at a few million cells a single-precision percent reaches a
// phase's end before its last cells. Until the last cell of the design is
// written the returned percent stays below 50.
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace tarvex {

class FactorList;
class RankTable;
class sampValues;

enum SamplerMethod : int32_t {
    kFastMethod = 0,
    kFixedMethod = 1,
    kLatinMethod = 2,
    kLpTauMethod = 3,
    kMorrisMethod = 4,
    kRandomMethod = 5,
    kRepLatinMethod = 6,
    kSobolMethod = 7,
};

inline constexpr const char* kNoErrorsText = "No errors";
inline constexpr const char* kNegativeSamplesText = "Number of execution must be a positive value";
inline constexpr const char* kNoSamplesText = "  No samples to generate";
inline constexpr const char* kBadSeedText = "Seed must be a value greater than 0 and less than 2,147,483,647";

class Sampler {
public:
    virtual ~Sampler() = default;

    [[nodiscard]] virtual float generate(float targetPercent, sampValues& store, FactorList& factors) = 0;
    [[nodiscard]] virtual int setNumFactors(int32_t count);
    // Back to the start of a generation: percent, counters, and the state word
    // at minus the seed.
    virtual void reset();
    // A copy of the same class.
    virtual std::unique_ptr<Sampler> clone() const = 0;

    // The method section of the sample file: methodId and methodName lines,
    // then the method's own items, one per line.
    void writeSection(std::ostream& out) const;
    // Reads the items after methodId and methodName. A failed item gives the
    // class defaults back and leaves the stream failed.
    virtual void readItems(std::istream& in) = 0;

    // A negative count is refused; 0 is accepted (the run then has nothing to
    // generate).
    [[nodiscard]] int setSamples(int32_t n);
    [[nodiscard]] int setSeed(int32_t s);

    // 1 once the design is complete (progress at 50).
    bool finished() const { return progress_ >= 50.0f; }

    // The method table: name of a method number, "" for an unknown one.
    static const char* nameOf(int32_t methodId);
    // A default sampler of that method, or null for an unknown number or a
    // method this build does not offer.
    static std::unique_ptr<Sampler> create(int32_t methodId);

    // Read access. The parameters change only through their setters and the
    // section reader, the counters only inside generate and reset.
    int32_t numFactors() const { return numFactors_; }
    int32_t methodId() const { return methodId_; }
    const std::string& methodName() const { return methodName_; }
    const std::string& errorText() const { return errorText_; }
    // What the user must be told although the design was made: a rank table
    // that could not be used, so that the sample is not (or only partly)
    // correlated. Empty otherwise; emptied by reset.
    const std::string& warningText() const { return warningText_; }
    int32_t numSamples() const { return numSamples_; }
    int32_t seed() const { return seed_; }
    int32_t randomState() const { return randomState_; }
    float progress() const { return progress_; }
    int32_t sampleIndex() const { return sampleIndex_; }
    int32_t factorPosition() const { return factorPosition_; }

    // The value pass after the design reports its failure here too.
    void setErrorText(const std::string& text) { errorText_ = text; }

protected:
    Sampler(int32_t id, int32_t defaultSeed);
    Sampler(const Sampler&) = default;
    Sampler& operator=(const Sampler&) = default;

    virtual void writeItems(std::ostream& out) const = 0;
    // Items shared by the Random and Latin sections: numSamples, numFactors,
    // seed. On failure the defaults (0, 0, seed 1) and the method name.
    void writeCountsAndSeed(std::ostream& out) const;
    void readCountsAndSeed(std::istream& in);

    // Percent of a phase: `done` of `total` cells mapped onto [from, from + span],
    // kept strictly below the phase's end until the last cell is done.
    static float phasePercent(int64_t done, int64_t total, float from, float span);

    // The checks that open every generate(): samples to draw, factors to draw
    // them for and, at the first cell of a generation, a store emptied to the
    // list's width. Returns 1 to go on; 0 when the list has no factor (progress
    // is then 50 and the method is done); -1 with errorText set on failure.
    [[nodiscard]] int openGeneration(bool atFirstCell, sampValues& store, const FactorList& factors);

    // One cell of a column-after-column walk over a store `width` wide. With
    // `newRow` the cell opens a row of its own (its other cells 0.0, to be
    // filled by later columns); otherwise it goes into the row made before.
    // `write` false leaves the cell as it is. Then sampleIndex and
    // factorPosition step to the next cell. Returns 0 with errorText set when
    // the store refuses.
    [[nodiscard]] int placeCell(sampValues& store, bool newRow, int32_t width, int f, bool write, double value);
    // The same over a column of `rows` cells instead of numSamples.
    [[nodiscard]] int placeCell(sampValues& store, bool newRow, int32_t width, int f, bool write, double value,
                                int32_t rows);

    // A block of rows whose stochastic columns are re-ranked by a rank table.
    struct RankedBlock {
        RankTable* ranks = nullptr;
        int32_t firstRow = 0;    // the block's rows in the store
        int32_t rows = 0;
        int32_t rankRow = 0;     // row of the rank table that the block's first row takes
        // A column the table holds no usable ranks for is permuted by 2 * rows
        // random exchanges; otherwise it stays as it is.
        bool shuffleUnranked = false;
        // The percent: the phase spans `phaseCells` cells over [from, from + span],
        // of which `cellsBefore` were done before this block.
        int64_t cellsBefore = 0;
        int64_t phaseCells = 0;
        float from = 0.0f;
        float span = 0.0f;
    };
    // The re-ranking phase shared by the rank-correlated designs: over the
    // factors in list order (factorPosition is a factor index here), each
    // stochastic column of the block is sorted and its row s takes the value
    // at place rankOf(column, rankRow + s). Returns 1 once the block is done
    // (counters back at 0; at the last block of the phase the rank table is
    // released and progress is at the phase's end), 0 when the target came
    // first, -1 with errorText set when the store refuses.
    [[nodiscard]] int rerankBlock(float target, sampValues& store, const FactorList& factors, const RankedBlock& block);
    // Told of every cell the re-ranking places: `row` took the column's value
    // of rank `rank` (from 0, rising) within the block.
    virtual void rankPlaced(int32_t factor, int32_t rank, int32_t row);

    int32_t numFactors_ = 0;
    int32_t methodId_ = -1;
    std::string methodName_;
    std::string errorText_ = kNoErrorsText;
    std::string warningText_;
    int32_t numSamples_ = 0;
    int32_t seed_ = 5648423;
    int32_t randomState_ = -5648423;  // minus seed_ whenever the seed is set and at reset
    float progress_ = 0.0f;
    int32_t sampleIndex_ = 0;
    int32_t factorPosition_ = 0;

    std::vector<double> scratch_;  // the row being opened by placeCell
    std::vector<double> sortedColumn_;  // the column being re-ranked, sorted
    int32_t stochasticIndex_ = 0;       // its column in the rank table
};

}  // namespace tarvex
