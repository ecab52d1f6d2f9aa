#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "CommandLine.h"
#include "ParamLookup.h"
#include "RenderEffect.h"

namespace render {

// What the command line sets up in the effect before any audio, in the order a host reopening a
// session takes: the whole state (the defaults or a saved state), then each -p as automation.
// Worked out once, it can be given to any number of fresh effects (the analysis makes one per
// measurement).
struct EffectSetup {
  std::vector<unsigned char> state;
  std::string stateOrigin;  // how messages name the state: the defaults or the file
  std::vector<ParamSetting> params;
};

// Reads the state file, if any, and resolves the -p arguments against the effect's table, setting
// up `fresh` as it goes; warnings (a value outside its range) go to `warnings`. On failure says
// why, naming the file or value.
bool MakeEffectSetup(const CommandLine& cli, RenderEffect& fresh, std::ostream& warnings,
                     EffectSetup* setup, std::string* error);

// Brings a fresh effect to a setup made by MakeEffectSetup.
bool ApplyEffectSetup(const EffectSetup& setup, RenderEffect& fresh, std::string* error);

// A fresh effect without an editor, brought to the setup; null, saying why, when that fails.
std::unique_ptr<RenderEffect> MakeSetUpEffect(const EffectFactory& makeEffect,
                                              const EffectSetup& setup, std::string* error);

}  // namespace render
