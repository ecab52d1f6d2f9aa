// A view's arithmetic and decisions, by the numbers a view on a 64 × 48 editor must produce.
#include "EditorTesting.h"
#include "editor/IPopupMenu.h"
#include "editor/MenuLines.h"
#include "editor/TextEntrySession.h"
#include "editor/ViewHost.h"

using ViewHostTest = EditorTest;

// Rectangles turn over with a pixel's difference between the two conventions, so a round trip
// grows by one on the right and bottom; the mouse sits 2 left of and 3 above the view's point.
TEST_F(ViewHostTest, CoordinatesTurnOverWithTheStatedOffsets) {
  ViewHost view(&editor);
  EXPECT_EQ(view.ToView({10, 5, 20, 15}), (ViewRect{10, 32, 11, 11}));
  EXPECT_EQ(view.FromView(10.7, 32.9, 11.2, 11.9), (IRECT{10, 5, 21, 16}));
  int x, y;
  view.MousePosition(12.9, 30.2, &x, &y);
  EXPECT_EQ(std::pair(x, y), std::pair(10, 15));
  double px, py;  // a top-down window's point reaches the editor as it is
  view.FromTopDown(7, 40, &px, &py), view.MousePosition(px, py, &x, &y);
  EXPECT_EQ(std::pair(x, y), std::pair(7, 40));
  ViewRect invalid;
  editor.AttachControl(new RecordingControl(nullptr, -1, nullptr, {4, 6, 8, 9}));
  EXPECT_TRUE(view.OnTimer(&invalid) && invalid == (ViewRect{4, 38, 5, 4}));
  editor.GetControl(0)->SetClean();
  EXPECT_FALSE(view.OnTimer(&invalid));
}

// Buttons map the modifiers (left: Command as R); Command-Control presses go to the host's
// automation; drags wait for an open field; the wheel steps toward 0; keys go where the mouse was.
TEST_F(ViewHostTest, EventsBecomeTheEditorsCalls) {
  const ViewModifiers command{true}, both{true, false, true}, all{true, true, true, true};
  const IMouseMod l = ViewHost::LeftButton(all), r = ViewHost::RightButton(command);
  EXPECT_TRUE(l.L && l.R && l.S && l.C && l.A && !r.L && r.R && !r.S && !r.C && !r.A);
  TextEntrySession field;
  ViewHost view(&editor, &field);
  auto* a = new RecordingControl(&plug, 0, &plug.log, {0, 0, 30, 48}, "A");
  editor.AttachControl(a);
  editor.AttachBackground(1064048, "");  // automation never reaches the background
  // the view's point (px, py) is the editor's (px - 2, 45 - py): x 10 is on A, x 40 is not
  EXPECT_FALSE(view.MouseDown(12, 20, both, 1));
  EXPECT_TRUE(view.MouseDown(12, 20, {}, 2) && view.MouseDown(12, 20, command, 1));
  field.Open(a, nullptr, {}, "typed"), view.MouseDragged(14, 20, {});  // no drag while it is open
  view.ScrollWheel(12, 20, {}, -1.7), view.MouseDragged(15, 21, {});   // which the wheel ends
  view.RightMouseDragged(16, 21, {}), view.RightMouseUp(16, 21, {}), view.MouseMoved(42, 20, {});
  EXPECT_FALSE(view.KeyDown(U"a"));
  view.MouseMoved(12, 20, {});
  EXPECT_TRUE(view.KeyDown(U"a") && !view.KeyDown(U"\u00e9"));
  EXPECT_EQ(plug.log, "A2,Ad,begin 0,Aw-1,Ag3 -1,Ag1 0,Au,end 0,Ak15,");
  field.Open(a, nullptr, {}, "typed"), view.Removed();
  EXPECT_TRUE(!field.IsOpen() && a->text.empty());  // dropped, not applied
}

