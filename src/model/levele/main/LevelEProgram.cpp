#include "model/levele/main/LevelEProgram.h"

#include <filesystem>
#include <optional>
#include <ostream>
#include <system_error>

#include "model/levele/LevelEModel.h"
#include "model/levele/main/DoseOutputFile.h"
#include "model/levele/main/SampleRuns.h"

#ifndef TARVEX_VERSION
#define TARVEX_VERSION "unknown"
#endif

namespace tarvex::levele {

namespace {

namespace fs = std::filesystem;

constexpr const char* kProgram = "tarvex-levele";
constexpr const char* kUsage = "usage: tarvex-levele [--output OUTPUT_FILE] SAMPLE_FILE";

constexpr const char* kModelText =
    "The Level E model (OECD/NEA, PSACOIN Level E Intercomparison, 1989), decided as follows:\n"
    "  dispersion length d(k) = l(k)/10 in both layers (Peclet number 10);\n"
    "  one chain retention per layer: R_Np = R_U = R_Th = RC_k, R_I = RI_k;\n"
    "  semi-infinite layers, flux taken at x = l(k), no back-dispersion.\n"
    "Solved in the Laplace domain, the delay T removed analytically, and inverted\n"
    "by the fixed Talbot contour with M = 32 nodes in double precision.\n"
    "Times: 2e4 ... 9e6 yr, mantissas 1-9 per decade (26).\n";

constexpr const char* kHelpText =
    "\n"
    "Computes the Level E dose rates for every run of SAMPLE_FILE, a sample file of\n"
    "the pre-processor, and writes them as a model output file.\n"
    "\n"
    "The factors are found by name, in any column order; other columns are ignored:\n"
    "  T    containment time, yr            kI, kC  leach rates of iodine and the chain, 1/yr\n"
    "  v1   water velocity in layer 1, m/yr l1      length of layer 1, m\n"
    "  RI1  iodine retention, layer 1       RC1     chain retention, layer 1\n"
    "  v2, l2, RI2, RC2  the same for layer 2\n"
    "  W    flow rate of the stream, m3/yr\n"
    "Every value must be finite and above 0 (T may be 0). Values outside the\n"
    "published ranges are computed, with a warning.\n"
    "\n"
    "Output: SAMPLE_FILE with its extension replaced by .out, or OUTPUT_FILE; the\n"
    "variables Dose, DoseI129, DoseNp237, DoseU233, DoseTh229 (Sv/yr) with\n"
    "\"time = yes\", one block \"RUN r\" per run from 0, 26 rows \"<time> <values>\".\n"
    "Dose rates are written with %.10e; noise below zero is written as 0. The file\n"
    "is replaced only once it is complete.\n"
    "\n"
    "Options:\n"
    "  --output OUTPUT_FILE  where to write the model output file\n"
    "  --help                this text\n"
    "  --version             version and model decisions\n"
    "\n"
    "Exit status: 0 done, 1 bad input or output not written, 2 bad command line.\n";

struct CommandLine {
    std::string sample;
    std::optional<std::string> output;
    bool help = false;
    bool version = false;
};

// Fills `line`, or says what is wrong with the command line.
std::string parse(const std::vector<std::string>& args, CommandLine& line) {
    bool haveSample = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--help" || a == "-h") {
            line.help = true;
        } else if (a == "--version") {
            line.version = true;
        } else if (a == "--output") {
            if (i + 1 == args.size()) return "--output needs a file name";
            line.output = args[++i];
        } else if (a.rfind("--output=", 0) == 0) {
            line.output = a.substr(9);
        } else if (a.size() > 1 && a[0] == '-') {
            return "unknown option " + a;
        } else if (haveSample) {
            return "one sample file only, not also " + a;
        } else {
            line.sample = a;
            haveSample = true;
        }
    }
    if (line.help || line.version) return "";
    if (!haveSample) return "no sample file given";
    if (line.sample.empty()) return "the sample file name is empty";
    if (line.output && line.output->empty()) return "the output file name is empty";
    return "";
}

bool samePath(const fs::path& a, const fs::path& b) {
    if (a.lexically_normal() == b.lexically_normal()) return true;
    std::error_code ec;
    return fs::equivalent(a, b, ec);
}

}  // namespace

int runLevelE(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    CommandLine line;
    if (const std::string problem = parse(args, line); !problem.empty()) {
        err << kProgram << ": " << problem << '\n' << kUsage << '\n';
        return kExitUsage;
    }
    if (line.help) {
        out << kUsage << '\n' << kHelpText << '\n' << kModelText;
        return kExitOk;
    }
    if (line.version) {
        out << kProgram << ' ' << TARVEX_VERSION << '\n' << kModelText;
        return kExitOk;
    }

    // The sample reader moves the current directory: every path is made
    // absolute before it runs.
    std::error_code ec;
    const fs::path sample = fs::absolute(line.sample, ec);
    if (ec) {
        err << kProgram << ": cannot resolve the sample file " << line.sample << ": " << ec.message() << '\n';
        return kExitFailure;
    }
    fs::path output;
    if (line.output) {
        output = fs::absolute(*line.output, ec);
        if (ec) {
            err << kProgram << ": cannot resolve the output file " << *line.output << ": " << ec.message() << '\n';
            return kExitFailure;
        }
    } else {
        output = sample;
        output.replace_extension(".out");
    }
    if (samePath(sample, output)) {
        err << kProgram << ": the output file " << output.string() << " would replace the sample file\n";
        return kExitFailure;
    }

    SampleRuns runs;
    if (!runs.read(sample.string())) {
        err << kProgram << ": " << runs.errorText() << '\n';
        return kExitFailure;
    }
    for (const std::string& warning : runs.rangeWarnings()) err << kProgram << ": warning: " << warning << '\n';

    const LevelEModel model;
    DoseOutputFile file;
    if (!file.write(output.string(), runs.runs(), model)) {
        err << kProgram << ": " << file.errorText() << '\n';
        return kExitFailure;
    }
    return kExitOk;
}

}  // namespace tarvex::levele
