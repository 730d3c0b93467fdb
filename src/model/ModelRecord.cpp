// The Model record: the text form of a ModelConfiguration inside project,
// post-processor and demonstration files.
#include <istream>
#include <limits>
#include <new>
#include <ostream>

#include "common/Environment.h"
#include "model/DataStream.h"
#include "model/ModelConfiguration.h"
#include "model/NameCharacters.h"
#include "common/TextLines.h"
#include "sampling/NumberText.h"

namespace tarvex {

namespace {

constexpr std::size_t kPathBuffer = 255;       // paths of up to 254 characters
constexpr std::size_t kDirectoryBuffer = 1024;  // directories of up to 1023
constexpr std::size_t kNameKept = 28;           // characters of an output name
constexpr std::size_t kNameLineMax = 4095;      // far above any name a record holds

// The first `limit` bytes of a name, not cutting a character in two.
std::string cutName(const std::string& name, std::size_t limit) {
    std::size_t end = 0;
    while (end < name.size()) {
        const std::size_t next = end + characterLength(name, end);
        if (next > limit) break;
        end = next;
    }
    return name.substr(0, end);
}

// Sets the stream to its default number format for the record and puts the
// caller's format back afterwards.
class DefaultNumberFormat {
public:
    explicit DefaultNumberFormat(std::ostream& out) : out_(out), flags_(out.flags()), precision_(out.precision()) {
        out.flags(std::ios::dec | std::ios::skipws);
        out.precision(6);
    }
    ~DefaultNumberFormat() {
        out_.flags(flags_);
        out_.precision(precision_);
    }
    DefaultNumberFormat(const DefaultNumberFormat&) = delete;
    DefaultNumberFormat& operator=(const DefaultNumberFormat&) = delete;

private:
    std::ostream& out_;
    std::ios::fmtflags flags_;
    std::streamsize precision_;
};

} // namespace

void ModelConfiguration::write(std::ostream& out) const {
    ClassicNumbers classic(out);
    DefaultNumberFormat format(out);
    out << executable_ << '\n' << outputFile_ << '\n' << kind_ << '\n' << spreadsheet_ << '\n';
    if (kind_ == kInternal) {
        // The record always holds a model after an internal kind.
        InternalModel empty;
        InternalModel copy = internalModel_ ? *internalModel_ : empty;
        copy.write(out);
    }
    out << runCount_ << '\n' << outputCount() << '\n';
    for (const std::string& name : outputNames_) out << name << '\n';
    out << timeMode_ << '\n';

    DataStream data(dataFile_, "rb");
    std::vector<double> row(static_cast<std::size_t>(outputCount()));
    bool dataOk = static_cast<bool>(data);
    for (int32_t r = 0; r < runCount_; ++r) {
        const int32_t points = runTimes_.count(r);
        const double* times = runTimes_.times(r);
        out << "Run " << r << '\n' << points << '\n';
        for (int32_t t = 0; t < points; ++t) {
            dataOk = dataOk && data.read(row.data(), row.size());
            if (!dataOk) {
                // Results that are not on disk cannot be written: the record
                // would claim values it does not have.
                out.setstate(std::ios::failbit);
                return;
            }
            out << "t=" << times[t] << '\t';
            for (double v : row) out << v << '\t';
            out << '\n';
        }
    }
    const RememberedDirectories& dirs = Environment::instance().directories();
    out << dirs.modelDirectory() << '\n' << dirs.modelOutputDirectory() << '\n';
}

// Running out of memory on a hostile record is a failed read, like any other.
void ModelConfiguration::read(std::istream& in) try {
    ClassicNumbers classic(in);
    internalModel_.reset();
    executable_.clear();
    outputFile_.clear();
    kind_ = kNoModel;
    spreadsheet_ = 0;
    clearResults();

    // The end of the line before the record.
    std::string line;
    if (!passLine(in)) return;
    if (!readLineInBuffer(in, executable_, kPathBuffer) || !readLineInBuffer(in, outputFile_, kPathBuffer)) return;
    if (!(in >> kind_ >> spreadsheet_)) return;
    if (kind_ == kInternal) {
        skipLine(in);
        internalModel_ = std::make_unique<InternalModel>();
        internalModel_->read(in);
        if (in.fail()) return;
    }
    int32_t runs = 0;
    int32_t outputs = 0;
    if (!(in >> runs)) return;
    if (runs < 0) return in.setstate(std::ios::failbit);
    if (!(in >> outputs)) return;
    if (outputs < 0) return in.setstate(std::ios::failbit);
    skipLine(in);
    for (int32_t k = 0; k < outputs; ++k) {
        if (!readLineUpTo(in, line, kNameLineMax)) return;
        outputNames_.push_back(cutName(line, kNameKept));
    }
    if (!(in >> timeMode_)) return;

    DataStream data(dataFile_, "wb");
    if (!data) return in.setstate(std::ios::failbit);
    std::vector<double> values(static_cast<std::size_t>(outputs));
    std::vector<double> times;
    for (int32_t r = 0; r < runs; ++r) {
        // The rest of the line before, then the "Run" line, whatever it says.
        if (!passLine(in) || !passLine(in)) return;
        int32_t points = 0;
        if (!(in >> points)) return;
        // A time point holds at least "=" and a number.
        if (points < 0 || !countFitsInput(in, points, 2)) return in.setstate(std::ios::failbit);
        // The times grow with what is read: the count is only a claim.
        times.clear();
        for (int32_t t = 0; t < points; ++t) {
            in.ignore(std::numeric_limits<std::streamsize>::max(), '=');
            double time = 0.0;
            if (!readNumber(in, time)) return;
            times.push_back(time);
            for (double& v : values)
                if (!readNumber(in, v)) return;
            if (!data.write(values.data(), values.size())) return in.setstate(std::ios::failbit);
        }
        runTimes_.append(times.data(), points);
        runCount_ = r + 1;
    }
    if (!data.close()) return in.setstate(std::ios::failbit);

    skipLine(in);
    std::string directory;
    if (!readLineInBuffer(in, directory, kDirectoryBuffer)) return;
    (void)Environment::instance().directories().setModelDirectory(directory);
    if (!readLineInBuffer(in, directory, kDirectoryBuffer)) return;
    (void)Environment::instance().directories().setModelOutputDirectory(directory);
} catch (const std::bad_alloc&) {
    clearResults();
    in.setstate(std::ios::failbit);
}

} // namespace tarvex
