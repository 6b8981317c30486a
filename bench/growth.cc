// How the cost of channel descriptions grows with their number, with the fit of a complexity:
//
//     cmake --preset bench && cmake --build build/bench --target growth && build/bench/bench/growth
//
// "per_channel" must stay as it is from 1,000 to 100,000 channels; the fit must be N.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "chan_selector.hh"
#include "documents.hh"
#include "zrt4xml.hh"

namespace {

void finish(benchmark::State& state, int channels) {
  state.SetComplexityN(channels);
  state.counters["per_channel"] = benchmark::Counter(
      channels, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

template <std::string (*document)(int), bool delete_duplicated>
void read(benchmark::State& state) {
  const zrt4::xml_session session;
  const int channels = static_cast<int>(state.range(0));
  std::string text = document(channels);
  for (auto _ : state) {
    std::vector<chan_descr_2010*> list;
    const int errors = parse_descr_list_read(text.data(), &list, true, delete_duplicated);
    if (errors != 0 || list.size() != static_cast<std::size_t>(channels)) {
      state.SkipWithError("not read");
    }
    clean_chan_desr_list(&list);
  }
  finish(state, channels);
}

// Asks for every channel by name, in loading order.
void look_up(benchmark::State& state) {
  const zrt4::xml_session session;
  const int channels = static_cast<int>(state.range(0));
  std::string text = bench::short_element_channels(channels);
  chan_selector selector;
  selector.set_mode(EXTR_FROM_XML);
  std::vector<char*> sources{text.data()};
  if (selector.set_descriptions(&sources, nullptr)) state.SkipWithError("not loaded");
  std::vector<std::string> names;
  for (int n = 0; n < channels; ++n) names.push_back(bench::daq_name(n));
  for (auto _ : state) {
    for (std::string& name : names) benchmark::DoNotOptimize(selector.get_data_type(name.data()));
  }
  finish(state, channels);
}

}  // namespace

#define GROWTH(...) \
  BENCHMARK(__VA_ARGS__)->RangeMultiplier(10)->Range(1'000, 100'000)->Complexity(benchmark::oN)

GROWTH(read<bench::element_channels, false>);
GROWTH(read<bench::element_channels, true>);
GROWTH(read<bench::variable_channels, true>);
GROWTH(look_up);

BENCHMARK_MAIN();
