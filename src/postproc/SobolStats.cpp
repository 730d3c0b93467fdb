#include "postproc/SobolStats.h"

#include <algorithm>
#include <cstdio>
#include <istream>
#include <limits>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "correlation/FactorList.h"
#include "factors/Factor.h"
#include "postproc/OutputTable.h"
#include "sampling/Combinations.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/SobolSampler.h"

namespace tarvex {

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Tables up to this many values of the analysed variables are read once
// and kept (32 MB); larger ones are read twice, for m and then by blocks.
constexpr int64_t kKeptValues = int64_t(1) << 22;

// What the analysis reads of the table: the working record of every
// variable and the centred base blocks, and one further block at a time.
class SobolBlocks {
public:
    SobolBlocks(OutputTable& outputs, int32_t variables, int32_t base)
        : outputs_(outputs), variables_(variables), base_(base), row_(size_t(outputs.columnCount())),
          m(size_t(variables)), aA(size_t(variables)), vA(size_t(variables)), aB(size_t(variables)),
          vB(size_t(variables)), c(size_t(variables)) {}

    // m over every run of the table, then blocks 0 and 1 with their means,
    // variances and C. False when the store refuses a row.
    bool open() {
        std::vector<double> sum(size_t(variables_), 0.0);
        const int32_t rows = outputs_.rowCount();
        const size_t width = size_t(variables_);
        if (int64_t(rows) * variables_ <= kKeptValues) kept_.reset(new double[size_t(rows) * width]);
        // With every column analysed, rows go straight to where they are kept.
        const bool direct = kept_ && variables_ == outputs_.columnCount();
        for (int32_t p = 0; p < rows; ++p) {
            double* y = direct ? kept_.get() + size_t(p) * width : row_.data();
            if (!outputs_.row(p, y)) return false;
            for (size_t v = 0; v < width; ++v) sum[v] += y[v];
            if (kept_ && !direct)
                for (size_t v = 0; v < width; ++v) kept_[size_t(p) * width + v] = y[v];
        }
        for (size_t v = 0; v < width; ++v) m[v] = sum[v] / rows;
        if (!read(0, dA) || !read(1, dB)) return false;
        const double b = base_;
        for (int32_t v = 0; v < variables_; ++v) {
            const double* ya = column(dA, v);
            const double* yb = column(dB, v);
            double sa = 0.0, sb = 0.0, cross = 0.0;
            for (int32_t r = 0; r < base_; ++r) {
                sa += ya[r];
                sb += yb[r];
                cross += ya[r] * yb[r];
            }
            const size_t i = size_t(v);
            aA[i] = sa / b;
            aB[i] = sb / b;
            c[i] = cross;
            double qa = 0.0, qb = 0.0;
            for (int32_t r = 0; r < base_; ++r) {
                const double da = ya[r] - aA[i], db = yb[r] - aB[i];
                qa += da * da;
                qb += db * db;
            }
            vA[i] = qa / b;
            vB[i] = qb / b;
        }
        return true;
    }

    // Block `block` as y - m, variable after variable, into dJ.
    bool readBlock(int64_t block) { return read(block, dJ); }

    // For variable v, the sums over the runs of the block read last of
    // (yJ - m)(yA - m) and of (yJ - m)(yB - m).
    void products(int32_t v, double& withA, double& withB) const {
        const double* a = column(dA, v);
        const double* b = column(dB, v);
        const double* j = column(dJ, v);
        double sa = 0.0, sb = 0.0;
        for (int32_t r = 0; r < base_; ++r) {
            sa += j[r] * a[r];
            sb += j[r] * b[r];
        }
        withA = sa;
        withB = sb;
    }

    const std::string& storeError() const { return outputs_.errorText(); }

private:
    const double* column(const std::vector<double>& block, int32_t v) const {
        return block.data() + size_t(v) * size_t(base_);
    }
    bool read(int64_t block, std::vector<double>& out) {
        out.resize(size_t(variables_) * size_t(base_));
        const int64_t first = block * base_;
        for (int32_t r = 0; r < base_; ++r) {
            const double* y = row_.data();
            if (kept_)
                y = kept_.get() + size_t(first + r) * size_t(variables_);
            else if (!outputs_.row(int32_t(first + r), row_.data()))
                return false;
            for (int32_t v = 0; v < variables_; ++v)
                out[size_t(v) * size_t(base_) + size_t(r)] = y[size_t(v)] - m[size_t(v)];
        }
        return true;
    }

