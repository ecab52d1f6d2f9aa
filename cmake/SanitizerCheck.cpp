// Converts the double given on the command line to int. Run with a value no int can hold, the
// undefined-behaviour sanitizer must report the conversion: the effect turns doubles into
// integers (the meter mode, hold lengths from the sample rate), and without that check an
// overflow there passes every sanitizer run unnoticed.
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  const double value = argc > 1 ? std::strtod(argv[1], nullptr) : 0.0;
  const int converted = static_cast<int>(value);
  std::printf("%d\n", converted);
  return 0;
}
