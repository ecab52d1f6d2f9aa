#pragma once

#include "plug/IPlugAdaptor.h"

// Tarn's parameters, in index order.
enum EParams {
  kInputTrim = 0,
  kDrive,
  kOutputComp,
  kAsymmetry,
  kFreqResponse,
  kCrosstalk,
  kVuMode,
  kBypass,
  kNumParams
};

// The analogue-style saturation effect: its identity as the host sees it and its parameters.
class Tarn : public IPlugAdaptor {
public:
  explicit Tarn(IPlugInstanceInfo instanceInfo);

private:
  void InitParameters();
};

// Creates one effect instance. Construction is serialised process-wide, so hosts may create
// instances from several threads at once.
IPlugAdaptor* MakePlug();
