#pragma once

#include "plug/IPlugInstanceInfo.h"

// What the processing object hands MakePlug: the editor factory of the platform this build is
// for. A build for the host's own system hands its window back end's; the build here hands the
// headless back end, with the images of the source tree (or of $TARN_RESOURCE_ROOT).
IPlugInstanceInfo RtasInstanceInfo();
