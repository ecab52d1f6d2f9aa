// The surface: which controls a redraw reaches and cleans, where bitmaps and text land, and which
// control each mouse, wheel and key event reaches, with the host's gestures around edits.
#include <functional>

#include "EditorTesting.h"
#include "ScratchFolder.h"
#include "lice/LICE_PNG.h"

using Surface = EditorTest;

namespace {

// A black 64 × 48 back buffer after one redraw of `area` by a control whose drawing is `paint`
// (drawing services need a redraw under way).
struct Canvas : TestEditor {
  struct Painter : IControl {
    explicit Painter(std::function<void(IGraphics*)> paint)
        : IControl(nullptr, {0, 0, 64, 48}), paint(paint) {}
    bool Draw(IGraphics* g) override { return paint(g), true; }
    std::function<void(IGraphics*)> paint;
  };
  explicit Canvas(std::function<void(IGraphics*)> paint, IRECT area = {0, 0, 64, 48})
      : TestEditor(nullptr) {
    PrepDraw(), AttachControl(new Painter(paint)), Draw(&area);
  }
};

std::string Draws(const std::vector<RecordingControl*>& controls) {
  std::string s;
  for (auto* c : controls) s += std::to_string(c->draws) + (c->IsDirty() ? "d" : "") + " ";
  return s;
}

}  // namespace

// 25 frames a second; a failed or nameless load gives a size-0 bitmap; the back buffer saves as
// PNG once there is one; an editor without controls draws nothing and says it did.
TEST_F(Surface, Defaults) {
  HeadlessGraphics empty(&plug, 8, 8);
  const IBitmap missing = empty.LoadIBitmap(77, "missing.png", 3);
  EXPECT_TRUE(empty.FPS() == 25 && !missing.mData && missing.W == 0 && missing.H == 0);
  test_files::ScratchFolder folder;
  HeadlessGraphics loader(&plug, 8, 8, std::filesystem::current_path());
  EXPECT_FALSE(loader.LoadIBitmap(4243, nullptr, 1).mData || empty.SavePNG("none.png"));
  TestEditor shown(&plug, 8, 8);  // saves what it shows: a background of frame 1, {1, x, y}
  shown.PrepDraw(), shown.AttachBackground(1008008, ""), shown.Tick();
  ASSERT_TRUE(shown.SavePNG("shown.png"));
  const std::unique_ptr<LICE_IBitmap> saved(LICE_LoadPNG("shown.png", nullptr));
  EXPECT_EQ(saved->getBits()[6 * saved->getRowSpan() + 5], LICE_RGBA(1, 5, 6, 255));
  IRECT r{0, 0, 8, 8};
  EXPECT_TRUE(empty.Draw(&r) && empty.mScreenUpdates == 0);
}

// Dirty rectangles unite; strict redraws reach visible controls meeting the area, value changes
// ask two frames, hiding one more; else the background repaints all, or each dirty control does.
TEST_F(Surface, DirtyUnionAndRedrawModes) {
  editor.PrepDraw();
  const IRECT rects[] = {{0, 0, 64, 48}, {10, 10, 20, 20}, {20, 20, 30, 30}, {40, 0, 50, 9}, {}};
  std::vector<RecordingControl*> c;
  for (IRECT r : rects) editor.AttachControl(c.emplace_back(new RecordingControl(&plug, -1, 0, r)));
  c[3]->Hide(true);
  IRECT all, area{0, 0, 10, 10}, dirty, none;
  EXPECT_TRUE(editor.IsDirty(&all) && all == rects[0]);
  editor.Draw(&area);  // meets(control, area): control 1 at (10, 10) touches the corner
  EXPECT_EQ(Draws(c), "1 1 0 0d 0 ");
  EXPECT_TRUE(editor.Tick() == rects[3] && Draws(c) == "2 1 0 0 0 ");
  c[2]->SetValueFromPlug(0.5), c[2]->SetValueFromPlug(0.7), c[4]->SetDirty(false);
  EXPECT_TRUE(editor.IsDirty(&dirty) && dirty == rects[2]);
  EXPECT_TRUE(editor.Tick() == rects[2] && Draws(c) == "3 1 1d 0 0 ");
  EXPECT_TRUE(editor.Tick() == rects[2] && editor.Tick().Empty() && Draws(c) == "4 1 2 0 0 ");
  EXPECT_TRUE((c[4]->SetDirty(false), editor.IsDirty(&none)) && none.Empty());
  editor.SetStrictDrawing(false), editor.Tick();  // all dirty: the background repaints all
  EXPECT_TRUE(editor.mLastScreenUpdate == rects[0] && Draws(c) == "5 2 3 0d 1 ");
  c[1]->SetDirty(false), editor.Tick();  // meetings are not symmetric: 1 does not reach 2
  EXPECT_EQ(Draws(c), "7 3 3 0 1 ");
  c[2]->SetDirty(false), editor.Tick();  // but 2 reaches 1
  EXPECT_EQ(Draws(c), "8 4 4 0 1 ");
}

