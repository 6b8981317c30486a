#ifndef IN_ORDER_HH
#define IN_ORDER_HH

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <future>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

/// Makes numbered results in several threads and hands them out in their order. At most as many as
/// there are threads are in the making or wait, so that memory stays that of the work at hand.
template <class Result>
class in_order {
 public:
  /// `make(i)` makes the result number `i`. With one thread, or for one result, the caller's own
  /// thread makes it when it is asked for.
  in_order(std::size_t number, std::size_t threads, std::function<Result(std::size_t)> make)
      : make_one(std::move(make)), end(number), waiting(std::min(threads, number)) {
    if (waiting.size() < 2) return;
    workers.reserve(waiting.size());
    try {
      while (workers.size() < waiting.size()) workers.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
      // The system gives no more threads: those that there are do the work, or the caller's own.
    }
  }

  in_order(const in_order&) = delete;
  in_order& operator=(const in_order&) = delete;

  /// Waits for the results that are in the making and drops them.
  ~in_order() {
    {
      const std::lock_guard lock(guard);
      end = 0;
    }
    taken_one.notify_all();
    for (std::thread& worker : workers) worker.join();
  }

  /// The next result; throws what `make` threw.
  Result next() {
    if (workers.empty()) return make_one(taken++);
    std::future<Result> result;
    {
      std::unique_lock lock(guard);
      std::future<Result>& place = waiting[taken % waiting.size()];
      made_one.wait(lock, [&] { return place.valid(); });
      result = std::move(place);
      ++taken;
    }
    taken_one.notify_one();
    return result.get();
  }

 private:
  void work() {
    std::unique_lock lock(guard);
    for (;;) {
      taken_one.wait(lock, [this] { return begun >= end || begun - taken < waiting.size(); });
      if (begun >= end) return;
      const std::size_t number = begun++;
      lock.unlock();
      std::packaged_task<Result()> task([&] { return make_one(number); });
      task();
      lock.lock();
      waiting[number % waiting.size()] = task.get_future();
      made_one.notify_one();
    }
  }

  const std::function<Result(std::size_t)> make_one;
  std::mutex guard;
  std::condition_variable taken_one;
  std::condition_variable made_one;
  std::size_t begun = 0;
  std::size_t taken = 0;
  std::size_t end;
  std::vector<std::future<Result>> waiting;  ///< by number, modulo their count
  std::vector<std::thread> workers;
};

#endif
