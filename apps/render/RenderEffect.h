#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ParamLookup.h"

namespace render {

// The effect as the renderer drives it, in the order a host restoring a session would:
// RestoreState, SetParameter for each -p, Prepare, then Process block by block. The real one
// wraps the Tarn plug-in (EffectSession.h); tests drive the renderer with simple stand-ins.
class RenderEffect {
 public:
  virtual ~RenderEffect() = default;

  // The plug-in's parameter table with the current values, in index order.
  virtual std::vector<ParamInfo> Params() = 0;
  // The serialised state of all parameters; a fresh effect's state holds the defaults.
  virtual std::vector<unsigned char> SaveState() = 0;
  // Restores a full state, as a host does when it reopens a session. A state that is not whole
  // (one finite value for every parameter) is refused as a whole, the effect keeping the state it
  // had: the answer is then what is wrong with it, in a phrase such as "is 63 bytes; a state is
  // 64 bytes" or "holds NaN for \"Drive\"", and empty when the state was restored.
  virtual std::string RestoreState(const std::vector<unsigned char>& state) = 0;
  // Sets a parameter as host automation does (the plug-in clamps it into its range).
  virtual void SetParameter(int index, double value) = 0;
  // Sample rate, reset, channel layout (nChannels in and out) and the largest block to come.
  virtual void Prepare(double sampleRate, int nChannels, int maxBlockFrames) = 0;
  // One block of nChannels planar single-precision channels, through the host's float path.
  virtual void Process(float** inputs, float** outputs, int nFrames) = 0;
  // The meter's needle value after the last block.
  virtual double Needle() const = 0;
  // The effect's editor as it stands, redrawn, as an opaque PNG image, with the names of the
  // images it could not load; empty when the effect was made without an editor or has none.
  virtual std::vector<unsigned char> EditorSnapshot(std::vector<std::string>* /*missingImages*/) {
    return {};
  }
};

// Makes the Tarn effect, with its editor on the headless back end when asked for (its meter then
// runs as with a window open); null, with the reason in *error, when it cannot be made.
std::unique_ptr<RenderEffect> MakeTarnEffect(bool withEditor, std::string* error);

// Makes a fresh effect, with an editor when asked (for a snapshot), or says why it cannot.
using EffectFactory =
    std::function<std::unique_ptr<RenderEffect>(bool withEditor, std::string* error)>;

}  // namespace render
