#include "factors/TabulatedValuesFile.h"

#include <fstream>
#include <istream>
#include <new>
#include <ostream>

#include "factors/Discrete.h"
#include "common/AtomicFileWriter.h"
#include "factors/Uniform.h"

namespace tarvex {

namespace {

template <class F>
std::vector<TabulatedRow> rowsOf(const F& factor) {
    std::vector<TabulatedRow> rows;
    for (int i = 0; i < factor.count(); ++i) {
        const Interval* iv = factor.intervalAt(i);
        rows.push_back({iv->left, iv->right, iv->weight});
    }
    return rows;
}

} // namespace

std::vector<TabulatedRow> tabulatedRows(const Discrete& factor) {
    return rowsOf(factor);
}

std::vector<TabulatedRow> tabulatedRows(const Uniform& factor) {
    return rowsOf(factor);
}

void writeTabulatedValues(std::ostream& out, TabulatedKind kind, const std::vector<TabulatedRow>& rows) {
    out << rows.size() << '\n';
    for (const TabulatedRow& r : rows) {
        if (kind == TabulatedKind::Points) {
            out << r.left << '\t' << r.weight << '\n';
        } else {
            out << r.left << '\t' << r.right << '\t' << r.weight << '\n';
        }
    }
}

int readTabulatedValues(std::istream& in, TabulatedKind kind, std::vector<TabulatedRow>& rows) {
    long count = 0;
    if (!(in >> count) || count < 0) {
        in.setstate(std::ios::failbit);
        return 0;
    }
    std::vector<TabulatedRow> read;
    for (long k = 0; k < count; ++k) {
        TabulatedRow r;
        if (kind == TabulatedKind::Points) {
            if (!(in >> r.left >> r.weight)) return 0;
            r.right = r.left + 1.0;
        } else {
            if (!(in >> r.left >> r.right >> r.weight)) return 0;
        }
        read.push_back(r);
    }
    rows = std::move(read);
    return 1;
}

int saveTabulatedValues(const std::string& path, TabulatedKind kind, const std::vector<TabulatedRow>& rows,
                        std::string& errorText) {
    switch (writeFileAtomically(path, [&](std::ostream& out) { writeTabulatedValues(out, kind, rows); })) {
    case WriteOutcome::Written:
        return 1;
    case WriteOutcome::OpenFailed:
        errorText = kTabulatedOpenSaveText;
        return 0;
    case WriteOutcome::WriteFailed:
        break;
    }
    errorText = kTabulatedWriteText;
    return 0;
}

// Running out of memory on a hostile file is a failed read, like any other.
int loadTabulatedValues(const std::string& path, TabulatedKind kind, std::vector<TabulatedRow>& rows,
                        std::string& errorText) try {
    std::ifstream in(path);
    if (!in) {
        errorText = kTabulatedOpenText;
        return 0;
    }
    if (!readTabulatedValues(in, kind, rows)) {
        errorText = kTabulatedReadText;
        return 0;
    }
    return 1;
} catch (const std::bad_alloc&) {
    errorText = kTabulatedReadText;
    return 0;
}

} // namespace tarvex
