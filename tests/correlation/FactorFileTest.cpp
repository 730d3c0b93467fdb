// The factor file: exact text, round trips, damaged files and the temporary
// read that keeps the caller's list.
#include <gtest/gtest.h>

#include <map>
#include <sstream>

#include "FactorListSamples.h"
#include "TestSupport.h"
#include "correlation/FactorFile.h"
#include "factors/Dummy.h"

namespace tarvex {
namespace {

using test::named;

class FactorFile : public test::DefaultTruncationsGuard {};

std::string textOf(const FactorList& list) {
    std::ostringstream out;
    list.write(out);
    return out.str();
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line + "\n");
    return lines;
}

// A caller's list that a failed read must leave alone.
FactorList callersList() {
    FactorList list;
    EXPECT_EQ(list.addFactor(named<Normal>("keep")), 1);
    list.sourceText = "Using factors from panel";
    return list;
}

TEST_F(FactorFile, ExactTextOfASmallList) {
    FactorList list;
    auto n = named<Normal>("x1");
    EXPECT_EQ(n->setNote("  spaced "), 1);
    EXPECT_EQ(n->setMean(1.23456789), 1);
    EXPECT_EQ(n->setStdDeviation(2.0), 1);
    EXPECT_EQ(list.addFactor(std::move(n)), 1);
    auto c = named<Constant>("c");
    c->value = 3.5;
    ASSERT_EQ(list.addFactor(std::move(c)), 1);
    auto u = named<Uniform>("u");
    ASSERT_EQ(list.addFactor(std::move(u)), 1);
    ASSERT_EQ(list.linkFactor(2, 0, 0.5), 1);
    ASSERT_EQ(list.setMatrixValue(0, 1, -0.125), 1);
    list.correlationMode = kImanConoverCorrelation;
    EXPECT_EQ(textOf(list),
              "Default Truncations:\n"
              "0.001\t0.999\n"
              "\n"
              "3 Distributions:\n"
              "Normal\nx1\n  spaced \n1\t1.23457\t2\t0.001\t0.999\n\n"
              "Constant\nc\n\n1\t3.5\n\n"
              "Uniform\nu\n\n1\t1\n0\t1\t1\n\n"
              "Correlation information\n"
              "0 -1 1 2 \n"
              "0 -1 0 \n"
              "0.5 0 0 \n"
              "Correlation Matrix:\n"
              "1\t-0.125\t\n"
              "-0.125\t1\t\n"
              "Stein Information:\n"
              "\n"
              "0\n0\n0\n"
              "1\n");
}

TEST_F(FactorFile, EmptyListSavesAndLoads) {
    const std::string text =
        "Default Truncations:\n0.001\t0.999\n\n0 Distributions:\nCorrelation information\n"
        "Correlation Matrix:\nStein Information:\n\n0\n0\n0\n2\n";
    EXPECT_EQ(textOf(FactorList()), text);
    std::istringstream in(text);
    FactorList list = callersList();
    ASSERT_EQ(readFactorListInto(in, list), 1);
    EXPECT_EQ(list.factorCount(), 0);
    EXPECT_EQ(list.sourceText, "Using factors from panel");
}

TEST_F(FactorFile, EveryKindRoundTripsByteForByte) {
    const FactorList original = test::everyKindList();
    const std::string first = textOf(original);
    std::istringstream in(first);
    FactorList list;
    ASSERT_EQ(list.read(in), 1);
    EXPECT_EQ(textOf(list), first);

    // What the text alone cannot show: the values as read. Six significant digits: the mean comes back rounded.
    EXPECT_EQ(dynamic_cast<Normal*>(list.getFactor(0))->getMean(), 1.23457);
    EXPECT_EQ(dynamic_cast<Normal*>(list.getFactor(0))->getLeftTruncation(), 0.01);
    EXPECT_EQ(list.getFactor(0)->note(), "  blanks kept  ");
    EXPECT_EQ(dynamic_cast<Relation*>(list.getFactor(11))->factorNames(),
              (std::vector<std::string>{"konst", "norm"}));
    EXPECT_EQ(dynamic_cast<Uniform*>(list.getFactor(8))->intervalAt(1)->weight, 0.7);
    EXPECT_EQ(list.tree().node(4).parent, 3);
    EXPECT_EQ(list.tree().node(4).correlation, 0.7);
    EXPECT_EQ(list.tree().node(0).children, (std::vector<int>{1, 3}));
    EXPECT_EQ(list.matrixValue(8, 5), -0.5f);
    EXPECT_EQ(list.matrixValue(0, 2), 0.25f);
    EXPECT_EQ(list.steinFileName, "/data/stein sample.txt");
    ASSERT_EQ(list.steinInfo.rowCount(), 3);
    EXPECT_EQ(list.steinInfo.value(2, 0), 1e-9);
    EXPECT_EQ(list.correlationMode, 0);
    EXPECT_EQ(list.factorAt(0), 0);  // sampling order rebuilt from the links
    EXPECT_LT(list.factorAt(1), 12);

    // The same through files on disk.
    test::ScratchDir dir;
    std::string err;
    ASSERT_EQ(saveFactorFile(dir.file("all.fac"), list, err), 1);
    EXPECT_EQ(test::readFile(dir.file("all.fac")), first);
    FactorList loaded;
    ASSERT_EQ(loadFactorFile(dir.file("all.fac"), loaded, err), 1);
    EXPECT_EQ(loaded.sourceText, dir.file("all.fac"));
    EXPECT_EQ(textOf(loaded), first);
}

TEST_F(FactorFile, DefaultTruncationsGoThroughTheCheckingSetter) {
    FactorList list;
    std::string text = textOf(list);
    text.replace(text.find("0.001\t0.999"), 11, "0.05\t0.9");
    std::istringstream in(text);
    ASSERT_EQ(list.read(in), 1);
    EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.05);
    EXPECT_EQ(TruncatedDistribution::defaultRightTruncation(), 0.9);

