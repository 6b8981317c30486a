// Writing channel descriptions as XML into a string, as a ratio to what the XML scanner alone needs
// for the same document. Both are measured in turns, so that a change of the machine's speed meets
// both.
//
//     build/release/bench/parse_chan_descr_dump_bench --benchmark_repetitions=5

#include <benchmark/benchmark.h>

#include <vector>
#include <xercesc/util/PlatformUtils.hpp>

#include "bare_scan.hh"
#include "parse_chan_descr.hh"

namespace {

std::vector<chan_descr_2010*> records(int channels) {
  std::vector<chan_descr_2010*> list;
  for (int n = 0; n < channels; ++n) {
    auto* channel = new chan_descr_2010;
    list.push_back(channel);
    const std::string number = std::to_string(n);
    channel->stream = 2;
    channel->ev_type = 2;
    channel->dtype = 512;
    ("LINAC.DIAG/BPM/BPM" + number + "/X.POSITION").copy(channel->prop_name, 255);
    ("LINAC.BPM/" + number + "/X").copy(channel->daq_name, 255);
    std::string("horizontal position").copy(channel->prop_desc, 255);
    std::string("LINAC.DAQ/BPM.SERVER").copy(channel->sb_name, 255);
    std::string("mm").copy(channel->units, 15);
  }
  return list;
}

void dump_to_string(benchmark::State& state) {
  xercesc::XMLPlatformUtils::Initialize();
  const int channels = static_cast<int>(state.range(0));
  auto list = records(channels);
  const int dialect = static_cast<int>(state.range(1));
  double scanning = 0;
  double writing = 0;
  std::size_t bytes = 0;
  for (auto _ : state) {
    std::string document;
    int result = 0;
    const double once = bench::seconds([&] {
      result = dump_chan_desr(&list, nullptr, DUMP_XML_FILE, dialect, -1, &document, nullptr);
    });
    if (result != 0) state.SkipWithError("not written");
    writing += once;
    scanning += bench::seconds([&] { bench::bare_scan(document); });
    bytes = document.size();
    state.SetIterationTime(once);
  }
  clean_chan_desr_list(&list);
  state.counters["ratio"] = writing / scanning;
  state.counters["bytes_per_channel"] = static_cast<double>(bytes) / channels;
  state.counters["ns_per_channel"] =
      benchmark::Counter(writing * 1e9 / channels, benchmark::Counter::kAvgIterations);
  xercesc::XMLPlatformUtils::Terminate();
}

}  // namespace

BENCHMARK(dump_to_string)
    ->ArgNames({"channels", "dialect"})
    ->ArgsProduct({{1000, 10000, 100000}, {ZRT4_FORMAT, MORV_FORMAT}})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
