#include "app/ProjectConfiguration.h"

#include <filesystem>
#include <fstream>
#include <istream>
#include <new>
#include <ostream>

#include "common/AtomicFileWriter.h"
#include "common/TextLines.h"

namespace tarvex {

namespace {

constexpr const char* kPrepHeader = "Prep Configuration";
constexpr const char* kModelHeader = "Model Configuration";
constexpr const char* kVelsHeader = "Vels Configuration";
// Header lines are read into a 100-byte buffer.
constexpr std::size_t kHeaderBytes = 100;

// A header line, read like any other but, where `keepLineEnd` is set, without
// taking its line end: the Model record's reader begins by reading away the
// end of the line before it.
bool readHeader(std::istream& in, std::string& line, bool keepLineEnd) {
    if (!keepLineEnd) return readLineInBuffer(in, line, kHeaderBytes);
    line.clear();
    for (;;) {
        const int c = in.peek();
        if (c == std::char_traits<char>::eof()) {
            // The end of the input before any character fails, as a line read does.
            if (line.empty()) in.setstate(std::ios::failbit);
            return !line.empty();
        }
        if (c == '\n') break;
        if (line.size() + 1 >= kHeaderBytes) {
            in.setstate(std::ios::failbit);
            return false;
        }
        line += static_cast<char>(in.get());
    }
    if (!line.empty() && line.back() == '\r') line.pop_back();
    return true;
}

// The three parts with their flags, read together so that a load can fill a
// set of its own and hand it over whole.
struct Sections {
    PrepConfiguration& prep;
    ModelConfiguration& model;
    VelsConfiguration& vels;
    int32_t& hasPrep;
    int32_t& hasModel;
    int32_t& hasVels;
};

int readSections(std::istream& in, const Sections& s) {
    ClassicNumbers classic(in);
    std::string line;
    if (!readHeader(in, line, false)) return 0;
    s.hasPrep = 0;
    if (line == kPrepHeader) {
        if (!s.prep.read(in)) return 0;
        s.hasPrep = 1;
        // The empty line that ends the record.
        if (!passLine(in)) return 0;
    }
    if (!in) return 0;

    // The header's line end stays for the Model reader, so it is read apart
    // from the line when the header is the positive one.
    s.hasModel = 0;
    if (!readHeader(in, line, true)) return 0;
    if (line != kModelHeader && in.peek() == '\n') in.get();
    if (line == kModelHeader) {
        s.model.read(in);
        if (!in) return 0;
        s.hasModel = 1;
        if (!passLine(in)) return 0;
    }
    if (!in) return 0;

    s.hasVels = 0;
    if (!readHeader(in, line, false)) return 0;
    if (line == kVelsHeader) {
        s.vels.read(in);
        if (!in) return 0;
        s.hasVels = 1;
    }
    // A file that ends right after its last line is complete.
    return in.fail() ? 0 : 1;
}

// The path as it names the file from where we stand now: reading a project
// moves the current directory, and a relative name would then name another
// file at the next save.
std::string absolutePath(const std::string& path) {
    std::error_code ec;
    const std::filesystem::path absolute = std::filesystem::absolute(path, ec);
    return ec ? path : absolute.lexically_normal().string();
}

}  // namespace

ProjectConfiguration::ProjectConfiguration(Environment& environment) : configDat_(environment) {}

void ProjectConfiguration::write(std::ostream& out) const {
    ClassicNumbers classic(out);
    if (hasPrep == 1) {
        out << kPrepHeader << '\n';
        prep.write(out);
    } else {
        out << "No " << kPrepHeader << '\n';
    }
    // The Prep record leaves the stream at the store's ten digits; the other
    // records are at six.
    out.precision(6);
    if (hasModel == 1) {
        out << kModelHeader << '\n';
        model.write(out);
        out << '\n';
    } else {
        out << "No " << kModelHeader << '\n';
    }
    if (hasVels == 1) {
        out << kVelsHeader << '\n';
        vels.write(out);
    } else {
        out << "No " << kVelsHeader << '\n';
    }
}

int ProjectConfiguration::read(std::istream& in) try {
    return readSections(in, Sections{prep, model, vels, hasPrep, hasModel, hasVels});
} catch (const std::bad_alloc&) {
    in.setstate(std::ios::failbit);
    return 0;
}

// Running out of memory on a hostile file is a failed load, like any other.
int ProjectConfiguration::load(const std::string& path) try {
    const std::string name = absolutePath(path);
    std::ifstream in(name, std::ios::binary);
    if (!in) return 0;
    PrepConfiguration newPrep;
    ModelConfiguration newModel;
    VelsConfiguration newVels;
    int32_t newHasPrep = 0, newHasModel = 0, newHasVels = 0;
    if (!readSections(in, Sections{newPrep, newModel, newVels, newHasPrep, newHasModel, newHasVels})) return 0;
    // A part the file doesn't hold is the empty part, as a reset leaves it.
    if (newHasPrep == 1) prep.swap(newPrep);
    else resetPrep();
    if (newHasModel == 1) model.swap(newModel);
    else resetModel();
    if (newHasVels == 1) vels = std::move(newVels);
    else resetVels();
    hasPrep = newHasPrep;
    hasModel = newHasModel;
    hasVels = newHasVels;
    fileName_ = name;
    return 1;
} catch (const std::bad_alloc&) {
    return 0;
}

int ProjectConfiguration::save(const std::string& path) {
    fileName_ = absolutePath(path);
    return save();
}

int ProjectConfiguration::save() {
    if (!hasFile()) return 0;
    return saveFileAtomically(fileName_, [this](std::ostream& out) { write(out); });
}

void ProjectConfiguration::assign(const ProjectConfiguration& other) {
    if (this == &other) return;
    if (other.hasPrep == 1) setPrep(other.prep);
    else resetPrep();
    if (other.hasModel == 1) setModel(other.model);
    else resetModel();
    if (other.hasVels == 1) setVels(other.vels);
    else resetVels();
    fileName_ = other.fileName_;
}

void ProjectConfiguration::setPrep(const PrepConfiguration& p) {
    if (&p != &prep) prep = p;
    hasPrep = 1;
}

void ProjectConfiguration::setModel(const ModelConfiguration& m) {
    if (&m != &model) model = m;
    hasModel = 1;
}

void ProjectConfiguration::setVels(const VelsConfiguration& v) {
    if (&v != &vels) vels = v;
    hasVels = 1;
}

void ProjectConfiguration::resetPrep() {
    PrepConfiguration empty;
    prep.swap(empty);
    hasPrep = 0;
}

void ProjectConfiguration::resetModel() {
    ModelConfiguration empty;
    model.swap(empty);
    hasModel = 0;
}

void ProjectConfiguration::resetVels() {
    vels = VelsConfiguration();
    hasVels = 0;
}

void ProjectConfiguration::resetAll() {
    resetPrep();
    resetModel();
    resetVels();
}

}  // namespace tarvex
