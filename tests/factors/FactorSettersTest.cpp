// Identity of every class (copies by class are checked with the factor list),
// copy semantics, and every validating setter with its exact failure text.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "factors/Beta.h"
#include "factors/Constant.h"
#include "factors/Discrete.h"
#include "factors/Dummy.h"
#include "factors/Exponential.h"
#include "factors/Gamma.h"
#include "factors/LogNormal.h"
#include "factors/LogUniform.h"
#include "factors/Relation.h"
#include "factors/Triangular.h"
#include "factors/Weibull.h"

namespace tarvex {
namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(FactorFamily, TypeCodesNamesAndDefaults) {
    struct Row {
        std::unique_ptr<Factor> f;
        int code;
        const char* type;
        const char* name;
    };
    Row rows[] = {
        {std::make_unique<Normal>(), 0, "Normal", "nonameNorm"},
        {std::make_unique<LogNormal>(), 1, "LogNormal", "nonameLogNorm"},
        {std::make_unique<Uniform>(), 2, "Uniform", "nonameUnif"},
        {std::make_unique<LogUniform>(), 3, "LogUniform", "nonameLogUnif"},
        {std::make_unique<Weibull>(), 4, "Weibull", "nonameWeib"},
        {std::make_unique<Constant>(), 5, "Constant", "nonameConst"},
        {std::make_unique<Exponential>(), 6, "Exponential", "nonameExpo"},
        {std::make_unique<Gamma>(), 7, "Gamma", "nonameGamma"},
        {std::make_unique<Beta>(), 8, "Beta", "nonameBeta"},
        {std::make_unique<Triangular>(), 9, "Triangular", "nonameTriang"},
        {std::make_unique<Relation>(), 10, "Relation", "nonameRelat"},
        {std::make_unique<Discrete>(), 11, "Discrete", "nonameDisc"},
        {std::make_unique<Dummy>(), 100, "Dummy", "nonameDummy"},
    };
    for (const Row& r : rows) {
        EXPECT_EQ(r.f->getType(), r.code) << r.type;
        EXPECT_EQ(r.f->typeName(), r.type);
        EXPECT_EQ(r.f->name(), r.name);
    }

    // Defaults the factor records do not show (they are written after other
    // settings there), and values derived from them.
    Normal n;
    EXPECT_EQ(n.getMean(), 0.0);
    EXPECT_EQ(n.getStdDeviation(), 1.0);
    EXPECT_EQ(LogNormal().getMean(), 0.0);
    Weibull w;
    EXPECT_EQ(w.getBeta(), 1.0);
    EXPECT_EQ(w.getN(), 1.0);
    EXPECT_EQ(w.getB(), 0.0);
    EXPECT_EQ(w.getLeftTruncation(), 0.0);
    EXPECT_EQ(w.getRightTruncation(), 0.999);
    Exponential e;
    EXPECT_EQ(e.getLambda(), 1.0);
    EXPECT_EQ(e.getB(), 0.0);
    EXPECT_EQ(e.getLeftTruncation(), 0.0);
    EXPECT_EQ(e.getRightTruncation(), 0.999);
    Gamma g;
    EXPECT_EQ(g.getR(), 1.0);
    EXPECT_EQ(g.getLambda(), 1.0);
    EXPECT_EQ(g.getGammaOfR(), 1.0);
    EXPECT_EQ(g.getLeftTruncation(), 0.0);
    Beta b;
    EXPECT_EQ(b.getAlfa(), 2.0);
    EXPECT_EQ(b.getBeta(), 2.0);
    EXPECT_EQ(b.getRange(), 1.0);
    EXPECT_NEAR(b.getBetaFunction(), 1.0 / 6.0, 1e-16);  // B(2,2) = 1/6
    Triangular t;
    EXPECT_EQ(t.getAreaLeft(), 0.5);
    EXPECT_EQ(t.getHeight(), 1.0);
    EXPECT_EQ(Constant().value, 1.0);
    // [1, e] exactly (its record shows six digits), as a LogInterval.
    LogUniform lu;
    EXPECT_EQ(lu.intervalAt(0)->right, std::exp(1.0));
    EXPECT_EQ(lu.intervalAt(0)->setBounds(-1.0, 2.0), 0);
}

// A copy takes name, note and parameters; the status, the last error and the
// inverse table stay with the original.
TEST(FactorFamily, CopyTakesNameNoteAndParametersButNotStatusOrTable) {
    Gamma g;
    EXPECT_EQ(g.setName("rain"), 1);
    EXPECT_EQ(g.setNote("  spaced note "), 1);
    g.status = 9;
    ASSERT_EQ(g.setR(-1.0), 0);
    ASSERT_EQ(g.setR(2.5), 1);
    ASSERT_EQ(g.setRightTruncation(0.9), 1);
    ASSERT_EQ(g.prepareInverse(), 1);
    Gamma c(g);
    EXPECT_EQ(c.name(), "rain");
    EXPECT_EQ(c.note(), "  spaced note ");
    EXPECT_EQ(c.status, 1);
    EXPECT_EQ(c.errorText(), "No errors");
    EXPECT_EQ(c.getR(), 2.5);
    EXPECT_EQ(c.getRightTruncation(), 0.9);
    EXPECT_NEAR(c.getGammaOfR(), std::tgamma(2.5), 1e-14);
    EXPECT_EQ(g.table().size(), 101u);
    EXPECT_TRUE(c.table().empty());

    Normal n;
    ASSERT_EQ(n.setTruncations(0.1, 0.8), 1);
    ASSERT_EQ(n.setMean(4.0), 1);
    auto nc = n.clone();
    auto* ncp = dynamic_cast<Normal*>(nc.get());
    ASSERT_NE(ncp, nullptr);
    EXPECT_EQ(ncp->getMean(), 4.0);
    EXPECT_EQ(ncp->getLeftTruncation(), 0.1);

    // Derived values come with the parameters: height 2 / (6 + 2), area left
    // of the mode (0 + 2) / 8.
    Triangular t;
    ASSERT_EQ(t.setParameters(-2.0, 0.0, 6.0), 1);
    Triangular tc(t);
    EXPECT_EQ(tc.getHeight(), 0.25);
    EXPECT_EQ(tc.getAreaLeft(), 0.25);
    Beta b;
    ASSERT_EQ(b.setParameters(0.5, 3.0, -1.0, 5.0), 1);
    EXPECT_EQ(Beta(b).getRange(), 6.0);
}

TEST(FactorFamily, ParameterSettersAndTheirTexts) {
    // {setter result, expected text}; a failure leaves the field as it was.
    Exponential e;
    EXPECT_EQ(e.setLambda(0.0), 0);
    EXPECT_EQ(e.errorText(), "Lambda must be > 0");
    EXPECT_EQ(e.setLambda(kNaN), 0);
    EXPECT_EQ(e.getLambda(), 1.0);
    EXPECT_EQ(e.setLambda(2.0), 1);
    EXPECT_EQ(e.errorText(), "Lambda must be > 0");  // success leaves the text
    EXPECT_EQ(e.setB(-1e-9), 0);
    EXPECT_EQ(e.errorText(), "b must be >= 0");
    EXPECT_EQ(e.setB(0.0), 1);
    EXPECT_EQ(e.setRightTruncation(1.0), 0);
    EXPECT_EQ(e.errorText(), "Truncation must be between 0 and 1");
    EXPECT_EQ(e.setRightTruncation(0.0), 0);
    EXPECT_EQ(e.getRightTruncation(), 0.999);
    EXPECT_EQ(e.setRightTruncation(0.5), 1);
    EXPECT_EQ(e.getRightTruncation(), 0.5);

    Gamma g;
    EXPECT_EQ(g.setR(0.0), 0);
    EXPECT_EQ(g.errorText(), "r must be > 0");
    EXPECT_EQ(g.setR(4.0), 1);
    EXPECT_NEAR(g.getGammaOfR(), 6.0, 1e-13);
    EXPECT_EQ(g.setLambda(0.0), 0);  // the text says >= 0, zero is refused all the same
    EXPECT_EQ(g.errorText(), "Lambda must be >= 0");
    EXPECT_EQ(g.getLambda(), 1.0);
    EXPECT_EQ(g.setB(-2.0), 0);
    EXPECT_EQ(g.errorText(), "b must be >= 0");
    EXPECT_EQ(g.setRightTruncation(1.5), 0);
    EXPECT_EQ(g.errorText(), "Truncation must be between 0 and 1");

    for (Normal* n : {static_cast<Normal*>(new Normal), static_cast<Normal*>(new LogNormal)}) {
        EXPECT_EQ(n->setStdDeviation(-0.1), 0);
        EXPECT_EQ(n->errorText(), "Standard deviation must be >= 0");
        EXPECT_EQ(n->setStdDeviation(0.0), 1);
        EXPECT_EQ(n->getStdDeviation(), 0.0);
        delete n;
    }

    Weibull w;
    EXPECT_EQ(w.setBeta(0.0), 0);
    EXPECT_EQ(w.errorText(), "Beta must be > 0");
    EXPECT_EQ(w.setN(-1.0), 0);
    EXPECT_EQ(w.errorText(), "n must be > 0");
    EXPECT_EQ(w.setB(-1.0), 0);
    EXPECT_EQ(w.errorText(), "b must be >= 0");
    EXPECT_EQ(w.getBeta(), 1.0);
    EXPECT_EQ(w.getN(), 1.0);

    Interval iv;
    EXPECT_EQ(iv.setBounds(2.0, 2.0), 0);
    EXPECT_EQ(iv.errorText(), "left bound >= of right bound");
    EXPECT_EQ(iv.left, 0.0);
    EXPECT_EQ(iv.setBounds(-3.0, -1.0), 1);
    EXPECT_EQ(iv.left, -3.0);
    LogInterval li;
    EXPECT_EQ(li.setBounds(0.0, 1.0), 0);
    EXPECT_EQ(li.errorText(), "left bound < 0");
    EXPECT_EQ(li.setBounds(3.0, 1.0), 0);
    EXPECT_EQ(li.errorText(), "left bound >= of right bound");
    EXPECT_EQ(li.setBounds(0.5, 1.0), 1);
    EXPECT_EQ(li.right, 1.0);

    Beta b;
    EXPECT_EQ(b.setParameters(0.0, 1.0, 0.0, 1.0), 0);
    EXPECT_EQ(b.errorText(), "Wrong negative value assigned to Alfa");
    EXPECT_EQ(b.setParameters(1.0, -1.0, 0.0, 1.0), 0);
    EXPECT_EQ(b.errorText(), "Wrong negative value assigned to Beta");
    EXPECT_EQ(b.setParameters(1.0, 1.0, 1.0, 1.0), 0);
    EXPECT_EQ(b.errorText(), "Negative or null definition interval: check a and b");
    EXPECT_EQ(b.getAlfa(), 2.0);
    EXPECT_EQ(b.setParameters(3.0, 4.0, 1.0, 2.0), 1);
    EXPECT_NEAR(b.getBetaFunction(), 2.0 * 6.0 / 720.0, 1e-16);  // B(3,4) = 2! 3! / 6!

    Triangular t;
    for (auto [l, m, r] : {std::tuple{0.0, 0.0, 1.0}, {0.0, 1.0, 1.0}, {0.0, 2.0, 1.0}, {1.0, 0.5, 2.0}}) {
        EXPECT_EQ(t.setParameters(l, m, r), 0);
        EXPECT_EQ(t.errorText(), "Wrong values assigned to the distribution definition interval: check alfa beta and gamma");
    }
    EXPECT_EQ(t.getGamma(), 2.0);
}

TEST(FactorFamily, TruncationSettersTestStoredValues) {
    Exponential e;
    EXPECT_EQ(e.setLeftTruncation(0.5), 0);  // stored left is 0
    EXPECT_EQ(e.errorText(), "Left truncation cannot be less than 0.001 or greater than right truncation");
    Gamma g;
    EXPECT_EQ(g.setLeftTruncation(0.01), 0);
    Weibull w;
    EXPECT_EQ(w.setLeftTruncation(0.01), 0);
    EXPECT_EQ(w.errorText(), "Left truncation cannot be less than 0.001 or greater than right truncation");
    // The inherited right setter on Weibull does not look at the argument.
    EXPECT_EQ(w.setRightTruncation(7.0), 1);
    EXPECT_EQ(w.getRightTruncation(), 7.0);
    EXPECT_EQ(w.setRightTruncation(0.5), 0);
    EXPECT_EQ(w.errorText(), "Right truncation cannot be less than left truncation or greater than 0.999");

    Normal n;
    EXPECT_EQ(n.setLeftTruncation(2.0), 1);  // accepted: the stored 0.001 is fine
    EXPECT_EQ(n.getLeftTruncation(), 2.0);
    EXPECT_EQ(n.setLeftTruncation(0.3), 0);  // now the stored 2.0 exceeds the right one
    EXPECT_EQ(n.getLeftTruncation(), 2.0);
    EXPECT_EQ(n.setRightTruncation(0.5), 0);  // stored right 0.999 < stored left 2.0
    EXPECT_EQ(n.errorText(), "Right truncation cannot be less than left truncation or greater than 0.999");

    // setTruncations tests its arguments, in its order.
    LogNormal ln;
    EXPECT_EQ(ln.setTruncations(0.6, 0.5), 0);
    EXPECT_EQ(ln.errorText(), "Left Truncation must be less than right truncation");
    EXPECT_EQ(ln.setTruncations(0.6, 1.0), 0);
    EXPECT_EQ(ln.errorText(), "Right Truncation must be less than 1");
    EXPECT_EQ(ln.setTruncations(-1.0, 2.0), 0);  // right is tested before left
    EXPECT_EQ(ln.errorText(), "Right Truncation must be less than 1");
    EXPECT_EQ(ln.setTruncations(0.0, 0.5), 0);
    EXPECT_EQ(ln.errorText(), "Left Truncation must be greater than 0");
    EXPECT_EQ(ln.setTruncations(kNaN, 0.5), 0);
    EXPECT_EQ(ln.getLeftTruncation(), 0.001);
    EXPECT_EQ(ln.setTruncations(0.4, 0.4), 1);  // equality passes
    EXPECT_EQ(ln.getLeftTruncation(), 0.4);
    EXPECT_EQ(ln.getRightTruncation(), 0.4);
}

TEST(FactorFamily, ClassWideDefaultTruncations) {
    struct Restore {
        ~Restore() { EXPECT_EQ(TruncatedDistribution::setDefaultTruncations(0.001, 0.999), 1); }
    } restore;
    EXPECT_EQ(TruncatedDistribution::setDefaultTruncations(0.5, 0.5), 0);
    EXPECT_EQ(TruncatedDistribution::setDefaultTruncations(0.0, 0.5), 0);
    EXPECT_EQ(TruncatedDistribution::setDefaultTruncations(0.1, 1.0), 0);
    EXPECT_EQ(TruncatedDistribution::setDefaultTruncations(0.3, kNaN), 0);
    EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 0.001);
    EXPECT_EQ(TruncatedDistribution::setDefaultTruncations(0.02, 0.97), 1);

