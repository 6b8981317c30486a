// What 100,000 errors of a document cost, printed and received:
//
//     cmake --preset bench && cmake --build build/bench --target messages &&
//     build/bench/bench/messages
//
// They are printed to /dev/null, where printing costs least.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <string>

#include "zrt4xml.hh"

namespace {

constexpr int errors = 100'000;

// Titles of bits that lack the bit's number: the reader reports each.
std::string document() {
  std::string text = "<DAQvariables><DaqBits><vindo>A/B/C/D</vindo>\n";
  for (int n = 0; n < errors; ++n) text += "<bitTitle/>\n";
  return text + "</DaqBits></DAQvariables>\n";
}

/// What is printed to standard error goes nowhere.
class printed_to_nothing {
 public:
  printed_to_nothing() {
    const int nothing = open("/dev/null", O_WRONLY);
    dup2(nothing, STDERR_FILENO);
    close(nothing);
  }
  printed_to_nothing(const printed_to_nothing&) = delete;
  printed_to_nothing& operator=(const printed_to_nothing&) = delete;
  ~printed_to_nothing() {
    dup2(before, STDERR_FILENO);
    close(before);
  }

 private:
  int before = dup(STDERR_FILENO);
};

void printed(benchmark::State& state) {
  const zrt4::xml_session session;
  const std::string text = document();
  const printed_to_nothing nothing;
  for (auto _ : state) {
    zrt4::channel_list list;
    if (list.read_text(text) != errors) state.SkipWithError("another number of errors");
  }
}

void received(benchmark::State& state) {
  const zrt4::xml_session session;
  const std::string text = document();
  for (auto _ : state) {
    zrt4::channel_list list;
    const zrt4::read_report report = list.read_text_reported(text);
    if (report.messages.size() != errors) state.SkipWithError("another number of messages");
  }
}

}  // namespace

BENCHMARK(printed)->Unit(benchmark::kMillisecond);
BENCHMARK(received)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
