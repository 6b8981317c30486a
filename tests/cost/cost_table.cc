// Measures what hostile documents cost their readers: for each family and multiplier the worst
// processor time and memory, of any reader and size.

#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "SAX_File_Parser.hh"
#include "SAX_Memory_Parser.hh"
#include "hostile_documents.hh"
#include "parse_chan_descr.hh"
#include "parse_env_index_dictionary.hh"
#include "parse_ev_list.hh"
#include "zrt4_gige_descr.hh"

namespace {

constexpr int most_seconds = 20;
constexpr std::size_t stack_size = 256 << 10;

struct reader {
  const char* name;
  const char* root;
  void (*read)(std::string& text, std::string& path);
};

// Goes on after errors.
template <class Parser>
void walk(Parser& parser) {
  char* tag = nullptr;
  char* value = nullptr;
  while (parser.parse(&tag, &value) != -1) continue;
}

const reader readers[] = {
    {"pull parser, memory", "R",
     [](std::string& text, std::string&) {
       SAX_Memory_Parser parser(text.data());
       if (!parser.start()) walk(parser);
     }},
    {"pull parser, file", "R",
     [](std::string&, std::string& path) {
       SAX_File_Parser parser;
       if (!parser.start(path.data())) walk(parser);
     }},
    {"camera", "R",
     [](std::string&, std::string& path) {
       std::vector<ZRT4GigEFeature*> list;
       zrt4_fill_gige_descr(path.data(), &list);
       zrt4_clean_gige_descr(&list);
     }},
    {"events, memory", "BMR",
     [](std::string& text, std::string&) {
       std::vector<zrt4_ev_entry*> list;
       zrt4_parse_ev_list_read(text.data(), &list);
       zrt4_clean_ev_list(&list);
     }},
    {"channels, file", "CHANDESCRIPTIONS",
     [](std::string&, std::string& path) {
       std::vector<chan_descr_2010*> list;
       parse_descr_list_readf(path.data(), &list, false, false);
       clean_chan_desr_list(&list);
     }},
    {"dictionary, memory", "ENVINDEXDICT",
     [](std::string& text, std::string&) {
       std::vector<zrt4_env_index_dictionary_entry*> list;
       parse_env_index_dict_list_read(text.data(), &list);
     }},
};

struct result {
  double seconds;
  double megabytes;
  double message_megabytes;
  bool crashed;
};

double seconds_of(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

long resident_kilobytes() {
  std::ifstream status("/proc/self/statm");
  long all = 0, resident = 0;
  status >> all >> resident;
  return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

void run_with_small_stack(std::function<void()> code) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, stack_size);
  pthread_t thread;
  const auto call = [](void* argument) -> void* {
    (*static_cast<std::function<void()>*>(argument))();
    return nullptr;
  };
  if (pthread_create(&thread, &attributes, call, &code) != 0) std::abort();
  pthread_join(thread, nullptr);
}

result measure(const reader& with, std::string text) {
  std::string path = "/tmp/cost_document.xml";
  std::string messages = "/tmp/cost_messages";
  std::ofstream(path, std::ios::binary) << text;
  auto* shared = static_cast<double*>(
      mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  shared[0] = -1;
  const pid_t child = fork();
  if (child == 0) {
    const int out = open(messages.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(out, 1);
    dup2(out, 2);
    const rlimit time{most_seconds, most_seconds};
    setrlimit(RLIMIT_CPU, &time);
    const rlimit space{std::size_t{6} << 30, std::size_t{6} << 30};
    setrlimit(RLIMIT_AS, &space);
    const rlimit file{std::size_t{2} << 30, std::size_t{2} << 30};
    setrlimit(RLIMIT_FSIZE, &file);
    const rlimit core{0, 0};
    setrlimit(RLIMIT_CORE, &core);
    const long before = resident_kilobytes();
    rusage start{}, end{};
    getrusage(RUSAGE_SELF, &start);
    run_with_small_stack([&] { with.read(text, path); });
    getrusage(RUSAGE_SELF, &end);
    shared[1] = static_cast<double>(end.ru_maxrss - before) / 1024;
    shared[0] = seconds_of(end.ru_utime) + seconds_of(end.ru_stime) - seconds_of(start.ru_utime) -
                seconds_of(start.ru_stime);
    _exit(0);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  result taken{shared[0], shared[1], 0, false};
  if (taken.seconds < 0) {
    taken.seconds = seconds_of(usage.ru_utime) + seconds_of(usage.ru_stime);
    taken.megabytes = static_cast<double>(usage.ru_maxrss) / 1024;
    taken.crashed = true;
  }
  munmap(shared, 4096);
  struct stat written {};
  if (stat(messages.c_str(), &written) == 0)
    taken.message_megabytes = static_cast<double>(written.st_size) / 1e6;
  return taken;
}

}  // namespace

int main(int count, char** arguments) {
  std::vector<std::size_t> sizes;
  std::string only;
  for (int i = 1; i < count; ++i) {
    const std::size_t size = std::strtoul(arguments[i], nullptr, 10);
    if (size != 0)
      sizes.push_back(size);
    else
      only = arguments[i];
  }
  if (sizes.empty()) sizes = {std::size_t{24} << 10, std::size_t{512} << 10, std::size_t{4} << 20};
  std::printf(
      "family | multiplier | reader | bytes | s | us/byte | MB | bytes/byte | messages MB | "
      "over\n");
  for (const std::string& family : cost::families()) {
    if (!only.empty() && family != only) continue;
    for (const std::string& multiplied : cost::multipliers_of(family)) {
      for (const std::size_t size : sizes) {
        for (const reader& with : readers) {
          const std::string text = cost::make(family, multiplied, size, with.root).text;
          const result taken = measure(with, text);
          const auto bytes = static_cast<double>(text.size());
          const bool tree = std::strcmp(with.name, "camera") == 0;
          const bool over = taken.crashed || taken.seconds > 1 + bytes * (tree ? 4e-6 : 1e-6) ||
                            taken.megabytes * 1048576 > 64 * 1048576.0 + bytes * (tree ? 256 : 64);
          std::printf("%s | %s | %s | %zu | %.3f | %.3f | %.1f | %.0f | %.2f | %s\n",
                      family.c_str(), multiplied.c_str(), with.name, text.size(), taken.seconds,
                      taken.seconds * 1e6 / bytes, taken.megabytes,
                      taken.megabytes * 1048576 / bytes, taken.message_megabytes,
                      taken.crashed ? "STOPPED"
                      : over        ? "OVER"
                                    : "");
          std::fflush(stdout);
        }
      }
    }
  }
}
