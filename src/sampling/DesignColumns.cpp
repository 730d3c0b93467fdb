#include "sampling/DesignColumns.h"

#include "correlation/FactorList.h"
#include "correlation/ImanConover.h"
#include "correlation/SteinRanks.h"
#include "sampling/SamplerFactors.h"
#include "sampling/sampValues.h"

namespace tarvex {

int readColumn(sampValues& store, int32_t column, int32_t rows, std::vector<double>& out) {
    return readBlock(store, column, 0, rows, out);
}

int writeColumn(sampValues& store, int32_t column, const std::vector<double>& values) {
    return writeBlock(store, column, 0, values);
}

int readBlock(sampValues& store, int32_t column, int32_t firstRow, int32_t rows, std::vector<double>& out) {
    out.resize(size_t(rows > 0 ? rows : 0));
    for (int32_t r = 0; r < rows; ++r)
        if (!store.getColumnValue(firstRow + r, column, &out[size_t(r)])) return 0;
    return 1;
}

int writeBlock(sampValues& store, int32_t column, int32_t firstRow, const std::vector<double>& values) {
    for (size_t r = 0; r < values.size(); ++r)
        if (!store.setColumnValue(firstRow + int32_t(r), column, values[r])) return 0;
    return 1;
}

RankTable::RankTable() = default;
RankTable::~RankTable() = default;

std::string RankTable::build(const FactorList& factors, int32_t rows, int32_t blockRows, int32_t replicates,
                             int32_t imanConoverSeed) {
    release();
    built_ = true;
    if (factors.correlationMode == kSteinCorrelation) {
        const SteinSample& stein = factors.steinInfo;
        if (stein.empty()) return kSteinEmptyText;
        auto reader = [&stein](int32_t row, double* values) {
            for (int32_t c = 0; c < stein.columnCount(); ++c) values[c] = stein.value(row, c);
            return 1;
        };
        steinRanks_ = std::make_unique<SteinRanks>(reader, stein.rowCount(), stein.columnCount(), rows, blockRows,
                                                   replicates);
        if (!steinRanks_->isValid()) return steinRanks_->errorText();
        int32_t stochastic = 0;
        for (int f = 0; f < factors.factorCount(); ++f) stochastic += isStochastic(factors, f) ? 1 : 0;
        return stein.columnCount() < stochastic ? kSteinNarrowText : std::string();
    }
    imanConover_ = std::make_unique<ImanConover>(factors, rows, imanConoverSeed);
    return imanConover_->isValid() ? std::string() : std::string(kImanConoverFailedText);
}

void RankTable::release() {
    built_ = false;
    imanConover_.reset();
    steinRanks_.reset();
}

bool RankTable::usable(int32_t column) const {
    if (imanConover_) return imanConover_->isValid() && column >= 0 && column < imanConover_->factorCount();
    if (steinRanks_) return steinRanks_->isValid() && column >= 0 && column < steinRanks_->columnCount();
    return false;
}

int32_t RankTable::rankOf(int32_t column, int32_t row) const {
    if (imanConover_) return imanConover_->rankOf(column, row);
    if (steinRanks_) return steinRanks_->rankOf(column, row);
    return 0;
}

}  // namespace tarvex
