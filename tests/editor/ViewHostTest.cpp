// A view's arithmetic and decisions, by the numbers a view on a 64 × 48 editor must produce.
#include "EditorTesting.h"
#include "editor/ViewHost.h"

// Rectangles turn over with a pixel's difference between the two conventions, so a round trip
// grows by one on the right and bottom; the mouse sits 2 left of and 3 above the view's point.
TEST(ViewHost, CoordinatesTurnOverWithTheStatedOffsets) {
  TestEditor editor(nullptr);
  ViewHost view(&editor);
  EXPECT_EQ(view.ToView({10, 5, 20, 15}), (ViewRect{10, 32, 11, 11}));
  EXPECT_EQ(view.FromView(10.7, 32.9, 11.2, 11.9), (IRECT{10, 5, 21, 16}));
  int x, y;
  view.MousePosition(12.9, 30.2, &x, &y);
  EXPECT_EQ(std::pair(x, y), std::pair(10, 15));
  ViewRect invalid;
  editor.AttachControl(new RecordingControl(nullptr, -1, nullptr, {4, 6, 8, 9}));
  EXPECT_TRUE(view.OnTimer(&invalid) && invalid == (ViewRect{4, 38, 5, 4}));
  editor.GetControl(0)->SetClean();
  EXPECT_FALSE(view.OnTimer(&invalid));
}

// Left-button events carry L and Command as R; right-button ones R alone, with Shift, Control
// and Option as they are. A press with Command and Control on an automatable control goes to the
// host; two clicks make a double click; drags wait while a value field is open; the wheel moves
// by whole steps toward zero; keys go where the mouse last was.
TEST(ViewHost, EventsBecomeTheEditorsCalls) {
  const ViewModifiers command{true}, both{true, false, true}, all{true, true, true, true};
  const IMouseMod l = ViewHost::LeftButton(all), r = ViewHost::RightButton(command);
  EXPECT_TRUE(l.L && l.R && l.S && l.C && l.A && !r.L && r.R && !r.S && !r.C && !r.A);
  EditorPlug plug;
  TestEditor editor(&plug);
  ViewHost view(&editor);
  editor.AttachControl(new RecordingControl(&plug, 0, &plug.log, {0, 0, 30, 48}, "A"));
  editor.AttachBackground(1064048, "");  // automation never reaches the background
  // the view's point (px, py) is the editor's (px - 2, 45 - py): x 10 is on A, x 40 is not
  EXPECT_FALSE(view.MouseDown(12, 20, both, 1));
  EXPECT_TRUE(view.MouseDown(12, 20, {}, 2) && view.MouseDown(12, 20, command, 1));
  view.MouseDragged(14, 20, {}, true), view.MouseDragged(15, 21, {}, false);
  view.RightMouseDragged(16, 21, {}, false), view.RightMouseUp(16, 21, {});
  view.ScrollWheel(12, 20, {}, -1.7), view.MouseMoved(42, 20, {});
  EXPECT_FALSE(view.KeyDown(U"a"));
  view.MouseMoved(12, 20, {});
  EXPECT_TRUE(view.KeyDown(U"a") && !view.KeyDown(U"\u00e9"));
  EXPECT_EQ(plug.log, "A2,Ad,begin 0,Ag3 -1,Ag1 0,Au,end 0,Aw-1,Ak15,");
}

// Space, the arrows, digits and letters in either case have codes; anything else, or more than
// one character, goes back to the host.
TEST(ViewHost, KeysNamesAndTexts) {
  const std::pair<std::u32string, int> keys[] = {
      {U" ", 0},  {U"\uF700", 1}, {U"\uF703", 4}, {U"0", 5},   {U"9", 14}, {U"A", 15},
      {U"a", 15}, {U"Z", 40},     {U"z", 40},     {U"/", -1},  {U":", -1}, {U"@", -1},
      {U"[", -1}, {U"`", -1},     {U"{", -1},     {U"ab", -1}, {U"", -1},  {U"\u00e9", -1}};
  for (const auto& [characters, code] : keys)
    EXPECT_EQ(ViewHost::KeyCode(characters), code) << int(characters.empty() ? 0 : characters[0]);
  EXPECT_TRUE(ViewHost::IsPngName("a.png") && ViewHost::IsPngName("dir/B.PNG") &&
              ViewHost::IsPngName("c.Png"));
  EXPECT_FALSE(ViewHost::IsPngName("d.jpg") || ViewHost::IsPngName("png") ||
               ViewHost::IsPngName("e.pngx") || ViewHost::IsPngName("f.png/g"));
  EXPECT_EQ(ViewHost::ResourceStem("resources/img/KnobS1.png") + ViewHost::ResourceStem("x"),
            "KnobS1x");
  EXPECT_EQ(std::string(ViewHost::GuiApiName(false, true)) + "|" +
                ViewHost::GuiApiName(true, true) + "|" + ViewHost::GuiApiName(true, false),
            "Cocoa gui|Carbon Composited gui|Carbon Non-Composited gui");
}
