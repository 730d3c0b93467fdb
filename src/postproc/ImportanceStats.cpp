#include "postproc/ImportanceStats.h"

#include <cstdio>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "postproc/OutputTable.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RepLatinSampler.h"

namespace tarvex {

namespace {

std::string formatted(const char* format, int32_t a, int32_t b) {
    char text[200];
    std::snprintf(text, sizeof text, format, a, b);
    return text;
}

}  // namespace

int ImportanceStats::compute(PrepConfiguration& configuration, OutputTable& outputs) {
    errorText = "No errors";
    auto fail = [this](std::string text) {
        clear();
        errorText = std::move(text);
        return 0;
    };
    const auto* design = dynamic_cast<const RepLatinSampler*>(configuration.sampler.get());
    if (design == nullptr) return fail(kNotRepLatinDesignText);
    if (!design->runListsAvailable()) {
        clear();
        return 1;
    }
    if (!variablesFit(outputs)) return fail(errorText);
    const int32_t n = design->numSamples();
    const int32_t levels = design->baseDesign();
    const int32_t replicates = design->replications();
    if (n < 1 || n > outputs.rowCount()) return fail(formatted(kImportanceRunsFormat, outputs.rowCount(), n));

    std::vector<IndexRecord> made = factorRecords(configuration.factors, size_t(variableCount));
    // Every list of every uncertain factor, checked before anything is
    // computed: level l of the k-th uncertain factor at lists[k * L + l].
    std::vector<const int32_t*> lists;
    for (int32_t f = 0; f < int32_t(made.size()); ++f) {
        if (made[size_t(f)].kind != kUncertainFactor) continue;
        for (int32_t l = 0; l < levels; ++l) {
            const int32_t* runs = design->runOf(f, l);
            // A factor the design made no lists for: the lists belong to
            // another factor list.
            if (runs == nullptr) {
                clear();
                return 1;
            }
            for (int32_t k = 0; k < replicates; ++k)
                if (runs[k] < 0 || runs[k] >= n) return fail(formatted(kImportanceRunListFormat, runs[k], n));
            lists.push_back(runs);
        }
    }
    records = std::move(made);
    factorCount = int32_t(records.size());

    const double runs = double(n);
    const double perLevel = double(replicates);
    // Formed in 32-bit integers as the measure has always done, wrapping
    // like them (through unsigned arithmetic, which wraps by definition).
    const int32_t divisor = int32_t(uint32_t(replicates) * uint32_t(replicates) * uint32_t(levels));
    std::vector<double> y(static_cast<size_t>(n));
    std::vector<double> means(static_cast<size_t>(levels));
    for (int32_t v = 0; v < variableCount; ++v) {
        if (!outputs.column(v, n, y.data())) return fail(outputs.errorText());
        double sum = 0.0;
        for (const double x : y) sum += x;
        const double m = sum / runs;
        double squares = 0.0;
        for (const double x : y) squares += (x - m) * (x - m);
        const double w = squares / runs;

        const int32_t* const* list = lists.data();
        for (IndexRecord& record : records) {
            if (record.kind != kUncertainFactor) continue;
            double u = 0.0;
            for (int32_t l = 0; l < levels; ++l) {
                double c = 0.0;
                for (int32_t k = 0; k < replicates; ++k) c += y[size_t(list[l][k])];
                c /= perLevel;
                means[size_t(l)] = c;
                u += (c - m) * (c - m);
            }
            u /= double(levels);
            double g = 0.0;
            for (int32_t l = 0; l < levels; ++l) {
                const double c = means[size_t(l)];
                for (int32_t k = 0; k < replicates; ++k) {
                    const double d = y[size_t(list[l][k])] - c;
                    g += d * d;
                }
            }
            record.values[size_t(v)] = (u - g / double(divisor)) / w;
            list += levels;
        }
    }
    computed = 1;
    return 1;
}

void ImportanceStats::writeTable(std::ostream& out, const ResultTableRequest& request) const {
    out << kImportanceTableTitle;
    writeSheet(out, request, 0);
}

}  // namespace tarvex
