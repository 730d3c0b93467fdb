#pragma once
// The post-processor's part of a project: the model outputs with their
// weights, the variables chosen for analysis (output names, outputs at a
// time, expressions over outputs), the last sensitivity result, whose class
// follows the sampling method, and the last uncertainty statistics.
//
// Its text (the Vels record), line by line:
//   number of selected variables, then one line each
//   number of outputs, then per output a name line and a weight line
//   the post-processor directory (empty line if none)
//   the sensitivity block (SensitivityStats), or "-1" without one
//   the uncertainty block (UaStats)
#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "postproc/OutputTable.h"
#include "postproc/SensitivityStats.h"
#include "postproc/UaStats.h"
#include "postproc/VelsOutputRecord.h"

namespace tarvex {

class VelsConfiguration {
public:
    VelsConfiguration() = default;
    // Deep copies: the sensitivity object keeps its class.
    VelsConfiguration(const VelsConfiguration& other);
    VelsConfiguration& operator=(const VelsConfiguration& other);
    VelsConfiguration(VelsConfiguration&&) noexcept = default;
    VelsConfiguration& operator=(VelsConfiguration&&) noexcept = default;
    ~VelsConfiguration() = default;

    // Clears everything, then lists `count` outputs named by `names` (cut to
    // the record's length; missing names are empty), each of weight 1.0. A
    // negative count leaves the object cleared.
    void setOutputs(int32_t count, const std::vector<std::string>& names);
    void clear();

    // Appends a copy of `text` and marks the selection changed. A text the
    // file could not give back (a line break, more than 4095 characters) is
    // refused with 0.
    [[nodiscard]] int addVariable(const std::string& text);
    // 0 for an index out of range.
    [[nodiscard]] int removeVariable(int32_t index);
    void clearVariables();
    // Only a weight of zero or more, only for an existing output; 0 otherwise
    // (NaN included), the weight unchanged.
    [[nodiscard]] int setWeight(int32_t index, double value);

    // A new, empty object of the class that serves sampling method `method`
    // (none when the method has no class).
    void prepareSensitivity(int32_t method);
    // A deep copy of `other`, of the same class.
    void adoptSensitivity(const SensitivityStats& other);

    int32_t outputCount() const { return static_cast<int32_t>(outputs.size()); }

    // The Vels record. read() works on a temporary and changes this object
    // only when the whole record was read; a failure is the stream's fail
    // state. The directory line is handed to the remembered directories as
    // soon as it is read.
    void write(std::ostream& out) const;
    void read(std::istream& in);

    std::unique_ptr<SensitivityStats> sensitivity;
    std::vector<std::string> selectedVariables;
    UaStats uncertainty;
    std::vector<VelsOutputRecord> outputs;
    OutputTable workTable;
    int32_t dirty = 0;
};

}  // namespace tarvex
