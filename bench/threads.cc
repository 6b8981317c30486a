// Reading 200 documents of 1 MB each by one thread and by two, from memory and from files:
//
//     cmake --preset bench && cmake --build build/bench --target threads &&
//     build/bench/bench/threads
//
// The time of one over that of two is what the second core brings.

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include "documents.hh"
#include "temporary_document.hh"
#include "zrt4xml.hh"

namespace {

constexpr std::size_t documents = 200;
constexpr int channels = 3400;  // of a document of 1 MB

std::string text_of_document() {
  return bench::element_channels(channels);
}

/// Each thread reads the next document that none has begun.
template <class Read>
void read_all(benchmark::State& state, Read read) {
  const zrt4::xml_session session;
  for (auto _ : state) {
    std::atomic<std::size_t> next{0};
    std::atomic<int> errors{0};
    std::vector<std::thread> threads;
    for (int n = 0; n < state.range(0); ++n) {
      threads.emplace_back([&] {
        for (std::size_t i = next++; i < documents; i = next++) {
          zrt4::channel_list list;
          errors += read(list, i);
          if (list.size() != channels) ++errors;
        }
      });
    }
    for (std::thread& each : threads) each.join();
    if (errors != 0) state.SkipWithError("not read");
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(documents));
}

void from_memory(benchmark::State& state) {
  const std::vector<std::string> texts(documents, text_of_document());
  read_all(state,
           [&](zrt4::channel_list& list, std::size_t i) { return list.read_text(texts[i]); });
}

void from_files(benchmark::State& state) {
  std::vector<bench::temporary_document> files;
  const std::string text = text_of_document();
  while (files.size() < documents) files.emplace_back(text);
  read_all(state, [&](zrt4::channel_list& list, std::size_t i) {
    return list.read_file(files[i].path());
  });
}

}  // namespace

#define THREADS(what) \
  BENCHMARK(what)->ArgName("threads")->Arg(1)->Arg(2)->UseRealTime()->MeasureProcessCPUTime()

THREADS(from_memory);
THREADS(from_files);

BENCHMARK_MAIN();
