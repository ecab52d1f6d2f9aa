#pragma once

// Decibel conversion as the signal path does it: linear = exp(dB * kDbToLinear) and
// dB = kLinearToDb * ln(linear), with these constants exactly.
constexpr double kDbToLinear = 0.1151292546497;    // ln 10 / 20
constexpr double kLinearToDb = 8.685889638065037;  // 20 / ln 10
