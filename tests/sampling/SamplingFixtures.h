#pragma once
// Factor lists and store readers shared by the sampling tests.
#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "Correlations.h"
#include "correlation/FactorList.h"
#include "factors/Constant.h"
#include "factors/Normal.h"
#include "factors/Relation.h"
#include "factors/Uniform.h"
#include "sampling/Sampler.h"
#include "sampling/sampValues.h"

namespace tarvex::testing {

using tarvex::test::pearson;
using tarvex::test::ranksOf;
using tarvex::test::spearman;

// Drives a sampler as the generation loop does: targets 1, 2, ... upTo,
// ending at a failure.
inline float drive(Sampler& s, sampValues& store, FactorList& list, int upTo = 50) {
    s.reset();
    float p = 0.0f;
    for (int target = 1; target <= upTo && p >= 0.0f; ++target) p = s.generate(float(target), store, list);
    return p;
}

inline std::unique_ptr<Uniform> uniformFactor(const std::string& name, double a = 0.0, double b = 1.0) {
    auto u = std::make_unique<Uniform>();
    EXPECT_EQ(u->setName(name), 1);
    u->clear();
    EXPECT_EQ(u->addInterval(std::make_unique<Interval>(a, b, 1.0)), 1);
    return u;
}

inline std::unique_ptr<Normal> normalFactor(const std::string& name, double mean, double sd) {
    auto n = std::make_unique<Normal>();
    EXPECT_EQ(n->setName(name), 1);
    EXPECT_EQ(n->setMean(mean), 1);
    EXPECT_EQ(n->setStdDeviation(sd), 1);
    return n;
}

inline std::unique_ptr<Constant> constantFactor(const std::string& name, double value) {
    auto c = std::make_unique<Constant>();
    EXPECT_EQ(c->setName(name), 1);
    c->value = value;
    return c;
}

inline std::unique_ptr<Relation> relationFactor(const std::string& name, const std::string& expression) {
    auto r = std::make_unique<Relation>();
    EXPECT_EQ(r->setName(name), 1);
    EXPECT_EQ(r->setExpression(expression), 1);
    return r;
}

inline std::vector<double> column(sampValues& store, int32_t c) {
    std::vector<double> out(static_cast<size_t>(store.rowCount()));
    for (int32_t r = 0; r < store.rowCount(); ++r) EXPECT_EQ(store.getValue(r, c, &out[static_cast<size_t>(r)]), 1);
    return out;
}

// Three uniform factors whose pairwise targets 0.9, 0.9, -0.9 no matrix can
// carry: the rank table must report it.
inline void makeImpossibleCorrelations(FactorList& list) {
    for (const char* name : {"a", "b", "c"}) EXPECT_EQ(list.addFactor(uniformFactor(name)), 1);
    EXPECT_EQ(list.setMatrixValue(0, 1, 0.9), 1);
    EXPECT_EQ(list.setMatrixValue(0, 2, 0.9), 1);
    EXPECT_EQ(list.setMatrixValue(1, 2, -0.9), 1);
    list.correlationMode = kImanConoverCorrelation;
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
