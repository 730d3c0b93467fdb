// The FAST method section of the sample file: the parameters, the groups
// with their elements, and the block table the analysis reads.
#include <istream>
#include <ostream>

#include "common/TextLines.h"
#include "sampling/FastSampler.h"

namespace tarvex {

namespace {

constexpr const char* kTableMarker = "group information";
constexpr size_t kNameChars = 80;

// The marker line, without taking its line end: the configuration's reader
// skips the rest of the section's last line, which is this one when no
// table follows. Anything longer than the marker is not the marker.
std::string markerLine(std::istream& in) {
    std::string line;
    while (line.size() <= kNameChars) {
        const int c = in.peek();
        if (c == std::char_traits<char>::eof() || c == '\n') break;
        line += char(in.get());
    }
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

}  // namespace

void FastSampler::writeItems(std::ostream& out) const {
    out << seed_ << '\n' << numSamples_ << '\n' << numFactors_ << '\n';
    out << numStochastic_ << '\n' << analysisMode_ << '\n';
    out << groupNames_.size() << " groups:\n";
    for (const std::string& name : groupNames_) out << name << '\n';
    out << elementNames_.size() << " elements in groups\n";
    for (size_t e = 0; e < elementNames_.size(); ++e) out << elementGroups_[e] << '\t' << elementNames_[e] << '\n';
    // A table whose size the reader would not count from the items above
    // could not be read back; the design it described is gone then.
    if (designTable_ && int64_t(designTable_->size()) == tableRows(numStochastic_)) {
        out << kTableMarker << '\n';
        for (const FastBlock& b : *designTable_)
            out << b.first << '\t' << b.second << '\t' << b.third << '\t' << b.fourth << '\n';
    } else {
        out << "no " << kTableMarker << '\n';
    }
}

void FastSampler::setDefaults() {
    methodName_ = nameOf(methodId_);
    numSamples_ = 0;
    numFactors_ = 0;
    seed_ = 1;
    randomState_ = -1;
    analysisMode_ = 0;
    groupNames_.clear();
    elementNames_.clear();
    elementGroups_.clear();
    numStochastic_ = 0;
    designTable_.reset();
    frequencies_.clear();
    phases_.clear();
}

void FastSampler::readItems(std::istream& in) {
    auto failed = [this, &in] {
        setDefaults();
        in.setstate(std::ios::failbit);
    };
    FastSampler read;
    int32_t seed = 0;
    if (!(in >> seed >> read.numSamples_ >> read.numFactors_ >> read.numStochastic_ >> read.analysisMode_) ||
        read.numStochastic_ < 0 || read.analysisMode_ < 0 || read.analysisMode_ > 2)
        return failed();

    int64_t groups = 0;
    if (!(in >> groups) || groups < 0 || !countFitsInput(in, groups, 1)) return failed();
    skipLine(in);  // " groups:"
    read.groupNames_.resize(size_t(groups));
    for (std::string& name : read.groupNames_)
        if (!readLineUpTo(in, name, kNameChars)) return failed();

    int64_t elements = 0;
    if (!(in >> elements) || elements < 0 || !countFitsInput(in, elements, 3)) return failed();
    skipLine(in);  // " elements in groups"
    read.elementNames_.resize(size_t(elements));
    read.elementGroups_.resize(size_t(elements));
    for (int64_t e = 0; e < elements; ++e) {
        int32_t& group = read.elementGroups_[size_t(e)];
        if (!(in >> group) || group < 0 || group >= groups) return failed();
        if (in.peek() == '\t') in.get();
        if (!readLineUpTo(in, read.elementNames_[size_t(e)], kNameChars)) return failed();
    }

    // Frequencies and phases are not kept: the analysis needs the table only.
    if (markerLine(in) == kTableMarker) {
        const int32_t rows = read.tableRows(read.numStochastic_);
        if (rows < 0 || !countFitsInput(in, rows, 8)) return failed();
        read.designTable_.emplace(size_t(rows));
        for (FastBlock& b : *read.designTable_)
            if (!(in >> b.first >> b.second >> b.third >> b.fourth)) return failed();
    }

    seed_ = seed;
    randomState_ = -seed;
    numSamples_ = read.numSamples_;
    numFactors_ = read.numFactors_;
    numStochastic_ = read.numStochastic_;
    analysisMode_ = read.analysisMode_;
    groupNames_ = std::move(read.groupNames_);
    elementNames_ = std::move(read.elementNames_);
    elementGroups_ = std::move(read.elementGroups_);
    designTable_ = std::move(read.designTable_);
    frequencies_.clear();
    phases_.clear();
}

}  // namespace tarvex
