#ifndef SCAN_BUDGET_HH
#define SCAN_BUDGET_HH

#include <cstddef>
#include <cstdint>
#include <utility>

#include "scanner_memory.hh"

namespace zrt4::detail {

/// So much for a document, and so much for each of its bytes; there, more where a tree is made.
struct cost_limit {
  std::uint64_t base;
  std::uint64_t of_byte;
  std::uint64_t of_byte_in_tree;
};

/// What is promised of processor time, in nanoseconds, and of memory, in bytes. A plain scan takes
/// 7 to 20 nanoseconds a byte, one of a camera file 50.
constexpr cost_limit promised_time{1'000'000'000, 1'000, 4'000};
constexpr cost_limit promised_memory{std::uint64_t{64} << 20, 64, 256};

/// What the scanner may take of it. The rest is for what its user makes of names and texts, and for
/// a step that ends late. The time may be taken twice, see `look_at_time`.
constexpr cost_limit scanner_time{400'000'000, 400, 1'600};
constexpr cost_limit scanner_memory_size{std::uint64_t{24} << 20, 40, 192};

/// Character units of the messages about errors. A tag can bring several.
constexpr cost_limit message_limit{std::uint64_t{4} << 20, 64, 64};

/// Elements. Those that are written take some bytes each: only entities can make more.
constexpr cost_limit element_limit{std::uint64_t{1} << 17, 1, 1};

/// The memory of a scanner, which ends the scan of a document that costs more than its size allows.
///
/// To read the processor time of a thread takes as long as a small element. So it is read when a
/// coarse clock has gone on, and that clock now and then: between elements, and when the scanner
/// requests memory.
class scan_budget : public scanner_memory {
 public:
  enum class result { events, tree };

  void* allocate(XMLSize_t size) override;

  /// What is scanned next has so many bytes, or at least so many.
  void expect(std::uint64_t bytes);

 protected:
  explicit scan_budget(result wanted) : makes_tree(wanted == result::tree) {}

  /// Reports the document as not well-formed, for `reason`, and ends its scan.
  [[noreturn]] virtual void refuse(const char* reason) = 0;
  /// Looks at what the scanner is about.
  virtual void look_at_scanner() = 0;

  void begin_document();
  void end_document() { watches = false; }

  void tick() {
    if (--ticks_left == 0) look();
  }
  void look();
  void count_element() {
    if (++elements > most_elements) refuse("entities make too many elements");
  }
  void count_message(std::size_t units);

  /// What the scanner's user does between the steps of a scan is not the document's cost. When that
  /// matters, the steps are timed.
  bool times_steps() const { return times; }
  void begin_step() { step_began = thread_time(); }
  void end_step() {
    if (times) time_of_steps += thread_time() - step_began;
  }

  /// As long as it lives, an error is reported, which is not cut off.
  class report {
   public:
    explicit report(scan_budget& of) : watches(of.watches) {}
    report(const report&) = delete;
    report& operator=(const report&) = delete;
    ~report() { watches = before; }

   private:
    bool& watches;
    const bool before = std::exchange(watches, false);
  };

  std::uint64_t allowed(const cost_limit& limit) const {
    return limit.base + document_bytes * (makes_tree ? limit.of_byte_in_tree : limit.of_byte);
  }
  std::uint64_t expected_bytes() const { return document_bytes; }

 private:
  using nanoseconds = std::uint64_t;

  static nanoseconds thread_time();
  void look_at_time(nanoseconds coarse_time);
  void refuse_cost(const char* what, std::uint64_t amount, const char* unit);

  const bool makes_tree;
  bool watches = false;
  bool times = false;
  unsigned ticks_left = 1;
  std::uint64_t document_bytes = 0;
  std::uint64_t elements = 0;
  std::uint64_t most_elements = 0;
  std::uint64_t message_units = 0;
  std::uint64_t held_before = 0;
  std::uint64_t most_held = 0;
  nanoseconds began = 0;         // by the coarse clock
  nanoseconds next_look = 0;     // by the coarse clock
  nanoseconds thread_began = 0;  // by the thread's, as the others
  nanoseconds step_began = 0;
  nanoseconds time_of_steps = 0;
};

}  // namespace zrt4::detail

#endif
