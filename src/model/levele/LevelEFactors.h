#pragma once
// The twelve uncertain inputs of the Level E model, in the case's own order,
// with the names a sample gives them and the ranges they were published with.
#include <array>
#include <string_view>

namespace tarvex::levele {

enum FactorIndex : int {
    kContainmentTime = 0,  // T, yr: no release before it
    kIodineLeachRate,      // kI, 1/yr
    kChainLeachRate,       // kC, 1/yr: Np, U and Th alike
    kVelocity1,            // v1, m/yr
    kLength1,              // l1, m
    kIodineRetention1,     // RI1
    kChainRetention1,      // RC1: one retention factor for the whole chain in a layer
    kVelocity2,            // v2, m/yr
    kLength2,              // l2, m
    kIodineRetention2,     // RI2
    kChainRetention2,      // RC2
    kStreamFlow,           // W, m3/yr
};
inline constexpr int kFactorCount = 12;

struct FactorRange {
    std::string_view name;
    double low;
    double high;
};

inline constexpr std::array<FactorRange, kFactorCount> kFactorRanges = {{
    {"T", 100.0, 1000.0},
    {"kI", 1e-3, 1e-2},
    {"kC", 1e-6, 1e-5},
    {"v1", 1e-3, 1e-1},
    {"l1", 100.0, 500.0},
    {"RI1", 1.0, 5.0},
    {"RC1", 3.0, 30.0},
    {"v2", 1e-2, 1e-1},
    {"l2", 50.0, 200.0},
    {"RI2", 1.0, 5.0},
    {"RC2", 3.0, 30.0},
    {"W", 1e5, 1e7},
}};

using FactorValues = std::array<double, kFactorCount>;

// The index of the factor of that name (exact, case-sensitive), or -1.
int factorIndex(std::string_view name);

// Why `value` cannot be used for `factor`: "is not finite", "is not above 0", or
// for the containment time, which may be 0, "is negative". Empty when it can.
std::string_view valueProblem(int factor, double value);

// Whether `value` lies in the factor's published range, bounds included. The
// model computes outside it too; a caller may want to say so.
bool insidePublishedRange(int factor, double value);

}  // namespace tarvex::levele
