#include "TarnRender.h"

#include <csignal>
#include <iostream>
#include <unistd.h>

namespace {

volatile std::sig_atomic_t gInterrupted = 0;

// Ctrl-C ends the render between two blocks, so that the temporary output is removed.
void OnInterrupt(int) { gInterrupted = 1; }

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGINT, OnInterrupt);
  std::signal(SIGTERM, OnInterrupt);
  // A FIFO or pipe whose reader has gone must fail the write with a message naming the output,
  // not end the program without a word.
  std::signal(SIGPIPE, SIG_IGN);
  const std::vector<std::string> args(argv + 1, argv + argc);
  const render::Console console{std::cout, std::cerr, isatty(STDERR_FILENO) != 0};
  return render::RunTarnRender(args, render::MakeTarnEffect, console, [] { return gInterrupted != 0; });
}