    text.replace(text.find("0.05\t0.9"), 8, "0.5\t0.2");
    std::istringstream bad(text);
    ASSERT_EQ(list.read(bad), 1);
    EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.05);
    EXPECT_EQ(TruncatedDistribution::defaultRightTruncation(), 0.9);
}

// Every prefix of whole lines of a valid file: it loads exactly when it ends
// at the end of the header or between factor records (a file that ends
// before the announced count keeps what it has), or is the whole file.
TEST_F(FactorFile, TruncatedAtEveryLine) {
    const FactorList original = test::everyKindList();
    const std::vector<std::string> lines = linesOf(textOf(original));

    // Lines per record after the type, name and note lines, and blank lines
    // behind it, worked out from the layout of each kind.
    const std::vector<std::pair<int, int>> shape = {
        {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1}, {1, 1},
        {1 + 2, 1},  // Uniform with two intervals
        {1 + 1, 1},  // LogUniform with one
        {1 + 3, 1},  // Discrete with three points
        {2, 2},      // Relation: data line, expression, blank, separator
    };
    std::map<std::size_t, int> loads;  // prefix length in lines -> factors loaded
    std::size_t at = 4;
    loads[at] = 0;
    for (std::size_t j = 0; j < shape.size(); ++j) {
        const std::size_t end = at + 3 + static_cast<std::size_t>(shape[j].first);
        for (std::size_t k = end; k <= end + static_cast<std::size_t>(shape[j].second); ++k) {
            loads[k] = static_cast<int>(j) + 1;
        }
        at = end + static_cast<std::size_t>(shape[j].second);
    }
    loads[lines.size()] = 12;

    for (std::size_t k = 0; k <= lines.size(); ++k) {
        std::string prefix;
        for (std::size_t i = 0; i < k; ++i) prefix += lines[i];
        std::istringstream in(prefix);
        FactorList list = callersList();
        const int ok = readFactorListInto(in, list);
        ASSERT_EQ(TruncatedDistribution::setDefaultTruncations(0.001, 0.999), 1);
        const auto expected = loads.find(k);
        if (expected == loads.end()) {
            EXPECT_EQ(ok, 0) << "prefix of " << k << " lines";
            ASSERT_EQ(list.factorCount(), 1);
            EXPECT_EQ(list.getFactor(0)->name(), "keep");
        } else {
            EXPECT_EQ(ok, 1) << "prefix of " << k << " lines";
            EXPECT_EQ(list.factorCount(), expected->second) << "prefix of " << k << " lines";
            EXPECT_EQ(list.sourceText, "Using factors from panel");
        }
    }
}

TEST_F(FactorFile, NamesTypesAndCounts) {
    FactorList two;
    ASSERT_EQ(two.addFactor(named<Normal>("abcdefghijklmnopqrs")), 1);  // 19 characters
    ASSERT_EQ(two.addFactor(named<Constant>("k")), 1);
    const std::string text = textOf(two);
    // A record the factor reader refuses (its rules are tested with the
    // records) fails the whole list and leaves the caller's.
    const auto failsOver = [](const std::string& damaged) {
        std::istringstream in(damaged);
        FactorList list = callersList();
        const int ok = readFactorListInto(in, list);
        return ok == 0 && list.factorCount() == 1 && list.getFactor(0)->name() == "keep";
    };
    std::string longName = text;
    longName.replace(longName.find("abcdefghijklmnopqrs"), 19, "abcdefghijklmnopqrst");
    EXPECT_TRUE(failsOver(longName));
    std::string badType = text;
    badType.replace(badType.find("Constant"), 8, "Konstant");
    EXPECT_TRUE(failsOver(badType));

    // A list holding a Dummy saves but can't be loaded again.
    FactorList withDummy;
    ASSERT_EQ(withDummy.addFactor(named<Dummy>("imported")), 1);
    EXPECT_TRUE(failsOver(textOf(withDummy)));

    // More factors announced than present, the file ending after them.
    std::string moreAnnounced = text.substr(0, text.find("Correlation information"));
    moreAnnounced.replace(moreAnnounced.find("2 Distributions:"), 16, "7 Distributions:");
    std::istringstream in(moreAnnounced);
    FactorList list = callersList();
    ASSERT_EQ(readFactorListInto(in, list), 1);
    EXPECT_EQ(list.factorCount(), 2);
    EXPECT_EQ(list.correlatableCount(), 1);
    EXPECT_EQ(list.correlationMatrix(), (std::vector<float>{1}));
    EXPECT_EQ(list.correlationMode, 2);
}

