#pragma once

class IGraphics;
class LICE_IBitmap;

// The rasters every editor of the process shares, by resource ID (the name is not compared).
// Loaded once through the first asking editor's back end and kept until the program ends. A
// process-wide mutex guards the list; editors load their images while the plug-in is being
// constructed, so it is always taken inside the construction mutex, never around it.
LICE_IBitmap* CachedBitmap(int id, const char* name, IGraphics* loader);
