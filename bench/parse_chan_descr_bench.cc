// Reading channel descriptions, as a ratio to what the XML scanner alone needs for the same
// document. Both are measured in turns, so that a change of the machine's speed meets both.
//
//     build/release/bench/parse_chan_descr_bench --benchmark_repetitions=5

#include <benchmark/benchmark.h>

#include <chrono>
#include <string>
#include <vector>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "parse_chan_descr.hh"

namespace {

using clock_type = std::chrono::steady_clock;

double seconds(clock_type::duration time) {
  return std::chrono::duration<double>(time).count();
}

// Every property is another one.
std::string property(int n) {
  return "LINAC.DIAG/BPM/BPM" + std::to_string(n) + "/X.POSITION";
}

struct element_dialect {
  static constexpr const char* root = "CHANDESCRIPTIONS";
  static std::string channel(int n) {
    return "<CHANNEL>\n<EVTYPE>1</EVTYPE>\n<STREAM>2</STREAM>\n<DTYPE>41</DTYPE>\n<PROP>" +
           property(n) + "</PROP>\n<NAME>BPM" + std::to_string(n) +
           ".X</NAME>\n<DESC>horizontal position</DESC>\n<UNITS>mm</UNITS>\n</CHANNEL>\n";
  }
};

struct variable_dialect {
  static constexpr const char* root = "DAQvariables";
  static std::string channel(int n) {
    return "<DaqFloat>\n<evType>1</evType>\n<vindo>" + property(n) + "</vindo>\n<daqName>BPM" +
           std::to_string(n) +
           ".X</daqName>\n<description>horizontal position</description>\n<units>mm</units>\n"
           "<lastIndex>0</lastIndex>\n</DaqFloat>\n";
  }
};

// As little as a channel can be: the records weigh most here.
struct bare_element_dialect {
  static constexpr const char* root = "CHANDESCRIPTIONS";
  static std::string channel(int n) {
    return "<CHANNEL><EVTYPE>1</EVTYPE><STREAM>2</STREAM><DTYPE>41</DTYPE><PROP>" + property(n) +
           "</PROP><NAME>BPM" + std::to_string(n) + ".X</NAME><UNITS>mm</UNITS></CHANNEL>";
  }
};

// A channel with everything: the document weighs most here.
struct full_element_dialect {
  static constexpr const char* root = "CHANDESCRIPTIONS";
  static std::string channel(int n) {
    return "<CHANNEL>\n<EVTYPE>1</EVTYPE>\n<STREAM>2</STREAM>\n<DTYPE>38</DTYPE>\n<PROP>" +
           property(n) + "</PROP>\n<NAME>BPM" + std::to_string(n) +
           ".X</NAME>\n<DESC>horizontal position</DESC>\n<UNITS>mm</UNITS>\n<SIZE>2048</SIZE>\n"
           "<SB_NAME>LINAC.DAQ/BPM.SERVER</SB_NAME>\n<DB_KEY>4711</DB_KEY>\n"
           "<SUBSYSTEM>DIAG</SUBSYSTEM>\n"
           "<BIT>0<BIT_NAME>ON</BIT_NAME><BIT_DESCR>delivers data</BIT_DESCR></BIT>\n"
           "<DIM>0<DIM_NAME>bunch</DIM_NAME><DIM_UNITS>us</DIM_UNITS>\n"
           "<STAT>0<STAT_NAME>mean</STAT_NAME><STAT_UNITS>mm</STAT_UNITS></STAT>\n</DIM>\n"
           "</CHANNEL>\n";
  }
};

template <class Dialect>
std::string document(int channels) {
  std::string text = "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<";
  text += std::string(Dialect::root) + ">\n";
  for (int n = 0; n < channels; ++n) text += Dialect::channel(n);
  return text + "</" + Dialect::root + ">\n";
}

clock_type::duration scan(const std::string& text) {
  using namespace xercesc;
  const auto begin = clock_type::now();
  SAXParser parser;
  HandlerBase nothing;
  parser.setDocumentHandler(&nothing);
  parser.setErrorHandler(&nothing);
  const MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()), text.size(),
                                 "benchmark");
  XMLPScanToken token;
  bool more = parser.parseFirst(source, token);
  while (more) more = parser.parseNext(token);
  return clock_type::now() - begin;
}

clock_type::duration read(std::string& text, bool delete_duplicated, std::size_t expected,
                          benchmark::State& state) {
  std::vector<chan_descr_2010*> list;
  const auto begin = clock_type::now();
  const int result = parse_descr_list_read(text.data(), &list, true, delete_duplicated);
  const auto end = clock_type::now();
  if (result != 0 || list.size() != expected) state.SkipWithError("not read");
  clean_chan_desr_list(&list);
  return end - begin;
}

template <class Dialect, bool DeleteDuplicated>
void read_channels(benchmark::State& state) {
  xercesc::XMLPlatformUtils::Initialize();
  const int channels = static_cast<int>(state.range(0));
  std::string text = document<Dialect>(channels);
  clock_type::duration scanning{};
  clock_type::duration reading{};
  for (auto _ : state) {
    scanning += scan(text);
    const auto once = read(text, DeleteDuplicated, static_cast<std::size_t>(channels), state);
    reading += once;
    state.SetIterationTime(seconds(once));
  }
  state.SetComplexityN(channels);
  state.counters["ratio"] = seconds(reading) / seconds(scanning);
  state.counters["ns_per_channel"] =
      benchmark::Counter(seconds(reading) * 1e9 / channels, benchmark::Counter::kAvgIterations);
  xercesc::XMLPlatformUtils::Terminate();
}

}  // namespace

#define READ_CHANNELS(...)              \
  BENCHMARK(read_channels<__VA_ARGS__>) \
      ->RangeMultiplier(10)             \
      ->Range(1000, 100000)             \
      ->UseManualTime()                 \
      ->Unit(benchmark::kMillisecond)   \
      ->Complexity(benchmark::oN)

READ_CHANNELS(element_dialect, false);
READ_CHANNELS(element_dialect, true);
READ_CHANNELS(full_element_dialect, true);
READ_CHANNELS(bare_element_dialect, true);
READ_CHANNELS(variable_dialect, true);
