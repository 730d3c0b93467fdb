// The post-processor's configuration: outputs and weights, the selection,
// and the creation of the statistics class of a sampling method.
#include <gtest/gtest.h>

#include <cmath>

#include "TestStats.h"
#include "postproc/IndexRecord.h"
#include "postproc/SensitivityClasses.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/Sampler.h"

namespace tarvex {
namespace {

TEST(VelsConfiguration, OutputsSelectionAndWeights) {
    VelsConfiguration vels;
    ASSERT_EQ(vels.addVariable("Y[max]"), 1);
    vels.setOutputs(2, {"Y", "Z"});
    // setOutputs starts over: the selection went with everything else.
    EXPECT_TRUE(vels.selectedVariables.empty());
    EXPECT_EQ(vels.dirty, 0);
    ASSERT_EQ(vels.outputCount(), 2);
    EXPECT_EQ(vels.outputs[1].name, "Z");
    EXPECT_EQ(vels.outputs[1].weight, 1.0f);

    EXPECT_EQ(vels.setWeight(1, 2.5), 1);
    EXPECT_EQ(vels.setWeight(1, -0.1), 0);
    EXPECT_EQ(vels.setWeight(1, std::nan("")), 0);
    EXPECT_EQ(vels.setWeight(2, 1.0), 0);
    EXPECT_EQ(vels.setWeight(-1, 1.0), 0);
    EXPECT_EQ(vels.outputs[1].weight, 2.5f);
    EXPECT_EQ(vels.setWeight(0, 0.0), 1);

    vels.setOutputs(-1, {});
    EXPECT_EQ(vels.outputCount(), 0);

    EXPECT_EQ(vels.addVariable("a"), 1);
    EXPECT_EQ(vels.dirty, 1);
    EXPECT_EQ(vels.addVariable("b"), 1);
    // Texts the file could not hold on one line.
    EXPECT_EQ(vels.addVariable("a\nb"), 0);
    EXPECT_EQ(vels.addVariable(std::string(4096, 'x')), 0);
    EXPECT_EQ(vels.addVariable(std::string(4095, 'x')), 1);
    EXPECT_EQ(vels.removeVariable(3), 0);
    EXPECT_EQ(vels.removeVariable(-1), 0);
    vels.dirty = 0;
    EXPECT_EQ(vels.removeVariable(0), 1);
    EXPECT_EQ(vels.dirty, 1);
    EXPECT_EQ(vels.selectedVariables.front(), "b");
    vels.dirty = 0;
    vels.clearVariables();
    EXPECT_TRUE(vels.selectedVariables.empty());
    EXPECT_EQ(vels.dirty, 1);
}

TEST(VelsConfiguration, FactorKindsFollowTheDistributionName) {
    EXPECT_EQ(factorKindOf("Normal"), kUncertainFactor);
    EXPECT_EQ(factorKindOf("Factor"), kUncertainFactor);
    EXPECT_EQ(factorKindOf("Constant"), kConstantFactor);
    EXPECT_EQ(factorKindOf("Relation"), kRelationFactor);
    EXPECT_EQ(factorKindOf("constant"), kUncertainFactor);
}

TEST(VelsConfiguration, SensitivityClassByMethodAndDeepCopies) {
    EXPECT_EQ(sensitivityTypeOf(kRandomMethod), 0);
    EXPECT_EQ(sensitivityTypeOf(kLatinMethod), 0);
    EXPECT_EQ(sensitivityTypeOf(kLpTauMethod), 0);
    EXPECT_EQ(sensitivityTypeOf(kFixedMethod), 0);
    EXPECT_EQ(sensitivityTypeOf(kMorrisMethod), 1);
    EXPECT_EQ(sensitivityTypeOf(kFastMethod), 2);
    EXPECT_EQ(sensitivityTypeOf(kRepLatinMethod), 3);
    EXPECT_EQ(sensitivityTypeOf(kSobolMethod), 4);
    EXPECT_EQ(sensitivityTypeOf(8), -1);
    EXPECT_EQ(createSensitivity(5), nullptr);
    EXPECT_EQ(createSensitivity(-1), nullptr);

    VelsConfiguration vels;
    {
        ScopedSensitivityClass morris(1, &test::LayoutStats::make);
        vels.prepareSensitivity(kMorrisMethod);
        ASSERT_NE(vels.sensitivity, nullptr);
        EXPECT_EQ(vels.sensitivity->typeId, 1);
        vels.sensitivity->records.push_back({"x1", kUncertainFactor, {0.5, 0.25}, {}});

        VelsConfiguration copy(vels);
        ASSERT_NE(copy.sensitivity, nullptr);
        EXPECT_NE(copy.sensitivity.get(), vels.sensitivity.get());
        EXPECT_NE(dynamic_cast<test::LayoutStats*>(copy.sensitivity.get()), nullptr);
        EXPECT_EQ(copy.sensitivity->records, vels.sensitivity->records);

        VelsConfiguration other;
        other.adoptSensitivity(*vels.sensitivity);
        vels.sensitivity->records.clear();
        ASSERT_NE(other.sensitivity, nullptr);
        EXPECT_EQ(other.sensitivity->records.size(), 1u);
    }
    // Without its class, the method creates nothing and drops the old object.
    vels.prepareSensitivity(kMorrisMethod);
    EXPECT_EQ(vels.sensitivity, nullptr);
}

TEST(VelsConfiguration, SlotValuesReadOneSlotPerRecord) {
    test::LayoutStats stats;
    stats.variableCount = 2;
    stats.records = {{"a", 3, {1, 2, 3, 4}, {}}, {"b", 3, {5, 6, 7, 8}, {}}};
    double values[2] = {0, 0};
    EXPECT_EQ(stats.slotValues(0, 0, values), 0);  // not computed
    stats.computed = 1;
    ASSERT_EQ(stats.slotValues(1, 1, values), 1);
    EXPECT_EQ(values[0], 4.0);
    EXPECT_EQ(values[1], 8.0);
    EXPECT_EQ(stats.slotValues(2, 0, values), 0);
    EXPECT_EQ(stats.slotValues(0, 2, values), 0);
    EXPECT_EQ(stats.slotValues(0, -1, values), 0);
}

}  // namespace
}  // namespace tarvex