    OutputTable& outputs_;
    int32_t variables_;
    int32_t base_;
    std::vector<double> row_;
    std::unique_ptr<double[]> kept_;  // the analysed columns, run after run, when small enough

public:
    std::vector<double> m, aA, vA, aB, vB, c;
    std::vector<double> dA, dB, dJ;
};

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) {
        if (!text.empty()) text += ',';
        text += name;
    }
    return text;
}

// First-and-total form over the records already made (one per factor).
void firstAndTotal(SobolBlocks& blocks, std::vector<IndexRecord>& records, int32_t variables, int32_t base,
                   int32_t k, bool& readFailed) {
    const double b = base;
    // First pass: blocks 2 .. k + 1, B with the factor from A.
    int64_t block = 2;
    for (IndexRecord& record : records) {
        if (record.kind != kUncertainFactor) continue;
        if (!blocks.readBlock(block)) {
            readFailed = true;
            return;
        }
        for (int32_t v = 0; v < variables; ++v) {
            const size_t i = size_t(v);
            double p = 0.0, q = 0.0;
            blocks.products(v, p, q);
            double* slot = &record.values[2 * i];
            slot[0] = blocks.vA[i] != 0.0 ? (p - blocks.c[i]) / (b * blocks.vA[i]) : 0.0;
            slot[1] = blocks.vB[i] != 0.0 ? 1.0 - (q / b - blocks.aB[i] * blocks.aB[i]) / blocks.vB[i] : 0.0;
        }
        ++block;
    }
    // Second pass: blocks k + 2 .. 2k + 1, A with the factor from B. Each
    // guard tests the other block's variance than the one it divides by, and
    // a failed guard leaves the first pass's value as it is: both kept as
    // users' results have always had them.
    block = int64_t(k) + 2;
    for (IndexRecord& record : records) {
        if (record.kind != kUncertainFactor) continue;
        if (!blocks.readBlock(block)) {
            readFailed = true;
            return;
        }
        for (int32_t v = 0; v < variables; ++v) {
            const size_t i = size_t(v);
            double p = 0.0, q = 0.0;
            blocks.products(v, q, p);
            double* slot = &record.values[2 * i];
            if (blocks.vA[i] != 0.0) slot[0] = (slot[0] + (p - blocks.c[i]) / (b * blocks.vB[i])) * 0.5;
            if (blocks.vB[i] != 0.0)
                slot[1] = (slot[1] + 1.0 - (q / b - blocks.aA[i] * blocks.aA[i]) / blocks.vA[i]) * 0.5;
        }
        ++block;
    }
}

// A term of the higher-order form: its factors by position among the
// uncertain ones.
struct Term {
    std::vector<int32_t> members;
};

// The earlier terms made of some of `members` (all proper, non-empty
// subsets, which come before it), in record order.
std::vector<int32_t> subTerms(const std::vector<int32_t>& members,
                              const std::map<std::vector<int32_t>, int32_t>& termOf) {
    std::vector<int32_t> found;
    const size_t s = members.size();
    const uint64_t all = (uint64_t(1) << s) - 1;
    std::vector<int32_t> part;
    for (uint64_t mask = 1; mask < all; ++mask) {
        part.clear();
        for (size_t i = 0; i < s; ++i)
            if (mask & (uint64_t(1) << i)) part.push_back(members[i]);
        const auto it = termOf.find(part);
        if (it != termOf.end()) found.push_back(it->second);
    }
    std::sort(found.begin(), found.end());
    return found;
}

}  // namespace

