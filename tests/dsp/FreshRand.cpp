// Prints the first 2000 rand() values of a process that never seeds it.
#include <cstdio>
#include <cstdlib>

int main() {
  for (int i = 0; i < 2000; ++i) std::printf("%d\n", std::rand());
}
