#pragma once
// The settings of the uncertainty analysis as its dialog offers them: the
// levels of the two choices, which entry marks the present level, and
// whether the logarithmic scale can be chosen.
#include <array>

namespace tarvex {

class UaStats;

inline constexpr const char* kUaSettingsTitle = "Settings for UA";
inline constexpr const char* kUaPanelTitle = "Uncertainty analysis";
inline constexpr const char* kUaPanelDemoTitle = "Uncertainty analisys (Demo mode)";

inline constexpr std::array<double, 7> kTchebyLevels = {0.75, 0.9, 0.95, 0.975, 0.99, 0.995, 0.9995};
inline constexpr std::array<double, 4> kKolmogorovLevels = {0.9, 0.95, 0.98, 0.99};

// The entry of the choice that a level marks, by an open window around each
// entry; -1 when the level is in none.
int tchebyLevelChoice(double level);
int kolmogorovLevelChoice(double level);

// The logarithmic scale exists only when no variable goes below 0.0.
bool logScaleAvailable(const UaStats& stats);

}  // namespace tarvex
