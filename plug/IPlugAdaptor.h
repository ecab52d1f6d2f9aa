#pragma once

// The one place that picks the host adaptor the effect derives from.
#include "plug/IPlugOffline.h"

using IPlugAdaptor = IPlugOffline;
