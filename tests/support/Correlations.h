#pragma once
// Reference correlation measures for the tests, computed the plain way so that
// the engine's own statistics are never checked against themselves.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace tarvex::test {

// Position of each value in ascending order, from 0 (ties in index order).
inline std::vector<double> ranksOf(const std::vector<double>& v) {
    std::vector<size_t> idx(v.size());
    for (size_t i = 0; i < v.size(); ++i) idx[i] = i;
    std::stable_sort(idx.begin(), idx.end(), [&](size_t a, size_t b) { return v[a] < v[b]; });
    std::vector<double> r(v.size());
    for (size_t p = 0; p < idx.size(); ++p) r[idx[p]] = double(p);
    return r;
}

inline double pearson(const std::vector<double>& x, const std::vector<double>& y) {
    const double n = double(x.size());
    double mx = 0, my = 0;
    for (size_t i = 0; i < x.size(); ++i) mx += x[i], my += y[i];
    mx /= n, my /= n;
    double sxy = 0, sxx = 0, syy = 0;
    for (size_t i = 0; i < x.size(); ++i) {
        sxy += (x[i] - mx) * (y[i] - my);
        sxx += (x[i] - mx) * (x[i] - mx);
        syy += (y[i] - my) * (y[i] - my);
    }
    return sxy / std::sqrt(sxx * syy);
}

inline double spearman(const std::vector<double>& x, const std::vector<double>& y) {
    return pearson(ranksOf(x), ranksOf(y));
}

}  // namespace tarvex::test
