#include "RenderEffect.h"

namespace render {

// Built in place of EffectSession.cpp while the tree has no effect library (dsp/), so that
// the renderer's own checks and tests run on their own; see CMakeLists.txt.
std::unique_ptr<RenderEffect> MakeTarnEffect(std::string* error) {
  *error = "this tarn-render was built without the Tarn effect (no dsp/ library in the tree)";
  return nullptr;
}

}  // namespace render
