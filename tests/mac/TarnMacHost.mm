// A host for Tarn's Cocoa editor under GNUstep: a window that opens the editor, reports on
// standard output what the editor sends it (edits, keys handed back, repaints) and answers
// keys the editor leaves to it:
//   s  writes the headless editor's picture of the same state to the file in -Snapshot
//   m  feeds the meter for two seconds of sine blocks and reports the repaints meanwhile
//   Escape  closes the editor and feeds the meter for half a second, reporting the repaints
//   r  reports the objects of the editor's classes still alive, and quits.
// Settings come as defaults (-Bundle PATH -Snapshot PATH): plain arguments would be documents.
#undef NDEBUG  // GNUstep declares its allocation counts only for debugging builds
#import <Cocoa/Cocoa.h>
#import <Foundation/NSDebug.h>

#include <cmath>
#include <cstdio>

#include "HostBuffers.h"
#include "dsp/Tarn.h"
#include "editor/HeadlessGraphics.h"
#include "editor/mac/IGraphicsMac.h"

namespace {

constexpr int kBlock = 480, kRate = 48000;
int gRepaints = 0;

struct CountingGraphics : IGraphicsMac {
  using IGraphicsMac::IGraphicsMac;
  bool DrawScreen(IRECT* rect) override { return ++gRepaints, IGraphicsMac::DrawScreen(rect); }
};

IGraphics* MakeMac(IPlugBase* plug, int w, int h, int fps, void* bundleID) {
  auto* graphics = new CountingGraphics(plug, w, h, fps);
  graphics->SetBundleID(static_cast<const char*>(bundleID));
  return graphics;
}

IGraphics* MakeHeadless(IPlugBase* plug, int w, int h, int, void*) {
  return new HeadlessGraphics(plug, w, h, TARN_SOURCE_DIR "/resources/img");
}

struct PrintEdits : IPlugEditListener {
  void BeginEdit(int) override {}
  void Edit(int paramIdx, double plainValue) override {
    printf("edit %d %g\n", paramIdx, plainValue);
  }
  void EndEdit(int) override {}
};

void Say(const char* line) { printf("%s\n", line), fflush(stdout); }

}  // namespace

@interface HostWindow : NSWindow {
 @public
  Tarn* mTarn;
  int mBlocksLeft;
  double mPhase;
  double mStart;  // of the feeding, in seconds
}
@end

@implementation HostWindow

- (BOOL)canBecomeKeyWindow {
  return YES;
}

- (BOOL)canBecomeMainWindow {
  return YES;
}

// A sine of amplitude 0.5 at 1 kHz, one block per call.
- (void)feed:(NSTimer*)timer {
  HostBuffers in(2, kBlock, 0.f), out(2, kBlock, 0.f);
  for (int i = 0; i < kBlock; ++i, mPhase += 2 * M_PI * 1000 / kRate)
    in[0][i] = in[1][i] = static_cast<float>(0.5 * std::sin(mPhase));
  mTarn->ProcessAudio(in.get(), out.get(), kBlock);
  if (--mBlocksLeft > 0) return;
  [timer invalidate];
  printf("repaints %d in %.2f s\n", gRepaints, [NSDate timeIntervalSinceReferenceDate] - mStart);
  fflush(stdout);
}

- (void)feedFor:(double)seconds {
  mBlocksLeft = static_cast<int>(seconds * kRate / kBlock), gRepaints = 0;
  mStart = [NSDate timeIntervalSinceReferenceDate];
  [NSTimer scheduledTimerWithTimeInterval:double(kBlock) / kRate
                                   target:self
                                 selector:@selector(feed:)
                                 userInfo:nil
                                  repeats:YES];
}

- (void)report {
  for (const char* name :
       {"IGraphicsCocoa_vTarn_rtas", "CocoaFormatter_vTarn_rtas", "CocoaTextField_vTarn_rtas",
        "IGraphicsNSMenu_vTarn_rtas", "IGraphicsMenuRcvr_vTarn_rtas"})
    printf("alive %s %d\n", name,
           GSDebugAllocationCount(NSClassFromString([NSString stringWithUTF8String:name])));
  Say("done");
  [NSApp terminate:nil];
}

- (void)keyDown:(NSEvent*)event {
  NSString* key = [event charactersIgnoringModifiers];
  printf("host key %s\n", [key UTF8String]), fflush(stdout);
  if ([key isEqualToString:@"m"]) [self feedFor:2.0];
  if ([key isEqualToString:@"s"]) {
    Tarn reference{IPlugInstanceInfo{MakeHeadless}};
    auto* headless = static_cast<HeadlessGraphics*>(reference.GetGUI());
    for (int i = 0; i < kNumParams; ++i) reference.SetParameter(i, mTarn->GetParam(i)->Value());
    headless->Tick();
    NSString* path = [[NSUserDefaults standardUserDefaults] stringForKey:@"Snapshot"];
    Say(headless->SavePNG([path fileSystemRepresentation]) ? "snapshot" : "no snapshot");
  }
  if ([key isEqualToString:@"\e"]) {
    mTarn->GetGUI()->CloseWindow();
    [self feedFor:0.5];
  }
  if ([key isEqualToString:@"r"]) [self report];
}

@end

int main() {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  GSDebugAllocationActive(YES);
  [NSApplication sharedApplication];
  NSString* bundlePath = [[NSUserDefaults standardUserDefaults] stringForKey:@"Bundle"];
  NSBundle* bundle = bundlePath ? [NSBundle bundleWithPath:bundlePath] : nil;
  if (![bundle bundleIdentifier]) return Say("no bundle: pass -Bundle PATH"), 1;
  PrintEdits edits;
  Tarn tarn{IPlugInstanceInfo{MakeMac, const_cast<char*>([[bundle bundleIdentifier] UTF8String]),
                              &edits}};
  tarn.SetIO(2, 2), tarn.SetSampleRate(kRate), tarn.Reset();
  // The editor fills the window, which stands at the top left of the screen.
  const NSRect screen = [[NSScreen mainScreen] frame];
  HostWindow* window =
      [[HostWindow alloc] initWithContentRect:NSMakeRect(0, screen.size.height - 416, 304, 416)
                                    styleMask:NSBorderlessWindowMask
                                      backing:NSBackingStoreBuffered
                                        defer:NO];
  window->mTarn = &tarn;
  void* view = tarn.GetGUI()->OpenWindow([window contentView]);
  [window makeKeyAndOrderFront:nil];
  [window makeMainWindow];
  printf("opened %s %gx%g\n", tarn.GetGUI()->GetGUIAPI(), [(NSView*)view frame].size.width,
         [(NSView*)view frame].size.height);
  fflush(stdout);
  [NSApp run];
  [window release];
  [pool release];
  return 0;
}
