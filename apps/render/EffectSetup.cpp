#include "EffectSetup.h"

#include "Quoted.h"
#include "StateFile.h"

namespace render {

namespace {

bool RestoreSetupState(const EffectSetup& setup, RenderEffect& effect, std::string* error) {
  const std::string problem = effect.RestoreState(setup.state);
  if (!problem.empty()) *error = setup.stateOrigin + " " + problem;
  return problem.empty();
}

}  // namespace

bool MakeEffectSetup(const CommandLine& cli, RenderEffect& fresh, std::ostream& warnings,
                     EffectSetup* setup, std::string* error) {
  setup->state = fresh.SaveState();  // a fresh effect holds its defaults
  setup->stateOrigin = "the effect's default state";
  if (!cli.loadState.empty()) {
    if (!ReadStateFile(cli.loadState, setup->state.size(), &setup->state, error)) return false;
    setup->stateOrigin = "state file " + Quoted(cli.loadState);
  }
  if (!RestoreSetupState(*setup, fresh, error)) return false;
  const std::vector<ParamInfo> table = fresh.Params();
  for (const ParamArgument& arg : cli.params) {
    ParamSetting setting;
    std::string warning;
    if (!ResolveParam(table, arg, &setting, &warning, error)) return false;
    if (!warning.empty()) warnings << "tarn-render: warning: " << warning << "\n";
    fresh.SetParameter(setting.index, setting.value);
    setup->params.push_back(setting);
  }
  return true;
}

bool ApplyEffectSetup(const EffectSetup& setup, RenderEffect& fresh, std::string* error) {
  if (!RestoreSetupState(setup, fresh, error)) return false;
  for (const ParamSetting& setting : setup.params) fresh.SetParameter(setting.index, setting.value);
  return true;
}

std::unique_ptr<RenderEffect> MakeSetUpEffect(const EffectFactory& makeEffect,
                                              const EffectSetup& setup, std::string* error) {
  std::unique_ptr<RenderEffect> effect = makeEffect(false, error);
  if (!effect || !ApplyEffectSetup(setup, *effect, error)) return nullptr;
  return effect;
}

}  // namespace render
