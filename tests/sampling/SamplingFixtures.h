#pragma once
// Factor lists and store readers shared by the sampling tests.
#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "correlation/FactorList.h"
#include "factors/Constant.h"
#include "factors/Normal.h"
#include "factors/Relation.h"
#include "factors/Uniform.h"
#include "sampling/sampValues.h"

namespace tarvex::testing {

inline std::unique_ptr<Uniform> uniformFactor(const std::string& name, double a = 0.0, double b = 1.0) {
    auto u = std::make_unique<Uniform>();
    u->name = name;
    u->clear();
    u->addInterval(std::make_unique<Interval>(a, b, 1.0));
    return u;
}

inline std::unique_ptr<Normal> normalFactor(const std::string& name, double mean, double sd) {
    auto n = std::make_unique<Normal>();
    n->name = name;
    n->setMean(mean);
    n->setStdDeviation(sd);
    return n;
}

inline std::unique_ptr<Constant> constantFactor(const std::string& name, double value) {
    auto c = std::make_unique<Constant>();
    c->name = name;
    c->value = value;
    return c;
}

inline std::unique_ptr<Relation> relationFactor(const std::string& name, const std::string& expression) {
    auto r = std::make_unique<Relation>();
    r->name = name;
    r->setExpression(expression);
    return r;
}

inline std::vector<double> column(sampValues& store, int32_t c) {
    std::vector<double> out(static_cast<size_t>(store.rowCount()));
    for (int32_t r = 0; r < store.rowCount(); ++r) store.getValue(r, c, &out[static_cast<size_t>(r)]);
    return out;
}

inline std::vector<double> ranksOf(const std::vector<double>& v) {
    std::vector<size_t> idx(v.size());
    for (size_t i = 0; i < v.size(); ++i) idx[i] = i;
    std::sort(idx.begin(), idx.end(), [&](size_t a, size_t b) { return v[a] < v[b]; });
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

// Each value in its own stratum [i/n, (i+1)/n).
inline bool oneValuePerStratum(std::vector<double> v) {
    const size_t n = v.size();
    std::sort(v.begin(), v.end());
    for (size_t i = 0; i < n; ++i)
        if (!(v[i] >= double(i) / double(n) && v[i] < double(i + 1) / double(n))) return false;
    return true;
}

}  // namespace tarvex::testing
