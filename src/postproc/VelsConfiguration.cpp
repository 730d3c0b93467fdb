#include "postproc/VelsConfiguration.h"

#include <cmath>
#include <istream>
#include <new>
#include <ostream>

#include "common/Environment.h"
#include "common/TextLines.h"
#include "postproc/SensitivityClasses.h"
#include "postproc/StatsText.h"
#include "sampling/NumberText.h"

namespace tarvex {

VelsConfiguration::VelsConfiguration(const VelsConfiguration& other)
    : sensitivity(other.sensitivity ? other.sensitivity->clone() : nullptr),
      selectedVariables(other.selectedVariables),
      uncertainty(other.uncertainty),
      outputs(other.outputs),
      workTable(other.workTable),
      dirty(other.dirty) {}

VelsConfiguration& VelsConfiguration::operator=(const VelsConfiguration& other) {
    if (this != &other) {
        VelsConfiguration copy(other);
        *this = std::move(copy);
    }
    return *this;
}

void VelsConfiguration::clear() {
    sensitivity.reset();
    selectedVariables.clear();
    uncertainty = UaStats{};
    outputs.clear();
    workTable.clear();
    dirty = 0;
}

void VelsConfiguration::setOutputs(int32_t count, const std::vector<std::string>& names) {
    clear();
    if (count < 0) return;
    outputs.resize(static_cast<std::size_t>(count));
    for (std::size_t k = 0; k < outputs.size() && k < names.size(); ++k)
        outputs[k].name = fileLine(names[k], VelsOutputRecord::kNameMax);
}

int VelsConfiguration::addVariable(const std::string& text) {
    if (fileLine(text, kVelsTextMax) != text) return 0;
    selectedVariables.push_back(text);
    dirty = 1;
    return 1;
}

int VelsConfiguration::removeVariable(int32_t index) {
    if (index < 0 || static_cast<std::size_t>(index) >= selectedVariables.size()) return 0;
    selectedVariables.erase(selectedVariables.begin() + index);
    dirty = 1;
    return 1;
}

void VelsConfiguration::clearVariables() {
    selectedVariables.clear();
    dirty = 1;
}

int VelsConfiguration::setWeight(int32_t index, double value) {
    if (index < 0 || index >= outputCount() || !(value >= 0.0)) return 0;
    outputs[static_cast<std::size_t>(index)].weight = static_cast<float>(value);
    return 1;
}

void VelsConfiguration::prepareSensitivity(int32_t method) {
    sensitivity = createSensitivityForMethod(method);
}

void VelsConfiguration::adoptSensitivity(const SensitivityStats& other) {
    sensitivity = other.clone();
}

void VelsConfiguration::write(std::ostream& out) const {
    ClassicNumbers classic(out);
    SixDigits format(out);
    out << selectedVariables.size() << '\n';
    for (const std::string& text : selectedVariables) out << fileLine(text, kVelsTextMax) << '\n';
    out << outputCount() << '\n';
    for (const VelsOutputRecord& output : outputs) {
        out << fileLine(output.name, kVelsTextMax) << '\n';
        writeValue(out, output.weight);
        out << '\n';
    }
    out << fileLine(Environment::instance().directories().velsDirectory(), kVelsTextMax) << '\n';
    if (sensitivity)
        sensitivity->write(out);
    else
        out << "-1\n";
    uncertainty.write(out);
}

// Running out of memory on a hostile record is a failed read, like any other.
void VelsConfiguration::read(std::istream& in) try {
    ClassicNumbers classic(in);
    VelsConfiguration loaded;
    auto failed = [&in] { in.setstate(std::ios::failbit); };

    int32_t selected = 0;
    if (!(in >> selected)) return;
    // Each text is at least its line end.
    if (selected < 0 || !countFitsInput(in, selected, 1)) return failed();
    skipLine(in);
    std::string text;
    for (int32_t k = 0; k < selected; ++k) {
        if (!readLineUpTo(in, text, kVelsTextMax)) return;
        loaded.selectedVariables.push_back(text);
    }

    int32_t count = 0;
    if (!(in >> count)) return;
    // Outputs come from a run, which has at least one.
    if (count <= 0 || !countFitsInput(in, count, 3)) return failed();
    skipLine(in);
    for (int32_t k = 0; k < count; ++k) {
        VelsOutputRecord output;
        double weight = 0.0;
        if (!readLineUpTo(in, output.name, kVelsTextMax) || !readNumber(in, weight)) return;
        // No weight can be set below zero; a file that holds one is damaged.
        if (!(weight >= 0.0)) return failed();
        output.weight = static_cast<float>(weight);
        skipLine(in);
        loaded.outputs.push_back(std::move(output));
    }

    if (!readLineUpTo(in, text, kVelsTextMax)) return;
    (void)Environment::instance().directories().setVelsDirectory(text);

    int32_t typeId = -1;
    if (!(in >> typeId)) return;
    // A class this program does not know leaves no object; the uncertainty
    // block comes next.
    loaded.sensitivity = createSensitivity(typeId);
    if (loaded.sensitivity) {
        loaded.sensitivity->read(in);
        if (!in) return;
    }
    loaded.uncertainty.read(in);
    if (!in) return;
    *this = std::move(loaded);
} catch (const std::bad_alloc&) {
    in.setstate(std::ios::failbit);
}

}  // namespace tarvex