int SobolStats::compute(PrepConfiguration& configuration, OutputTable& outputs) {
    clear();
    errorText = kNoErrorsText;
    termCount = 0;
    if (outputs.rowCount() == 0) return 0;
    const auto fail = [this](const std::string& text) {
        records.clear();
        termCount = 0;
        errorText = text;
        return 0;
    };
    const auto* design = dynamic_cast<const SobolSampler*>(configuration.sampler.get());
    if (design == nullptr) return fail(kSobolNotSobolText);
    const int32_t base = design->baseSize();
    if (base < 1) return fail(kSobolBaseSizeText);
    const int32_t variables = variableCount;
    char text[256];
    if (variables < 1 || variables > outputs.columnCount()) {
        std::snprintf(text, sizeof text, "%d variables are to be analysed, the output table holds %d", variables,
                      outputs.columnCount());
        return fail(text);
    }

    const FactorList& list = configuration.factors;
    factorCount = list.factorCount();
    std::vector<std::string> uncertainNames;
    std::vector<std::string> names;
    std::vector<int32_t> kinds;
    for (int32_t f = 0; f < factorCount; ++f) {
        const Factor* factor = list.getFactor(f);
        names.push_back(factor->name());
        kinds.push_back(factorKindOf(factor->typeName()));
        if (kinds.back() == kUncertainFactor) uncertainNames.push_back(factor->name());
    }
    const int32_t k = int32_t(uncertainNames.size());
    extra = k;
    const bool firstForm = design->designKind() == 1;
    const int32_t order = design->order();
    slotMode = firstForm ? 1 : 3;
    maxOrder = firstForm ? 0 : order;

    // Sizes of the higher-order terms: up to the order, the last one left to
    // the complement when the order is k; none above k.
    const int32_t highest = std::min(order == k ? order - 1 : order, k);
    int64_t blockCount = 2;
    if (firstForm) {
        blockCount += 2 * int64_t(k);
    } else {
        for (int32_t s = 1; s <= highest; ++s) {
            const int64_t terms = binomial(k, s);
            blockCount = terms > INT64_MAX - blockCount ? INT64_MAX : blockCount + terms;
        }
    }
    const int64_t needed = blockCount > INT64_MAX / base ? INT64_MAX : blockCount * base;
    // The cheap design stops after the terms of up to k / 2 factors: a
    // larger term's block (B with the term's columns from A) is then read
    // through its complement's (B with the other columns from A), which
    // shares the term's columns with B instead of A.
    const int32_t half = std::max(k / 2, 1);
    bool cheap = false;
    if (needed > outputs.rowCount() && !firstForm && highest > half && highest < k) {
        int64_t cheapBlocks = 2;
        for (int32_t s = 1; s <= half; ++s) cheapBlocks += binomial(k, s);
        cheap = cheapBlocks <= outputs.rowCount() / base;
    }
    if (needed > outputs.rowCount() && !cheap) {
        std::snprintf(text, sizeof text,
                      "The Sobol design of %d factors and base size %d needs %lld runs, the output table holds %d", k,
                      base, static_cast<long long>(needed), outputs.rowCount());
        return fail(text);
    }

    SobolBlocks blocks(outputs, variables, base);
    if (!blocks.open()) return fail(blocks.storeError());
    bool readFailed = false;
    const size_t v2 = size_t(variables);

    if (firstForm) {
        for (int32_t f = 0; f < factorCount; ++f)
            records.push_back({names[size_t(f)], kinds[size_t(f)], std::vector<double>(2 * v2, 0.0), {names[size_t(f)]}});
        firstAndTotal(blocks, records, variables, base, k, readFailed);
        if (readFailed) return fail(blocks.storeError());
    } else {
        std::vector<int32_t> positions(size_t(std::max(k, 0)));
        for (int32_t i = 0; i < k; ++i) positions[size_t(i)] = i;
        std::vector<Term> terms;
        std::map<std::vector<int32_t>, int32_t> termOf;
        for (int32_t s = 1; s <= highest; ++s) {
            int64_t count = 0;
            const std::vector<int32_t> table = combinations(k, s, positions.data(), count);
            for (int64_t t = 0; t < count; ++t) {
                Term term;
                term.members.assign(table.begin() + t * s, table.begin() + (t + 1) * s);
                IndexRecord record;
                for (const int32_t p : term.members) record.groupNames.push_back(uncertainNames[size_t(p)]);
                record.name = joined(record.groupNames);
                record.kind = kUncertainFactor;
                record.values.assign(v2 * (s == 1 ? 3 : 2), 0.0);
                termOf.emplace(term.members, int32_t(terms.size()));
                terms.push_back(std::move(term));
                records.push_back(std::move(record));
            }
        }

        const double b = base;
        // The product term of the estimator, aA^2 + E with E = C / B - aA^2.
        std::vector<double> product(v2);
        for (size_t v = 0; v < v2; ++v) {
            const double e = blocks.c[v] / b - blocks.aA[v] * blocks.aA[v];
            product[v] = blocks.aA[v] * blocks.aA[v] + e;
        }
        // Closed values stay raw (P / B) until every term is done: later
        // terms subtract those of their sub-terms.
        std::vector<double> closed(records.size() * v2);
        for (size_t t = 0; t < records.size(); ++t) {
            const size_t s = terms[t].members.size();
            const bool fromComplement = cheap && s > size_t(half);
            int64_t block = int64_t(t) + 2;
            if (fromComplement) {
                std::vector<int32_t> rest;
                for (int32_t i = 0; i < k; ++i)
                    if (!std::binary_search(terms[t].members.begin(), terms[t].members.end(), i)) rest.push_back(i);
                block = int64_t(termOf.at(rest)) + 2;
            }
            if (!blocks.readBlock(block)) return fail(blocks.storeError());
            const double sign = s % 2 == 0 ? 1.0 : -1.0;
            const std::vector<int32_t> subs = s > 1 ? subTerms(terms[t].members, termOf) : std::vector<int32_t>{};
            IndexRecord& record = records[t];
            const size_t slots = s == 1 ? 3 : 2;
            for (int32_t vi = 0; vi < variables; ++vi) {
                const size_t v = size_t(vi);
                double p = 0.0, q = 0.0;
                blocks.products(vi, p, q);
                if (fromComplement) p = q;
                double* slot = &record.values[v * slots];
                closed[t * v2 + v] = p / b;
                double index = sign * product[v] + closed[t * v2 + v];
                if (s == 1) {
                    const double total = q / b;
                    slot[1] = blocks.vB[v] == 0.0 ? 0.0 : 1.0 - (total - blocks.aB[v] * blocks.aB[v]) / blocks.vB[v];
                } else {
                    for (const int32_t u : subs) {
                        const size_t su = terms[size_t(u)].members.size();
                        index += ((s - su) % 2 == 0 ? 1.0 : -1.0) * closed[size_t(u) * v2 + v];
                    }
                }
                slot[0] = blocks.vA[v] == 0.0 ? 0.0 : index / blocks.vA[v];
            }
        }
        // Closed indices, with no guard: a constant output gives 0 / 0.
        for (size_t t = 0; t < records.size(); ++t) {
            const size_t slots = terms[t].members.size() == 1 ? 3 : 2;
            for (size_t v = 0; v < v2; ++v)
                records[t].values[v * slots + slots - 1] = (closed[t * v2 + v] - product[v]) / blocks.vA[v];
        }
        if (order == k && k > 0) {
            IndexRecord last;
            last.groupNames = uncertainNames;
            last.name = joined(uncertainNames);
            last.kind = kUncertainFactor;
            // Two slots, the rest and 1.0, the closed index of all factors;
            // a single factor's term holds three by the file's rule, and
            // its total is 1.0 as well.
            const size_t slots = k == 1 ? 3 : 2;
            last.values.assign(v2 * slots, 1.0);
            for (size_t v = 0; v < v2; ++v) {
                double sum = 0.0;
                for (const IndexRecord& record : records) sum += record.values[v * size_t(slotCount(record))];
                last.values[v * slots] = 1.0 - sum;
            }
            records.push_back(std::move(last));
        }
    }
    termCount = int32_t(records.size());
    computed = 1;
    return 1;
}

