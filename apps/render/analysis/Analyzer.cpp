#include "analysis/Analyzer.h"

#include <cmath>
#include <cstdio>
#include <iostream>
#include <vector>

#include "analysis/EffectProbe.h"
#include "analysis/FrequencyResponse.h"
#include "analysis/Harmonics.h"
#include "analysis/MeasureFile.h"
#include "analysis/NoiseFloor.h"
#include "analysis/TestSignals.h"
#include "analysis/TransferCurve.h"

namespace render {

namespace {

// The runs of one analysis, in the order they are measured and read back.
struct AnalysisRuns {
  ProbeRun sweep;
  std::vector<ProbeRun> waveforms, tones, responses;
  std::vector<std::string> responseLabels;
  ProbeRun silence;

  std::vector<ProbeRun*> All() {
    std::vector<ProbeRun*> all{&sweep};
    for (auto* group : {&waveforms, &tones, &responses})
      for (ProbeRun& run : *group) all.push_back(&run);
    all.push_back(&silence);
    return all;
  }
};

std::string SettingText(const ParamInfo& param) {
  return param.name + " " + param.display + (param.unit.empty() ? "" : " " + param.unit);
}

std::string FreqResponseLabel(const ParamInfo& param, double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%s %+.0f", param.name.c_str(), value);
  return value == 0.0 ? param.name + " 0" : text;
}

// The frequency responses: the settings as they are, then, when the effect has the control,
// "Freq Response" at its minimum, zero and maximum, all else as set.
void PlanResponses(const std::vector<ParamInfo>& table, const std::vector<float>& noise,
                   AnalysisRuns* runs) {
  runs->responses.push_back({{}, noise, {}});
  runs->responseLabels.push_back("these settings");
  std::string ignored;
  const int index = FindParam(table, "Freq Response", &ignored);
  if (index < 0) return;
  for (double value : {table[index].min, 0.0, table[index].max}) {
    runs->responses.push_back({{{index, value}}, noise, {}});
    runs->responseLabels.push_back(FreqResponseLabel(table[index], value));
  }
}

AnalysisRuns PlanRuns(const AnalysisRequest& request, const std::vector<ParamInfo>& table) {
  const double rate = request.rate;
  const AnalysisTimes& t = request.times;
  const auto frames = [rate, &t](double seconds) {
    return std::llround((t.settle + seconds) * rate);
  };
  AnalysisRuns runs;
  runs.sweep.input = LevelSweep(rate, kTransferHz, kSweepFromDb, kSweepToDb, frames(t.sweep));
  for (double level : kToneLevelsDb) {
    runs.waveforms.push_back({{}, Sine(rate, kTransferHz, level, frames(t.tone)), {}});
    runs.tones.push_back({{}, Sine(rate, kHarmonicsHz, level, frames(t.tone)), {}});
  }
  PlanResponses(table, WhiteNoise(kResponseNoiseDb, frames(t.noise)), &runs);
  runs.silence.input.assign(frames(t.silence), 0.0f);
  return runs;
}

void ReadRuns(AnalysisRuns& runs, double rate, long long settle, AnalysisResults* results) {
  results->transfer = MeasureLevelCurve(runs.sweep.input, runs.sweep.output, rate, settle);
  for (std::size_t i = 0; i < runs.tones.size(); ++i) {
    results->waveforms.push_back(MeasureWaveform(runs.waveforms[i].output, rate, kToneLevelsDb[i]));
    results->harmonics.push_back(MeasureHarmonics(runs.tones[i].output, rate, kToneLevelsDb[i]));
  }
  for (std::size_t i = 0; i < runs.responses.size(); ++i) {
    results->responses.push_back(MeasureResponse(runs.responses[i].input, runs.responses[i].output,
                                                 rate, settle, runs.responseLabels[i]));
  }
  MeasureNoiseFloor(runs.silence.output, rate, settle, &results->noise, &results->noiseDb);
}

// The settings as the effect shows them, from a fresh effect set up as the analysis is.
bool DescribeSettings(const AnalysisRequest& request, std::vector<ParamInfo>* table,
                      std::string* settings, std::string* error) {
  std::unique_ptr<RenderEffect> effect = MakeSetUpEffect(request.makeEffect, request.setup, error);
  if (!effect) return false;
  *table = effect->Params();
  for (const ParamInfo& param : *table)
    *settings += (settings->empty() ? "" : ", ") + SettingText(param);
  return true;
}

bool MeasureRequestFile(const AnalysisRequest& request, ProgressDisplay& progress, long long offset,
                        const std::function<bool()>& interrupted, AnalysisResults* results,
                        std::string* error) {
  if (!request.file) return true;
  std::unique_ptr<RenderEffect> effect = MakeSetUpEffect(request.makeEffect, request.setup, error);
  if (!effect) return false;
  effect->Prepare(request.fileRate, request.file->NChannels(), request.blockFrames);
  progress.SetOffset(offset);
  results->hasFile = true;
  results->file.report.effectRate = request.fileRate;
  return MeasureFile(*request.file, *effect, request.blockFrames, progress, interrupted,
                     &results->file, error);
}

}  // namespace

bool MeasureEffect(const AnalysisRequest& request, const std::function<bool()>& interrupted,
                   AnalysisResults* results, std::string* error) {
  std::vector<ParamInfo> table;
  if (!DescribeSettings(request, &table, &results->settings, error)) return false;
  results->rate = request.rate;
  AnalysisRuns runs = PlanRuns(request, table);
  long long total = 0;
  for (ProbeRun* run : runs.All()) total += static_cast<long long>(run->input.size());
  const long long fileFrames = request.file ? request.file->NFrames() : 0;
  ProgressDisplay progress(request.progress ? *request.progress : std::cerr, total + fileFrames,
                           request.progress != nullptr, ProgressDisplay::SteadySeconds,
                           "measuring");
  EffectProbe probe(request.makeEffect, request.setup, request.rate, request.blockFrames, progress,
                    interrupted);
  bool measured = true;
  for (ProbeRun* run : runs.All()) measured = measured && probe.Run(run, error);
  measured = measured && MeasureRequestFile(request, progress, total, interrupted, results, error);
  progress.Finish();
  if (measured)
    ReadRuns(runs, request.rate, std::llround(request.times.settle * request.rate), results);
  return measured;
}

}  // namespace render
