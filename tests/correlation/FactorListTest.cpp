// The factor list: counts, the correlation matrix that follows the factors,
// copies, and the dependence-tree bookkeeping with its sampling order.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "FactorListSamples.h"
#include "factors/Dummy.h"
#include "factors/FactorName.h"

namespace tarvex {
namespace {

using test::named;

// Positions of each factor in the sampling order.
std::vector<int> orderPositions(const FactorList& list) {
    std::vector<int> pos(static_cast<std::size_t>(list.factorCount()), -1);
    for (int k = 0; k < list.factorCount(); ++k) pos[static_cast<std::size_t>(list.factorAt(k))] = k;
    return pos;
}

TEST(FactorList, CountsAndMatrixGrowth) {
    FactorList list;
    EXPECT_EQ(list.factorCount(), 0);
    EXPECT_EQ(list.factorAt(0), -1);
    EXPECT_EQ(list.sourceText, "noFactorSel");
    EXPECT_EQ(list.correlationMode, 2);
    ASSERT_EQ(list.addFactor(named<Normal>("a")), 1);
    ASSERT_EQ(list.addFactor(named<Constant>("c")), 1);
    ASSERT_EQ(list.addFactor(named<Relation>("r")), 1);
    ASSERT_EQ(list.addFactor(named<Uniform>("b")), 1);
    ASSERT_EQ(list.addFactor(named<Dummy>("d")), 1);
    EXPECT_EQ(list.factorCount(), 5);
    EXPECT_EQ(list.correlatableCount(), 3);
    EXPECT_EQ(list.isCorrelatable(0), 1);
    EXPECT_EQ(list.isCorrelatable(1), 0);
    EXPECT_EQ(list.isCorrelatable(2), 0);
    EXPECT_EQ(list.isCorrelatable(4), 1);
    EXPECT_EQ(list.isCorrelatable(5), -1);
    EXPECT_EQ(list.isCorrelatable(-1), -1);
    EXPECT_EQ(list.isRelation(2), 1);
    EXPECT_EQ(list.isRelation(0), 0);
    EXPECT_EQ(list.isRelation(9), -1);
    EXPECT_EQ(list.correlatableIndex(3), 1);
    EXPECT_EQ(list.correlatableIndex(1), -1);
    EXPECT_EQ(list.findFactor("b"), 3);
    EXPECT_EQ(list.findFactor("zz"), -1);
    EXPECT_EQ(list.correlationMatrix(),
              (std::vector<float>{1, 0, 0, 0, 1, 0, 0, 0, 1}));

    // Values are symmetric, limited like tree links, and follow removals.
    EXPECT_EQ(list.setMatrixValue(0, 2, 0.75), 1);
    EXPECT_EQ(list.setMatrixValue(0, 1, 0.0), 0);
    EXPECT_EQ(list.errorText(), "  Correlation values must fall between -1\n  and 1 and can't be equal to 0");
    EXPECT_EQ(list.setMatrixValue(1, 1, 0.5), 0);
    EXPECT_EQ(list.matrixValue(2, 0), 0.75f);
    ASSERT_EQ(list.removeFactor(3), 1);  // "b", the middle row
    EXPECT_EQ(list.correlationMatrix(), (std::vector<float>{1, 0.75f, 0.75f, 1}));
    EXPECT_EQ(list.removeFactor(7), 0);

    // Becoming correlatable in place inserts a row there.
    ASSERT_EQ(list.replaceFactor(1, named<Gamma>("g")), 1);
    EXPECT_EQ(list.correlationMatrix(), (std::vector<float>{1, 0, 0.75f, 0, 1, 0, 0.75f, 0, 1}));
    ASSERT_EQ(list.replaceFactor(1, named<Constant>("c2")), 1);
    EXPECT_EQ(list.correlationMatrix(), (std::vector<float>{1, 0.75f, 0.75f, 1}));
    EXPECT_EQ(list.tree().node(1).factorName, "c2");
}

// The whole state of a list, as its factor file holds it.
std::string fileText(const FactorList& list) {
    std::ostringstream out;
    list.write(out);
    return out.str();
}

Relation* relationAt(const FactorList& list, int i) { return dynamic_cast<Relation*>(list.getFactor(i)); }

// Value of relation i on a row given in list order.
double relationValue(const FactorList& list, int i, const std::vector<double>& row) {
    std::vector<std::string> names;
    for (int f = 0; f < list.factorCount(); ++f) names.push_back(list.getFactor(f)->name());
    return relationAt(list, i)->evaluate(list.factorCount(), names, row.data());
}

// x, k = 2, r1 = x * x + k, r2 = r1 / 2 + x, xb, r3 = x + xb.
FactorList relationList() {
    FactorList list;
    EXPECT_EQ(list.addFactor(named<Normal>("x")), 1);
    auto k = named<Constant>("k");
    k->value = 2.0;
    EXPECT_EQ(list.addFactor(std::move(k)), 1);
    auto r1 = named<Relation>("r1");
    EXPECT_EQ(r1->setExpression("x * x + k"), 1);
    EXPECT_EQ(list.addFactor(std::move(r1)), 1);
    auto r2 = named<Relation>("r2");
    EXPECT_EQ(r2->setExpression("r1 / 2 + x"), 1);
    EXPECT_EQ(list.addFactor(std::move(r2)), 1);
    EXPECT_EQ(list.addFactor(named<Normal>("xb")), 1);
    auto r3 = named<Relation>("r3");
    EXPECT_EQ(r3->setExpression("x + xb"), 1);
    EXPECT_EQ(list.addFactor(std::move(r3)), 1);
    return list;
}

TEST(FactorList, RenamesFollowIntoRelations) {
    FactorList list = relationList();
    const std::string start = fileText(list);
    // Every plain occurrence of the name changes, so renaming x would also
    // turn xb into speedb, a factor there is not: refused, nothing changes.
    EXPECT_EQ(list.renameFactor(0, "speed"), 0);
    EXPECT_EQ(list.errorText(), "   Relation r3 can't follow the new name: its expression would become speed + speedb");
    EXPECT_EQ(fileText(list), start);
    EXPECT_EQ(list.renameFactor(0, "k"), 0);
    EXPECT_EQ(list.errorText(), kFactorNameInUseText);
    EXPECT_EQ(list.renameFactor(0, "a.b"), 0);
    EXPECT_EQ(list.errorText(), kWrongFactorNameText);
    EXPECT_EQ(list.replaceFactor(0, named<Uniform>("k")), 0);
    EXPECT_EQ(list.errorText(), kFactorNameInUseText);
    EXPECT_EQ(fileText(list), start);

    ASSERT_EQ(list.renameFactor(4, "w"), 1);
    EXPECT_EQ(relationAt(list, 5)->expression(), "x + w");
    ASSERT_EQ(list.renameFactor(0, "speed"), 1);
    EXPECT_EQ(list.getFactor(0)->name(), "speed");
    EXPECT_EQ(list.tree().node(0).factorName, "speed");
    EXPECT_EQ(relationAt(list, 2)->expression(), "speed * speed + k");
    EXPECT_EQ(relationAt(list, 3)->expression(), "r1 / 2 + speed");
    EXPECT_EQ(relationAt(list, 5)->expression(), "speed + w");
    // speed 3, k 2, r1 3 * 3 + 2 = 11, r2 11 / 2 + 3 = 8.5, w 0.25, r3 3.25.
    const std::vector<double> row = {3.0, 2.0, 11.0, 0.0, 0.25, 0.0};
    EXPECT_EQ(relationValue(list, 2, row), 11.0);
    EXPECT_EQ(relationValue(list, 3, row), 8.5);
    EXPECT_EQ(relationValue(list, 5, row), 3.25);

    // A new kind under a new name is a rename too.
    ASSERT_EQ(list.replaceFactor(0, named<Uniform>("u")), 1);
    EXPECT_EQ(relationAt(list, 2)->expression(), "u * u + k");
    EXPECT_EQ(relationValue(list, 3, {-1.0, 2.0, 3.0, 0.0, 0.0, 0.0}), 0.5);  // 3 / 2 - 1

    // A relation whose expression would outgrow its line keeps the old name.
    auto r4 = named<Relation>("r4");
    ASSERT_EQ(r4->setExpression("k" + std::string(250, ' ') + "+k"), 1);  // 253 characters
    EXPECT_EQ(list.addFactor(std::move(r4)), 1);
    const std::string withR4 = fileText(list);
    EXPECT_EQ(list.renameFactor(1, "kk"), 0);
    EXPECT_EQ(list.errorText(), std::string("   Relation r4 can't follow the new name: ") + kRelationTooLongText);
    EXPECT_EQ(fileText(list), withR4);
}

TEST(FactorList, FactorsInUseByARelationStay) {
    FactorList list = relationList();
    const std::string start = fileText(list);
    EXPECT_EQ(list.removeFactor(1), 0);
    EXPECT_EQ(list.errorText(), "   Factor k is used by relation r1 and can't be removed");
    EXPECT_EQ(list.removeFactor(2), 0);
    EXPECT_EQ(list.errorText(), "   Factor r1 is used by relation r2 and can't be removed");
    EXPECT_EQ(list.removeFactor(4), 0);
    EXPECT_EQ(list.errorText(), "   Factor xb is used by relation r3 and can't be removed");
    EXPECT_EQ(fileText(list), start);

    // Once their users are gone, they go.
    ASSERT_EQ(list.removeFactor(5), 1);
    ASSERT_EQ(list.removeFactor(4), 1);
    ASSERT_EQ(list.removeFactor(3), 1);
    ASSERT_EQ(list.removeFactor(2), 1);
    ASSERT_EQ(list.removeFactor(1), 1);
    ASSERT_EQ(list.factorCount(), 1);
    EXPECT_EQ(list.getFactor(0)->name(), "x");
}

TEST(FactorList, CopiesEveryFactorByItsClass) {
    FactorList list = test::everyKindList();
    ASSERT_EQ(list.addFactor(named<Dummy>("dum")), 1);
    list.sourceText = "/some/file.fac";
    // The file text holds every factor by its kind, the links, the matrix and
    // the Stein sample.
    FactorList copy(list);
    EXPECT_EQ(fileText(copy), fileText(list));
    for (int i = 0; i < list.factorCount(); ++i) EXPECT_NE(copy.getFactor(i), list.getFactor(i));
    EXPECT_EQ(copy.sourceText, "/some/file.fac");

    // The copy is independent of its source.
    EXPECT_EQ(copy.getFactor(0)->setName("changed"), 1);
    EXPECT_EQ(copy.unlinkFactor(0), 1);
    EXPECT_EQ(list.getFactor(0)->name(), "norm");
    EXPECT_EQ(list.tree().node(1).parent, 0);

    FactorList assigned;
    ASSERT_EQ(assigned.addFactor(named<Normal>("old")), 1);
    assigned = list;
    EXPECT_EQ(fileText(assigned), fileText(list));
}

TEST(DependenceTree, LinksMovesAndRefusesCycles) {
    FactorList list;
    for (const char* n : {"a", "b", "c", "d", "e"}) ASSERT_EQ(list.addFactor(named<Normal>(n)), 1);
    ASSERT_EQ(list.addFactor(named<Constant>("k")), 1);
    ASSERT_EQ(list.linkFactor(1, 0, 0.5), 1);   // b under a
    ASSERT_EQ(list.linkFactor(2, 1, -0.25), 1); // c under b
    ASSERT_EQ(list.linkFactor(3, 1, 1.0), 1);   // d under b
    EXPECT_EQ(list.tree().node(1).children, (std::vector<int>{2, 3}));
    EXPECT_EQ(list.isLinked(0), 1);
    EXPECT_EQ(list.isLinked(4), 0);

    // a under its grandchild c: refused, nothing changes.
    const std::string before = fileText(list);
    EXPECT_EQ(list.linkFactor(0, 2, 0.3), 0);
    EXPECT_EQ(list.errorText(), "   Cyclic correlation not allowed");
    EXPECT_EQ(list.moveLink(1, 3), 0);
    EXPECT_EQ(list.errorText(), "   Cyclic correlation not allowed");
    EXPECT_EQ(fileText(list), before);
    // Dropped on itself: nothing happens.
    EXPECT_EQ(list.moveLink(2, 2), 1);
    EXPECT_EQ(list.tree().node(2).parent, 1);

    // Values out of range, zero or not a number are refused.
    for (double bad : {0.0, 1.5, -1.0001, std::nan("")}) {
        EXPECT_EQ(list.linkFactor(4, 0, bad), 0);
        EXPECT_EQ(list.errorText(), "  Correlation values must fall between -1\n  and 1 and can't be equal to 0");
    }
    EXPECT_EQ(list.setLinkCorrelation(2, 2.0), 0);
    EXPECT_EQ(list.setLinkCorrelation(0, 0.5), 0);  // a root has no link
    ASSERT_EQ(list.setLinkCorrelation(2, -0.75), 1);
    EXPECT_EQ(list.tree().node(2).correlation, -0.75);
    // A constant takes no part in links.
    EXPECT_EQ(list.linkFactor(5, 0, 0.5), 0);

    // Moving c (with its correlation) under e.
    ASSERT_EQ(list.moveLink(2, 4), 1);
    EXPECT_EQ(list.tree().node(2).parent, 4);
    EXPECT_EQ(list.tree().node(2).correlation, -0.75);
    EXPECT_EQ(list.tree().node(1).children, (std::vector<int>{3}));
    EXPECT_EQ(list.tree().node(4).children, (std::vector<int>{2}));

    // Removing b from the tree: its child d becomes a root.
    ASSERT_EQ(list.unlinkFactor(1), 1);
    EXPECT_EQ(list.tree().node(1).parent, -1);
    EXPECT_EQ(list.tree().node(1).correlation, 0.0);
    EXPECT_EQ(list.tree().node(3).parent, -1);
    EXPECT_TRUE(list.tree().node(0).children.empty());
    EXPECT_EQ(list.isLinked(1), 0);

    // A factor in a link can't turn into a constant.
    EXPECT_EQ(list.replaceFactor(4, named<Constant>("k2")), 0);
    EXPECT_EQ(list.errorText(), "   Can't change to Constant\n or Relation a correlated factor");
}

TEST(DependenceTree, RemovingAFactorRenumbersLinks) {
    FactorList list;
    for (const char* n : {"a", "b", "c", "d"}) ASSERT_EQ(list.addFactor(named<Normal>(n)), 1);
    ASSERT_EQ(list.linkFactor(3, 2, 0.5), 1);  // d under c
    ASSERT_EQ(list.linkFactor(2, 0, 0.5), 1);  // c under a
    ASSERT_EQ(list.removeFactor(1), 1);        // b goes: c, d move down
    EXPECT_EQ(list.tree().node(0).children, (std::vector<int>{1}));
    EXPECT_EQ(list.tree().node(1).parent, 0);
    EXPECT_EQ(list.tree().node(1).children, (std::vector<int>{2}));
    EXPECT_EQ(list.tree().node(2).parent, 1);
    EXPECT_EQ(list.tree().node(2).factorName, "d");
    ASSERT_EQ(list.removeFactor(1), 1);        // c goes: d becomes a root
    EXPECT_EQ(list.tree().node(1).parent, -1);
    EXPECT_TRUE(list.tree().node(0).children.empty());
}

TEST(DependenceTree, FactorOrderPutsParentsFirstThenConstantsThenRelations) {
    FactorList list;
    ASSERT_EQ(list.addFactor(named<Relation>("r1")), 1);   // 0
    ASSERT_EQ(list.addFactor(named<Normal>("child")), 1);  // 1
    ASSERT_EQ(list.addFactor(named<Constant>("k")), 1);    // 2
    ASSERT_EQ(list.addFactor(named<Normal>("grand")), 1);  // 3
    ASSERT_EQ(list.addFactor(named<Normal>("root")), 1);   // 4
    ASSERT_EQ(list.addFactor(named<Uniform>("alone")), 1); // 5
    ASSERT_EQ(list.addFactor(named<Relation>("r2")), 1);   // 6
    ASSERT_EQ(list.linkFactor(3, 1, 0.5), 1);
    ASSERT_EQ(list.linkFactor(1, 4, 0.5), 1);

    const auto pos = orderPositions(list);
    for (int p : pos) EXPECT_GE(p, 0);  // every factor once
    EXPECT_LT(pos[4], pos[1]);
    EXPECT_LT(pos[1], pos[3]);
    // Constants after every stochastic factor, relations at the very end.
    for (int s : {1, 3, 4, 5}) EXPECT_LT(pos[static_cast<std::size_t>(s)], pos[2]);
    EXPECT_EQ(pos[0], 5);
    EXPECT_EQ(pos[6], 6);

    // Rows end with -1 seen as unsigned; the walk wraps behind the last row.
    ASSERT_GE(list.orderRowCount(), 3);
    for (const auto& row : list.factorOrder()) EXPECT_EQ(row.back(), 0xFFFFFFFFu);
    EXPECT_EQ(list.factorAt(7), list.factorAt(0));
    EXPECT_EQ(list.factorAt(13), list.factorAt(6));
    EXPECT_EQ(list.factorAt(-1), -1);

    // Re-rooting keeps the rule.
    ASSERT_EQ(list.moveLink(4, 3), 0);  // root under its grandchild: a cycle
    ASSERT_EQ(list.linkFactor(4, 5, 0.9), 1);
    const auto moved = orderPositions(list);
    EXPECT_LT(moved[5], moved[4]);
    EXPECT_LT(moved[4], moved[1]);
    EXPECT_LT(moved[1], moved[3]);
}

TEST(DependenceTree, SteinDropReturnsToNoCorrelation) {
    FactorList list = test::everyKindList();
    list.correlationMode = kSteinCorrelation;
    EXPECT_TRUE(list.hasStein());
    list.clearStein();
    EXPECT_FALSE(list.hasStein());
    EXPECT_EQ(list.steinFileName, "");
    EXPECT_EQ(list.correlationMode, 2);
    list = test::everyKindList();
    list.clearStein();
    EXPECT_EQ(list.correlationMode, 0);  // a tree stays a tree
}

} // namespace
} // namespace tarvex
