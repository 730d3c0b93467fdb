// Thousands of mutated factor files through the reader: none may crash it
// (the sanitizer build runs this too), a failed read leaves the caller's list
// alone, and whatever loads writes a file that loads again the same way.
#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <sstream>

#include "FactorListSamples.h"
#include "correlation/FactorFile.h"

namespace tarvex {
namespace {

class FactorFileFuzz : public test::DefaultTruncationsGuard {};

std::string textOf(const FactorList& list) {
    std::ostringstream out;
    list.write(out);
    return out.str();
}

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
            case 2:  // characters that matter to the reader
                text.insert(position(text), 1, "0123456789-+.e \t\n\r_xZ\xA3\xE9"[pick(0, 22)]);
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
                text.insert(position(text), static_cast<std::size_t>(pick(1, 400)), static_cast<char>(pick(32, 126)));
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
        static const char* awkward[] = {"-1", "0", "1", "2147483647", "2147483648", "-2147483649", "99999999",
                                        "1e308", "-1e308", "1e-320", "1e400", "nan", "inf", "0.5", "3", "12", "-0"};
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

TEST_F(FactorFileFuzz, MutatedFilesNeverHurt) {
    FactorList small;
    ASSERT_EQ(small.addFactor(test::named<Normal>("a")), 1);
    ASSERT_EQ(small.addFactor(test::named<Uniform>("b")), 1);
    ASSERT_EQ(small.addFactor(test::named<Relation>("r")), 1);
    ASSERT_EQ(small.linkFactor(1, 0, 0.5), 1);
    const std::vector<std::string> bases = {textOf(test::everyKindList()), textOf(small), textOf(FactorList())};

    Mutator mutator(20261121u);
    int loaded = 0, refused = 0;
    for (int round = 0; round < 4000; ++round) {
        const std::string damaged = mutator.mutate(bases[static_cast<std::size_t>(round) % bases.size()]);
        ASSERT_EQ(TruncatedDistribution::setDefaultTruncations(0.001, 0.999), 1);
        FactorList list;
        ASSERT_EQ(list.addFactor(test::named<Constant>("keep")), 1);
        std::istringstream in(damaged);
        if (!readFactorListInto(in, list)) {
            ++refused;
            ASSERT_EQ(list.factorCount(), 1) << damaged;
            ASSERT_EQ(list.getFactor(0)->name(), "keep");
            continue;
        }
        ++loaded;
        // What loaded is a list like any other: its file loads, and from the
        // second writing on the text no longer changes.
        const std::string first = textOf(list);
        FactorList again, third;
        std::istringstream in1(first);
        ASSERT_EQ(readFactorListInto(in1, again), 1) << "from:\n" << damaged << "\nwritten:\n" << first;
        const std::string second = textOf(again);
        std::istringstream in2(second);
        ASSERT_EQ(readFactorListInto(in2, third), 1);
        ASSERT_EQ(textOf(third), second);
        ASSERT_EQ(again.factorCount(), list.factorCount());
    }
    std::printf("mutated factor files: %d loaded, %d refused\n", loaded, refused);
    // Both outcomes occur often enough for the test to mean something.
    EXPECT_GT(loaded, 200);
    EXPECT_GT(refused, 1000);
}

} // namespace
} // namespace tarvex
