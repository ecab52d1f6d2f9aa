// The back buffer on screen through an NSBitmapImageRep, for AppKits without Core Graphics; UI
// thread only.
#import <Cocoa/Cocoa.h>

#include "editor/mac/ScreenCopy.h"
#include "lice/LICE_IBitmap.h"

// The rows are written top first, as an image rep stores them, and drawn into the unflipped view
// right way up.
bool CopyToCurrentContext(LICE_IBitmap* buffer, int height) {
  if (![NSGraphicsContext currentContext] || !buffer) return false;
  const int w = buffer->getWidth(), h = height < buffer->getHeight() ? height : buffer->getHeight();
  NSBitmapImageRep* rep = [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:NULL
                                                                  pixelsWide:w
                                                                  pixelsHigh:h
                                                               bitsPerSample:8
                                                             samplesPerPixel:4
                                                                    hasAlpha:YES
                                                                    isPlanar:NO
                                                              colorSpaceName:NSDeviceRGBColorSpace
                                                                 bytesPerRow:w * 4
                                                                bitsPerPixel:32];
  unsigned char* to = [rep bitmapData];
  for (int y = 0; y < h; ++y) {
    const int stored = buffer->isFlipped() ? buffer->getHeight() - 1 - y : y;
    const LICE_pixel* from = buffer->getBits() + stored * buffer->getRowSpan();
    for (int x = 0; x < w; ++x, to += 4) {
      to[0] = LICE_GETR(from[x]), to[1] = LICE_GETG(from[x]), to[2] = LICE_GETB(from[x]);
      to[3] = 255;  // the screen shows the buffer opaque
    }
  }
  [rep drawInRect:NSMakeRect(0, 0, w, h)];
  [rep release];
  return true;
}
