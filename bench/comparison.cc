#include "comparison.hh"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <vector>

namespace bench {

namespace {

// The value below which `share` of the values are.
double quantile(std::vector<double> values, double share) {
  std::sort(values.begin(), values.end());
  const double place = share * static_cast<double>(values.size() - 1);
  const auto below = static_cast<std::size_t>(place);
  const std::size_t above = std::min(below + 1, values.size() - 1);
  return values[below] + (place - std::floor(place)) * (values[above] - values[below]);
}

double first_quartile(const std::vector<double>& values) {
  return quantile(values, 0.25);
}
double third_quartile(const std::vector<double>& values) {
  return quantile(values, 0.75);
}

void measure_once(benchmark::State& state, const comparison& compared) {
  static bool reference_first = false;
  for (auto _ : state) {
    reference_first = !reference_first;
    double reference = reference_first ? compared.reference() : 0;
    const double candidate = compared.candidate();
    if (!reference_first) reference = compared.reference();
    state.SetIterationTime(candidate);
    state.counters["ratio"] = candidate / reference;
    state.counters["ns"] = compared.parts != 0 ? 1e9 * candidate / compared.parts : 0;
  }
  state.counters["limit"] = compared.limit;
}

// Some writers print to standard output, which belongs to the table alone.
class table : public benchmark::BenchmarkReporter {
 public:
  table() : out(fdopen(dup(STDOUT_FILENO), "w")) {
    if (out == nullptr || std::freopen("/dev/null", "w", stdout) == nullptr) std::abort();
  }
  table(const table&) = delete;
  table& operator=(const table&) = delete;
  ~table() override { std::fclose(out); }

  bool ReportContext(const Context& /*context*/) override {
    std::fprintf(out, "| what | ratio | quartiles | at most | ns each |\n|---|---|---|---|---|\n");
    return true;
  }

  void ReportRuns(const std::vector<Run>& runs) override {
    std::map<std::string, Run> by_statistic;
    for (const Run& run : runs) by_statistic.emplace(run.aggregate_name, run);
    const auto median = by_statistic.find("median");
    if (median == by_statistic.end()) return;
    const auto ratio = [&](const char* statistic) {
      return by_statistic.at(statistic).counters.at("ratio").value;
    };
    const auto& counters = median->second.counters;
    std::fprintf(out, "| %s | %.2f | %.2f to %.2f | %s | %s |\n",
                 median->second.run_name.function_name.c_str(), ratio("median"), ratio("first"),
                 ratio("third"), number(counters.at("limit").value, 2).c_str(),
                 number(counters.at("ns").value, 0).c_str());
    std::fflush(out);
  }

 private:
  static std::string number(double value, int decimals) {
    char text[32] = "";
    if (value != 0) std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
  }

  std::FILE* out;
};

}  // namespace

void add(const comparison& compared, int turns) {
  if (turns == 0) turns = compared.parts < 10000 ? 101 : compared.parts < 100000 ? 31 : 15;
  benchmark::RegisterBenchmark(
      compared.name.c_str(), [compared](benchmark::State& state) { measure_once(state, compared); })
      ->Iterations(1)
      ->Repetitions(turns)
      ->UseManualTime()
      ->ComputeStatistics("first", first_quartile)
      ->ComputeStatistics("third", third_quartile);
}

int run(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  table shown;
  benchmark::RunSpecifiedBenchmarks(&shown);
  benchmark::Shutdown();
  return 0;
}

}  // namespace bench