// Space, the arrows, digits and letters in either case have codes; anything else, or more than
// one character, goes back to the host.
TEST_F(ViewHostTest, KeysNamesAndTexts) {
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
  EXPECT_EQ(std::tuple(ViewHost::CentredOffset(400.0, 304), ViewHost::CentredOffset(305.9, 304),
                       ViewHost::CentredOffset(300.0, 304)),
            std::tuple(48, 0, 0));
  EXPECT_EQ(ViewHost::ResourceStem("resources/img/KnobS1.png") + ViewHost::ResourceStem("x"),
            "KnobS1x");
  EXPECT_EQ(std::string(ViewHost::GuiApiName(false, true)) + "|" +
                ViewHost::GuiApiName(true, true) + "|" + ViewHost::GuiApiName(true, false),
            "Cocoa gui|Carbon Composited gui|Carbon Non-Composited gui");
}

// Ending a field applies the text to the control when it has no parameter, or drops it; ending
// none says so. The field's font is 0.9 the size, truncated.
TEST_F(ViewHostTest, TextEntrySessionAndFieldFont) {
  RecordingControl free(&plug, -1), bound(&plug, 0);
  TextEntrySession field;
  EXPECT_TRUE(field.Open(&free, nullptr, {}, "ab") && field.Edit("abc") &&
              field.End(&editor, true));
  EXPECT_TRUE(field.Open(&bound, plug.GetParam(0), {}, "-2") && field.End(&editor, false) &&
              !field.End(&editor, true) && free.text == "abc" && plug.GetParam(0)->Value() == 0);
  IText ten, fourteen;
  fourteen.mSize = 14;
  EXPECT_EQ(std::pair(TextEntrySession::FontSize(ten), TextEntrySession::FontSize(fourteen)),
            std::pair(9, 12));
}

// Titles numbered in 1 to 3 digits; lines show submenus one level deeper, separators, checks,
// titles, disabled items; a chosen line sets the index (none before) in its own menu.
TEST_F(ViewHostTest, MenuLinesAndChoices) {
  IPopupMenu menu, *sub = new IPopupMenu;
  sub->AddItem("x"), sub->AddItem("y", IPopupMenuItem::kChecked);
  menu.AddItem("", IPopupMenuItem::kSeparator), menu.AddItem(new IPopupMenuItem("sub", 0, sub));
  menu.AddItem("t", IPopupMenuItem::kTitle), menu.AddItem("d", IPopupMenuItem::kDisabled);
  menu.AddItem(new IPopupMenuItem("a"), 0);
  std::string shown;
  for (int style : {0, 1, 3, 4}) {
    WDL_String title;
    menu.SetPrefix(style), menu.ItemTitle(4, &title);
    shown += std::string(title.Get()) + "|";
  }
  menu.SetPrefix(2);
  for (const MenuLine& l : FlattenMenu(menu))
    shown += std::to_string(l.depth) + " " + l.title + (l.separator ? "-" : "") +
             (l.submenu ? ">" : "") + (l.checked ? "*" : "") + (l.indented ? "^" : "") +
             (l.disabled ? "~" : "") + "|";
  EXPECT_EQ(shown, "d|5: d|005: d|d|0 01: a|0 02: -|0 03: sub>|1 x|1 y*|0 04: t^|0 05: d~|");
  EXPECT_EQ(menu.GetChosenItemIdx(), -1);
  EXPECT_TRUE(ChooseLine(&menu, 4) == sub && sub->GetChosenItemIdx() == 1);
  EXPECT_TRUE(ChooseLine(&menu, 5) == &menu && menu.GetChosenItemIdx() == 3);
  for (int line : {-1, 1, 2, 6, 7}) EXPECT_EQ(ChooseLine(&menu, line), nullptr) << line;
  int x, y;
  MenuAnchor({10, 20, 40, 36}, &x, &y);
  EXPECT_EQ(std::pair(x, y), std::pair(10, 40));
}
