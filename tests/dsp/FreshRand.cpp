// Prints the first N (argument, default 5000) rand() values of a process that never seeds it.
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  const long n = argc > 1 ? std::strtol(argv[1], nullptr, 10) : 5000;
  for (long i = 0; i < n; ++i) std::printf("%d\n", std::rand());
}
