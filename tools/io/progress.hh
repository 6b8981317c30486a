#ifndef PROGRESS_HH
#define PROGRESS_HH

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

/// While it lives, and has lived for half a second, a line on standard error names what is being
/// read; only on a terminal. It is wiped off at the end.
class progress {
 public:
  explicit progress(const std::string& file);
  progress(const progress&) = delete;
  progress& operator=(const progress&) = delete;
  ~progress();

 private:
  void show(const std::string& file);

  int terminal = -1;  ///< standard error, also when that is silenced meanwhile
  std::mutex guard;
  std::condition_variable ended;
  bool at_end = false;
  std::thread watch;
};

#endif
