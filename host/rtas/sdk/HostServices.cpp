#include "host/rtas/sdk/HostServices.h"

namespace {

HostServices* gHost = nullptr;  // one host application per process

}  // namespace

void ConnectHostServices(HostServices* host) { gHost = host; }
HostServices* ConnectedHost() { return gHost; }
int32_t FicGetVersion() { return gHost ? gHost->Version() : 0; }