// Frame k's offset is trunc(size·(k - 1)/N + 0.5), down or across; states 0 and 1 and 1-frame
// bitmaps give the top; the copy is clipped to the area being redrawn. Rectangles are outlined.
TEST_F(Surface, DrawBitmapPicksFramesAndClips) {
  IBitmap tall = editor.Frames(6, 5, 2), wide = tall, single = tall;  // 6 × 10 pixels
  tall.N = 3, wide.N = 3, wide.mFramesAreHorizontal = true, single.N = 1;
  const struct {
    IBitmap* bitmap;
    int state, x, y;  // the frame, and where within the bitmap the pixel at (3, 4) comes from
  } cases[] = {
      {&tall, 3, 0, 7}, {&tall, 2, 0, 3}, {&tall, 0, 0, 0}, {&wide, 3, 4, 0}, {&single, 3, 0, 0}};
  for (const auto& k : cases) {
    IRECT dest{2, 2, 8, 12};
    bool drawn = false;
    Canvas canvas([&](IGraphics* g) { drawn = g->DrawBitmap(k.bitmap, &dest, k.state, 0); },
                  {3, 4, 5, 6});
    EXPECT_EQ(canvas.Pixel(3, 4), (std::array{(k.y + 2) / 5 + 1, k.x + 1, (k.y + 2) % 5}))
        << k.state;
    EXPECT_TRUE(drawn && canvas.Pixel(2, 2) == (std::array{0, 0, 0}));  // outside: untouched
  }
  IRECT box{1, 1, 4, 3};
  const IColor grey{255, 9, 9, 9};
  Canvas canvas([&](IGraphics* g) { g->DrawRect(&grey, &box); });  // end points included
  std::string outline;
  for (int y = 0; y < 5; ++y, outline += ' ')
    for (int x = 0; x < 6; ++x) outline += canvas.Pixel(x, y)[0] ? '#' : '.';
  EXPECT_EQ(outline, "...... .####. .#..#. .####. ...... ");
}

// The topmost visible, enabled control under the mouse owns it from down to up, inside the host's
// gesture if bound; drags carry the movement since the last event; stray keys reach the catcher.
TEST_F(Surface, EventsReachTheRightControl) {
  std::string& log = plug.log;
  auto* low = new RecordingControl(&plug, 0, &log, {0, 0, 20, 20}, "A");
  auto* high = new RecordingControl(&plug, 1, &log, {10, 10, 30, 30}, "B");
  editor.AttachControl(low), editor.AttachControl(high);
  EXPECT_FALSE(editor.OnKeyDown(50, 40, 1));  // nothing hit and no key catcher
  editor.SetKeyCatcher(new RecordingControl(&plug, -1, &log, {}, "K"));
  editor.AttachBackground(1064048, "");  // 64 × 48, attached last, still control 0
  IMouseMod mod;
  editor.OnMouseDown(15, 15, &mod);  // B is on top
  editor.OnMouseDrag(15, 15, &mod);  // no movement: no call
  editor.OnMouseDrag(18, 12, &mod), editor.OnMouseDrag(17, 14, &mod);
  editor.OnMouseWheel(40, 40, &mod, 2);  // captured: the wheel goes to B too
  editor.OnKeyDown(40, 40, 65);
  editor.OnMouseUp(50, 50, &mod);
  EXPECT_EQ(log, "Bd,begin 1,Bg3 -3,Bg-1 2,Bw2,Bk65,Bu,end 1,");
  log.clear();
  high->Hide(true);
  editor.OnMouseDown(15, 15, &mod), editor.OnMouseUp(15, 15, &mod);  // through to A
  high->Hide(false), high->GrayOut(true);
  editor.OnMouseWheel(15, 15, &mod, -1);
  editor.OnMouseDown(50, 40, &mod), editor.OnKeyDown(50, 40, 9);  // background: no gesture
  editor.OnMouseUp(50, 40, &mod), editor.OnKeyDown(15, 15, 1);
  low->SetMouseDblAsSingleClick(true);
  EXPECT_TRUE(editor.OnMouseDblClick(5, 5, &mod) && editor.GetMouseCapture() == 1);
  editor.OnMouseUp(5, 5, &mod);
  EXPECT_FALSE(editor.OnMouseDblClick(45, 45, &mod));
  EXPECT_EQ(log, "Ad,begin 0,Au,end 0,Aw-1,Kk9,Ak1,Ad,Au,end 0,");
  EXPECT_EQ(editor.GetParamIdxForPTAutomation(25, 25), -1);  // grayed B: the background
  EXPECT_EQ(editor.GetParamIdxForPTAutomation(5, 5), 0);
  const int first = editor.GetLastClickedParamForPTAutomation();  // read once
  EXPECT_EQ(std::pair(first, editor.GetLastClickedParamForPTAutomation()), std::pair(0, -1));
  log.clear();
  EXPECT_FALSE(editor.OnMouseOver(15, 15, &mod));                  // not handled yet
  editor.HandleMouseOver(true), editor.OnMouseOver(15, 15, &mod);  // grayed B: through to A
  high->SetMOWhenGrayed(true);
  EXPECT_TRUE(editor.OnMouseOver(15, 15, &mod) && editor.OnMouseOver(5, 5, &mod));
  EXPECT_EQ(log, "Ao,Bo,Ax,Ao,Bx,");
}

