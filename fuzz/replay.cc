// Runs a fuzz target over the files that are named on the command line, in all its ways.

#include <cstdio>
#include <fstream>
#include <iterator>

#include "fuzz.hh"

int main(int count, char** names) {
  if (count < 2) {
    std::fprintf(stderr, "usage: %s FILE ...\n", names[0]);
    return 2;
  }
  for (int i = 1; i < count; ++i) {
    std::ifstream file(names[i], std::ios::binary);
    if (!file) {
      std::perror(names[i]);
      return 1;
    }
    const std::string input{std::istreambuf_iterator<char>(file), {}};
    for (unsigned way = 0; way < fuzz::ways; ++way) fuzz::run(input, way);
  }
  return 0;
}
