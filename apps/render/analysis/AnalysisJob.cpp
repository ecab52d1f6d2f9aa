#include "analysis/AnalysisJob.h"

#include <cstdio>
#include <memory>

#include "DistinctFiles.h"
#include "EffectSetup.h"
#include "OutputFile.h"
#include "Quoted.h"
#include "SoundFileReader.h"
#include "analysis/Analyzer.h"
#include "analysis/ReportDrawing.h"

namespace render {

namespace {

std::string DistortionLine(const HarmonicSpectrum& h) {
  char line[128];
  std::snprintf(line, sizeof line, "  1 kHz at %3.0f dBFS: THD %.3g %%, even harmonics %.0f %%\n",
                h.inDb, 100.0 * h.thd, 100.0 * h.evenShare);
  return line;
}

}  // namespace

bool RunAnalysisJob(const CommandLine& cli, const EffectFactory& makeEffect, const Console& console,
                    const std::function<bool()>& interrupted, std::string* error) {
  std::unique_ptr<SoundFileReader> input;
  if (!cli.input.empty() && !(input = SoundFileReader::Open(cli.input, error))) return false;
  std::unique_ptr<RenderEffect> effect = makeEffect(false, error);
  EffectSetup setup;
  if (!effect || !MakeEffectSetup(cli, *effect, console.err, &setup, error)) return false;
  if (!CheckDistinctFiles({{"the input", cli.input}, {"the state file to load", cli.loadState}},
                          {{"the analysis report", cli.analyze}}, error))
    return false;
  std::unique_ptr<OutputFile> report = OutputFile::Open(cli.analyze, error);
  if (!report) return false;

  const double fileRate = cli.effectRate > 0.0 ? cli.effectRate : input ? input->SampleRate() : 0.0;
  const double rate = fileRate > 0.0 ? fileRate : kDefaultAnalysisRate;
  AnalysisRequest request{makeEffect, setup, rate, cli.blockFrames, AnalysisTimes()};
  request.file = input.get();
  request.fileRate = fileRate;
  request.progress = console.errIsTerminal && !cli.quiet ? &console.err : nullptr;
  AnalysisResults results;
  if (!MeasureEffect(request, interrupted, &results, error)) return false;
  const std::vector<unsigned char> png = DrawReport(results);
  if (png.empty()) *error = "cannot draw the analysis report " + Quoted(cli.analyze);
  if (png.empty() || !report->Write(png.data(), png.size(), error) || !report->Commit(error))
    return false;
  console.out << "analysis report: " << cli.analyze << "\n";
  for (const HarmonicSpectrum& h : results.harmonics) console.out << DistortionLine(h);
  return true;
}

}  // namespace render
