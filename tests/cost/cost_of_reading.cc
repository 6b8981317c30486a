#include "cost_of_reading.hh"

#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <functional>

#include "SAX_File_Parser.hh"
#include "SAX_Memory_Parser.hh"
#include "parse_chan_descr.hh"
#include "parse_env_index_dictionary.hh"
#include "parse_ev_list.hh"
#include "support.hh"
#include "zrt4_gige_descr.hh"

namespace cost {

namespace {

constexpr rlim_t most_seconds = 20;
#ifdef ZRT4_LEAK_CHECKED
constexpr std::size_t stack_size = 1 << 20;  // the sanitizer's frames are larger
#else
constexpr std::size_t stack_size = 256 << 10;
#endif

// Goes on after errors.
template <class Parser>
void walk(Parser& parser) {
  char* tag = nullptr;
  char* value = nullptr;
  while (parser.parse(&tag, &value) != -1) continue;
}

double seconds_of(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

double seconds_of(const rusage& usage) {
  return seconds_of(usage.ru_utime) + seconds_of(usage.ru_stime);
}

double resident_bytes() {
  std::ifstream status("/proc/self/statm");
  double all = 0;
  double resident = 0;
  status >> all >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

void run_on_small_stack(std::function<void()> code) {
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

void limit(__rlimit_resource_t resource, rlim_t most) {
  const rlimit both{most, most};
  setrlimit(resource, &both);
}

void measure_here(const reader& with, std::string text, std::string path, int messages,
                  taken& result) {
  dup2(messages, STDOUT_FILENO);
  dup2(messages, STDERR_FILENO);
  limit(RLIMIT_CPU, most_seconds);
  limit(RLIMIT_CORE, 0);
  limit(RLIMIT_FSIZE, rlim_t{2} << 30);
#ifndef ZRT4_LEAK_CHECKED
  limit(RLIMIT_AS, rlim_t{2} << 30);
#endif
  const double before = resident_bytes();
  rusage start{};
  rusage end{};
  getrusage(RUSAGE_SELF, &start);
  run_on_small_stack([&] { with.read(text, path); });
  getrusage(RUSAGE_SELF, &end);
  result.bytes = static_cast<double>(end.ru_maxrss) * 1024 - before;
  result.seconds = seconds_of(end) - seconds_of(start);
  result.ended = true;
  _exit(0);
}

}  // namespace

const std::vector<reader>& readers() {
  static const std::vector<reader> all = {
      {"pull parser, memory", "R", false,
       [](std::string& text, std::string&) {
         SAX_Memory_Parser parser(text.data());
         if (!parser.start()) walk(parser);
       }},
      {"pull parser, file", "R", false,
       [](std::string&, std::string& path) {
         SAX_File_Parser parser;
         if (!parser.start(path.data())) walk(parser);
       }},
      {"camera", "R", true,
       [](std::string&, std::string& path) {
         std::vector<ZRT4GigEFeature*> list;
         zrt4_fill_gige_descr(path.data(), &list);
         zrt4_clean_gige_descr(&list);
       }},
      {"events, memory", "BMR", false,
       [](std::string& text, std::string&) {
         std::vector<zrt4_ev_entry*> list;
         zrt4_parse_ev_list_read(text.data(), &list);
         zrt4_clean_ev_list(&list);
       }},
      {"channels, file", "CHANDESCRIPTIONS", false,
       [](std::string&, std::string& path) {
         std::vector<chan_descr_2010*> list;
         parse_descr_list_readf(path.data(), &list, false, false);
         clean_chan_desr_list(&list);
       }},
      {"dictionary, memory", "ENVINDEXDICT", false,
       [](std::string& text, std::string&) {
         std::vector<zrt4_env_index_dictionary_entry*> list;
         parse_env_index_dict_list_read(text.data(), &list);
       }},
  };
  return all;
}

taken measure(const reader& with, const std::string& text) {
  const test::temporary_file document(text);
  const test::temporary_file messages("");
  void* const shared =
      mmap(nullptr, sizeof(taken), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) std::abort();
  auto& result = *static_cast<taken*>(shared);
  const int out = open(messages.path().c_str(), O_WRONLY);
  const pid_t child = fork();
  if (child == 0) measure_here(with, text, document.path(), out, result);
  close(out);
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  taken found = result;
  munmap(shared, sizeof(taken));
  if (!found.ended) {
    found.seconds = seconds_of(usage);
    found.bytes = static_cast<double>(usage.ru_maxrss) * 1024;
  }
  struct stat written {};
  if (stat(messages.path().c_str(), &written) == 0) {
    found.bytes_of_messages = static_cast<double>(written.st_size);
  }
  return found;
}

}  // namespace cost
