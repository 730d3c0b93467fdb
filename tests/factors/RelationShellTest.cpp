#include <gtest/gtest.h>

#include "factors/Relation.h"

namespace tarvex {
namespace {

TEST(RelationShell, IdentityAndCopy) {
    Relation r;
    EXPECT_EQ(r.getType(), 10);
    EXPECT_EQ(r.typeName, "Relation");
    EXPECT_EQ(r.name, "nonameRelat");
    EXPECT_EQ(r.errorText, "No errors");
    EXPECT_EQ(r.status, 1);
    EXPECT_TRUE(r.expression.empty());

    r.name = "y";
    r.note = "derived";
    r.status = 7;
    r.expression = "a * b";
    r.factorNames = {"a", "b"};
    auto copy = r.clone();
    auto* rc = dynamic_cast<Relation*>(copy.get());
    ASSERT_NE(rc, nullptr);
    EXPECT_EQ(rc->name, "y");
    EXPECT_EQ(rc->note, "derived");
    EXPECT_EQ(rc->status, 1);  // status is not copied
    EXPECT_EQ(rc->expression, "a * b");
    EXPECT_EQ(rc->factorNames, (std::vector<std::string>{"a", "b"}));
}

TEST(RelationShell, UsesFactorIsExact) {
    Relation r;
    r.factorNames = {"ab", "c"};
    EXPECT_EQ(r.usesFactor("ab"), 1);
    EXPECT_EQ(r.usesFactor("a"), 0);
    EXPECT_EQ(r.usesFactor("AB"), 0);
}

TEST(RelationShell, RenameIsPlainSubstring) {
    Relation r;
    r.expression = "a + ab * a";
    r.factorNames = {"a", "ab"};
    EXPECT_EQ(r.renameFactor("zz", "q"), 0);
    EXPECT_EQ(r.expression, "a + ab * a");
    EXPECT_EQ(r.renameFactor("a", "new"), 1);
    EXPECT_EQ(r.expression, "new + newb * new");
}

} // namespace
} // namespace tarvex
