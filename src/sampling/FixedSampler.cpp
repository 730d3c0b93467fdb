#include "sampling/FixedSampler.h"

#include <cstdio>
#include <istream>
#include <ostream>

#include "common/TextLines.h"
#include "factors/Constant.h"
#include "factors/Discrete.h"
#include "factors/Distribution.h"
#include "factors/Relation.h"
#include "sampling/SamplerFactors.h"

namespace tarvex {

namespace {

// Relations see names as the value pass gives them: cut to 20 characters.
constexpr std::size_t kFactorNameField = 20;

}  // namespace

FixedSampler::FixedSampler() : Sampler(kFixedMethod, 5648423) {}

FixedSampler::FixedSampler(const FixedSampler& other) : Sampler(other), values_(other.values_) { Sampler::reset(); }

int FixedSampler::setNumFactors(int32_t count) {
    numFactors_ = count;
    values_.clear();
    if (!values_.allocate(count)) {
        errorText_ = values_.errorText();
        return 0;
    }
    return 1;
}

void FixedSampler::clearRows() {
    values_.clear();
    if (numFactors_ > 0) (void)values_.allocate(numFactors_);
}

int FixedSampler::addRow(const double* row) {
    if (values_.addRow(row) == 0) {
        errorText_ = values_.errorText();
        return 0;
    }
    return 1;
}

std::vector<double> FixedSampler::copyRow(int32_t i) {
    std::vector<double> row;
    if (i < 0 || i >= values_.rowCount()) return row;
    row.resize(size_t(values_.columnCount()));
    if (!values_.getRow(i, row.data())) row.clear();
    return row;
}

float FixedSampler::generate(float, sampValues& store, FactorList& factors) {
    if (progress_ >= 50.0f) return progress_;
    if (numSamples_ <= 0 || values_.rowCount() == 0) {
        errorText_ = kNoSamplesText;
        return -1.0f;
    }
    // Rows typed for another list would give a sample whose columns are not
    // its factors.
    if (values_.columnCount() != factors.factorCount()) {
        char text[160];
        std::snprintf(text, sizeof text, "The fixed samples have %d columns, the factor list %d factors.",
                      int(values_.columnCount()), factors.factorCount());
        errorText_ = text;
        return -1.0f;
    }
    if (!store.assign(values_)) {
        errorText_ = store.errorText();
        return -1.0f;
    }
    progress_ = 50.0f;
    return progress_;
}

int FixedSampler::startingRow(FactorList& factors, std::vector<double>& row, std::string& errorText) {
    const int count = factors.factorCount();
    row.assign(size_t(count), 0.0);
    std::vector<double> means(size_t(count), 0.0);
    for (int f = 0; f < count; ++f) {
        Factor* factor = factors.getFactor(f);
        if (isConstantFactor(factors, f)) {
            row[size_t(f)] = means[size_t(f)] = constantValue(factors, f);
            continue;
        }
        auto* distribution = dynamic_cast<Distribution*>(factor);
        if (!isStochastic(factors, f) || distribution == nullptr) continue;
        if (auto* discrete = dynamic_cast<Discrete*>(factor)) {
            row[size_t(f)] = discrete->discreteInverse(0.5);
        } else {
            distribution->clearTable();
            if (!distribution->prepareInverse()) {
                distribution->clearTable();
                char text[120];
                std::snprintf(text, sizeof text, "%s %d", kNoInverseText, f + 1);
                errorText = text;
                return 0;
            }
            row[size_t(f)] = distribution->inverse(0.5);
            distribution->clearTable();
        }
        means[size_t(f)] = distribution->mean();
    }
    std::vector<std::string> names(static_cast<size_t>(count));
    for (int f = 0; f < count; ++f) names[size_t(f)] = factors.getFactor(f)->name().substr(0, kFactorNameField);
    for (int f = 0; f < count; ++f) {
        if (factors.isRelation(f) != 1) continue;
        // Later relations may use earlier ones: each result joins the row.
        const double value = static_cast<Relation*>(factors.getFactor(f))->evaluate(count, names, means.data());
        row[size_t(f)] = means[size_t(f)] = value;
    }
    return 1;
}

void FixedSampler::writeItems(std::ostream& out) const {
    out << numSamples_ << '\n' << numFactors_ << '\n';
    // The store writes at ten digits; what follows keeps the stream's own.
    const std::streamsize precision = out.precision();
    values_.write(out);
    out.precision(precision);
}

void FixedSampler::readItems(std::istream& in) {
    int32_t samples = 0, factors = 0;
    if (in >> samples >> factors) {
        values_.read(in);
        if (in) {
            numSamples_ = samples;
            numFactors_ = factors;
            // The store's reader took its last line end; the record's reader
            // reads away the rest of the section's last line itself.
            in.unget();
            return;
        }
    }
    methodName_ = nameOf(methodId_);
    numSamples_ = 0;
    numFactors_ = 0;
    values_.clear();
    (void)values_.allocate(0);
    in.setstate(std::ios::failbit);
}

}  // namespace tarvex
