#pragma once

// Integer hue, saturation and value for the colour-adjusting combiners. Hue runs 0 to 383:
// six sectors of 64 starting at red (0), yellow (64), green (128), cyan (192), blue (256) and
// magenta (320). Saturation and value run 0 to 255. Both directions round to nearest.

constexpr int LICE_HSV_HUE_RANGE = 384;
constexpr int LICE_HSV_SECTOR = 64;

void LICE_RGB2HSV(int r, int g, int b, int* h, int* s, int* v);
void LICE_HSV2RGB(int h, int s, int v, int* r, int* g, int* b);
