#pragma once
// A factor list holding every kind a factor file can hold, tree links, matrix
// values and a Stein sample, for the file tests.
#include <gtest/gtest.h>

#include <memory>

#include "correlation/FactorList.h"
#include "factors/Beta.h"
#include "factors/Constant.h"
#include "factors/Discrete.h"
#include "factors/Exponential.h"
#include "factors/Gamma.h"
#include "factors/LogNormal.h"
#include "factors/LogUniform.h"
#include "factors/Normal.h"
#include "factors/Relation.h"
#include "factors/Triangular.h"
#include "factors/TruncatedDistribution.h"
#include "factors/Uniform.h"
#include "factors/Weibull.h"

namespace tarvex::test {

// The class-wide default truncations are changed by every file read; each
// test starts and ends with the usual ones.
class DefaultTruncationsGuard : public ::testing::Test {
protected:
    void SetUp() override { EXPECT_EQ(TruncatedDistribution::setDefaultTruncations(0.001, 0.999), 1); }
    void TearDown() override { EXPECT_EQ(TruncatedDistribution::setDefaultTruncations(0.001, 0.999), 1); }
};

template <class T>
std::unique_ptr<T> named(const char* name) {
    auto f = std::make_unique<T>();
    EXPECT_EQ(f->setName(name), 1);
    return f;
}

// Factors 0..11: Normal, LogNormal, Exponential, Gamma, Weibull, Beta,
// Triangular, Constant, Uniform, LogUniform, Discrete, Relation. Links:
// 1 and 3 under 0, 4 under 3. Matrix: (0, 2) = 0.25, (5, 8) = -0.5 in the
// rows of the ten correlatable factors. Stein sample 3 x 2.
inline FactorList everyKindList() {
    FactorList list;
    auto n = named<Normal>("norm");
    EXPECT_EQ(n->setNote("  blanks kept  "), 1);
    EXPECT_EQ(n->setMean(1.23456789), 1);
    EXPECT_EQ(n->setStdDeviation(0.5), 1);
    EXPECT_EQ(n->setTruncations(0.01, 0.98), 1);
    EXPECT_EQ(list.addFactor(std::move(n)), 1);
    auto ln = named<LogNormal>("logn");
    EXPECT_EQ(ln->setMean(-1.0), 1);
    EXPECT_EQ(ln->setStdDeviation(0.25), 1);
    EXPECT_EQ(list.addFactor(std::move(ln)), 1);
    auto e = named<Exponential>("expo");
    EXPECT_EQ(e->setLambda(3.0), 1);
    EXPECT_EQ(e->setB(1.5), 1);
    EXPECT_EQ(list.addFactor(std::move(e)), 1);
    auto g = named<Gamma>("gam");
    EXPECT_EQ(g->setR(2.5), 1);
    EXPECT_EQ(g->setLambda(4.0), 1);
    g->setRightTruncation(0.95);
    EXPECT_EQ(list.addFactor(std::move(g)), 1);
    auto w = named<Weibull>("weib");
    EXPECT_EQ(w->setBeta(0.75), 1);
    EXPECT_EQ(w->setN(12.0), 1);
    EXPECT_EQ(list.addFactor(std::move(w)), 1);
    auto b = named<Beta>("bet");
    EXPECT_EQ(b->setParameters(0.5, 1.5, -2.0, 3.0), 1);
    EXPECT_EQ(list.addFactor(std::move(b)), 1);
    auto t = named<Triangular>("tri");
    EXPECT_EQ(t->setParameters(-1.0, 0.1, 4.0), 1);
    EXPECT_EQ(list.addFactor(std::move(t)), 1);
    auto c = named<Constant>("konst");
    c->value = 299792458.0;
    EXPECT_EQ(list.addFactor(std::move(c)), 1);
    auto u = named<Uniform>("unif");
    u->clear();
    EXPECT_EQ(u->addInterval(std::make_unique<Interval>(0.0, 1.0, 0.3)), 1);
    EXPECT_EQ(u->addInterval(std::make_unique<Interval>(2.0, 2.5, 0.7)), 1);
    EXPECT_EQ(list.addFactor(std::move(u)), 1);
    auto lu = named<LogUniform>("logu");
    lu->clear();
    EXPECT_EQ(lu->addInterval(std::make_unique<LogInterval>(1e-3, 1e-1, 1.0)), 1);
    EXPECT_EQ(list.addFactor(std::move(lu)), 1);
    auto d = named<Discrete>("disc");
    d->clear();
    EXPECT_EQ(d->addPoint(std::make_unique<Interval>(1.0, 2.0, 0.2)), 1);
    EXPECT_EQ(d->addPoint(std::make_unique<Interval>(2.0, 3.0, 0.3)), 1);
    EXPECT_EQ(d->addPoint(std::make_unique<Interval>(3.0, 4.0, 0.5)), 1);
    EXPECT_EQ(list.addFactor(std::move(d)), 1);
    auto r = named<Relation>("rel");
    EXPECT_EQ(r->setExpression("norm * 2 + konst"), 1);
    EXPECT_EQ(list.addFactor(std::move(r)), 1);

    EXPECT_EQ(list.linkFactor(1, 0, 0.5), 1);
    EXPECT_EQ(list.linkFactor(3, 0, -0.3), 1);
    EXPECT_EQ(list.linkFactor(4, 3, 0.7), 1);
    EXPECT_EQ(list.setMatrixValue(0, 2, 0.25), 1);
    EXPECT_EQ(list.setMatrixValue(5, 8, -0.5), 1);
    list.steinFileName = "/data/stein sample.txt";
    list.steinInfo.assign(3, 2, {1.5, 2.0, -3.25, 4.0, 1e-9, 6.0});
    list.correlationMode = kTreeCorrelation;
    return list;
}

} // namespace tarvex::test
