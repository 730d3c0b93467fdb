#pragma once
// Which statistics class serves which sampling method, and the creation of a
// class by the number the post-processor file stores (typeId):
//   typeId 0  RegressionStats  Fixed samples, Latin hypercube, LP-tau, Random
//   typeId 1  MorrisStats      Morris
//   typeId 2  FastStats        FAST
//   typeId 3  ImportanceStats  replicated Latin hypercube
//   typeId 4  SobolStats       Sobol
// A class takes part once its line is in the creation table of
// SensitivityClasses.cpp; a typeId without one creates nothing, and the file
// reader then treats it as unknown.
#include <cstdint>
#include <memory>

#include "postproc/SensitivityStats.h"

namespace tarvex {

using SensitivityFactory = std::unique_ptr<SensitivityStats> (*)();

// The typeId of a sampling method's class; -1 for a number no method has.
int32_t sensitivityTypeOf(int32_t methodId);

// A new, empty object of that class, or null.
std::unique_ptr<SensitivityStats> createSensitivity(int32_t typeId);
std::unique_ptr<SensitivityStats> createSensitivityForMethod(int32_t methodId);

// For tests: while an object of this class lives, `typeId` is created by
// `factory`, whatever the table says. Not for concurrent use.
class ScopedSensitivityClass {
public:
    ScopedSensitivityClass(int32_t typeId, SensitivityFactory factory);
    ~ScopedSensitivityClass();
    ScopedSensitivityClass(const ScopedSensitivityClass&) = delete;
    ScopedSensitivityClass& operator=(const ScopedSensitivityClass&) = delete;

private:
    int32_t typeId_;
    SensitivityFactory saved_;
};

}  // namespace tarvex
