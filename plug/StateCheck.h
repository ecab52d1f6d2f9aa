#pragma once

#include <cstddef>
#include <string>

class IPlugBase;

// Hosts and files hand back whatever bytes they kept, and the base's own restore takes any of
// them: a short state leaves zeros, and a NaN survives the clamp into range and then poisons
// the effect's filters for good. A binding restores a state only when it is whole: exactly one
// double per parameter, every one finite.

// Restores `bytes` into `plug` when they are a whole state and returns an empty string;
// otherwise changes nothing and says what is wrong in a short phrase ("is 63 bytes; a state is
// 64 bytes", "holds NaN for \"VU Mode\"").
std::string RestoreWholeState(IPlugBase& plug, const void* bytes, std::size_t size);
