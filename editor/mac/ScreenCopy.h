// Putting the back buffer on screen, UI thread only: through Core Graphics on macOS, through an
// NSBitmapImageRep where there is no Core Graphics.
#pragma once

class LICE_IBitmap;

// Draws the buffer's full width and the given height, opaque, at (0, 0) of the current graphics
// context (a view that is not flipped); false when there is no current context.
bool CopyToCurrentContext(LICE_IBitmap* buffer, int height);
// The same into a Core Graphics context (a CGContextRef; macOS only).
bool CopyToContext(LICE_IBitmap* buffer, int height, void* cgContext);