int SobolStats::totalOrder(int32_t variable, double* values) const {
    if (slotMode == 1) return slotValues(1, variable, values);
    if (!computed || variable < 0 || variable >= variableCount) return 0;
    for (size_t r = 0; r < records.size(); ++r) {
        const IndexRecord& record = records[r];
        const size_t at = size_t(variable) * 3 + 1;
        values[r] = slotCount(record) == 3 && at < record.values.size() ? record.values[at] : kNaN;
    }
    return 1;
}

int SobolStats::closedIndex(int32_t variable, double* values) const {
    if (slotMode == 1 || !computed || variable < 0 || variable >= variableCount) return 0;
    for (size_t r = 0; r < records.size(); ++r) {
        const IndexRecord& record = records[r];
        const int32_t slots = slotCount(record);
        const size_t at = size_t(variable) * size_t(slots) + size_t(slots - 1);
        values[r] = at < record.values.size() ? record.values[at] : kNaN;
    }
    return 1;
}

void SobolStats::writeTable(std::ostream& out, const ResultTableRequest& request) const {
    if (slotMode == 1) {
        out << "Sobol First order indexes\n";
        writeSheet(out, request, 0);
        out << "\nSobol total order Indexes\n";
        writeSheet(out, request, 1);
        return;
    }
    out << "Sobol indexes\n";
    writeSheet(out, request, 0);
}

void SobolStats::writeHeader(std::ostream& out) const {
    out << factorCount << '\n'
        << extra << '\n'
        << variableCount << '\n'
        << maxOrder << '\n'
        << termCount << '\n'
        << slotMode << '\n';
}

void SobolStats::readHeader(std::istream& in) {
    in >> factorCount >> extra >> variableCount >> maxOrder >> termCount >> slotMode;
}

}  // namespace tarvex
