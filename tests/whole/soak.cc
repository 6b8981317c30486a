// Reads and writes documents without an end, as a server does, and tells what it costs over time:
// every reader and every writer in rotation, memory and descriptors measured after a warm-up of a
// tenth and from then on.
//
//     soak SMALL LARGE COLD
//
// SMALL documents of some hundred bytes, LARGE ones of some hundred kilobytes, and COLD small ones
// with the XML library set up and ended for each. Prints the figures; the result is 0 when memory
// has grown by less than 1 MiB and the number of descriptors not at all. What the library
// deliberately leaves behind is not provoked: all documents are complete.

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "documents.hh"
#include "every_operation.hh"

namespace {

constexpr long most_growth = 1024;  // KiB
constexpr int parts_of_large = 500;

struct state {
  long resident = 0;  // KiB
  long in_use = 0;    // bytes of the heap
  long descriptors = 0;
};

long resident_memory() {
  std::ifstream lines("/proc/self/smaps_rollup");
  for (std::string word; lines >> word;) {
    long amount = 0;
    if (word == "Rss:" && lines >> amount) return amount;
  }
  std::fputs("soak: /proc/self/smaps_rollup does not tell the resident memory\n", stderr);
  std::exit(2);
}

state measure() {
  const std::filesystem::directory_iterator open_files("/proc/self/fd");
  state now;
  now.descriptors = std::distance(begin(open_files), end(open_files));
  now.in_use = static_cast<long>(mallinfo2().uordblks);
  now.resident = resident_memory();
  return now;
}

template <class Generation>
test::operation dictionary_of(const char* name, const std::string& document) {
  return {name, [document](std::string*) {
            std::string text = document;
            typename Generation::list list;
            Generation::read(text.data(), list.get());
          }};
}

std::vector<test::operation> of_large_documents() {
  const std::string elements = bench::element_channels(parts_of_large);
  const std::string variables = bench::variable_channels(parts_of_large);
  const std::string dictionary = bench::dictionary(parts_of_large);
  const std::string events = bench::event_list(parts_of_large);
  char nowhere[] = "/dev/null";
  return {
      test::channels_of("channels", elements, false),
      test::channels_of("channels, merged", elements, true),
      test::channels_of_file("channels of a file", elements, false),
      test::channels_of("variables", variables, false),
      test::channels_of_file("variables of a file, merged", variables, true),
      test::events_of("events", events),
      test::events_of_file("events of a file", events),
      dictionary_of<test::older>("dictionary", dictionary),
      dictionary_of<test::y2010>("2010 dictionary", dictionary),
      test::camera_of("camera", bench::camera(parts_of_large)),
      test::steps_of("steps", variables),
      {"elements written",
       [elements, nowhere](std::string*) mutable {
         std::string text = elements;
         dump_chan_desr_from_xml(text.data(), nowhere, DUMP_XML_FILE, ZRT4_FORMAT, -1);
       }},
      {"dictionary written",
       [dictionary, nowhere](std::string*) mutable {
         std::string text = dictionary;
         dump_env_index_dict(text.data(), nowhere, ENV_INDX_DUMP_XML_FILE, -1);
       }},
  };
}

std::vector<test::operation> of_small_documents() {
  std::vector<test::operation> all = test::readers();
  for (const test::operation& each : test::writers()) all.push_back(each);
  all.erase(
      std::remove_if(all.begin(), all.end(),
                     [](const auto& each) { return each.name == std::string("large document"); }),
      all.end());
  return all;
}

bool run(std::FILE* figures, const char* what, long times,
         const std::vector<test::operation>& operations) {
  const auto rotate = [&operations](long from, long to) {
    for (long n = from; n < to; ++n) {
      operations[static_cast<std::size_t>(n) % operations.size()].run(nullptr);
    }
  };
  const auto begun = std::chrono::steady_clock::now();
  const long warm_up = std::max(times / 10, static_cast<long>(2 * operations.size()));
  rotate(0, warm_up);
  const state before = measure();
  long growth = 0;
  for (int tenth = 1; tenth < 10; ++tenth) {
    rotate(warm_up + (times - warm_up) * (tenth - 1) / 9, warm_up + (times - warm_up) * tenth / 9);
    growth = std::max(growth, measure().resident - before.resident);
  }
  const state after = measure();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begun;
  std::fprintf(figures,
               "%ld %s, %zu operations in rotation, %.0f s: resident %ld KiB, grown by %ld at most "
               "and %ld at the end; heap in use grown by %ld bytes; descriptors %ld, then %ld\n",
               times, what, operations.size(), taken.count(), before.resident, growth,
               after.resident - before.resident, after.in_use - before.in_use, before.descriptors,
               after.descriptors);
  std::fflush(figures);
  return growth < most_growth && after.descriptors == before.descriptors;
}

/// What the library says is not what this measures.
int silenced(int stream) {
  const int kept = dup(stream);
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  dup2(nowhere, stream);
  close(nowhere);
  return kept;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fputs("usage: soak SMALL LARGE COLD\n", stderr);
    return 2;
  }
  std::FILE* figures = fdopen(silenced(STDERR_FILENO), "w");
  silenced(STDOUT_FILENO);
  xercesc::XMLPlatformUtils::Initialize();
  bool flat = run(figures, "small documents", std::atol(argv[1]), of_small_documents());
  flat = run(figures, "large documents", std::atol(argv[2]), of_large_documents()) && flat;
  xercesc::XMLPlatformUtils::Terminate();
  const char* cold = "small documents, the XML library not held";
  flat = run(figures, cold, std::atol(argv[3]), of_small_documents()) && flat;
  return flat ? EXIT_SUCCESS : EXIT_FAILURE;
}
