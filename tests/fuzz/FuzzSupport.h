#pragma once
// What the readers' fuzz harnesses share. A harness is one function of the
// input bytes, written once and built two ways:
//   - with TARVEX_LIBFUZZER, as a libFuzzer target (scripts/fuzz.sh runs them);
//   - otherwise as a test of the replay executable, which feeds the harness
//     every file of its committed seed corpus, tests/fuzz/corpus/<Reader>/,
//     then a fixed series of mutations of those files.
// Beyond "no crash", a harness checks what is cheap and always true of its
// reader (a refused file changes nothing, an accepted one writes a text that
// reads back the same); a failed check is a crash for libFuzzer and a test
// failure naming the input for the replay.
//
// Readers move the current directory and change process-wide settings (the
// remembered directories, the default truncations); every input runs between
// a save and a restore of all three, so that inputs don't influence each
// other and the process is left as it was.
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "common/Environment.h"
#include "factors/TruncatedDistribution.h"

#ifndef TARVEX_LIBFUZZER
#include <gtest/gtest.h>
#endif

namespace tarvex::fuzz {

enum class Outcome { Refused, Accepted };

struct CheckFailed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The text an object writes through its write(std::ostream&).
template <class T>
std::string textOf(T& object) {
    std::ostringstream out;
    object.write(out);
    return out.str();
}

// A property of the reader that must hold for every input.
inline void check(bool holds, const std::string& what) {
    if (holds) return;
#ifdef TARVEX_LIBFUZZER
    std::fprintf(stderr, "harness check failed: %s\n", what.c_str());
    std::abort();
#else
    throw CheckFailed(what);
#endif
}

// Files of this process's own temporary directory, which goes when the process
// ends normally. Readers that take a path read the input from one of them.
class ScratchFiles {
public:
    static ScratchFiles& instance() {
        static ScratchFiles files;
        return files;
    }
    // The path of `name`, no file there: rewriting a file in place after
    // truncating it makes some file systems write it through to the disk at
    // once, which is far slower than a new file.
    std::string path(const std::string& name) const {
        const std::filesystem::path p = dir_ / name;
        std::error_code ec;
        std::filesystem::remove(p, ec);
        return p.string();
    }
    // Writes `content` to the file `name` and returns its path.
    std::string write(const std::string& name, std::string_view content) const {
        const std::string p = path(name);
        std::ofstream out(p, std::ios::binary | std::ios::trunc);
        out.write(content.data(), static_cast<std::streamsize>(content.size()));
        out.close();
        check(static_cast<bool>(out), "cannot write the scratch file " + p);
        return p;
    }
    ~ScratchFiles() {
        std::error_code ec;
        std::filesystem::remove_all(dir_, ec);
    }
    ScratchFiles(const ScratchFiles&) = delete;
    ScratchFiles& operator=(const ScratchFiles&) = delete;

private:
    ScratchFiles() {
        std::string pattern = (std::filesystem::temp_directory_path() / "tarvex-fuzz-XXXXXX").string();
        if (char* made = ::mkdtemp(pattern.data())) dir_ = made;
        check(!dir_.empty(), "cannot make a scratch directory in " + pattern);
    }
    std::filesystem::path dir_;
};

inline std::string scratchInput(std::string_view input) { return ScratchFiles::instance().write("input", input); }

// Saves the current directory, the remembered directories and the default
// truncations; starts the input with no directory remembered, and puts all
// three back when it goes.
class ProcessStateGuard {
public:
    ProcessStateGuard()
        : cwd_(std::filesystem::current_path()),
          directories_(Environment::instance().directories()),
          left_(TruncatedDistribution::defaultLeftTruncation()),
          right_(TruncatedDistribution::defaultRightTruncation()) {
        Environment::instance().directories() = RememberedDirectories();
    }
    ~ProcessStateGuard() {
        (void)TruncatedDistribution::setDefaultTruncations(left_, right_);  // the values it took before
        Environment::instance().directories() = directories_;
        std::error_code ec;
        std::filesystem::current_path(cwd_, ec);
    }
    ProcessStateGuard(const ProcessStateGuard&) = delete;
    ProcessStateGuard& operator=(const ProcessStateGuard&) = delete;

private:
    std::filesystem::path cwd_;
    RememberedDirectories directories_;
    double left_;
    double right_;
};

// Readers drop one carriage return before a line end, so that files written
// on other systems read the same; a value that itself ends in one loses one at
// every save and load. Texts compared through this are alike but for that.
inline std::string withoutLineEndReturns(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r') {
            std::size_t j = i;
            while (j < text.size() && text[j] == '\r') ++j;
            if (j == text.size() || text[j] == '\n') {
                i = j - 1;
                continue;
            }
        }
        out += text[i];
    }
    return out;
}

