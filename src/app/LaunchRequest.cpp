#include "app/LaunchRequest.h"

#include <fstream>
#include <string_view>
#include <utility>

#include "common/Environment.h"
#include "common/TextLines.h"

namespace tarvex {

namespace {

// The value behind `label` when the line starts with it, blanks after it skipped.
bool valueAfter(std::string_view line, std::string_view label, std::string& value) {
    if (!line.starts_with(label)) return false;
    std::string_view rest = line.substr(label.size());
    while (!rest.empty() && (rest.front() == ' ' || rest.front() == '\t')) rest.remove_prefix(1);
    value.assign(rest);
    return true;
}

}  // namespace

int LaunchRequest::parseLine(const std::string& line) {
    static const std::pair<const char*, Kind> immediateLabels[] = {
        {"Tarvex sample file:", Kind::TarvexSampleFile},
        {"External sample file:", Kind::ExternalSampleFile},
        {"Tarvex configuration file:", Kind::TarvexConfigurationFile},
    };
    static const std::pair<const char*, std::string LaunchRequest::*> rememberedLabels[] = {
        {"Internal model:", &LaunchRequest::internalModel},
        {"External model executable:", &LaunchRequest::externalModelExecutable},
        {"External model output file:", &LaunchRequest::externalModelOutputFile},
    };
    std::string value;
    for (const auto& [label, kind] : immediateLabels) {
        if (!valueAfter(line, label, value)) continue;
        if (value.empty()) return 0;
        immediate.push_back({kind, value});
        return 1;
    }
    for (const auto& [label, field] : rememberedLabels) {
        if (!valueAfter(line, label, value)) continue;
        if (value.empty()) return 0;
        this->*field = value;
        return 1;
    }
    return 0;
}

int LaunchRequest::read(const std::string& path) {
    *this = LaunchRequest();
    std::ifstream in(path);
    if (!in) return 0;
    std::string line;
    if (!readLineUpTo(in, line, kEnvironmentLineMax)) return 0;
    do {
        parseLine(line);
    } while (readLineUpTo(in, line, kEnvironmentLineMax));
    return 1;
}

}  // namespace tarvex
