#include "editor/HeadlessGraphics.h"
#include "host/rtas/RtasEditor.h"

IPlugInstanceInfo RtasInstanceInfo() { return IPlugInstanceInfo{MakeHeadlessEditor}; }
