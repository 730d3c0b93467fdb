#include "app/LaunchRequest.h"

#include <fstream>
#include <string_view>

#include "app/BoundedLine.h"

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
    struct Label {
        const char* text;
        bool isImmediate;
        Kind kind;
        std::string LaunchRequest::*remembered;
    };
    static const Label labels[] = {
        {"Tarvex sample file:", true, Kind::TarvexSampleFile, nullptr},
        {"External sample file:", true, Kind::ExternalSampleFile, nullptr},
        {"Tarvex configuration file:", true, Kind::TarvexConfigurationFile, nullptr},
        {"Internal model:", false, Kind::TarvexSampleFile, &LaunchRequest::internalModel},
        {"External model executable:", false, Kind::TarvexSampleFile, &LaunchRequest::externalModelExecutable},
        {"External model output file:", false, Kind::TarvexSampleFile, &LaunchRequest::externalModelOutputFile},
    };
    std::string value;
    for (const Label& label : labels) {
        if (!valueAfter(line, label.text, value)) continue;
        if (value.empty()) return 0;
        if (label.isImmediate)
            immediate.push_back({label.kind, value});
        else
            this->*label.remembered = value;
        return 1;
    }
    return 0;
}

int LaunchRequest::read(const std::string& path) {
    *this = LaunchRequest();
    std::ifstream in(path);
    if (!in) return 0;
    std::string line;
    if (!readBoundedLine(in, line)) return 0;
    do {
        parseLine(line);
    } while (readBoundedLine(in, line));
    return 1;
}

}  // namespace tarvex
