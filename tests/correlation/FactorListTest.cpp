// The factor list: counts, the correlation matrix that follows the factors,
// copies, and the dependence-tree bookkeeping with its sampling order.
#include <gtest/gtest.h>

#include <cmath>

#include "FactorListSamples.h"
#include "factors/Dummy.h"

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
    EXPECT_EQ(list.errorText, "  Correlation values must fall between -1\n  and 1 and can't be equal to 0");
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

TEST(FactorList, CopiesEveryFactorByItsClass) {
    FactorList list = test::everyKindList();
    ASSERT_EQ(list.addFactor(named<Dummy>("dum")), 1);
    list.sourceText = "/some/file.fac";
    FactorList copy(list);
    ASSERT_EQ(copy.factorCount(), list.factorCount());
    for (int i = 0; i < list.factorCount(); ++i) {
        EXPECT_NE(copy.getFactor(i), list.getFactor(i));
        EXPECT_EQ(copy.getFactor(i)->typeName, list.getFactor(i)->typeName);
        EXPECT_EQ(copy.getFactor(i)->getType(), list.getFactor(i)->getType());
        EXPECT_EQ(copy.getFactor(i)->name, list.getFactor(i)->name);
    }
    EXPECT_EQ(dynamic_cast<Discrete*>(copy.getFactor(10))->count(), 3);
    EXPECT_EQ(dynamic_cast<Relation*>(copy.getFactor(11))->expression, "norm * 2 + konst");
    EXPECT_EQ(copy.tree().node(4).parent, 3);
    EXPECT_EQ(copy.correlationMatrix(), list.correlationMatrix());
    EXPECT_EQ(copy.steinInfo.value(1, 0), -3.25);
    EXPECT_EQ(copy.sourceText, "/some/file.fac");

    // The copy is independent of its source.
    copy.getFactor(0)->name = "changed";
    ASSERT_EQ(copy.unlinkFactor(0), 1);
    EXPECT_EQ(list.getFactor(0)->name, "norm");
    EXPECT_EQ(list.tree().node(1).parent, 0);

    FactorList assigned;
    ASSERT_EQ(assigned.addFactor(named<Normal>("old")), 1);
    assigned = list;
    EXPECT_EQ(assigned.factorCount(), 13);
    EXPECT_EQ(assigned.getFactor(12)->typeName, "Dummy");
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
    const auto before = list.tree().nodes();
    EXPECT_EQ(list.linkFactor(0, 2, 0.3), 0);
    EXPECT_EQ(list.errorText, "   Cyclic correlation not allowed");
    EXPECT_EQ(list.moveLink(1, 3), 0);
    EXPECT_EQ(list.errorText, "   Cyclic correlation not allowed");
    ASSERT_EQ(list.tree().nodes().size(), before.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_EQ(list.tree().node(static_cast<int>(i)).parent, before[i].parent);
        EXPECT_EQ(list.tree().node(static_cast<int>(i)).children, before[i].children);
    }
    // Dropped on itself: nothing happens.
    EXPECT_EQ(list.moveLink(2, 2), 1);
    EXPECT_EQ(list.tree().node(2).parent, 1);

    // Values out of range, zero or not a number are refused.
    for (double bad : {0.0, 1.5, -1.0001, std::nan("")}) {
        EXPECT_EQ(list.linkFactor(4, 0, bad), 0);
        EXPECT_EQ(list.errorText, "  Correlation values must fall between -1\n  and 1 and can't be equal to 0");
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
    EXPECT_EQ(list.errorText, "   Can't change to Constant\n or Relation a correlated factor");
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
