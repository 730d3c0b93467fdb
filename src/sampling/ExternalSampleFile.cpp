// The external sample file: a sample made by another program.
//
//   line 1   number of samples (at least 1)
//   line 2   number of factors (at least 1)
//   then     one line per factor, its name the first word
//   then     samples x factors numbers, white-space delimited, sample after sample
//
// The count lines may hold no letter and none of the characters forbidden in
// names; a name may not begin with a digit or one of those characters. The
// characters are tested as Latin-1 bytes and also in their UTF-8 form, since
// files written today mostly use it.
#include <climits>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <new>
#include <vector>

#include "factors/Dummy.h"
#include "factors/FactorName.h"
#include "common/TextLines.h"
#include "sampling/NumberText.h"
#include "sampling/PrepConfiguration.h"
#include "sampling/RandomSampler.h"

namespace tarvex {

namespace {

constexpr std::size_t kLineBytes = 257;  // lines of at most 256 characters

// The UTF-8 form of a forbidden non-ASCII character starting at text[i], or 0.
std::size_t forbiddenUtf8Length(const std::string& text, std::size_t i) {
    if (i + 1 >= text.size()) return 0;
    const unsigned char lead = static_cast<unsigned char>(text[i]);
    const unsigned char next = static_cast<unsigned char>(text[i + 1]);
    if (lead != 0xC2 && lead != 0xC3) return 0;
    // Decode the two-byte sequence to its Latin-1 code point.
    const unsigned char latin1 = static_cast<unsigned char>(((lead & 0x1F) << 6) | (next & 0x3F));
    if ((next & 0xC0) != 0x80 || latin1 < 0x80) return 0;
    return isForbiddenNameCharacter(latin1) ? 2 : 0;
}

bool isAsciiLetter(unsigned char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

// A count line: no letter, no forbidden character, one long integer >= 1.
bool readCount(std::istream& in, int32_t& count) {
    std::string line;
    if (!readLineInBuffer(in, line, kLineBytes)) return false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(line[i]);
        if (isAsciiLetter(c) || isForbiddenNameCharacter(c) || forbiddenUtf8Length(line, i)) return false;
    }
    long value = 0;
    if (std::sscanf(line.c_str(), "%ld", &value) != 1 || value < 1 || value > INT32_MAX) return false;
    count = int32_t(value);
    return true;
}

bool readName(std::istream& in, std::string& name) {
    std::string line;
    if (!readLineInBuffer(in, line, kLineBytes)) return false;
    const char* blanks = " \t\r\n\v\f";
    const std::size_t begin = line.find_first_not_of(blanks);
    if (begin == std::string::npos) return false;
    const std::size_t end = line.find_first_of(blanks, begin);
    name = line.substr(begin, end == std::string::npos ? std::string::npos : end - begin);
    const unsigned char first = static_cast<unsigned char>(name[0]);
    if ((first >= '0' && first <= '9') || isForbiddenNameCharacter(first) || forbiddenUtf8Length(name, 0))
        return false;
    return true;
}

}  // namespace

// Running out of memory on a hostile file is a failed read, like any other.
int PrepConfiguration::loadExternalSample(const std::string& fileName) try {
    std::ifstream in(fileName, std::ios::binary);
    PrepConfiguration loaded;
    int32_t sampleCount = 0, factorCount = 0;
    bool ok = in && readCount(in, sampleCount) && readCount(in, factorCount);
    std::vector<std::unique_ptr<Factor>> columns;
    for (int32_t i = 0; ok && i < factorCount; ++i) {
        std::string name;
        ok = readName(in, name);
        if (ok) columns.push_back(std::make_unique<Dummy>(name));
    }
    if (ok) ok = loaded.factors.addFactors(std::move(columns)) == 1;
    if (ok) {
        auto random = std::make_unique<RandomSampler>();
        ok = random->setSamples(sampleCount) == 1 && loaded.samples.allocate(factorCount) == 1;
        loaded.sampler = std::move(random);
    }
    std::vector<double> row(ok ? static_cast<std::size_t>(factorCount) : 0);
    for (int32_t r = 0; ok && r < sampleCount; ++r) {
        for (int32_t c = 0; ok && c < factorCount; ++c) ok = readNumber(in, row[std::size_t(c)]);
        if (ok) ok = loaded.samples.addRow(row.data()) != 0;
    }
    if (ok) {
        loaded.sampleStatistics = std::make_unique<SampleStatistics>();
        ok = loaded.sampleStatistics->compute(loaded.samples) == 1;
    }
    if (!ok) {
        errorText_ = kReadExternalErrorText;
        return 0;
    }
    loaded.sampleFile = fileName;
    loaded.hasStatistics = 1;
    loaded.external = 1;
    swap(loaded);
    errorText_ = kNoErrorsText;
    return 1;
} catch (const std::bad_alloc&) {
    errorText_ = kReadExternalErrorText;
    return 0;
}

}  // namespace tarvex
