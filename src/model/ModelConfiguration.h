#pragma once
// The project's model part: what is run (an internal model, an external
// executable, a spreadsheet, or only an output file to read) and what came
// out of it. The output values stay on disk in `dataFile`, a working file of
// 64-bit doubles in machine byte order, run after run, time point after time
// point, output after output; only the time points are kept in memory.
//
// Every configuration owns its own data file, created empty with the object
// and deleted with it; a copy copies the file's content into its own file.
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "model/InternalModel.h"
#include "model/RunTimes.h"

namespace tarvex {

class MessageSink;
class sampValues;

class ModelConfiguration {
public:
    // kind
    static constexpr int32_t kInternal = 0;
    static constexpr int32_t kExternal = 1;
    static constexpr int32_t kNoModel = 2;

    ModelConfiguration();
    ~ModelConfiguration();
    ModelConfiguration(const ModelConfiguration& other);
    ModelConfiguration& operator=(const ModelConfiguration& other);
    // Exchanges everything, the data files by name: each object still owns
    // (and deletes) one file, and no result is copied.
    void swap(ModelConfiguration& other) noexcept;

    const std::string& dataFile() const { return dataFile_; }
    const std::string& executable() const { return executable_; }
    const std::string& outputFile() const { return outputFile_; }
    int32_t kind() const { return kind_; }
    void setKind(int32_t kind) { kind_ = kind; }
    int32_t spreadsheet() const { return spreadsheet_; }
    void setSpreadsheet(int32_t spreadsheet) { spreadsheet_ = spreadsheet ? 1 : 0; }
    float progress() const { return progress_; }
    uint32_t nextRun() const { return nextRun_; }
    int32_t runCount() const { return runCount_; }
    int32_t outputCount() const { return static_cast<int32_t>(outputNames_.size()); }
    const std::vector<std::string>& outputNames() const { return outputNames_; }
    const RunTimes& runTimes() const { return runTimes_; }
    int32_t timeMode() const { return timeMode_; }
    const std::string& errorText() const { return errorText_; }

    InternalModel* internalModel() { return internalModel_.get(); }
    const InternalModel* internalModel() const { return internalModel_.get(); }

    // Sets these three fields only.
    void setExternal(const std::string& executable, const std::string& outputFile, int32_t spreadsheet);
    // Takes the model (null allowed), drops the previous one, kind becomes internal.
    void setInternalModel(std::unique_ptr<InternalModel> model);
    // Drops the model; kind becomes external.
    void clearInternalModel();

    // Forgets the recorded results: names, times, counts, the data file's
    // content. The model and the paths stay.
    void clearResults();

    // Readies an internal run over `runs` sample rows: the outputs are the
    // model's expressions of type 1, every run has the single time 0.0, the
    // run starts at row 0. Returns 0 without an internal model.
    [[nodiscard]] int prepareInternalRun(int32_t runs);

    // Evaluates rows from nextRun on, appending each row's outputs to the data
    // file, while progress (rows done over runCount, in percent) is under
    // `target`. Returns the percentage reached, truncated; 100 only once every
    // row is done, whatever the rounding of the percentage, so that a loop
    // that stops at 100 never leaves rows undone. The file is opened and
    // closed by every call, so a stopped run leaves a readable, shorter file.
    // A row the model fails on is counted in failedRuns() and written as
    // zeros, so that every run keeps its place. Returns -1 with errorText set
    // when nothing can be done: no model, a sample of the wrong width, or a
    // data file that cannot be written.
    [[nodiscard]] int advanceInternalRun(sampValues& samples, float target);
    int64_t failedRuns() const { return failedRuns_; }

    // Reads the model output file named by outputFile(); see ModelOutputReader.cpp.
    // Warnings and errors on names go to `messages`. Returns 1, or 0 for a
    // missing file or any breach of the format; after a failure the part holds
    // the names and the complete runs read so far.
    [[nodiscard]] int readModelOutput(MessageSink& messages);

    // The Model record. write() emits numbers at six significant digits (the
    // stream's default), so values reloaded from a record are rounded to six
    // digits. read() starts by dropping one line (the end of what went before),
    // clears the whole part, rebuilds the data file from the text, and passes
    // the two directory lines to the remembered directories; a failure is the
    // stream's failure state.
    void write(std::ostream& out) const;
    void read(std::istream& in);

    // The values of run `run`: count(run) * outputCount() doubles, time point
    // after time point. Returns 0 when the data file does not hold them.
    [[nodiscard]] int readRun(int32_t run, std::vector<double>& values) const;

private:
    void copyFrom(const ModelConfiguration& other);
    [[nodiscard]] bool truncateDataFile(int64_t bytes) const;
    int64_t runOffset(int32_t run) const;

    std::string dataFile_;
    std::string executable_;
    std::string outputFile_;
    std::unique_ptr<InternalModel> internalModel_;
    int32_t kind_ = kNoModel;
    float progress_ = 0.0f;
    uint32_t nextRun_ = 0;
    int32_t spreadsheet_ = 0;
    int32_t runCount_ = 0;
    std::vector<std::string> outputNames_;
    RunTimes runTimes_;
    int32_t timeMode_ = 0;
    int64_t failedRuns_ = 0;
    std::string errorText_;
};

// The validity check of the model selection. mode 2: only an output file is
// to be read, and it must be readable. mode 1: the executable must be
// readable, unless the model is the spreadsheet application (`spreadsheet`
// set, or the executable is the literal "Excel Application"); the output file
// need not exist yet. Returns 1 or 0.
[[nodiscard]] int checkModelFiles(const std::string& executable, const std::string& outputFile, int mode, int spreadsheet = 0);

} // namespace tarvex
