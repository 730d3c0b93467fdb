#pragma once
// Replicated Latin hypercube, the design of importance measures (McKay,
// "Evaluating prediction uncertainty", NUREG/CR-6311, 1995): a base Latin
// hypercube of m runs, then r replicates of it in which every factor keeps the
// same m values in another order. The sample has m * r runs, replicate after
// replicate.
//
// Two phases: 0-10 the base block (one point per stratum, in rising order;
// constants take their value), 10-50 the replicates, each stochastic column
// of a replicate re-ranked in list order. Iman-Conover correlation (mode 1)
// draws a fresh rank table per replicate, seeded from the stream; a Stein
// sample (mode 3) gives each replicate the ranks of its own block of the
// imported rows. Without rank correlation (modes 0 and 2) every column of a
// replicate is a random permutation.
//
// `runTable` records, for factor f and value rank j (rising), the run of each
// replicate at which f took its j-th smallest value: the importance measures
// compare the means of the output over those runs.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sampling/DesignColumns.h"
#include "sampling/Sampler.h"

namespace tarvex {

inline constexpr const char* kIndexOutOfRangeText = "index out of range";
inline constexpr const char* kChoiceGeneratesNothingText =
    "A selection of elements generates no samples: switch it off to generate the replicated design.";

// One factor as the element list shows it: flag 0 or 1 for a stochastic factor
// (toggled by the user), -1 for any other.
struct RepElement {
    std::string name;
    int32_t flag = -1;
};

class RepLatinSampler : public Sampler {
public:
    RepLatinSampler();
    RepLatinSampler(const RepLatinSampler& other);

    [[nodiscard]] float generate(float targetPercent, sampValues& store, FactorList& factors) override;
    // Sets the count only when it is positive.
    [[nodiscard]] int setNumFactors(int32_t count) override;
    // Counters, phase, replicate and run table back to the start; the random
    // stream is not restarted, so a second generation continues it.
    void reset() override;
    std::unique_ptr<Sampler> clone() const override { return std::make_unique<RepLatinSampler>(*this); }
    void readItems(std::istream& in) override;

    // m above 0 resets and sets; anything else is refused.
    [[nodiscard]] int setBaseDesign(int32_t m);
    // r below 1 resets first; r is set in any case.
    int setReplications(int32_t r);
    void setChoice(int32_t choice) { choice_ = choice; }

    int32_t baseDesign() const { return baseDesign_; }
    int32_t replications() const { return replications_; }
    int32_t choice() const { return choice_; }
    int32_t phase() const { return phase_; }
    int32_t replicate() const { return replicate_; }

    // Elements. Out of range: flag -2, name null, and a change fails with
    // "index out of range".
    int32_t elementCount() const { return int32_t(elements_.size()); }
    int32_t elementFlag(int32_t i) const;
    const char* elementName(int32_t i) const;
    [[nodiscard]] int setElementFlag(int32_t i, int32_t flag);
    [[nodiscard]] int setElementName(int32_t i, const std::string& name);
    void addElement(const std::string& name, int32_t flag) { elements_.push_back(RepElement{name, flag}); }
    // One element per factor of the list: a stochastic factor already known
    // by name keeps its flag, a new one gets 0, every other factor -1.
    void synchroniseElements(const FactorList& factors);

    // The r run numbers at which `factor` took its value of rank `valueRank`,
    // one per replicate; null when there is no run table or the pair is
    // outside it.
    const int32_t* runOf(int32_t factor, int32_t valueRank) const;
    // Whether the run lists belong to this design: a run table made (or
    // read) with the present factor count, base design and replications.
    // Without it the importance measures have nothing to compare.
    bool runListsAvailable() const;

protected:
    void writeItems(std::ostream& out) const override;
    void rankPlaced(int32_t factor, int32_t rank, int32_t row) override;

private:
    [[nodiscard]] int baseBlock(float target, sampValues& store, FactorList& factors);
    [[nodiscard]] int replicates(float target, sampValues& store, FactorList& factors);
    [[nodiscard]] int openReplicate(FactorList& factors);
    [[nodiscard]] int copyBlock(sampValues& store);
    void restoreDefaults();

    int32_t baseDesign_ = 1;
    int32_t replications_ = 1;
    int32_t phase_ = 0;  // 0 base block, 1 replicates, 2 done
    int32_t replicate_ = 0;
    int32_t choice_ = 0;
    std::vector<RepElement> elements_;
    // By factor, value rank and replicate, with the sizes it was made with.
    std::vector<int32_t> runTable_;
    int32_t tableFactors_ = 0, tableRanks_ = 0, tableReplicates_ = 0;

    RankTable ranks_;
    bool replicateOpen_ = false;  // the first cell's work of this replicate is done
    std::vector<double> row_;     // a row on its way to the next replicate
};

}  // namespace tarvex