namespace {

// The box {left, right, top, bottom} of the ink a line of text leaves on the black back buffer,
// and whether some pixel took the text's colour whole.
std::pair<std::array<int, 4>, bool> InkOf(IText text, const char* str, IRECT rect,
                                          IRECT area = {0, 0, 64, 48}) {
  Canvas canvas(
      [&](IGraphics* g) { EXPECT_TRUE(g->DrawIText(&text, const_cast<char*>(str), &rect)); }, area);
  std::array<int, 4> ink{99, -1, 99, -1};
  bool solid = false;
  for (int y = 0; y < 48; ++y)
    for (int x = 0; x < 64; ++x)
      if (const auto p = canvas.Pixel(x, y); p != std::array{0, 0, 0}) {
        ink = {std::min(ink[0], x), std::max(ink[1], x), std::min(ink[2], y), std::max(ink[3], y)};
        solid |= p == std::array{text.mColor.R, text.mColor.G, text.mColor.B};
      }
  return {ink, solid};
}

}  // namespace

// Text is centred vertically, aligned, coloured (transparent: no ink), clipped, decoded from UTF-8
// (a cut sequence shows a mark); measuring gives the advances' width and a line height.
TEST_F(Surface, TextIsAlignedColouredAndClipped) {
  IText text;
  text.mSize = 14, text.mColor = {255, 200, 100, 50};
  IRECT rect{4, 8, 60, 40};
  std::array<int, 4> ink[3];
  for (int align : {0, 1, 2}) {
    text.mAlign = align;
    const auto [box, solid] = InkOf(text, "Tarn", rect);
    EXPECT_TRUE(solid && box[2] > 8 && box[3] < 40 && std::abs(box[2] + box[3] - 48) <= 6);
    ink[align] = box;
  }
  EXPECT_TRUE(ink[0][0] >= 4 && ink[0][0] <= 6 && ink[2][1] >= 57 && ink[2][1] < 60);
  EXPECT_EQ(ink[1][1] - ink[0][1], (ink[2][1] - ink[0][1]) / 2);  // half the room each side
  const auto clipped = InkOf(text, "Saturation", {20, 8, 44, 40}, {0, 0, 30, 48}).first;
  EXPECT_TRUE(clipped[0] >= 20 && clipped[1] < 30);
  const std::array<int, 4> degree = InkOf(text, "\xC2\xB0", rect).first;
  EXPECT_TRUE(degree[1] >= 0 && degree[3] < (ink[1][2] + ink[1][3]) / 2);  // a raised mark
  EXPECT_GE(InkOf(text, "\xE2", rect).first[1], 0);
  Canvas([&](IGraphics* g) { EXPECT_FALSE(g->DrawIText(&text, nullptr, &rect)); });
  text.mColor.A = 0;
  EXPECT_LT(InkOf(text, "Tarn", rect).first[1], 0);
  const auto measure = [&](int size, const char* str, IRECT* r) {
    IText measured;
    measured.mSize = size;
    return editor.MeasureIText(&measured, const_cast<char*>(str), r) && measured.mCached;
  };
  IRECT one{3, 5, 0, 0}, two{3, 5, 0, 0}, tiny;
  EXPECT_TRUE(measure(10, "M", &one) && measure(10, "MM", &two) && measure(1, "M", &tiny));
  EXPECT_TRUE(one.L == 3 && one.T == 5 && one.W() > 0 && two.W() == 2 * one.W() && one.H() >= 10 &&
              one.H() <= 20 && !measure(0, "M", &one));
}
