#include "temporary_file.hh"

#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "descriptor.hh"

namespace {

// What a person, a terminal, a limit, a reader that went away or the system at its end sends.
constexpr int ending_signals[] = {SIGHUP,  SIGINT,  SIGQUIT, SIGTERM, SIGPIPE,
                                  SIGALRM, SIGUSR1, SIGUSR2, SIGXCPU, SIGXFSZ};

// For the handler, which can reach nothing else.
char to_remove[PATH_MAX];
struct sigaction before[std::size(ending_signals)];

// The program ends by the signal all the same, so that whoever started it sees which.
extern "C" void remove_and_end(int number) {
  (void)unlink(to_remove);
  (void)std::signal(number, SIG_DFL);
  (void)std::raise(number);
}

// A signal that is ignored stays ignored, and one that the program handles is the program's.
void remove_at_signals() {
  struct sigaction action {};
  action.sa_handler = remove_and_end;
  action.sa_flags = SA_NODEFER;
  for (std::size_t i = 0; i < std::size(ending_signals); ++i) {
    sigaction(ending_signals[i], nullptr, &before[i]);
    if (before[i].sa_handler == SIG_DFL) sigaction(ending_signals[i], &action, nullptr);
  }
}

void leave_signals_alone() {
  for (std::size_t i = 0; i < std::size(ending_signals); ++i) {
    sigaction(ending_signals[i], &before[i], nullptr);
  }
}

}  // namespace

held_signals::held_signals() {
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, &before);
}

held_signals::~held_signals() {
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

// The name says nothing of the one that will be replaced, which may be as long as names can be.
temporary_file::temporary_file(const std::string& folder) : name(folder + "/.zrt4xml.XXXXXX") {
  const held_signals none;
  if (name.size() >= sizeof to_remove) fail(ENAMETOOLONG);
  fd = mkstemp(name.data());
  if (fd == -1) fail(errno);
  std::memcpy(to_remove, name.c_str(), name.size() + 1);
  remove_at_signals();
}

temporary_file::~temporary_file() {
  if (!name.empty()) (void)unlink(name.c_str());
  leave_signals_alone();
}

void temporary_file::rename_to(const std::string& place) {
  if (std::rename(name.c_str(), place.c_str()) == -1) fail(errno);
  name.clear();
}
