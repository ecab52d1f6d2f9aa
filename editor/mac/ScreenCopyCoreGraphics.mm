// The back buffer on screen through Core Graphics (macOS); UI thread only.
#import <Cocoa/Cocoa.h>

#include "editor/mac/ScreenCopy.h"
#include "lice/LICE_IBitmap.h"

// An image of the whole buffer drawn at (0, 0) in the view's context with its first row at the
// top; the window system clips it to the area being redrawn.
bool CopyToCurrentContext(LICE_IBitmap* buffer, int height) {
  NSGraphicsContext* current = [NSGraphicsContext currentContext];
  return current && CopyToContext(buffer, height, [current graphicsPort]);
}

bool CopyToContext(LICE_IBitmap* buffer, int height, void* cgContext) {
  CGContextRef screen = static_cast<CGContextRef>(cgContext);
  if (!screen || !buffer) return false;
  CGColorSpaceRef space = CGColorSpaceCreateDeviceRGB();
  CGContextRef memory = CGBitmapContextCreate(
      buffer->getBits(), buffer->getWidth(), buffer->getHeight(), 8, buffer->getRowSpan() * 4,
      space, kCGImageAlphaNoneSkipFirst | kCGBitmapByteOrder32Host);
  CGColorSpaceRelease(space);
  if (!memory) return false;
  CGImageRef image = CGBitmapContextCreateImage(memory);
  CGContextRelease(memory);
  if (!image) return false;
  CGContextSaveGState(screen);
  if (buffer->isFlipped()) {  // rows stored bottom first
    CGContextTranslateCTM(screen, 0, height);
    CGContextScaleCTM(screen, 1, -1);
  }
  CGContextDrawImage(screen, CGRectMake(0, 0, buffer->getWidth(), height), image);
  CGContextRestoreGState(screen);
  CGImageRelease(image);
  return true;
}
