// Factor records of the factor file: the layout per kind, the name and note
// rules of the reader, and the Triangular quirk.
#include <gtest/gtest.h>

#include <sstream>

#include "factors/Beta.h"
#include "factors/Constant.h"
#include "factors/Discrete.h"
#include "factors/Dummy.h"
#include "factors/Exponential.h"
#include "factors/FactorKinds.h"
#include "factors/FactorName.h"
#include "factors/Gamma.h"
#include "factors/LogNormal.h"
#include "factors/LogUniform.h"
#include "factors/Normal.h"
#include "factors/Relation.h"
#include "factors/Triangular.h"
#include "factors/Uniform.h"
#include "factors/Weibull.h"

namespace tarvex {
namespace {

std::string recordOf(const Factor& f) {
    std::ostringstream out;
    f.write(out);
    return out.str();
}

// Reads a record text (type line included) into a fresh factor of its kind.
std::unique_ptr<Factor> readRecord(const std::string& text, bool* ok) {
    std::istringstream in(text);
    std::string type;
    std::getline(in, type);
    auto f = newReadableFactor(type);
    *ok = f && f->read(in) == 1;
    return f;
}

TEST(FactorRecord, LayoutPerKind) {
    Normal n;
    EXPECT_EQ(n.setName("x1"), 1);
    EXPECT_EQ(n.setNote("  spaced note "), 1);
    EXPECT_EQ(n.setMean(1.23456789), 1);
    EXPECT_EQ(n.setStdDeviation(2.0), 1);
    EXPECT_EQ(recordOf(n), "Normal\nx1\n  spaced note \n1\t1.23457\t2\t0.001\t0.999\n");

    LogNormal ln;
    ASSERT_EQ(ln.setMean(-0.5), 1);
    EXPECT_EQ(recordOf(ln), "LogNormal\nnonameLogNorm\n\n1\t-0.5\t1\t0.001\t0.999\n");

    Exponential e;
    ASSERT_EQ(e.setLambda(2.5), 1);
    ASSERT_EQ(e.setB(1.0), 1);
    ASSERT_EQ(e.setRightTruncation(0.99), 1);
    EXPECT_EQ(recordOf(e), "Exponential\nnonameExpo\n\n1\t2.5\t1\t0.99\n");

    Gamma g;
    ASSERT_EQ(g.setR(3.0), 1);
    ASSERT_EQ(g.setLambda(0.5), 1);
    EXPECT_EQ(recordOf(g), "Gamma\nnonameGamma\n\n1\t3\t0.5\t0\t0.999\n");

    Weibull w;
    ASSERT_EQ(w.setBeta(1.5), 1);
    ASSERT_EQ(w.setN(2.0), 1);
    ASSERT_EQ(w.setB(0.25), 1);
    EXPECT_EQ(recordOf(w), "Weibull\nnonameWeib\n\n1\t1.5\t2\t0.25\t0.999\n");

    Beta b;
    ASSERT_EQ(b.setParameters(2.0, 3.0, 10.0, 20.0), 1);
    EXPECT_EQ(recordOf(b), "Beta\nnonameBeta\n\n1\t2\t3\t10\t20\n");

    Triangular t;
    EXPECT_EQ(recordOf(t), "Triangular\nnonameTriang\n\n1\t0\t1\t2\n");

    Constant c;
    c.value = 1e-7;
    EXPECT_EQ(recordOf(c), "Constant\nnonameConst\n\n1\t1e-07\n");

    Uniform u;
    EXPECT_EQ(recordOf(u), "Uniform\nnonameUnif\n\n1\t1\n0\t1\t1\n");

    LogUniform lu;
    EXPECT_EQ(recordOf(lu), "LogUniform\nnonameLogUnif\n\n1\t1\n1\t2.71828\t1\n");

    Discrete d;
    EXPECT_EQ(recordOf(d), "Discrete\nnonameDisc\n\n1\t2\n0\t1\t0.5\n1\t2\t0.5\n");

    Relation r;
    ASSERT_EQ(r.setExpression("a + 2 * b"), 1);
    EXPECT_EQ(recordOf(r), "Relation\nnonameRelat\n\n1\na + 2 * b\n\n");

    Dummy dummy;
    EXPECT_EQ(recordOf(dummy), "Dummy\nnonameDummy\n\n1\n");
}

TEST(FactorRecord, ReadsBackEveryKind) {
    bool ok = false;
    auto f = readRecord("Gamma\ng1\nmy note\n7\t3\t0.5\t2\t0.95\n", &ok);
    ASSERT_TRUE(ok);
    auto* g = dynamic_cast<Gamma*>(f.get());
    ASSERT_NE(g, nullptr);
    EXPECT_EQ(g->name(), "g1");
    EXPECT_EQ(g->note(), "my note");
    EXPECT_EQ(g->status, 7);
    EXPECT_EQ(g->getR(), 3.0);
    EXPECT_EQ(g->getLambda(), 0.5);
    EXPECT_EQ(g->getB(), 2.0);
    EXPECT_EQ(g->getRightTruncation(), 0.95);
    EXPECT_DOUBLE_EQ(g->getGammaOfR(), 2.0);  // Gamma(3) = 2! kept with r

    f = readRecord("Beta\nb\n\n1\t2\t2\t10\t20\n", &ok);
    ASSERT_TRUE(ok);
    auto* b = dynamic_cast<Beta*>(f.get());
    EXPECT_EQ(b->getRange(), 10.0);
    EXPECT_DOUBLE_EQ(b->getBetaFunction(), 1.0 / 6.0);  // B(2,2)

    // Intervals are taken without any check of order, bounds or weights.
    f = readRecord("LogUniform\nlu\n\n1\t2\n5\t1\t0.7\n-1\t3\t2\n", &ok);
    ASSERT_TRUE(ok);
    auto* lu = dynamic_cast<LogUniform*>(f.get());
    ASSERT_EQ(lu->count(), 2);
    EXPECT_EQ(lu->intervalAt(0)->left, 5.0);
    EXPECT_EQ(lu->intervalAt(1)->weight, 2.0);
    EXPECT_NE(dynamic_cast<LogInterval*>(lu->intervalAt(1)), nullptr);

    f = readRecord("Discrete\nd\n\n1\t3\n1\t2\t0.2\n2\t3\t0.3\n3\t4\t0.5\n", &ok);
    ASSERT_TRUE(ok);
    auto* d = dynamic_cast<Discrete*>(f.get());
    ASSERT_EQ(d->count(), 3);  // the two default points were cleared
    EXPECT_EQ(d->discreteInverse(0.2), 2.0);

    // The expression line follows the data line; the rest of that is skipped.
    f = readRecord("Relation\nr\n\n1\nx * y\n\n", &ok);
    ASSERT_TRUE(ok);
    auto* r = dynamic_cast<Relation*>(f.get());
    EXPECT_EQ(r->expression(), "x * y");
    EXPECT_EQ(r->factorNames(), (std::vector<std::string>{"x", "y"}));
}

TEST(FactorRecord, NameRules) {
    bool ok = false;
    // A name of 19 characters is the longest a file holds.
    auto f = readRecord("Constant\nabcdefghijklmnopqrs\n\n1\t2\n", &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(f->name(), "abcdefghijklmnopqrs");
    readRecord("Constant\nabcdefghijklmnopqrst\n\n1\t2\n", &ok);
    EXPECT_FALSE(ok);

    // The first word is the name; an empty line has none.
    f = readRecord("Constant\n  two words\n\n1\t2\n", &ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(f->name(), "two");
    readRecord("Constant\n   \n\n1\t2\n", &ok);
    EXPECT_FALSE(ok);

    for (const char* bad : {"1a", "a_b", "a.b", "x-y", "(a)", "a\xA3", "\xE8x", "q\xA7"}) {
        readRecord(std::string("Constant\n") + bad + "\n\n1\t2\n", &ok);
        EXPECT_FALSE(ok) << bad;
    }
    // A UTF-8 "é" is two bytes, neither of them a forbidden Latin-1 one.
    f = readRecord("Constant\ncaf\xC3\xA9\n\n1\t2\n", &ok);
    EXPECT_TRUE(ok);

    // A note of 254 characters fits, one of 255 does not.
    readRecord("Constant\nc\n" + std::string(254, 'n') + "\n1\t2\n", &ok);
    EXPECT_TRUE(ok);
    readRecord("Constant\nc\n" + std::string(255, 'n') + "\n1\t2\n", &ok);
    EXPECT_FALSE(ok);

    // Counts below 1 fail an interval record.
    readRecord("Uniform\nu\n\n1\t0\n", &ok);
    EXPECT_FALSE(ok);
    readRecord("Discrete\nd\n\n1\t-3\n", &ok);
    EXPECT_FALSE(ok);
    // Missing numbers fail.
    readRecord("Normal\nn\n\n1\t0\t1\t0.001\n", &ok);
    EXPECT_FALSE(ok);
}

// Whatever the setters accept, the reader gives back; one character more is
// refused where it enters, and the factor keeps what it had.
TEST(FactorRecord, LongestAcceptedTextsReadBack) {
    const std::string name19 = "abcdefghijklmnopqrs";
    const std::string note254 = " " + std::string(252, 'n') + " ";
    // x + 1 spread over 254 characters.
    const std::string expression254 = "x" + std::string(251, ' ') + "+1";
    ASSERT_EQ(note254.size(), 254u);
    ASSERT_EQ(expression254.size(), 254u);

    Relation r;
    ASSERT_EQ(r.setName(name19), 1);
    ASSERT_EQ(r.setNote(note254), 1);
    ASSERT_EQ(r.setExpression(expression254), 1);
    bool ok = false;
    auto back = readRecord(recordOf(r), &ok);
    ASSERT_TRUE(ok);
    auto* rb = dynamic_cast<Relation*>(back.get());
    ASSERT_NE(rb, nullptr);
    EXPECT_EQ(rb->name(), name19);
    EXPECT_EQ(rb->note(), note254);
    EXPECT_EQ(rb->expression(), expression254);
    const double x = 2.5;
    EXPECT_EQ(rb->evaluate(1, {"x"}, &x), 3.5);

    struct Refused {
        int (*set)(Relation&, const std::string&);
        std::string value;
        const char* text;
    };
    auto setName = [](Relation& f, const std::string& v) { return f.setName(v); };
    auto setNote = [](Relation& f, const std::string& v) { return f.setNote(v); };
    auto setExpression = [](Relation& f, const std::string& v) { return f.setExpression(v); };
    const Refused refused[] = {
        {setName, name19 + "t", kFactorNameTooLongText},
        {setName, "a\tb", kWrongFactorNameText},  // the reader keeps the first word only
        {setName, "a.b", kWrongFactorNameText},
        {setName, "", kWrongFactorNameText},
        {setNote, note254 + "n", kNoteTooLongText},
        {setNote, "two\nlines", kNoteTooLongText},
        {setNote, "ends in a return\r", kNoteTooLongText},
        {setExpression, "x" + std::string(252, ' ') + "+1", kRelationTooLongText},
        {setExpression, "x +\n1", kRelationTooLongText},
    };
    for (const Refused& c : refused) {
        Relation fresh(r);  // each refusal on a factor that has said nothing yet
        EXPECT_EQ(c.set(fresh, c.value), 0) << c.value;
        EXPECT_EQ(fresh.errorText(), c.text) << c.value;
        EXPECT_EQ(recordOf(fresh), recordOf(*rb)) << c.value;
    }
}

TEST(FactorRecord, TriangularOutOfOrderKeepsLoading) {
    bool ok = false;
    auto f = readRecord("Triangular\nt\n\n1\t0\t5\t2\n", &ok);
    EXPECT_TRUE(ok);
    auto* t = dynamic_cast<Triangular*>(f.get());
    EXPECT_EQ(t->errorText(), "Wrong values assigned to the distribution definition interval: check alfa beta and gamma");
    EXPECT_EQ(t->getAlfa(), 0.0);
    EXPECT_EQ(t->getBeta(), 1.0);
    EXPECT_EQ(t->getGamma(), 2.0);
    EXPECT_EQ(t->name(), "t");
}

TEST(FactorName, ForbiddenCharactersAreLatin1Bytes) {
    const std::string set = kForbiddenNameCharacters;
    EXPECT_EQ(set.size(), 37u);
    EXPECT_EQ(static_cast<unsigned char>(set[4]), 0xA3);  // the pound sign
    EXPECT_EQ(set.back(), ' ');
    EXPECT_NE(set.find('_'), std::string::npos);
    EXPECT_TRUE(isValidFactorName("a1"));
    EXPECT_FALSE(isValidFactorName("1a"));
    EXPECT_FALSE(isValidFactorName(""));
    EXPECT_FALSE(isValidFactorName("a b"));
    EXPECT_EQ(stripBlanks("  name  "), "name");
    EXPECT_EQ(stripBlanks("   "), "");
}

TEST(FactorKinds, NamesInFileOrderAndDummyRefused) {
    for (const char* t : {"Constant", "Normal", "Exponential", "Gamma", "Beta", "Relation", "Weibull", "LogNormal",
                          "LogUniform", "Triangular", "Uniform", "Discrete"}) {
        auto f = newReadableFactor(t);
        ASSERT_NE(f, nullptr) << t;
        EXPECT_EQ(f->typeName(), t);
    }
    EXPECT_EQ(newReadableFactor("Dummy"), nullptr);
    EXPECT_EQ(newReadableFactor("normal"), nullptr);
    EXPECT_EQ(newReadableFactor("Factor"), nullptr);
    EXPECT_EQ(isCorrelatableType("Constant"), 0);
    EXPECT_EQ(isCorrelatableType("Relation"), 0);
    EXPECT_EQ(isCorrelatableType("Dummy"), 1);
}

} // namespace
} // namespace tarvex
