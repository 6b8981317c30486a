// Time to read a camera file, relative to a bare DOM parse of the same file in the same run.
// Usage: zrt4_gige_descr_bench [FILE]; without FILE, one of 20000 features is made.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "zrt4_gige_descr.hh"

namespace {

constexpr int rounds = 25;

class made_file {
 public:
  explicit made_file(int features) {
    char pattern[] = "/tmp/zrt4_bench_XXXXXX";
    std::FILE* file = fdopen(mkstemp(pattern), "w");
    if (file == nullptr) std::exit(1);
    std::fputs("<?xml version=\"1.0\"?>\n<CameraDescription>\n", file);
    for (int i = 0; i < features; ++i) {
      std::fprintf(file,
                   "  <Integer Name=\"Feature%d\" Access=\"RW\">\n"
                   "    <PvRename>CAMERA.FEATURE_%d</PvRename>\n"
                   "    <ToolTip>Sets feature %d</ToolTip>\n"
                   "    <Description>Feature %d of the sensor, in its own units.</Description>\n"
                   "    <Address>%d</Address>\n"
                   "  </Integer>\n",
                   i, i, i, i, i);
    }
    std::fputs("</CameraDescription>\n", file);
    std::fclose(file);
    name = pattern;
  }
  made_file(const made_file&) = delete;
  made_file& operator=(const made_file&) = delete;
  ~made_file() { std::remove(name.c_str()); }

  std::string name;
};

template <class Code>
double seconds(Code&& code) {
  const auto start = std::chrono::steady_clock::now();
  code();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void bare_parse(const char* name) {
  using xercesc::XercesDOMParser;
  xercesc::XMLPlatformUtils::Initialize();
  {
    XercesDOMParser parser;
    parser.setValidationScheme(XercesDOMParser::Val_Never);
    parser.setDoNamespaces(false);
    parser.setDoSchema(false);
    parser.setValidationSchemaFullChecking(false);
    parser.setCreateEntityReferenceNodes(false);
    parser.parse(name);
  }
  xercesc::XMLPlatformUtils::Terminate();
}

void report(const char* what, std::vector<double> values, double scale, const char* unit) {
  std::sort(values.begin(), values.end());
  std::printf("%-20s median %10.3f %s  (%.3f .. %.3f)\n", what, values[values.size() / 2] * scale,
              unit, values.front() * scale, values.back() * scale);
}

}  // namespace

int main(int argc, char** argv) {
  const made_file made(argc > 1 ? 0 : 20000);
  std::string name = argc > 1 ? argv[1] : made.name;
  std::size_t found = 0;
  std::vector<double> bare;
  std::vector<double> read;
  std::vector<double> ratio;
  for (int round = 0; round < rounds; ++round) {
    std::vector<ZRT4GigEFeature*> features;
    bare.push_back(seconds([&] { bare_parse(name.c_str()); }));
    read.push_back(seconds([&] { zrt4_fill_gige_descr(name.data(), &features); }));
    ratio.push_back(read.back() / bare.back());
    found = features.size();
    zrt4_clean_gige_descr(&features);
  }
  std::vector<double> rate;
  for (const double time : read) rate.push_back(static_cast<double>(found) / time);
  std::printf("%zu features, %d rounds\n", found, rounds);
  report("bare DOM parse", bare, 1e3, "ms");
  report("read", read, 1e3, "ms");
  report("features read", rate, 1e-3, "thousand/s");
  report("read / bare", ratio, 1, "");
}
