// Reads a file of channel descriptions and prints the processor time of that, in seconds.

#include <cstdio>
#include <ctime>

#include "zrt4xml.hh"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const zrt4::xml_session session;
  const std::clock_t begin = std::clock();
  zrt4::channel_list channels;
  if (channels.read_file(argv[1]) != 0) return 1;
  std::printf("%g\n", static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC);
  return 0;
}
