#ifndef IN_ORDER_HH
#define IN_ORDER_HH

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <new>
#include <optional>
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
    } catch (const std::bad_alloc&) {
      // Nor is there memory for one.
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
    outcome result;
    {
      std::unique_lock lock(guard);
      outcome& place = waiting[taken % waiting.size()];
      made_one.wait(lock, [&] { return place.is_there(); });
      result = std::exchange(place, {});
      ++taken;
    }
    taken_one.notify_one();
    if (result.failure) std::rethrow_exception(result.failure);
    return std::move(*result.value);
  }

 private:
  /// What became of a number. Keeping it takes no memory, of which there may be none left.
  struct outcome {
    std::optional<Result> value;
    std::exception_ptr failure;

    bool is_there() const { return value || failure; }
  };

  outcome outcome_of(std::size_t number) {
    outcome made;
    try {
      made.value.emplace(make_one(number));
    } catch (...) {
      made.failure = std::current_exception();
    }
    return made;
  }

  void work() {
    std::unique_lock lock(guard);
    for (;;) {
      taken_one.wait(lock, [this] { return begun >= end || begun - taken < waiting.size(); });
      if (begun >= end) return;
      const std::size_t number = begun++;
      lock.unlock();
      outcome made = outcome_of(number);
      lock.lock();
      waiting[number % waiting.size()] = std::move(made);
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
  std::vector<outcome> waiting;  ///< by number, modulo their count
  std::vector<std::thread> workers;
};

#endif
