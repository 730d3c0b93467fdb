#include "correlation/FactorFile.h"

#include <fstream>
#include <istream>
#include <new>
#include <ostream>

#include "correlation/FactorList.h"
#include "common/AtomicFileWriter.h"

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

// Running out of memory on a hostile file is a failed read, like any other.
int loadFactorFile(const std::string& path, FactorList& list, std::string& errorText) try {
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
} catch (const std::bad_alloc&) {
    errorText = kFactorFileReadText;
    return 0;
}

int saveFactorFile(const std::string& path, const FactorList& list, std::string& errorText) {
    switch (writeFileAtomically(path, [&list](std::ostream& out) { list.write(out); })) {
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
