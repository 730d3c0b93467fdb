#include "postproc/SensitivityClasses.h"

#include <array>

#include "postproc/FastStats.h"
#include "postproc/ImportanceStats.h"
#include "postproc/MorrisStats.h"
#include "postproc/RegressionStats.h"
#include "postproc/SobolStats.h"
#include "sampling/Sampler.h"

namespace tarvex {

namespace {

constexpr int32_t kTypeCount = 5;

template <class Stats>
std::unique_ptr<SensitivityStats> make() {
    return std::make_unique<Stats>();
}

// The creation table, by typeId: one line per class.
std::array<SensitivityFactory, kTypeCount>& factories() {
    static std::array<SensitivityFactory, kTypeCount> table = [] {
        std::array<SensitivityFactory, kTypeCount> t{};
        t[0] = &make<RegressionStats>;
        t[1] = &make<MorrisStats>;
        t[2] = &make<FastStats>;
        t[3] = &make<ImportanceStats>;
        t[4] = &make<SobolStats>;
        return t;
    }();
    return table;
}

}  // namespace

int32_t sensitivityTypeOf(int32_t methodId) {
    switch (methodId) {
    case kFixedMethod:
    case kLatinMethod:
    case kLpTauMethod:
    case kRandomMethod:
        return 0;
    case kMorrisMethod:
        return 1;
    case kFastMethod:
        return 2;
    case kRepLatinMethod:
        return 3;
    case kSobolMethod:
        return 4;
    default:
        return -1;
    }
}

std::unique_ptr<SensitivityStats> createSensitivity(int32_t typeId) {
    if (typeId < 0 || typeId >= kTypeCount) return nullptr;
    const SensitivityFactory factory = factories()[static_cast<std::size_t>(typeId)];
    return factory ? factory() : nullptr;
}

std::unique_ptr<SensitivityStats> createSensitivityForMethod(int32_t methodId) {
    return createSensitivity(sensitivityTypeOf(methodId));
}

ScopedSensitivityClass::ScopedSensitivityClass(int32_t typeId, SensitivityFactory factory)
    : typeId_(typeId >= 0 && typeId < kTypeCount ? typeId : -1), saved_(nullptr) {
    if (typeId_ < 0) return;
    SensitivityFactory& slot = factories()[static_cast<std::size_t>(typeId_)];
    saved_ = slot;
    slot = factory;
}

ScopedSensitivityClass::~ScopedSensitivityClass() {
    if (typeId_ >= 0) factories()[static_cast<std::size_t>(typeId_)] = saved_;
}

}  // namespace tarvex