TEST_F(FactorFile, DamagedCorrelationPartsFail) {
    FactorList three;
    for (const char* n : {"a", "b", "c"}) ASSERT_EQ(three.addFactor(named<Normal>(n)), 1);
    ASSERT_EQ(three.addFactor(named<Constant>("k")), 1);
    ASSERT_EQ(three.linkFactor(1, 0, 0.5), 1);
    const std::string text = textOf(three);
    const std::string links = "0 -1 1 1 \n0.5 0 0 \n0 -1 0 \n0 -1 0 \n";
    ASSERT_NE(text.find(links), std::string::npos);
    const auto withLinks = [&](const std::string& replacement) {
        std::string damaged = text;
        damaged.replace(damaged.find(links), links.size(), replacement);
        std::istringstream in(damaged);
        FactorList list = callersList();
        return readFactorListInto(in, list);
    };
    EXPECT_EQ(withLinks(links), 1);
    EXPECT_EQ(withLinks("0 -1 1 1 \n0.5 0 1 2 \n-0.5 1 0 \n0 -1 0 \n"), 1);  // c under b
    EXPECT_EQ(withLinks("0 1 1 1 \n0.5 0 0 \n0 -1 0 \n0 -1 0 \n"), 0);   // a cycle a <-> b
    EXPECT_EQ(withLinks("0 -1 1 1 \n0.5 2 0 \n0 -1 0 \n0 -1 0 \n"), 0);  // parent does not list it
    EXPECT_EQ(withLinks("0 -1 1 9 \n0.5 0 0 \n0 -1 0 \n0 -1 0 \n"), 0);  // child out of range
    EXPECT_EQ(withLinks("0 -1 2 1 1 \n0.5 0 0 \n0 -1 0 \n0 -1 0 \n"), 0); // listed twice
    EXPECT_EQ(withLinks("0 -1 1 1 \n0.5 0 0 \n0 -1 0 \n0.5 0 0 \n"), 0);  // a constant linked
    EXPECT_EQ(withLinks("0 -1 1 1 \n0.5 0 0 \n0 -1 0 \n"), 0);            // a line short
    EXPECT_EQ(withLinks("0 -1 1 1 \n0.5 1 0 \n0 -1 0 \n0 -1 0 \n"), 0);   // its own parent

    std::string badMode = text;
    badMode.replace(badMode.rfind("2\n"), 2, "4\n");
    std::istringstream in(badMode);
    FactorList list = callersList();
    EXPECT_EQ(readFactorListInto(in, list), 0);
    std::string shortMatrix = text;
    shortMatrix.replace(shortMatrix.find("1\t0\t0\t\n"), 7, "1\t0\t\n");
    std::istringstream in2(shortMatrix);
    EXPECT_EQ(readFactorListInto(in2, list), 0);
    EXPECT_EQ(list.getFactor(0)->name(), "keep");
}

TEST_F(FactorFile, ReaderStopsAfterItsRecord) {
    const std::string text = textOf(test::everyKindList()) + "5\nRandom\n";
    std::istringstream in(text);
    FactorList list;
    ASSERT_EQ(list.read(in), 1);
    int method = 0;
    std::string name, rest;
    ASSERT_TRUE(in >> method);
    EXPECT_EQ(method, 5);
    std::getline(in, rest);
    std::getline(in, name);
    EXPECT_EQ(name, "Random");
}

TEST_F(FactorFile, FileMessages) {
    test::ScratchDir dir;
    std::string err;
    FactorList list = callersList();
    EXPECT_EQ(loadFactorFile(dir.file("none.fac"), list, err), 0);
    EXPECT_EQ(err, "Error opening factors file");
    test::writeFile(dir.file("junk.fac"), "Default Truncations:\nnot numbers\n");
    EXPECT_EQ(loadFactorFile(dir.file("junk.fac"), list, err), 0);
    EXPECT_EQ(err, "Error reading factors file");
    EXPECT_EQ(list.getFactor(0)->name(), "keep");
    EXPECT_EQ(list.sourceText, "Using factors from panel");

    EXPECT_EQ(saveFactorFile(dir.file("no/dir/x.fac"), list, err), 0);
    EXPECT_EQ(err, "Error opening file for output");
    if (::access("/dev/full", W_OK) == 0) {
        FactorList big = test::everyKindList();
        big.steinInfo.assign(2000, 2, std::vector<double>(4000, 0.123456));
        EXPECT_EQ(saveFactorFile("/dev/full", big, err), 0);
        EXPECT_EQ(err, "Error writing output file");
    }
}

} // namespace
} // namespace tarvex
