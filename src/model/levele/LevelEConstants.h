#pragma once
// The fixed data of the Level E case: the four nuclides with their inventories,
// half-lives and dose factors, the drinking-water intake, the dispersion rule and
// the 26 output times.
#include <array>
#include <numbers>

namespace tarvex::levele {

// The chain Np-237 -> U-233 -> Th-229 follows iodine, in that order everywhere.
enum Nuclide : int { kI129 = 0, kNp237 = 1, kU233 = 2, kTh229 = 3 };
inline constexpr int kNuclideCount = 4;

// Inventories in the repository at time 0, mol.
inline constexpr std::array<double, kNuclideCount> kInitialInventory = {100.0, 1000.0, 100.0, 1000.0};

// Half-lives, yr. Th-229 keeps the case's 7340 yr rather than today's 7.9e3:
// the dose factors were made with it.
inline constexpr std::array<double, kNuclideCount> kHalfLife = {1.57e7, 2.14e6, 1.592e5, 7.34e3};

// Decay constants, 1/yr.
inline constexpr std::array<double, kNuclideCount> kDecay = {
    std::numbers::ln2 / kHalfLife[0], std::numbers::ln2 / kHalfLife[1], std::numbers::ln2 / kHalfLife[2],
    std::numbers::ln2 / kHalfLife[3]};

// Ingestion dose factors, Sv/mol.
inline constexpr std::array<double, kNuclideCount> kDoseFactor = {56.0, 6.8e3, 5.9e3, 1.8e6};

// Water drunk by one person, m3/yr (two litres a day).
inline constexpr double kWaterIntake = 0.73;

// Dispersion length of a layer as a share of its length (a Peclet number of 10).
// The case leaves it open; a tenth keeps the published picture of the model.
inline constexpr double kDispersionFraction = 0.1;

// Output times, yr: mantissas 1 to 9 of each decade from 2e4 to 9e6.
inline constexpr int kTimeCount = 26;
inline constexpr std::array<double, kTimeCount> kTimes = {
    2e4, 3e4, 4e4, 5e4, 6e4, 7e4, 8e4, 9e4,           //
    1e5, 2e5, 3e5, 4e5, 5e5, 6e5, 7e5, 8e5, 9e5,      //
    1e6, 2e6, 3e6, 4e6, 5e6, 6e6, 7e6, 8e6, 9e6};

}  // namespace tarvex::levele
