// Prints the first N values (argument, default 5000) of rand() from a process that never calls
// srand, one per line: the reference sequence for the per-instance generator.
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  const long n = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 5000;
  for (long i = 0; i < n; ++i) std::printf("%d\n", std::rand());
  return 0;
}
