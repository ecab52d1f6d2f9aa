#pragma once

// The one place that picks, when the effect is compiled, the host adaptor it derives from: the
// RTAS adaptor in a build for that host (TARN_ADAPTOR_RTAS), else the offline adaptor that the
// renderer, the LV2 binding and the tests drive.
#if defined(TARN_ADAPTOR_RTAS)
#include "host/rtas/IPlugRTAS.h"
using IPlugAdaptor = IPlugRTAS;
#else
#include "plug/IPlugOffline.h"
using IPlugAdaptor = IPlugOffline;
#endif

// Creates one instance of the effect the plug-in is built from, which defines it. Construction
// is serialised process-wide, so hosts may create instances from several threads at once.
IPlugAdaptor* MakePlug(IPlugInstanceInfo instanceInfo = {});
