#pragma once
// An editor on a test plug-in, with generated bitmaps whose pixels say where they came from.
#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <string>

#include "RecordingControl.h"
#include "editor/HeadlessGraphics.h"
#include "editor/IBitmapControl.h"
#include "lice/LICE_MemBitmap.h"
#include "lice/LICE_SysBitmap.h"
#include "plug/IPlugOffline.h"

// Parameters: 0 a double -10 to 10 (step 0.1), 1 an enumeration of "Input", "RMS", "Output", 2 a
// boolean, 3 an integer 0 to 99. The log records what the host would hear.
struct EditorPlug : IPlugOffline {
  EditorPlug()
      : IPlugOffline(IPlugInstanceInfo{}, 4, "1-1", 0, "T", "", "M", 1, 2, 3, 0, 0, 0, 0, 0) {
    GetParam(0)->InitDouble("Gain", 0.0, -10.0, 10.0, 0.1);
    GetParam(1)->InitEnum("Mode", 0, 3);
    for (const char* text : {"Input", "RMS", "Output"})
      GetParam(1)->SetDisplayText(GetParam(1)->GetNDisplayTexts(), text);
    GetParam(2)->InitBool("On", false);
    GetParam(3)->InitInt("Count", 0, 0, 99);
  }
  void BeginInformHostOfParamChange(int i) override { log += "begin " + std::to_string(i) + ","; }
  void InformHostOfParamChange(int i, double v) override {
    log += "set " + std::to_string(i) + " " + (std::ostringstream() << v).str() + ",";
  }
  void EndInformHostOfParamChange(int i) override { log += "end " + std::to_string(i) + ","; }
  std::string log;
};

// Resource id = (1000·frames + width)·1000 + frame height; frame k (from 1) of a generated image
// has pixels {alpha 255, red k, green x, blue y}, x and y within the frame.
struct TestEditor : HeadlessGraphics {
  explicit TestEditor(IPlugBase* plug, int w = 64, int h = 48) : HeadlessGraphics(plug, w, h) {}
  LICE_IBitmap* OSLoadBitmap(int id, const char*) override {
    const int h = id % 1000, w = id / 1000 % 1000, n = id / 1000000;
    auto* bitmap = new LICE_MemBitmap(w, h * n);
    for (int y = 0; y < h * n; ++y)
      for (int x = 0; x < w; ++x)
        bitmap->getBits()[y * bitmap->getRowSpan() + x] = LICE_RGBA(y / h + 1, x, y % h, 255);
    return bitmap;
  }
  IBitmap Frames(int w, int h, int n, bool horizontal = false) {
    return LoadIBitmap((1000 * n + w) * 1000 + h, "", n, horizontal);
  }
  // The back buffer's pixel at (x, y) as {red, green, blue}: the frame and source position.
  std::array<int, 3> Pixel(int x, int y) {
    const LICE_pixel p = GetDrawBitmap()->getBits()[y * GetDrawBitmap()->getRowSpan() + x];
    return {int(LICE_GETR(p)), int(LICE_GETG(p)), int(LICE_GETB(p))};
  }
};

// Tests on a 64 × 48 editor of the test plug-in.
struct EditorTest : testing::Test {
  EditorPlug plug;
  TestEditor editor{&plug};
};
