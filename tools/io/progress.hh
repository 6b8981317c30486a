#ifndef PROGRESS_HH
#define PROGRESS_HH

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

/// While it lives, and has lived for half a second, a line on standard error names what is being
/// read; only on a terminal, and not when the tool was asked to be quiet. It is wiped off at the
/// end.
class progress {
 public:
  explicit progress(const std::string& file);
  progress(const progress&) = delete;
  progress& operator=(const progress&) = delete;
  ~progress();

 private:
  void show(const std::string& file);

  std::mutex guard;
  std::condition_variable ended;
  bool at_end = false;
  std::thread watch;
};

/// What `work()` returns, with the line on the terminal while it runs.
template <class Work>
auto with_progress(const std::string& file, Work&& work) {
  const progress shown(file);
  return work();
}

#endif
