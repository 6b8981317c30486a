// Reading environment index dictionaries, as a ratio to what the XML scanner alone needs for the
// same document; dumping them into a string, as a ratio to printing the same text with snprintf.
// Both sides of a ratio are measured in turns, so that a change of the machine's speed meets both.
//
//     build/release/bench/parse_env_index_dictionary_bench --benchmark_repetitions=5

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "bare_scan.hh"
#include "parse_env_index_dictionary.hh"

namespace {

struct older {
  using entry = zrt4_env_index_dictionary_entry;
  static constexpr auto read = parse_env_index_dict_list_read;
  static int dump(std::vector<entry*>* list, std::string* text) {
    return dump_env_index_dict(list, nullptr, ENV_INDX_DUMP_XML_STRING, -1, text);
  }
};

struct y2010 {
  using entry = zrt4_env_index_dictionary_entry_2010;
  static constexpr auto read = parse_env_index_dict_list_read_2010;
  static int dump(std::vector<entry*>* list, std::string* text) {
    return dump_env_index_dict_2010(list, nullptr, ENV_INDX_DUMP_XML_STRING, -1, text);
  }
};

template <class Entry>
struct owned_list : std::vector<Entry*> {
  owned_list() = default;
  owned_list(const owned_list&) = delete;
  owned_list& operator=(const owned_list&) = delete;
  ~owned_list() {
    for (Entry* entry : *this) std::free(entry);
  }
};

template <class Generation>
void fill(owned_list<typename Generation::entry>& list, int entries) {
  for (int n = 0; n < entries; ++n) {
    auto* entry = static_cast<typename Generation::entry*>(
        std::calloc(1, sizeof(typename Generation::entry)));
    entry->index = n;
    std::snprintf(entry->data.env_prop, sizeof entry->data.env_prop,
                  "LINAC.COOLING/WATER.SENSOR/L%d.%03d/TEMP.RETURN", n / 1000, n % 1000);
    entry->data.env_ch_abs_delta = 0.05F * static_cast<float>(n % 40);
    entry->data.env_ch_rel_delta = 0.001F * static_cast<float>(n % 7);
    list.push_back(entry);
  }
}

template <class Generation>
void read_dictionary(benchmark::State& state) {
  xercesc::XMLPlatformUtils::Initialize();
  const int entries = static_cast<int>(state.range(0));
  std::string text;
  {
    owned_list<typename Generation::entry> list;
    fill<Generation>(list, entries);
    Generation::dump(&list, &text);
  }
  double scanning = 0;
  double reading = 0;
  for (auto _ : state) {
    scanning += bench::seconds([&] { bench::bare_scan(text); });
    owned_list<typename Generation::entry> list;
    const double once = bench::seconds([&] {
      if (Generation::read(text.data(), &list) != 0) state.SkipWithError("not read");
    });
    if (list.size() != static_cast<std::size_t>(entries)) state.SkipWithError("entries missing");
    reading += once;
    state.SetIterationTime(once);
  }
  state.SetComplexityN(entries);
  state.counters["ratio"] = reading / scanning;
  state.counters["ns_per_entry"] =
      benchmark::Counter(reading * 1e9 / entries, benchmark::Counter::kAvgIterations);
  xercesc::XMLPlatformUtils::Terminate();
}

// The least that the printf family needs to make the entries' text.
template <class Entry>
std::size_t print(const std::vector<Entry*>& list, std::string& text) {
  text.clear();
  for (const Entry* entry : list) {
    char channel[512];
    const int size = std::snprintf(
        channel, sizeof channel,
        "<CHANNEL>\n<INDEX>%d</INDEX>\n<PROP>%s</PROP>\n<DABS>%f</DABS>\n"
        "<DREL>%f</DREL>\n</CHANNEL>\n",
        entry->index, entry->data.env_prop, static_cast<double>(entry->data.env_ch_abs_delta),
        static_cast<double>(entry->data.env_ch_rel_delta));
    text.append(channel, static_cast<std::size_t>(size));
  }
  return text.size();
}

template <class Generation>
void dump_dictionary(benchmark::State& state) {
  const int entries = static_cast<int>(state.range(0));
  owned_list<typename Generation::entry> list;
  fill<Generation>(list, entries);
  double printing = 0;
  double dumping = 0;
  for (auto _ : state) {
    std::string printed;
    printing += bench::seconds([&] { benchmark::DoNotOptimize(print(list, printed)); });
    std::string text;
    const double once = bench::seconds([&] { Generation::dump(&list, &text); });
    if (text.size() < printed.size()) state.SkipWithError("not dumped");
    dumping += once;
    state.SetIterationTime(once);
  }
  state.SetComplexityN(entries);
  state.counters["ratio"] = dumping / printing;
  state.counters["ns_per_entry"] =
      benchmark::Counter(dumping * 1e9 / entries, benchmark::Counter::kAvgIterations);
}

}  // namespace

#define ENTRIES                       \
  ->RangeMultiplier(10)               \
      ->Range(1000, 100000)           \
      ->UseManualTime()               \
      ->Unit(benchmark::kMillisecond) \
      ->Complexity(benchmark::oN)

BENCHMARK(read_dictionary<older>) ENTRIES;
BENCHMARK(read_dictionary<y2010>) ENTRIES;
BENCHMARK(dump_dictionary<older>) ENTRIES;
BENCHMARK(dump_dictionary<y2010>) ENTRIES;
