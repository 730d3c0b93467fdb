#include "model/ModelConfiguration.h"

#include <unistd.h>

#include "model/DataStream.h"
#include "common/WorkingFile.h"
#include "sampling/sampValues.h"

namespace tarvex {

ModelConfiguration::ModelConfiguration() {
    // Without a working file the results cannot be kept; every operation
    // that needs the file reports it.
    const int fd = createWorkingFile(&dataFile_);
    if (fd >= 0) ::close(fd);
    else dataFile_.clear();
}

ModelConfiguration::~ModelConfiguration() {
    if (!dataFile_.empty()) ::unlink(dataFile_.c_str());
}

ModelConfiguration::ModelConfiguration(const ModelConfiguration& other) : ModelConfiguration() { copyFrom(other); }

ModelConfiguration& ModelConfiguration::operator=(const ModelConfiguration& other) {
    if (this != &other) copyFrom(other);
    return *this;
}

void ModelConfiguration::swap(ModelConfiguration& other) noexcept {
    dataFile_.swap(other.dataFile_);
    executable_.swap(other.executable_);
    outputFile_.swap(other.outputFile_);
    internalModel_.swap(other.internalModel_);
    std::swap(kind_, other.kind_);
    std::swap(progress_, other.progress_);
    std::swap(nextRun_, other.nextRun_);
    std::swap(spreadsheet_, other.spreadsheet_);
    std::swap(runCount_, other.runCount_);
    outputNames_.swap(other.outputNames_);
    std::swap(runTimes_, other.runTimes_);
    std::swap(timeMode_, other.timeMode_);
    std::swap(failedRuns_, other.failedRuns_);
    errorText_.swap(other.errorText_);
}

void ModelConfiguration::copyFrom(const ModelConfiguration& other) {
    executable_ = other.executable_;
    outputFile_ = other.outputFile_;
    internalModel_ = other.internalModel_ ? std::make_unique<InternalModel>(*other.internalModel_) : nullptr;
    kind_ = other.kind_;
    progress_ = other.progress_;
    nextRun_ = other.nextRun_;
    spreadsheet_ = other.spreadsheet_;
    runCount_ = other.runCount_;
    outputNames_ = other.outputNames_;
    runTimes_ = other.runTimes_;
    timeMode_ = other.timeMode_;
    failedRuns_ = other.failedRuns_;
    errorText_ = other.errorText_;

    DataStream out(dataFile_, "wb");
    DataStream in(other.dataFile_, "rb");
    bool ok = static_cast<bool>(out);
    if (ok && in) {
        std::vector<char> buffer(1 << 16);
        std::size_t got = 0;
        while (ok && (got = in.readBytes(buffer.data(), buffer.size())) > 0) ok = out.writeBytes(buffer.data(), got);
    }
    if (!out.close() || !ok) errorText_ = "The results file cannot be written";
}

void ModelConfiguration::setExternal(const std::string& executable, const std::string& outputFile, int32_t spreadsheet) {
    executable_ = executable;
    outputFile_ = outputFile;
    spreadsheet_ = spreadsheet ? 1 : 0;
}

void ModelConfiguration::setInternalModel(std::unique_ptr<InternalModel> model) {
    internalModel_ = std::move(model);
    kind_ = kInternal;
}

void ModelConfiguration::clearInternalModel() {
    internalModel_.reset();
    kind_ = kExternal;
}

bool ModelConfiguration::truncateDataFile(int64_t bytes) const {
    if (dataFile_.empty()) return false;
    if (bytes == 0) {
        DataStream emptied(dataFile_, "wb");
        return emptied.close();
    }
    return ::truncate(dataFile_.c_str(), static_cast<off_t>(bytes)) == 0;
}

void ModelConfiguration::clearResults() {
    runCount_ = 0;
    outputNames_.clear();
    runTimes_.clear();
    timeMode_ = 0;
    nextRun_ = 0;
    progress_ = 0.0f;
    failedRuns_ = 0;
    // A file that cannot be emptied cannot be written either: the next writer says so.
    (void)truncateDataFile(0);
}

int ModelConfiguration::prepareInternalRun(int32_t runs) {
    clearResults();
    if (!internalModel_) {
        errorText_ = "No internal model";
        return 0;
    }
    runCount_ = runs < 0 ? 0 : runs;
    for (int k = 0; k < internalModel_->numOutputs(); ++k) outputNames_.push_back(internalModel_->outputName(k));
    runTimes_.assignUniform(runCount_, {0.0});
    return 1;
}

int ModelConfiguration::advanceInternalRun(sampValues& samples, float target) {
    if (!internalModel_) {
        errorText_ = "No internal model";
        return -1;
    }
    const int variables = internalModel_->numVariables();
    if (samples.columnCount() != variables || samples.rowCount() < runCount_) {
        errorText_ = "The number of model inputs differs from the number of factors in the generated sample";
        return -1;
    }
    const auto total = static_cast<uint32_t>(runCount_);
    auto percent = [&]() {
        if (nextRun_ >= total) return 100;
        // The float percentage may reach 100 before the last rows are done.
        const int p = static_cast<int>(progress_);
        return p < 100 ? p : 99;
    };
    if (nextRun_ >= total) return percent();

    DataStream out(dataFile_, "ab");
    if (!out) {
        errorText_ = "The results file cannot be written";
        return -1;
    }
    std::vector<double> outputs(static_cast<std::size_t>(outputCount()), 0.0);
    const bool finishing = target >= 100.0f;
    while (nextRun_ < total && (progress_ < target || finishing) && !(progress_ - 100.0 >= 1e-11)) {
        const double* row = samples.rowPointer(static_cast<int32_t>(nextRun_));
        bool ok = row != nullptr && internalModel_->evaluate(row, outputs.data()) != 0;
        if (!ok) {
            ++failedRuns_;
            std::fill(outputs.begin(), outputs.end(), 0.0);
        }
        if (!out.write(outputs.data(), outputs.size())) {
            errorText_ = "The results file cannot be written";
            return -1;
        }
        ++nextRun_;
        progress_ = static_cast<float>(static_cast<double>(nextRun_) / static_cast<double>(total) * 100.0);
    }
    if (!out.close()) {
        errorText_ = "The results file cannot be written";
        return -1;
    }
    return percent();
}

int64_t ModelConfiguration::runOffset(int32_t run) const {
    return runTimes_.pointsBefore(run) * static_cast<int64_t>(outputCount()) * static_cast<int64_t>(sizeof(double));
}

int ModelConfiguration::readRun(int32_t run, std::vector<double>& values) const {
    if (run < 0 || run >= runTimes_.runCount()) return 0;
    values.resize(static_cast<std::size_t>(runTimes_.count(run)) * static_cast<std::size_t>(outputCount()));
    DataStream in(dataFile_, "rb");
    return in && in.seek(runOffset(run)) && in.read(values.data(), values.size()) ? 1 : 0;
}

} // namespace tarvex
