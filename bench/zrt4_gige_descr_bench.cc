// Reading a camera file, as a ratio to a bare DOM parse of the same file. Both are measured in
// turns, so that a change of the machine's speed meets both.
//
//     build/release/bench/zrt4_gige_descr_bench --benchmark_repetitions=5

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "zrt4_gige_descr.hh"

namespace {

using clock_type = std::chrono::steady_clock;

double seconds(clock_type::duration time) {
  return std::chrono::duration<double>(time).count();
}

struct full_features {
  static std::string feature(const std::string& number) {
    return "  <Integer Name=\"Feature" + number +
           "\" Access=\"RW\">\n    <PvRename>CAMERA.FEATURE_" + number +
           "</PvRename>\n    <ToolTip>Sets feature " + number +
           "</ToolTip>\n    <Description>Feature " + number +
           " of the sensor, in its own units.</Description>\n    <Address>" + number +
           "</Address>\n  </Integer>\n";
  }
};

// As little as a feature can be: the records weigh most here.
struct bare_features {
  static std::string feature(const std::string& number) {
    return "<Float Name=\"f" + number + "\"/>";
  }
};

class made_file {
 public:
  explicit made_file(const std::string& text) {
    std::FILE* file = fdopen(mkstemp(path.data()), "w");
    if (file == nullptr) std::abort();
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
  }
  made_file(const made_file&) = delete;
  made_file& operator=(const made_file&) = delete;
  ~made_file() { std::remove(path.c_str()); }

  char* name() { return path.data(); }

 private:
  std::string path = "/tmp/zrt4_bench_XXXXXX";
};

template <class Features>
std::string document(int count) {
  std::string text = "<?xml version=\"1.0\"?>\n<Camera>\n";
  for (int n = 0; n < count; ++n) text += Features::feature(std::to_string(n));
  return text + "</Camera>\n";
}

clock_type::duration parse(const char* name) {
  using xercesc::XercesDOMParser;
  const auto begin = clock_type::now();
  xercesc::XMLPlatformUtils::Initialize();
  {
    XercesDOMParser parser;
    parser.setValidationScheme(XercesDOMParser::Val_Never);
    parser.setDoNamespaces(false);
    parser.setDoSchema(false);
    parser.setCreateEntityReferenceNodes(false);
    parser.parse(name);
  }
  xercesc::XMLPlatformUtils::Terminate();
  return clock_type::now() - begin;
}

clock_type::duration read(char* name, std::size_t expected, benchmark::State& state) {
  std::vector<ZRT4GigEFeature*> features;
  const auto begin = clock_type::now();
  const bool failed = zrt4_fill_gige_descr(name, &features);
  const auto end = clock_type::now();
  if (failed || features.size() != expected) state.SkipWithError("not read");
  zrt4_clean_gige_descr(&features);
  return end - begin;
}

template <class Features>
void read_features(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  made_file file(document<Features>(count));
  clock_type::duration parsing{};
  clock_type::duration reading{};
  for (auto _ : state) {
    parsing += parse(file.name());
    const auto once = read(file.name(), static_cast<std::size_t>(count), state);
    reading += once;
    state.SetIterationTime(seconds(once));
  }
  state.SetComplexityN(count);
  state.SetItemsProcessed(state.iterations() * count);
  state.counters["ratio"] = seconds(reading) / seconds(parsing);
}

}  // namespace

#define READ_FEATURES(...)              \
  BENCHMARK(read_features<__VA_ARGS__>) \
      ->RangeMultiplier(10)             \
      ->Range(100, 100000)              \
      ->UseManualTime()                 \
      ->Unit(benchmark::kMillisecond)   \
      ->Complexity(benchmark::oN)

READ_FEATURES(full_features);
READ_FEATURES(bare_features);
