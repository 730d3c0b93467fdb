// The factor file form of FactorList:
//
//   Default Truncations:
//   <left>\t<right>
//   (blank line)
//   <n> Distributions:
//   n factor records, each followed by a blank line
//   Correlation information
//   one line per factor (DependenceTree::write)
//   Correlation Matrix:
//   one line per matrix row, each number followed by a tab
//   Stein Information:
//   <Stein file name>
//   the Stein block (SteinSample::write)
//   <correlationMode>
//
// Numbers take the stream's own format: six significant digits in a fresh
// stream, so a save and load keeps values to six digits.
#include <istream>
#include <limits>
#include <ostream>

#include "correlation/FactorList.h"
#include "factors/FactorKinds.h"
#include "common/TextLines.h"
#include "factors/TruncatedDistribution.h"

namespace tarvex {

namespace {

// Type lines and section headers are short; a longer line is no such line.
constexpr std::size_t kHeaderLineBytes = 256;
// A path no longer than the system allows.
constexpr std::size_t kSteinFileNameMax = 4096;

// Skips white space (the ends of number lines, blank lines), then reads a
// line that must be `expected`.
bool readHeader(std::istream& in, const char* expected) {
    in >> std::ws;
    std::string line;
    if (!readLineInBuffer(in, line, kHeaderLineBytes)) return false;
    if (line != expected) {
        in.setstate(std::ios::failbit);
        return false;
    }
    return true;
}

} // namespace

void FactorList::write(std::ostream& out) const {
    out << "Default Truncations:\n"
        << TruncatedDistribution::defaultLeftTruncation() << '\t' << TruncatedDistribution::defaultRightTruncation()
        << "\n\n";
    out << factors_.size() << " Distributions:\n";
    for (const auto& f : factors_) {
        f->write(out);
        out << '\n';
    }
    out << "Correlation information\n";
    tree_.write(out);
    out << "Correlation Matrix:\n";
    const int n = matrixSize();
    for (int r = 0; r < n; ++r) {
        for (int c = 0; c < n; ++c) out << matrixValue(r, c) << '\t';
        out << '\n';
    }
    out << "Stein Information:\n" << steinFileName << '\n';
    steinInfo.write(out);
    out << correlationMode << '\n';
}

int FactorList::read(std::istream& in) {
    if (factorCount() > 0) clear();
    std::string line;
    if (!readLineInBuffer(in, line, kHeaderLineBytes)) return 0;  // "Default Truncations:"
    double left = 0.0, right = 0.0;
    if (!(in >> left >> right)) return 0;
    // Through the checking setter: defaults outside 0 < left < right < 1 are
    // ignored.
    (void)TruncatedDistribution::setDefaultTruncations(left, right);

    long count = 0;
    if (!(in >> count)) return 0;
    skipLine(in);  // " Distributions:"
    for (long k = 0; k < count; ++k) {
        std::string type;
        if (!readLineInBuffer(in, type, kHeaderLineBytes)) {
            // The file ended before the announced number of records: keep
            // those read and go on with the correlation part.
            if (in.eof() && type.empty()) break;
            return 0;
        }
        std::unique_ptr<Factor> factor = newReadableFactor(type);
        if (!factor) {
            in.setstate(std::ios::failbit);
            return 0;
        }
        if (!factor->read(in)) return 0;
        appendFactor(std::move(factor));
        // The end of the data line and the blank line behind the record.
        skipLine(in);
        skipLine(in);
    }
    return readCorrelationPart(in);
}

// A file that ends right after its factor records is complete: the factors
// keep their fresh correlation data. Once the correlation part begins it must
// be whole, down to the correlation mode.
int FactorList::readCorrelationPart(std::istream& in) {
    if (in.fail()) in.clear(in.rdstate() & ~std::ios::failbit);
    in >> std::ws;
    if (in.eof() || in.peek() == std::char_traits<char>::eof()) {
        in.clear(in.rdstate() & ~std::ios::failbit);
        computeFactorOrder();
        return 1;
    }

    if (!readHeader(in, "Correlation information")) return 0;
    DependenceTree tree = tree_;
    if (!tree.read(in)) return 0;
    // Only factors with a distribution can be linked.
    for (int i = 0; i < factorCount(); ++i) {
        if (isCorrelatable(i) != 1 && tree.isLinked(i)) {
            in.setstate(std::ios::failbit);
            return 0;
        }
    }

    if (!readHeader(in, "Correlation Matrix:")) return 0;
    std::vector<std::vector<float>> matrix = matrix_;
    for (auto& row : matrix) {
        for (float& v : row) {
            if (!(in >> v)) return 0;
        }
    }

    if (!readHeader(in, "Stein Information:")) return 0;
    std::string fileName;
    if (!readLineUpTo(in, fileName, kSteinFileNameMax)) return 0;
    SteinSample stein;
    if (!stein.read(in)) return 0;
    int32_t mode = 0;
    if (!(in >> mode)) return 0;
    if (mode < kTreeCorrelation || mode > kSteinCorrelation) {
        in.setstate(std::ios::failbit);
        return 0;
    }
    // The rest of the mode's line; what follows belongs to the caller.
    in.ignore(std::numeric_limits<std::streamsize>::max(), '\n');

    tree_ = std::move(tree);
    matrix_ = std::move(matrix);
    steinFileName = std::move(fileName);
    steinInfo = std::move(stein);
    correlationMode = mode;
    computeFactorOrder();
    return 1;
}

} // namespace tarvex