    Normal n;
    EXPECT_EQ(n.getLeftTruncation(), 0.02);
    EXPECT_EQ(n.getRightTruncation(), 0.97);
    Exponential e;
    EXPECT_EQ(e.getLeftTruncation(), 0.0);
    EXPECT_EQ(e.getRightTruncation(), 0.97);
    Normal earlier = n;  // a copy keeps its own values, not the defaults
    ASSERT_EQ(TruncatedDistribution::setDefaultTruncations(0.1, 0.9), 1);
    Normal copy(earlier);
    EXPECT_EQ(copy.getLeftTruncation(), 0.02);

    // The single setters test the stored defaults, not the argument.
    EXPECT_EQ(TruncatedDistribution::setDefaultRightTruncation(3.0), 1);
    EXPECT_EQ(TruncatedDistribution::defaultRightTruncation(), 3.0);
    EXPECT_EQ(TruncatedDistribution::setDefaultRightTruncation(0.95), 0);  // stored 3.0 >= 1
    EXPECT_EQ(TruncatedDistribution::defaultRightTruncation(), 3.0);
    EXPECT_EQ(TruncatedDistribution::setDefaultLeftTruncation(5.0), 1);  // stored 0.1 is fine
    EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 5.0);
    EXPECT_EQ(TruncatedDistribution::setDefaultLeftTruncation(0.2), 0);  // stored 5.0 > 3.0
    EXPECT_EQ(TruncatedDistribution::defaultLeftTruncation(), 5.0);
}

} // namespace
} // namespace tarvex
