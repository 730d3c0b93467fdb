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
    void SetUp() override { TruncatedDistribution::setDefaultTruncations(0.001, 0.999); }
    void TearDown() override { TruncatedDistribution::setDefaultTruncations(0.001, 0.999); }
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
    n->setMean(1.23456789);
    n->setStdDeviation(0.5);
    n->setTruncations(0.01, 0.98);
    list.addFactor(std::move(n));
    auto ln = named<LogNormal>("logn");
    ln->setMean(-1.0);
    ln->setStdDeviation(0.25);
    list.addFactor(std::move(ln));
    auto e = named<Exponential>("expo");
    e->setLambda(3.0);
    e->setB(1.5);
    list.addFactor(std::move(e));
    auto g = named<Gamma>("gam");
    g->setR(2.5);
    g->setLambda(4.0);
    g->setRightTruncation(0.95);
    list.addFactor(std::move(g));
    auto w = named<Weibull>("weib");
    w->setBeta(0.75);
    w->setN(12.0);
    list.addFactor(std::move(w));
    auto b = named<Beta>("bet");
    b->setParameters(0.5, 1.5, -2.0, 3.0);
    list.addFactor(std::move(b));
    auto t = named<Triangular>("tri");
    t->setParameters(-1.0, 0.1, 4.0);
    list.addFactor(std::move(t));
    auto c = named<Constant>("konst");
    c->value = 299792458.0;
    list.addFactor(std::move(c));
    auto u = named<Uniform>("unif");
    u->clear();
    u->addInterval(std::make_unique<Interval>(0.0, 1.0, 0.3));
    u->addInterval(std::make_unique<Interval>(2.0, 2.5, 0.7));
    list.addFactor(std::move(u));
    auto lu = named<LogUniform>("logu");
    lu->clear();
    lu->addInterval(std::make_unique<LogInterval>(1e-3, 1e-1, 1.0));
    list.addFactor(std::move(lu));
    auto d = named<Discrete>("disc");
    d->clear();
    d->addPoint(std::make_unique<Interval>(1.0, 2.0, 0.2));
    d->addPoint(std::make_unique<Interval>(2.0, 3.0, 0.3));
    d->addPoint(std::make_unique<Interval>(3.0, 4.0, 0.5));
    list.addFactor(std::move(d));
    auto r = named<Relation>("rel");
    EXPECT_EQ(r->setExpression("norm * 2 + konst"), 1);
    list.addFactor(std::move(r));

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
