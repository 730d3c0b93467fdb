#include "sampling/RepLatinSampler.h"

#include <algorithm>
#include <cstdlib>
#include <istream>
#include <limits>
#include <ostream>
#include <utility>

#include "common/TextLines.h"
#include "common/UniformRandom.h"
#include "sampling/LatinSampler.h"
#include "sampling/SamplerFactors.h"
#include "sampling/sampValues.h"

namespace tarvex {

namespace {

inline constexpr const char* kRepLatinTooLargeText =
    "The base design times the replications is above 2147483647 samples.";

// Element lines are read as into a buffer of 101 bytes.
constexpr std::size_t kElementLineBytes = 101;

// "flag<tab>name".
bool parseElement(const std::string& line, RepElement& element) {
    const char* text = line.c_str();
    char* end = nullptr;
    const long flag = std::strtol(text, &end, 10);
    if (end == text || *end != '\t' || flag < std::numeric_limits<int32_t>::min() ||
        flag > std::numeric_limits<int32_t>::max())
        return false;
    element.flag = int32_t(flag);
    element.name = line.substr(size_t(end - text) + 1);
    return true;
}

}  // namespace

RepLatinSampler::RepLatinSampler() : Sampler(kRepLatinMethod, 5648423) {}

// Parameters, elements and the run table (which the importance measures
// read) are copied; a generation in progress is not: the copy starts from the
// beginning.
RepLatinSampler::RepLatinSampler(const RepLatinSampler& other)
    : Sampler(other),
      baseDesign_(other.baseDesign_),
      replications_(other.replications_),
      choice_(other.choice_),
      elements_(other.elements_),
      runTable_(other.runTable_),
      tableFactors_(other.tableFactors_),
      tableRanks_(other.tableRanks_),
      tableReplicates_(other.tableReplicates_) {
    const int32_t state = randomState_;
    Sampler::reset();
    randomState_ = state;
}

void RepLatinSampler::reset() {
    const int32_t state = randomState_;
    Sampler::reset();
    randomState_ = state;
    phase_ = 0;
    replicate_ = 0;
    runTable_.clear();
    tableFactors_ = tableRanks_ = tableReplicates_ = 0;
    ranks_.release();
    replicateOpen_ = false;
    row_.clear();
    scratch_.clear();
}

int RepLatinSampler::setNumFactors(int32_t count) {
    if (count < 1) return 0;
    numFactors_ = count;
    return 1;
}

int RepLatinSampler::setBaseDesign(int32_t m) {
    if (m < 1) return 0;
    reset();
    baseDesign_ = m;
    return 1;
}

int RepLatinSampler::setReplications(int32_t r) {
    if (r < 1) reset();
    replications_ = r;
    return 1;
}

// ------------------------------------------------------------ elements

int32_t RepLatinSampler::elementFlag(int32_t i) const {
    return i >= 0 && i < elementCount() ? elements_[size_t(i)].flag : -2;
}

const char* RepLatinSampler::elementName(int32_t i) const {
    return i >= 0 && i < elementCount() ? elements_[size_t(i)].name.c_str() : nullptr;
}

int RepLatinSampler::setElementFlag(int32_t i, int32_t flag) {
    if (i < 0 || i >= elementCount()) {
        errorText_ = kIndexOutOfRangeText;
        return 0;
    }
    elements_[size_t(i)].flag = flag;
    return 1;
}

int RepLatinSampler::setElementName(int32_t i, const std::string& name) {
    if (i < 0 || i >= elementCount()) {
        errorText_ = kIndexOutOfRangeText;
        return 0;
    }
    elements_[size_t(i)].name = name;
    return 1;
}

void RepLatinSampler::synchroniseElements(const FactorList& factors) {
    std::vector<RepElement> synchronised(size_t(factors.factorCount()));
    for (int f = 0; f < factors.factorCount(); ++f) {
        RepElement& element = synchronised[size_t(f)];
        element.name = factors.getFactor(f)->name();
        element.flag = -1;
        if (!isStochastic(factors, f)) continue;
        element.flag = 0;
        for (const RepElement& known : elements_)
            if (known.name == element.name && (known.flag == 0 || known.flag == 1)) {
                element.flag = known.flag;
                break;
            }
    }
    elements_.swap(synchronised);
}

const int32_t* RepLatinSampler::runOf(int32_t factor, int32_t valueRank) const {
    if (runTable_.empty() || factor < 0 || factor >= tableFactors_ || valueRank < 0 || valueRank >= tableRanks_)
        return nullptr;
    return runTable_.data() + (size_t(factor) * size_t(tableRanks_) + size_t(valueRank)) * size_t(tableReplicates_);
}

bool RepLatinSampler::runListsAvailable() const {
    return !runTable_.empty() && tableFactors_ == numFactors_ && tableRanks_ == baseDesign_ &&
           tableReplicates_ == replications_;
}

void RepLatinSampler::rankPlaced(int32_t factor, int32_t rank, int32_t row) {
    if (runTable_.empty()) return;
    runTable_[(size_t(factor) * size_t(tableRanks_) + size_t(rank)) * size_t(tableReplicates_) + size_t(replicate_)] =
        row;
}

// ------------------------------------------------------------ generation

float RepLatinSampler::generate(float targetPercent, sampValues& store, FactorList& factors) {
    // The element selection makes no design of its own; the store stays as
    // it is. Answering a percent that never grows would hold the generation
    // loop for ever, so the run ends with the reason instead.
    if (choice_ != 0) {
        errorText_ = kChoiceGeneratesNothingText;
        return -1.0f;
    }
    if (phase_ == 2) return progress_;
    const bool atFirstCell = phase_ == 0 && factorPosition_ == 0 && sampleIndex_ == 0;
    if (atFirstCell) {
        const int64_t total = int64_t(baseDesign_) * int64_t(replications_);
        if (total > std::numeric_limits<int32_t>::max()) {
            errorText_ = kRepLatinTooLargeText;
            return -1.0f;
        }
        numSamples_ = total > 0 ? int32_t(total) : 0;
    }
    const int open = openGeneration(atFirstCell, store, factors);
    if (open < 0) return -1.0f;
    if (open == 0) {
        phase_ = 2;
        return progress_;
    }
    // The section lists one element per factor: a design made without the
    // panel (by the batch tool, say) gets its elements here.
    if (atFirstCell) synchroniseElements(factors);
    if (phase_ == 0 && !baseBlock(targetPercent, store, factors)) return -1.0f;
    if (phase_ == 1 && !replicates(targetPercent, store, factors)) return -1.0f;
    return progress_;
}

// Phase 0: the base block of m runs, one point per stratum in rising order
// for every stochastic factor, constants at their value.
int RepLatinSampler::baseBlock(float target, sampValues& store, FactorList& factors) {
    const int32_t m = baseDesign_;
    const int32_t count = numFactors_;
    while (progress_ < target && factorPosition_ < count) {
        const int f = factors.factorAt(factorPosition_);
        bool write = true;
        double value = 0.0;
        if (isStochastic(factors, f))
            value = LatinSampler::stratumPoint(uniformRandom(&randomState_), sampleIndex_, m);
        else if (isConstantFactor(factors, f))
            value = constantValue(factors, f);
        else
            write = false;
        if (!placeCell(store, factorPosition_ == 0, count, f, write, value, m)) return 0;
        progress_ = phasePercent(int64_t(factorPosition_) * m + sampleIndex_, int64_t(count) * m, 0.0f, 10.0f);
    }
    if (factorPosition_ == count) {
        factorPosition_ = 0;
        sampleIndex_ = 0;
        replicate_ = 0;
        scratch_.clear();
        phase_ = 1;
        progress_ = 10.0f;
    }
    return 1;
}

// The first cell's work of a replicate: the run table at the first, and the
// rank table it is re-ranked by.
int RepLatinSampler::openReplicate(FactorList& factors) {
    const int32_t m = baseDesign_, r = replications_;
    if (replicate_ == 0) {
        tableFactors_ = numFactors_;
        tableRanks_ = m;
        tableReplicates_ = r;
        runTable_.assign(size_t(numFactors_) * size_t(m) * size_t(r), 0);
    }
    std::string warning;
    if (factors.correlationMode == kImanConoverCorrelation) {
        // Each replicate its own ranks: the table's seed word comes from the
        // design's stream.
        const int32_t seed = int32_t(uniformRandom(&randomState_) * 30000.0);
        warning = ranks_.build(factors, m, m, 1, seed);
    } else if (factors.correlationMode == kSteinCorrelation && !ranks_.built()) {
        // One table for all replicates, ranked block by block of the
        // imported rows.
        warning = ranks_.build(factors, numSamples_, m, r);
    }
    if (warningText_.empty()) warningText_ = warning;
    replicateOpen_ = true;
    return 1;
}

// Appends the replicate just finished to the store: the next replicate
// starts from its rows and re-ranks them.
int RepLatinSampler::copyBlock(sampValues& store) {
    const int32_t m = baseDesign_;
    row_.resize(size_t(numFactors_));
    for (int32_t i = 0; i < m; ++i) {
        if (!store.getRow(replicate_ * m + i, row_.data()) || store.addRow(row_.data()) == 0) {
            errorText_ = store.errorText();
            return 0;
        }
    }
    return 1;
}

// Phase 1: replicate after replicate, each stochastic column of the block
// re-ranked; the rank each run took goes to the run table.
int RepLatinSampler::replicates(float target, sampValues& store, FactorList& factors) {
    const int32_t m = baseDesign_, r = replications_;
    const int64_t blockCells = int64_t(numFactors_) * m;
    while (phase_ == 1 && progress_ < target) {
        if (!replicateOpen_ && !openReplicate(factors)) return 0;
        RankedBlock block;
        block.ranks = &ranks_;
        block.firstRow = replicate_ * m;
        block.rows = m;
        block.rankRow = factors.correlationMode == kSteinCorrelation ? replicate_ * m : 0;
        block.shuffleUnranked = true;
        block.cellsBefore = blockCells * replicate_;
        block.phaseCells = blockCells * r;
        block.from = 10.0f;
        block.span = 40.0f;
        const int done = rerankBlock(target, store, factors, block);
        if (done < 0) return 0;
        if (done == 0) break;
        replicateOpen_ = false;
        if (replicate_ < r - 1) {
            if (factors.correlationMode == kImanConoverCorrelation) ranks_.release();
            if (!copyBlock(store)) return 0;
            ++replicate_;
        } else {
            ranks_.release();
            row_.clear();
            phase_ = 2;
            progress_ = 50.0f;
        }
    }
    return 1;
}

// ------------------------------------------------------------ section

void RepLatinSampler::writeItems(std::ostream& out) const {
    out << seed_ << '\n'
        << numSamples_ << '\n'
        << numFactors_ << '\n'
        << choice_ << '\n'
        << baseDesign_ << '\n'
        << replications_ << '\n';
    for (int32_t i = 0; i < numFactors_; ++i) {
        if (i < elementCount())
            out << elements_[size_t(i)].flag << '\t' << elements_[size_t(i)].name << '\n';
        else
            out << -1 << '\t' << '\n';
    }
    // A run table of other sizes than the section's belongs to another
    // design: zeros stand in its place, as for none.
    const bool table = !runTable_.empty() && tableFactors_ == numFactors_ && tableRanks_ == baseDesign_ &&
                       tableReplicates_ == replications_;
    std::string line;
    for (int32_t f = 0; f < numFactors_; ++f) {
        for (int32_t j = 0; j < baseDesign_; ++j) {
            line.clear();
            const int32_t* runs = table ? runOf(f, j) : nullptr;
            for (int32_t k = 0; k < replications_; ++k) {
                line += std::to_string(runs ? runs[k] : 0);
                line += '\t';
            }
            line += '\n';
            out << line;
        }
    }
}

void RepLatinSampler::restoreDefaults() {
    reset();
    methodName_ = nameOf(methodId_);
    numSamples_ = 0;
    numFactors_ = 0;
    seed_ = 5648423;
    randomState_ = -seed_;
    choice_ = 0;
    baseDesign_ = 1;
    replications_ = 1;
    elements_.clear();
}

void RepLatinSampler::readItems(std::istream& in) {
    reset();
    auto failed = [&] {
        restoreDefaults();
        in.setstate(std::ios::failbit);
    };
    int32_t seed = 0, samples = 0, factors = 0, choice = 0, m = 0, r = 0;
    if (!(in >> seed >> samples >> factors >> choice >> m >> r) || m < 1 || factors <= 0) return failed();
    const int64_t lines = int64_t(factors) * int64_t(m);
    if (!countFitsInput(in, factors, 2)) return failed();
    skipLine(in);
    std::vector<RepElement> elements;
    std::string line;
    for (int32_t i = 0; i < factors; ++i) {
        RepElement element;
        if (!readLineInBuffer(in, line, kElementLineBytes) || !parseElement(line, element)) return failed();
        elements.push_back(std::move(element));
    }

    std::vector<int32_t> table;
    if (r >= 1) {
        if (lines > std::numeric_limits<int64_t>::max() / r || !countFitsInput(in, lines * r, 2)) return failed();
        // Grows with what is read: an absurd count in a short file costs
        // nothing.
        int32_t run = 0;
        for (int64_t i = 0; i < lines * r; ++i) {
            if (!(in >> run)) return failed();
            table.push_back(run);
        }
    } else {
        // Lines without numbers. The last one's end is left for the record's
        // reader, which reads away the rest of the section's last line.
        if (!countFitsInput(in, lines - 1, 1)) return failed();
        for (int64_t i = 0; i + 1 < lines; ++i)
            if (!passLine(in)) return failed();
    }
    seed_ = seed;
    randomState_ = -seed;
    numSamples_ = samples;
    numFactors_ = factors;
    choice_ = choice;
    baseDesign_ = m;
    replications_ = r;
    elements_.swap(elements);
    // The writer puts zeros where there was no table. In a design of more
    // than one run a stochastic factor's lists name every run of a
    // replicate once, so a real table is never all zeros: such a block reads
    // as none.
    const bool onlyZeros = std::all_of(table.begin(), table.end(), [](int32_t run) { return run == 0; });
    if (r >= 1 && !(onlyZeros && int64_t(m) * r > 1)) {
        runTable_.swap(table);
        tableFactors_ = factors;
        tableRanks_ = m;
        tableReplicates_ = r;
    }
}

}  // namespace tarvex
