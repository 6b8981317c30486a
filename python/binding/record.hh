#ifndef RECORD_HH
#define RECORD_HH

// A record of the library as Python holds it. A record of a list is owned by the lists and names
// that hold it; one inside another belongs to that one, and lives on by itself when it is taken
// out.

#include <cstddef>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

#include "record_type.hh"

namespace zrt4::python {

/// Everything but making one needs Python's lock.
class record : public std::enable_shared_from_this<record> {
 public:
  record(const record_type& type, void* of) : kind(type), raw(of) {}
  record(const record&) = delete;
  record& operator=(const record&) = delete;
  virtual ~record();

  const record_type& type() const { return kind; }
  void* get() const { return raw; }

  std::size_t inner_count(const group& of) const { return of.size(raw); }
  void* inner_place(const group& of, std::size_t position) const { return of.at(raw, position); }
  /// A record inside this one; the same for as long as someone holds it.
  std::shared_ptr<record> inner(const group& of, std::size_t position);
  /// Takes a record in: itself when it is nobody's, otherwise a copy.
  void insert(const group& of, std::size_t position, const std::shared_ptr<record>& given);
  /// Takes one out; it lives on when someone holds it.
  void erase(const group& of, std::size_t position);

  bool belongs_to_another() const { return owner != nullptr; }

  std::shared_ptr<record> copy() const;

 private:
  const record_type& kind;
  void* const raw;
  std::shared_ptr<record> owner;  ///< null: the record is this object's own
  /// Those inside that someone holds.
  using held_records = std::unordered_map<void*, std::weak_ptr<record>>;
  std::unique_ptr<held_records> held;
  held_records& known_records();
};

/// A type of its own for each class of Python.
template <class Raw>
class record_of final : public record {
 public:
  explicit record_of(void* of) : record(type_of<Raw>(), of) {}
};

/// A copy of all that a record has, for the caller to release.
void* copy_of(const record_type& type, void* from);

/// Whether two records of a type have the same values.
bool equal(const record_type& type, void* a, void* b);

/// While it lives, other threads run Python. A thread that would run Python again when the
/// interpreter ends, as a daemon may, waits for the end of the process instead: the interpreter
/// would unwind it, which C++ takes for an error.
class others_run {
 public:
  others_run();
  others_run(const others_run&) = delete;
  others_run& operator=(const others_run&) = delete;
  ~others_run();

 private:
  void* const state;
};

/// Held by who reads records without Python's lock, so that nobody changes them meanwhile.
std::shared_lock<std::shared_mutex> records_stay();

/// Held by who changes a record. Whoever waits for that lets other threads run Python; nothing of
/// Python is called while it lives.
class records_change {
 public:
  records_change();

 private:
  std::unique_lock<std::shared_mutex> lock;
};

/// Counts changes of what records are looked up by, so that an index knows when it is out of date.
std::size_t changes_of_keys();
void note_change_of_key();

}  // namespace zrt4::python

#endif
