// The post-processor's configuration: outputs and weights, the selection,
// factor kinds, and the creation of the statistics class of a method.
#include <gtest/gtest.h>

#include <cmath>

#include "TestStats.h"
#include "postproc/IndexRecord.h"
#include "postproc/SensitivityClasses.h"
#include "postproc/VelsConfiguration.h"
#include "sampling/Sampler.h"

namespace tarvex {
namespace {

TEST(VelsConfiguration, OutputsSelectionWeightsAndKinds) {
    VelsConfiguration vels;
    ASSERT_EQ(vels.addVariable("Y[max]"), 1);
    vels.setOutputs(2, {"Y", "Z"});
    // setOutputs starts over: the selection went with everything else.
    EXPECT_TRUE(vels.selectedVariables.empty());
    ASSERT_EQ(vels.outputCount(), 2);
    EXPECT_EQ(vels.outputs[1].weight, 1.0f);
    EXPECT_EQ(vels.setWeight(1, 2.5), 1);
    for (double refused : {-0.1, std::nan("")}) EXPECT_EQ(vels.setWeight(1, refused), 0);
    EXPECT_EQ(vels.setWeight(2, 1.0), 0);
    EXPECT_EQ(vels.outputs[1].weight, 2.5f);
    EXPECT_EQ(vels.setWeight(0, 0.0), 1);
    vels.setOutputs(-1, {});
    EXPECT_EQ(vels.outputCount(), 0);

    vels.dirty = 0;
    EXPECT_EQ(vels.addVariable("a"), 1);
    EXPECT_EQ(vels.dirty, 1);
    // Texts the file could not hold on one line.
    EXPECT_EQ(vels.addVariable("a\nb"), 0);
    EXPECT_EQ(vels.addVariable(std::string(4096, 'x')), 0);
    EXPECT_EQ(vels.addVariable(std::string(4095, 'x')), 1);
    EXPECT_EQ(vels.removeVariable(2), 0);
    EXPECT_EQ(vels.removeVariable(-1), 0);
    vels.dirty = 0;
    EXPECT_EQ(vels.removeVariable(0), 1);
    EXPECT_EQ(vels.dirty, 1);
    EXPECT_EQ(vels.selectedVariables.size(), 1u);
    vels.dirty = 0;
    vels.clearVariables();
    EXPECT_TRUE(vels.selectedVariables.empty());
    EXPECT_EQ(vels.dirty, 1);

    EXPECT_EQ(factorKindOf("Normal"), kUncertainFactor);
    EXPECT_EQ(factorKindOf("Constant"), kConstantFactor);
    EXPECT_EQ(factorKindOf("Relation"), kRelationFactor);
    EXPECT_EQ(factorKindOf("constant"), kUncertainFactor);
}

TEST(VelsConfiguration, SensitivityClassByMethodDeepCopiesAndSlots) {
    EXPECT_EQ(sensitivityTypeOf(kLpTauMethod), 0);
    EXPECT_EQ(sensitivityTypeOf(kFastMethod), 2);
    EXPECT_EQ(sensitivityTypeOf(kRepLatinMethod), 3);
    EXPECT_EQ(sensitivityTypeOf(kSobolMethod), 4);
    EXPECT_EQ(sensitivityTypeOf(8), -1);
    EXPECT_EQ(createSensitivity(5), nullptr);

    VelsConfiguration vels;
    {
        ScopedSensitivityClass morris(1, &test::LayoutStats::make);
        vels.prepareSensitivity(kMorrisMethod);
        ASSERT_NE(vels.sensitivity, nullptr);
        EXPECT_EQ(vels.sensitivity->typeId, 1);
        vels.sensitivity->variableCount = 2;
        vels.sensitivity->records = {{"a", 3, {1, 2, 3, 4}, {}}, {"b", 3, {5, 6, 7, 8}, {}}};

        VelsConfiguration copy(vels);
        ASSERT_NE(copy.sensitivity, nullptr);
        EXPECT_NE(copy.sensitivity.get(), vels.sensitivity.get());
        EXPECT_NE(dynamic_cast<test::LayoutStats*>(copy.sensitivity.get()), nullptr);
        VelsConfiguration other;
        other.adoptSensitivity(*vels.sensitivity);
        vels.sensitivity->records.pop_back();
        EXPECT_EQ(copy.sensitivity->records.size(), 2u);
        EXPECT_EQ(other.sensitivity->records.size(), 2u);

        // One value per record: slot 1 of variable 1 is the fourth value.
        double values[2] = {0, 0};
        const SensitivityStats& stats = *other.sensitivity;
        EXPECT_EQ(stats.slotValues(0, 0, values), 0);  // not computed
        other.sensitivity->computed = 1;
        ASSERT_EQ(stats.slotValues(1, 1, values), 1);
        EXPECT_EQ(values[0], 4.0);
        EXPECT_EQ(values[1], 8.0);
        EXPECT_EQ(stats.slotValues(2, 0, values), 0);
        EXPECT_EQ(stats.slotValues(0, 2, values), 0);
    }
    // Without its class, the method creates nothing and drops the old object.
    ScopedSensitivityClass none(1, nullptr);
    vels.prepareSensitivity(kMorrisMethod);
    EXPECT_EQ(vels.sensitivity, nullptr);
}

}  // namespace
}  // namespace tarvex
