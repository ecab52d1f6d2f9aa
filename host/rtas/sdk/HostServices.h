#pragma once

// What the SDK's classes ask of the host application they run in. On a real system the SDK
// talks to the host itself; here a host program (the simulated host of the tests) implements
// this interface and connects it before it loads the plug-in.
#include "host/rtas/sdk/FicTypes.h"

class CProcess;

struct HostTime {
  double samplePos, tempo, ppqPos;
  int numerator, denominator;
  bool playing;
};

class HostServices {
 public:
  virtual int32_t Version() = 0;  // what FicGetVersion reports
  virtual double SampleRate() = 0;
  virtual int32_t BlockSize() = 0;
  virtual HostTime Time() = 0;
  // The plug-in moved a control (automation is written between touch and release), asked for
  // a new editor size, or changed its state behind the host's back.
  virtual void ControlChanged(CProcess* process, int32_t index, int32_t value) = 0;
  virtual void ControlTouched(CProcess* process, int32_t index, bool touched) = 0;
  virtual void WindowResized(CProcess* process, int w, int h) = 0;

 protected:
  ~HostServices() = default;
};

// The host of this process, or null before one connects.
void ConnectHostServices(HostServices* host);
HostServices* ConnectedHost();
