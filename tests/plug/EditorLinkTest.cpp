#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestPlug.h"
#include "editor/IGraphics.h"

namespace {

// Records what the plug-in tells its editor, in order.
class RecordingGraphics : public IGraphics {
public:
  explicit RecordingGraphics(bool* destroyed) : mDestroyed(destroyed) {}
  ~RecordingGraphics() override { *mDestroyed = true; }
  void SetParameterFromPlug(int paramIdx, double value, bool normalized) override {
    calls.push_back("param " + std::to_string(paramIdx) + " " + std::to_string(value) +
                    (normalized ? " n" : " p"));
  }
  void PrepDraw() override { calls.push_back("prep"); }

  std::vector<std::string> calls;

private:
  bool* mDestroyed;
};

}  // namespace

TEST(EditorLink, AttachingSendsNormalisedValuesThenPreparesTheSurface) {
  bool destroyed = false;
  {
    TestPlug plug("1-1", 2, 0);
    plug.GetParam(1)->Set(5.0);
    plug.AttachGraphics(nullptr);
    EXPECT_EQ(plug.GetGUI(), nullptr);

    auto* graphics = new RecordingGraphics(&destroyed);
    plug.AttachGraphics(graphics);
    EXPECT_EQ(plug.GetGUI(), graphics);
    EXPECT_EQ(graphics->calls, (std::vector<std::string>{"param 0 0.500000 n", "param 1 0.750000 n", "prep"}));

    graphics->calls.clear();
    plug.RedrawParamControls();
    EXPECT_EQ(graphics->calls, (std::vector<std::string>{"param 0 0.000000 p", "param 1 5.000000 p"}));

    // Host automation shows the editor the value as the host sent it, before clamping.
    graphics->calls.clear();
    plug.SetParameter(0, 30.0);
    EXPECT_EQ(graphics->calls, (std::vector<std::string>{"param 0 30.000000 p"}));
    EXPECT_EQ(plug.GetParam(0)->Value(), 10.0);
    EXPECT_FALSE(destroyed);
  }
  EXPECT_TRUE(destroyed);  // the plug-in owns its editor
}

TEST(EditorLink, GuiEditSetsNormalisedValueThenNotifiesTheEffect) {
  TestPlug plug("1-1", 2, 0);
  plug.SetParameterFromGUI(1, 0.25);
  EXPECT_EQ(plug.GetParam(1)->Value(), -5.0);
  EXPECT_EQ(plug.changes, (std::vector<int>{1}));
}
