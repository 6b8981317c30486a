// Searches for documents that cost much for their size: what one takes by the byte is told to the
// fuzzer as it is told of code, so that it keeps whatever takes more than any before.

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <vector>

#include "SAX_File_Parser.hh"
#include "SAX_Memory_Parser.hh"
#include "fuzz.hh"
#include "zrt4_gige_descr.hh"

namespace {

constexpr unsigned steps_of_doubling = 4;
constexpr unsigned counts = 256;

// Of which libFuzzer takes any that is not zero for something new.
#ifdef __clang__
__attribute__((section("__libfuzzer_extra_counters")))
#endif
std::uint8_t dearness[counts];

std::uint64_t thread_time() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000 +
         static_cast<std::uint64_t>(time.tv_nsec);
}

// Small differences, and what every document takes, are left out.
void tell(std::uint64_t nanoseconds, std::size_t size) {
  constexpr std::uint64_t of_any_document = 200'000;
  if (nanoseconds < of_any_document) return;
  std::uint64_t of_byte = nanoseconds / (size + 64);
  unsigned step = 0;
  for (; of_byte >= 2 * steps_of_doubling; of_byte /= 2) step += steps_of_doubling;
  dearness[std::min(step + static_cast<unsigned>(of_byte), counts - 1)] = 1;
}

// Goes on after errors.
template <class Parser>
void walk(Parser& parser) {
  char* tag = nullptr;
  char* value = nullptr;
  while (parser.parse(&tag, &value) != -1) continue;
}

void read_in_way(std::string text, unsigned way) {
  if (way == 0) {
    SAX_Memory_Parser parser(text.data());
    if (!parser.start()) walk(parser);
  } else if (way == 1) {
    SAX_File_Parser parser;
    if (!parser.start(fuzz::file_of(text))) walk(parser);
  } else {
    std::vector<ZRT4GigEFeature*> features;
    zrt4_fill_gige_descr(fuzz::file_of(text), &features);
    zrt4_clean_gige_descr(&features);
  }
}

}  // namespace

const unsigned fuzz::ways = 3;

void fuzz::read(const std::string& input, unsigned way) {
  std::fill(dearness, dearness + counts, std::uint8_t{0});
  const std::uint64_t before = thread_time();
  read_in_way(input, way);
  const std::uint64_t taken = thread_time() - before;
  tell(taken, input.size());
  // The promise, with as much again for the sanitizers and for the memory of fuzzing.
  const std::uint64_t size = input.size();
  if (taken > 2 * (1'000'000'000 + 4'000 * size)) {
    broken("a document takes no more time than its size allows");
  }
}
