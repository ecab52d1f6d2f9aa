#pragma once

#include <vector>

namespace render {

// The signals the analysis feeds the effect: mono, single precision, as a host would hand them.
// Levels are in dBFS, a sine's by its peak.

// A sine of constant level.
std::vector<float> Sine(double rate, double hz, double levelDb, long long frames);

// A sine whose level rises evenly in decibels from fromDb to toDb over its length.
std::vector<float> LevelSweep(double rate, double hz, double fromDb, double toDb, long long frames);

// White noise of the given RMS level, evenly distributed, the same on every run.
std::vector<float> WhiteNoise(double rmsDb, long long frames);

// Linear gain of a level in decibels.
double DbToGain(double db);
// Decibels of a linear gain (or of an amplitude relative to full scale); -inf for 0.
double GainToDb(double gain);

}  // namespace render
