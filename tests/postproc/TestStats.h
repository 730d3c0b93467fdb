#pragma once
// A statistics class for the tests of the post-processor's file and
// configuration: no computation, only the record layout of the base, with
// the slot count, separator after the kind and group lines chosen per test.
#include <memory>

#include "postproc/SensitivityStats.h"

namespace tarvex::test {

struct LayoutStats : SensitivityStats {
    static inline int32_t slots = 2;
    static inline bool groups = false;
    static inline const char* separatorAfterKind = kSlotSeparator;
    static inline int32_t madeId = 1;  // the typeId make() gives

    explicit LayoutStats(int32_t id = 1) : SensitivityStats(id) {}
    int compute(PrepConfiguration&, OutputTable&) override { return 0; }
    std::unique_ptr<SensitivityStats> clone() const override { return std::make_unique<LayoutStats>(*this); }
    void writeTable(std::ostream& out, const ResultTableRequest& request) const override {
        writeSheet(out, request, 0);
    }

    static std::unique_ptr<SensitivityStats> make() { return std::make_unique<LayoutStats>(madeId); }

protected:
    int32_t slotCount(const IndexRecord&) const override { return slots; }
    const char* kindSeparator() const override { return separatorAfterKind; }
    bool recordsHaveGroups() const override { return groups; }
};

}  // namespace tarvex::test