inline bool sameText(std::string_view a, std::string_view b) {
    return withoutLineEndReturns(a) == withoutLineEndReturns(b);
}

using Harness = Outcome (*)(std::string_view input);

inline Outcome runHarness(Harness harness, std::string_view input) {
    ProcessStateGuard guard;
    return harness(input);
}

// Damage of the kinds real files suffer and readers trip over: stray and lost
// bytes, lines doubled, lost or swapped, numbers replaced by awkward ones,
// files cut short, long lines. Deterministic for a given seed.
class Mutator {
public:
    explicit Mutator(uint32_t seed) : rng_(seed) {}

    std::string mutate(std::string text) {
        const int steps = pick(1, 3);
        for (int s = 0; s < steps && !text.empty(); ++s) {
            switch (pick(0, 8)) {
            case 0:  // any byte anywhere
                text[position(text)] = static_cast<char>(pick(0, 255));
                break;
            case 1:  // a few bytes gone
                text.erase(position(text), static_cast<std::size_t>(pick(1, 12)));
                break;
            case 2:  // characters that matter to readers
                text.insert(position(text), 1, "0123456789-+.e= \t\n\r_xZ\xA3\xE9"[pick(0, 23)]);
                break;
            case 3:  // a whole line twice
            case 4:  // or gone
            case 5:  // or swapped with another
                lineEdit(text, pick(3, 5));
                break;
            case 6:  // a number replaced by an awkward one
                replaceNumber(text);
                break;
            case 7:  // cut short anywhere
                text.resize(position(text));
                break;
            default:  // a run of one byte, a long line
                text.insert(position(text), static_cast<std::size_t>(pick(1, 1100)),
                            static_cast<char>(pick(32, 126)));
                break;
            }
        }
        return text;
    }

private:
    int pick(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng_); }
    std::size_t position(const std::string& text) {
        return static_cast<std::size_t>(pick(0, static_cast<int>(text.size()) - 1));
    }

    void lineEdit(std::string& text, int kind) {
        std::vector<std::string> lines;
        std::istringstream in(text);
        for (std::string l; std::getline(in, l);) lines.push_back(l);
        if (lines.size() < 2) return;
        const auto a = static_cast<std::size_t>(pick(0, static_cast<int>(lines.size()) - 1));
        const auto b = static_cast<std::size_t>(pick(0, static_cast<int>(lines.size()) - 1));
        if (kind == 3) lines.insert(lines.begin() + static_cast<long>(a), lines[a]);
        if (kind == 4) lines.erase(lines.begin() + static_cast<long>(a));
        if (kind == 5) std::swap(lines[a], lines[b]);
        text.clear();
        for (const auto& l : lines) text += l + "\n";
    }

    void replaceNumber(std::string& text) {
        static const char* awkward[] = {"-1",  "0",   "1",     "2147483647", "2147483648", "-2147483649",
                                        "999", "1e308", "-1e308", "1e-320",   "1e400",      "nan",
                                        "inf", "0.5", "3",     "12",         "-0"};
        const std::size_t from = position(text);
        const std::size_t at = text.find_first_of("0123456789", from);
        if (at == std::string::npos) return;
        std::size_t end = at;
        while (end < text.size() && (std::isdigit(static_cast<unsigned char>(text[end])) || text[end] == '.' ||
                                     text[end] == 'e' || text[end] == '-'))
            ++end;
        text.replace(at, end - at, awkward[pick(0, 16)]);
    }

    std::mt19937 rng_;
};

