// Selector lookups, as a ratio to looking the same names up in a standard hash map. Both are
// measured in turns over the same names, so that a change of the machine's speed meets both. The
// map has an advantage: its keys are the very texts that are asked for.
//
//     build/release/bench/chan_selector_bench --benchmark_repetitions=5

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "bare_scan.hh"
#include "chan_selector.hh"

namespace {

// Divides half of every number of channels.
constexpr std::size_t lookups_per_turn = 500;

std::string daq_name(int n) {
  return "LINAC.BPM/L" + std::to_string(n % 40) + "." + std::to_string(n) + "/X";
}
std::string property(int n) {
  return "LINAC.DIAG/BPM/BPM" + std::to_string(n) + "/X.POSITION";
}

// Event type 1 is looked up by property, 6 by DAQ name.
std::string document(int channels) {
  std::string text = "<CHANDESCRIPTIONS>";
  for (int n = 0; n < channels; ++n) {
    text += "<CHANNEL><EVTYPE>" + std::to_string(n % 2 == 0 ? 1 : 6) +
            "</EVTYPE><DTYPE>9</DTYPE><PROP>" + property(n) + "</PROP><NAME>" + daq_name(n) +
            "</NAME></CHANNEL>";
  }
  return text + "</CHANDESCRIPTIONS>";
}

struct by_property {
  static std::string name(int n) { return property(n); }
  static bool look_up(chan_selector& selector, char* name) {
    return selector.find_channel(1, name);
  }
};
struct by_daq_name {
  static std::string name(int n) { return daq_name(n); }
  static bool look_up(chan_selector& selector, char* name) {
    return selector.find_channel(6, name);
  }
};
struct event_type {
  static std::string name(int n) { return daq_name(n); }
  static bool look_up(chan_selector& selector, char* name) {
    return selector.get_event_type(name) != 0;
  }
};
struct data_type {
  static std::string name(int n) { return daq_name(n); }
  static bool look_up(chan_selector& selector, char* name) {
    return selector.get_data_type(name) != 0;
  }
};

template <class Query>
void lookups(benchmark::State& state) {
  const int channels = static_cast<int>(state.range(0));
  std::string text = document(channels);
  std::vector<char*> source{text.data()};
  chan_selector selector;
  selector.set_mode(EXTR_FROM_XML);
  if (selector.set_descriptions(&source, nullptr)) return state.SkipWithError("not loaded");

  std::vector<std::string> names;
  for (int n = 0; n < channels; ++n) names.push_back(Query::name(n));
  std::unordered_map<std::string_view, int> map;
  for (const std::string& name : names) map.emplace(name, 1);
  std::vector<char*> asked;
  for (std::string& name : names) asked.push_back(name.data());
  if (state.range(1) != 0) std::shuffle(asked.begin(), asked.end(), std::mt19937(1));

  double ours = 0;
  double maps = 0;
  std::size_t first = 0;
  std::size_t found = 0;
  for (auto _ : state) {
    const double once = bench::seconds([&] {
      for (std::size_t i = first; i < first + lookups_per_turn; ++i) {
        found += Query::look_up(selector, asked[i]) ? 1U : 0U;
      }
    });
    // Not the names just asked for: those are still in the nearest cache.
    const std::size_t other = (first + asked.size() / 2) % asked.size();
    maps += bench::seconds([&] {
      for (std::size_t i = other; i < other + lookups_per_turn; ++i) {
        benchmark::DoNotOptimize(map.find(std::string_view(asked[i]))->second);
      }
    });
    ours += once;
    state.SetIterationTime(once);
    first = (first + lookups_per_turn) % asked.size();
  }
  if (found == 0) state.SkipWithError("not found");
  state.counters["ratio"] = ours / maps;
}

void sizes(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"channels", "shuffled"})->UseManualTime()->MinTime(0.5);
  for (const int channels : {1000, 10000, 100000}) {
    for (const int shuffled : {0, 1}) bench->Args({channels, shuffled});
  }
}

BENCHMARK_TEMPLATE(lookups, by_property)->Apply(sizes);
BENCHMARK_TEMPLATE(lookups, by_daq_name)->Apply(sizes);
BENCHMARK_TEMPLATE(lookups, event_type)->Apply(sizes);
BENCHMARK_TEMPLATE(lookups, data_type)->Apply(sizes);

}  // namespace
