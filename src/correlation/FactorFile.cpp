#include "correlation/FactorFile.h"

#include <fstream>
#include <istream>
#include <ostream>

#include "correlation/FactorList.h"
#include "factors/ReplacingFileWriter.h"

namespace tarvex {

int readFactorListInto(std::istream& in, FactorList& list) {
    FactorList temporary;
    if (!temporary.read(in)) {
        in.setstate(std::ios::failbit);
        return 0;
    }
    temporary.sourceText = list.sourceText;
    temporary.modified = 0;
    list.swap(temporary);
    return 1;
}

int loadFactorFile(const std::string& path, FactorList& list, std::string& errorText) {
    std::ifstream in(path);
    if (!in) {
        errorText = kFactorFileOpenText;
        return 0;
    }
    if (!readFactorListInto(in, list)) {
        errorText = kFactorFileReadText;
        return 0;
    }
    list.sourceText = path;
    return 1;
}

int saveFactorFile(const std::string& path, const FactorList& list, std::string& errorText) {
    switch (writeReplacingFile(path, [&list](std::ostream& out) { list.write(out); })) {
    case WriteOutcome::Written:
        return 1;
    case WriteOutcome::OpenFailed:
        errorText = kFactorFileOutputText;
        return 0;
    case WriteOutcome::WriteFailed:
        break;
    }
    errorText = kFactorFileWriteText;
    return 0;
}

} // namespace tarvex