#ifndef TARVEX_LIBFUZZER

inline std::string readWhole(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

// The input as it can be read in a test log: line ends kept, other control
// bytes and bytes above 126 as \xNN.
inline std::string visible(std::string_view input) {
    std::string out;
    for (unsigned char c : input) {
        if (c == '\n' || (c >= 32 && c < 127)) {
            out += static_cast<char>(c);
        } else {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02X", c);
            out += hex;
        }
    }
    return out;
}

// Feeds the harness every file of its corpus, then `mutations` mutations of
// the seeds named "ok-..." (which must be accepted) and "bad-..." (which must
// be refused); other files, inputs that once broke a reader, are fed as they
// are. The mutations must give both outcomes, or they no longer reach past
// the first lines of the reader.
inline void replay(const char* reader, Harness harness, int mutations) {
    const std::filesystem::path dir = std::filesystem::path(TARVEX_SOURCE_DIR) / "tests/fuzz/corpus" / reader;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(dir))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    ASSERT_FALSE(files.empty()) << dir;

    std::vector<std::string> seeds;
    for (const auto& file : files) {
        const std::string name = file.filename().string();
        const std::string content = readWhole(file);
        if (name.starts_with("ok-") || name.starts_with("bad-")) seeds.push_back(content);
        try {
            const Outcome outcome = runHarness(harness, content);
            if (name.starts_with("ok-")) {
                EXPECT_EQ(outcome, Outcome::Accepted) << name;
            } else if (name.starts_with("bad-")) {
                EXPECT_EQ(outcome, Outcome::Refused) << name;
            }
        } catch (const CheckFailed& failure) {
            ADD_FAILURE() << name << ": " << failure.what();
        }
    }

    ASSERT_FALSE(seeds.empty()) << dir;
    Mutator mutator(20261121u);
    int accepted = 0, refused = 0;
    for (int round = 0; round < mutations; ++round) {
        const std::string input = mutator.mutate(seeds[static_cast<std::size_t>(round) % seeds.size()]);
        try {
            (runHarness(harness, input) == Outcome::Accepted ? accepted : refused) += 1;
        } catch (const CheckFailed& failure) {
            FAIL() << "mutation " << round << ": " << failure.what() << "\ninput:\n" << visible(input);
        }
    }
    std::printf("%s: %d seeds, %d mutations accepted, %d refused\n", reader, static_cast<int>(seeds.size()),
                accepted, refused);
    if (mutations > 0) {
        EXPECT_GT(accepted, 0);
        EXPECT_GT(refused, 0);
    }
}

#define TARVEX_FUZZ_TARGET(Reader, mutations)                                                         \
    static ::tarvex::fuzz::Outcome fuzz##Reader(std::string_view input);                              \
    TEST(FuzzReplay, Reader) { ::tarvex::fuzz::replay(#Reader, &fuzz##Reader, mutations); }           \
    static ::tarvex::fuzz::Outcome fuzz##Reader(std::string_view input)

#else

#define TARVEX_FUZZ_TARGET(Reader, mutations)                                                         \
    static ::tarvex::fuzz::Outcome fuzz##Reader(std::string_view input);                              \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {                         \
        ::tarvex::fuzz::runHarness(&fuzz##Reader, std::string_view(reinterpret_cast<const char*>(data), size)); \
        return 0;                                                                                     \
    }                                                                                                 \
    static ::tarvex::fuzz::Outcome fuzz##Reader(std::string_view input)

#endif

}  // namespace tarvex::fuzz
