#include "TarnRender.h"

#include "CommandLine.h"
#include "DemoSignal.h"
#include "DistinctFiles.h"
#include "EffectSetup.h"
#include "FloatWavWriter.h"
#include "OutputPath.h"
#include "ParamLookup.h"
#include "Quoted.h"
#include "RenderLoop.h"
#include "SoundFileReader.h"
#include "Summary.h"
#include "analysis/AnalysisJob.h"

namespace render {

namespace {

// One run of the renderer, step by step in the order a host restoring a session would take.
class RenderJob {
 public:
  RenderJob(const CommandLine& cli, const Console& console) : mCli(cli), mConsole(console) {}

  bool Run(const EffectFactory& makeEffect, const std::function<bool()>& interrupted,
           std::string* error) {
    return OpenInput(error) && MakeEffect(makeEffect, error) && SetUpEffect(error) &&
           CreateOutputs(error) && SaveState(error) && Render(interrupted, error) &&
           SaveSnapshot(error) && Commit(error);
  }

 private:
  bool OpenInput(std::string* error) {
    if (mCli.input.empty()) {
      mSource = std::make_unique<DemoSignal>();
      return true;
    }
    mSource = SoundFileReader::Open(mCli.input, error);
    return mSource != nullptr;
  }

  bool MakeEffect(const EffectFactory& makeEffect, std::string* error) {
    mEffect = makeEffect(!mCli.editorSnapshot.empty(), error);
    return mEffect != nullptr;
  }

  // The defaults or a saved state, then each -p, as a host reopening a session sets them.
  bool SetUpEffect(std::string* error) {
    EffectSetup setup;
    return MakeEffectSetup(mCli, *mEffect, mConsole.err, &setup, error);
  }

  // The outputs are opened once all that can be refused before rendering has been checked, so
  // that the reader of a FIFO given as output gets nothing from a run that fails early, yet
  // before the render, so that a folder that cannot be written to is reported at once.
  bool CreateOutputs(std::string* error) {
    mOutputPath = mCli.output.empty() ? DefaultOutputPath(mCli.input) : mCli.output;
    if (!CheckDistinctFiles({{"the input", mCli.input}, {"the state file to load", mCli.loadState}},
                            {{"the output", mOutputPath},
                             {"the state file to save", mCli.saveState},
                             {"the editor snapshot", mCli.editorSnapshot}},
                            error)) {
      return false;
    }
    mWriter = FloatWavWriter::Create(mOutputPath, mSource->NChannels(), mSource->SampleRate(),
                                     mSource->NFrames(), error);
    return mWriter && Open(mCli.saveState, &mStateOut, error) &&
           Open(mCli.editorSnapshot, &mSnapshotOut, error);
  }

  static bool Open(const std::string& path, std::unique_ptr<OutputFile>* file, std::string* error) {
    if (path.empty()) return true;
    *file = OutputFile::Open(path, error);
    return *file != nullptr;
  }

  // The editor as the render left it; images it could not load are left out, with a warning.
  bool SaveSnapshot(std::string* error) {
    if (!mSnapshotOut) return true;
    std::vector<std::string> missing;
    const std::vector<unsigned char> png = mEffect->EditorSnapshot(&missing);
    for (const std::string& image : missing)
      mConsole.err << "tarn-render: warning: the editor image " << Quoted(image)
                   << " is missing or unreadable; the snapshot shows nothing of it\n";
    if (png.empty()) *error = "the effect has no editor to draw for " + Quoted(mCli.editorSnapshot);
    return !png.empty() && mSnapshotOut->Write(png.data(), png.size(), error);
  }

  bool SaveState(std::string* error) {
    if (!mStateOut) return true;
    const std::vector<unsigned char> state = mEffect->SaveState();
    return mStateOut->Write(state.data(), state.size(), error);
  }

  bool Render(const std::function<bool()>& interrupted, std::string* error) {
    const double effectRate = mCli.effectRate > 0.0 ? mCli.effectRate : mSource->SampleRate();
    mEffect->Prepare(effectRate, mSource->NChannels(), mCli.blockFrames);
    ProgressDisplay progress(mConsole.err, mSource->NFrames(),
                             mConsole.errIsTerminal && !mCli.quiet);
    const bool rendered = RenderAudio(*mSource, *mEffect, *mWriter, mCli.blockFrames, progress,
                                      interrupted, &mReport, error);
    progress.Finish();
    mReport.effectRate = effectRate;
    return rendered;
  }

  bool Commit(std::string* error) {
    if (!mWriter->Commit(error)) return false;
    if (mStateOut && !mStateOut->Commit(error)) return false;
    if (mSnapshotOut && !mSnapshotOut->Commit(error)) return false;
    mConsole.out << FormatSummary(mReport, mSource->Describe(), mOutputPath);
    if (mSnapshotOut) mConsole.out << "editor snapshot: " << mCli.editorSnapshot << "\n";
    return true;
  }

  const CommandLine& mCli;
  const Console& mConsole;
  std::unique_ptr<AudioSource> mSource;
  std::string mOutputPath;
  std::unique_ptr<FloatWavWriter> mWriter;
  std::unique_ptr<OutputFile> mStateOut;
  std::unique_ptr<OutputFile> mSnapshotOut;
  std::unique_ptr<RenderEffect> mEffect;
  RenderReport mReport;
};

void PrintHelp(const EffectFactory& makeEffect, const Console& console) {
  console.out << Usage();
  std::string error;
  std::unique_ptr<RenderEffect> effect = makeEffect(false, &error);
  if (effect) console.out << "\nParameters:\n" << DescribeParams(effect->Params());
}

}  // namespace

int RunTarnRender(const std::vector<std::string>& args, const EffectFactory& makeEffect,
                  const Console& console, const std::function<bool()>& interrupted) {
  CommandLine cli;
  std::string error;
  if (!ParseCommandLine(args, &cli, &error)) {
    console.err << "tarn-render: " << error << " (see tarn-render --help)\n";
    return kExitUsageError;
  }
  if (cli.help) {
    PrintHelp(makeEffect, console);
    return 0;
  }
  if (!cli.analyze.empty()) {
    if (RunAnalysisJob(cli, makeEffect, console, interrupted, &error)) return 0;
    console.err << "tarn-render: " << error << "\n";
    return kExitFailure;
  }
  RenderJob job(cli, console);
  if (!job.Run(makeEffect, interrupted, &error)) {
    console.err << "tarn-render: " << error << "\n";
    return kExitFailure;
  }
  return 0;
}

}  // namespace render
