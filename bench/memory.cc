// How much memory reading takes at its peak, beside the document and the records themselves.
//
//     build/bench/bench/memory 1000000 [merge]
//
// Prints the figures; the result is 0 when reading took no more than 16 MiB for itself.

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "documents.hh"
#include "parse_chan_descr.hh"

namespace {

constexpr double mebibyte = 1024 * 1024;
constexpr double most_for_itself = 16;
constexpr double most_without_index = 8;
constexpr double index_of_channel = 32.0 / mebibyte;  // for merging, as docs/performance.md says

/// What the program holds of the machine's memory ("VmRSS:"), or held at most ("VmHWM:").
double resident(const char* which) {
  std::ifstream status("/proc/self/status");
  std::string word;
  double kibibytes = 0;
  while (status >> word && word != which) continue;
  status >> kibibytes;
  return kibibytes / 1024;
}

/// From here on, the most is counted anew: making the document took more than reading it.
void forget_peak() {
  constexpr char reset_peak = '5';
  std::ofstream("/proc/self/clear_refs") << reset_peak;
}

// As the heap holds them, with the list.
double memory_of(const std::vector<chan_descr_2010*>& list) {
  constexpr std::size_t heap_header = sizeof(std::size_t);
  std::size_t bytes = list.capacity() * sizeof list[0];
  for (chan_descr_2010* channel : list) bytes += malloc_usable_size(channel) + heap_header;
  return static_cast<double>(bytes) / mebibyte;
}

int read(int channels, bool merge) {
  std::string text = bench::element_channels(channels);
  malloc_trim(0);
  forget_peak();
  const double before = resident("VmRSS:");
  std::vector<chan_descr_2010*> list;
  if (parse_descr_list_read(text.data(), &list, true, merge) != 0) return EXIT_FAILURE;
  const double records = memory_of(list);
  const double itself = resident("VmHWM:") - before - records;
  std::printf("%d channels: document %.1f MiB, records %.1f MiB, reading itself %.1f MiB\n",
              channels, static_cast<double>(text.size()) / mebibyte, records, itself);
  clean_chan_desr_list(&list);
  const double with_index = merge ? most_without_index + index_of_channel * channels : 0;
  return itself <= std::max(most_for_itself, with_index) ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs("usage: memory CHANNELS [merge]\n", stderr);
    return 2;
  }
  xercesc::XMLPlatformUtils::Initialize();
  const int result = read(std::atoi(argv[1]), argc > 2 && std::strcmp(argv[2], "merge") == 0);
  xercesc::XMLPlatformUtils::Terminate();
  return result;
}
