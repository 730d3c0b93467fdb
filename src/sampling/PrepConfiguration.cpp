#include "sampling/PrepConfiguration.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <istream>
#include <limits>
#include <new>
#include <ostream>

#include "common/Environment.h"
#include "common/ParallelFor.h"
#include "factors/Discrete.h"
#include "factors/Distribution.h"
#include "common/AtomicFileWriter.h"
#include "common/TextLines.h"
#include "factors/Relation.h"
#include "sampling/SamplerFactors.h"

namespace tarvex {

namespace {

// Buffer sizes of the record's text lines: a line longer than the buffer
// allows fails the record.
constexpr std::size_t kMethodNameBytes = 101;
constexpr std::size_t kStatisticsTailBytes = 255;
constexpr std::size_t kPathBytes = 1025;
// Names are kept as in 21-byte fields.
constexpr std::size_t kFactorNameField = 20;

}  // namespace

PrepConfiguration::PrepConfiguration() = default;
PrepConfiguration::~PrepConfiguration() = default;

PrepConfiguration::PrepConfiguration(const PrepConfiguration& other)
    : factors(other.factors),
      sampler(other.sampler ? other.sampler->clone() : nullptr),
      samples(other.samples),
      sampleFile(other.sampleFile),
      sampleStatistics(other.sampleStatistics ? std::make_unique<SampleStatistics>(*other.sampleStatistics) : nullptr),
      hasStatistics(other.hasStatistics),
      external(other.external),
      errorText_(other.errorText_),
      factorNames_(other.factorNames_),
      nextFactor_(other.nextFactor_),
      nextRow_(other.nextRow_),
      percent_(other.percent_),
      warningText_(other.warningText_) {}

PrepConfiguration& PrepConfiguration::operator=(const PrepConfiguration& other) {
    if (this != &other) {
        PrepConfiguration copy(other);
        swap(copy);
    }
    return *this;
}

void PrepConfiguration::swap(PrepConfiguration& other) noexcept {
    factors.swap(other.factors);
    sampler.swap(other.sampler);
    std::swap(samples, other.samples);
    sampleFile.swap(other.sampleFile);
    sampleStatistics.swap(other.sampleStatistics);
    std::swap(hasStatistics, other.hasStatistics);
    std::swap(external, other.external);
    factorNames_.swap(other.factorNames_);
    std::swap(nextFactor_, other.nextFactor_);
    std::swap(nextRow_, other.nextRow_);
    errorText_.swap(other.errorText_);
    std::swap(percent_, other.percent_);
    warningText_.swap(other.warningText_);
}

void PrepConfiguration::setSamplerError(const std::string& text) {
    errorText_ = text;
    if (sampler) sampler->setErrorText(text);
}

// ------------------------------------------------------------ generation

void PrepConfiguration::prepareGeneration() {
    // An external sample is finished as it stands: there is nothing to
    // prepare, and emptying the store would lose data no generation can make
    // again.
    if (external == 1) return;
    samples.clear();
    factors.computeFactorOrder();
    const int count = factors.factorCount();
    factorNames_.assign(size_t(count), std::string());
    for (int i = 0; i < count; ++i) factorNames_[size_t(i)] = factors.getFactor(i)->name().substr(0, kFactorNameField);
    for (int i = 0; i < count; ++i)
        if (factors.isRelation(i) == 1) static_cast<Relation*>(factors.getFactor(i))->prepareRows(count, factorNames_);
    if (sampler) sampler->reset();
    nextFactor_ = -1;
    nextRow_ = 0;
    percent_ = 0;
    sampleStatistics.reset();
    hasStatistics = 0;
    errorText_ = kNoErrorsText;
    warningText_.clear();
}

int PrepConfiguration::generate(int target) {
    if (external == 1) return 100;
    if (!sampler) {
        errorText_ = "No sampling method selected";
        return -1;
    }
    // The design must be complete before the value pass starts, whatever
    // the target: a caller raising its target by one may pass 50 while the
    // sampler still stands just below it.
    if (target <= 50 || !sampler->finished()) {
        const float reached = sampler->generate(float(target < 50 ? target : 50), samples, factors);
        warningText_ = sampler->warningText();
        if (reached < 0.0f) {
            errorText_ = sampler->errorText();
            return -1;
        }
        if (target <= 50 || !sampler->finished()) return int(reached);
    }
    if (sampler->methodId() == kFixedMethod) return 100;
    return valuePass(target);
}

// Percent of the value pass after `done` of `cells` cells.
static int valuePercent(double done, double cells) { return int((done / cells + 1.0) * 50.0); }

// End of the chunk of the current column: the first row after which the
// percent reaches `target`, or the column's end.
int32_t PrepConfiguration::rowsForPercent(int target, int32_t rows, double cells) const {
    const double before = double(nextFactor_) * rows;
    if (valuePercent(before + rows, cells) < target) return rows;
    int32_t end = int32_t(std::ceil((double(target) / 50.0 - 1.0) * cells - before));
    end = std::clamp(end, nextRow_ + 1, rows);
    while (end > nextRow_ + 1 && valuePercent(before + end - 1, cells) >= target) --end;
    while (end < rows && valuePercent(before + end, cells) < target) ++end;
    return end;
}

int PrepConfiguration::valuePass(int target) {
    const int32_t count = factors.factorCount();
    const int32_t rows = samples.rowCount();
    if (nextFactor_ == -1) {
        nextFactor_ = 0;
        nextRow_ = 0;
        percent_ = 50;
    }
    const double cells = double(count) * double(rows);
    while (percent_ < target && nextFactor_ < count && rows > 0) {
        const int f = factors.factorAt(nextFactor_);
        Factor* factor = factors.getFactor(f);
        if (isStochastic(factors, f)) {
            auto* distribution = dynamic_cast<Distribution*>(factor);
            auto* discrete = dynamic_cast<Discrete*>(factor);
            if (distribution == nullptr) {
                nextRow_ = rows;
            } else {
                if (nextRow_ == 0 && discrete == nullptr) {
                    distribution->clearTable();
                    if (!distribution->prepareInverse()) {
                        char text[160];
                        std::snprintf(text, sizeof text, "%s %d %s",
                                      "I cannot calculate the inverse cumulative of factor", nextFactor_ + 1,
                                      ": generation aborted");
                        distribution->clearTable();
                        samples.clear();
                        setSamplerError(text);
                        return -1;
                    }
                }
                // The rows up to the next percent, through the store's column
                // window. The inverse is a pure function of u, so the rows of
                // the chunk are mapped on all processors at once.
                const int32_t end = rowsForPercent(target, rows, cells);
                const int32_t begin = nextRow_;
                chunk_.resize(size_t(end - begin));
                for (int32_t r = begin; r < end; ++r) {
                    if (!samples.getColumnValue(r, f, &chunk_[size_t(r - begin)])) {
                        setSamplerError(samples.errorText());
                        return -1;
                    }
                }
                double* cellsOfChunk = chunk_.data();
                parallelFor(end - begin, 4096, [=](int64_t from, int64_t to) {
                    if (discrete == nullptr) {
                        distribution->inverseMany(cellsOfChunk + from, to - from);
                        return;
                    }
                    for (int64_t i = from; i < to; ++i) cellsOfChunk[i] = discrete->discreteInverse(cellsOfChunk[i]);
                });
                for (int32_t r = begin; r < end; ++r) {
                    if (!samples.setColumnValue(r, f, chunk_[size_t(r - begin)])) {
                        setSamplerError(samples.errorText());
                        return -1;
                    }
                }
                nextRow_ = end;
            }
        } else if (factors.isRelation(f) == 1) {
            auto* relation = static_cast<Relation*>(factor);
            const int32_t end = rowsForPercent(target, rows, cells);
            for (; nextRow_ < end; ++nextRow_) {
                double* row = samples.rowPointer(nextRow_);
                if (row == nullptr) {
                    setSamplerError(samples.errorText());
                    return -1;
                }
                // Every other column of the row is final: relations come last.
                row[f] = relation->evaluateRow(row);
            }
        } else {
            nextRow_ = rows;  // constants were written by the sampler
        }
        if (nextRow_ >= rows) {
            if (auto* distribution = dynamic_cast<Distribution*>(factor)) distribution->clearTable();
            nextRow_ = 0;
            ++nextFactor_;
        }
        const int p = valuePercent(double(nextFactor_) * rows + nextRow_, cells);
        percent_ = nextFactor_ < count ? (p < 99 ? p : 99) : 100;
    }
    if (nextFactor_ >= count || rows == 0) percent_ = 100;
    if (percent_ < 100) return percent_;

    sampleStatistics = std::make_unique<SampleStatistics>();
    if (!sampleStatistics->compute(samples)) {
        setSamplerError(sampleStatistics->errorText());
        sampleStatistics.reset();
        return -1;
    }
    hasStatistics = 1;
    return 100;
}

void PrepConfiguration::cancelGeneration() {
    if (external == 1) return;  // never generated, nothing to cancel
    samples.clear();
    if (nextFactor_ >= 0) {
        if (auto* distribution = dynamic_cast<Distribution*>(factors.getFactor(factors.factorAt(nextFactor_))))
            distribution->clearTable();
    }
    nextFactor_ = -1;
    nextRow_ = 0;
    factorNames_.clear();
    sampleStatistics.reset();
    hasStatistics = 0;
}

// ------------------------------------------------------------ the Prep record

// A flag line of the record: 0 or 1, and nothing glued to it. "55.2" or
// "1x" would read as a number and leave the rest of the line to the next
// item, which then reads something else than what a save writes back.
static bool readFlag(std::istream& in, int32_t& flag) {
    int32_t value = -1;
    if (!(in >> value) || (value != 0 && value != 1)) return false;
    const int next = in.peek();
    if (next != std::char_traits<char>::eof() && !std::isspace(next)) return false;
    in.clear(in.rdstate() & ~std::ios::eofbit);
    flag = value;
    return true;
}

void PrepConfiguration::write(std::ostream& out) const {
    out << external << '\n';
    samples.write(out);
    // The store writes at ten digits; everything else at the stream's six.
    out.precision(6);
    // Statistics announced but absent would leave the record unreadable.
    const int32_t statistics = hasStatistics == 1 && !sampleStatistics ? 0 : hasStatistics;
    out << statistics << '\n';
    if (statistics == 1) sampleStatistics->write(out);
    factors.write(out);
    if (sampler) sampler->writeSection(out);
    out << Environment::instance().directories().prepDirectory() << '\n';
    out << sampleFile << "\n\n";
}

int PrepConfiguration::read(std::istream& in) {
    auto failed = [&in] {
        in.setstate(std::ios::failbit);
        return 0;
    };
    if (!readFlag(in, external)) return failed();
    // The store's reader also reads away the end of its last line.
    samples.read(in);
    if (!in) return 0;
    if (!readFlag(in, hasStatistics)) return failed();
    sampleStatistics.reset();
    std::unique_ptr<SampleStatistics> statistics;
    if (hasStatistics == 1) {
        statistics = std::make_unique<SampleStatistics>();
        statistics->read(in);
        if (!in) return failed();
    }
    // The end of the statistics' last line, or of the flag's own line when
    // there are none (a sample saved before generation, fixed samples).
    std::string tail;
    if (!readLineInBuffer(in, tail, kStatisticsTailBytes)) return failed();
    sampleStatistics = std::move(statistics);
    if (!factors.read(in) || !in) return failed();

    // A configuration saved before a method was chosen writes no method
    // section: the directory line follows the factors at once. A method
    // section opens with its number; a directory line is empty or a path,
    // and the remembered directories are absolute, so the first character
    // tells the two apart.
    const int next = in.peek();
    const bool hasSection = next == '-' || next == '+' || next == ' ' || next == '\t' ||
                            (next >= '0' && next <= '9');
    sampler.reset();
    if (hasSection) {
        int32_t methodId = -1;
        if (!(in >> methodId)) return 0;
        skipLine(in);
        std::string methodName;
        if (!readLineInBuffer(in, methodName, kMethodNameBytes)) return 0;
        std::unique_ptr<Sampler> method = Sampler::create(methodId);
        if (!method) return failed();
        method->readItems(in);
        sampler = std::move(method);
        if (!in) return 0;
        skipLine(in);  // the rest of the section's last line
    }
    std::string directory;
    if (!readLineInBuffer(in, directory, kPathBytes)) return 0;
    // Loading moves the current directory; it is remembered only if the
    // move succeeded.
    (void)Environment::instance().directories().setPrepDirectory(directory);
    // The second newline after the file name stays unread: it belongs to
    // whatever record follows.
    if (!readLineInBuffer(in, sampleFile, kPathBytes)) return 0;
    return 1;
}

int PrepConfiguration::writeSampleFile(const std::string& fileName) {
    if (!saveFileAtomically(fileName, [this](std::ostream& out) { write(out); })) {
        errorText_ = kWriteSamplesErrorText;
        return 0;
    }
    return 1;
}

// Running out of memory on a hostile file is a failed read, like any other.
int PrepConfiguration::readSampleFile(const std::string& fileName) try {
    std::ifstream in(fileName, std::ios::binary);
    PrepConfiguration loaded;
    if (!in || !loaded.read(in) || !in) {
        errorText_ = kReadSamplesErrorText;
        return 0;
    }
    swap(loaded);
    errorText_ = kNoErrorsText;
    return 1;
} catch (const std::bad_alloc&) {
    errorText_ = kReadSamplesErrorText;
    return 0;
}

}  // namespace tarvex
