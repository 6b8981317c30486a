#include "record.hh"

#include <pybind11/pybind11.h>
#include <unistd.h>

#include <utility>

namespace zrt4::python {

namespace {

std::shared_mutex& guard() {
  static std::shared_mutex all_records;
  return all_records;
}

std::size_t key_changes = 0;

/// Releases what was not taken.
class new_record {
 public:
  explicit new_record(const record_type& of) : type(of), made(of.make()) {}
  new_record(const new_record&) = delete;
  new_record& operator=(const new_record&) = delete;
  ~new_record() {
    if (made != nullptr) type.release(made);
  }
  void* get() const { return made; }
  void* take() { return std::exchange(made, nullptr); }

 private:
  const record_type& type;
  void* made;
};

}  // namespace

record::~record() {
  if (owner == nullptr) {
    kind.release(raw);
  } else {
    owner->held->erase(raw);
  }
}

record::held_records& record::known_records() {
  if (held == nullptr) held = std::make_unique<held_records>();
  return *held;
}

std::shared_ptr<record> record::inner(const group& of, std::size_t position) {
  void* const found = of.at(raw, position);
  std::weak_ptr<record>& known = known_records()[found];
  if (auto alive = known.lock()) return alive;
  auto made = of.type().wrap(found);
  made->owner = shared_from_this();
  known = made;
  return made;
}

void record::insert(const group& of, std::size_t position, const std::shared_ptr<record>& given) {
  const records_change changing;
  if (given->owner == nullptr) {
    std::weak_ptr<record>& known = known_records()[given->raw];
    try {
      of.insert(raw, position, given->raw);
    } catch (...) {
      held->erase(given->raw);
      throw;
    }
    known = given;
    given->owner = shared_from_this();
    return;
  }
  void* const copied = copy_of(of.type(), given->raw);
  try {
    of.insert(raw, position, copied);
  } catch (...) {
    of.type().release(copied);
    throw;
  }
}

void record::erase(const group& of, std::size_t position) {
  held_records& inside = known_records();
  const records_change changing;
  void* const found = of.at(raw, position);
  of.take_out(raw, position);
  const auto known = inside.find(found);
  const auto alive = known != inside.end() ? known->second.lock() : nullptr;
  if (alive == nullptr) {
    of.type().release(found);
    return;
  }
  inside.erase(known);
  alive->owner = nullptr;
}

std::shared_ptr<record> record::copy() const {
  void* const copied = copy_of(type(), raw);
  try {
    return type().wrap(copied);
  } catch (...) {
    type().release(copied);
    throw;
  }
}

void* copy_of(const record_type& type, void* from) {
  new_record made(type);
  for (const field& each : type.fields) each.set(made.get(), each.get(from));
  for (const name_list& each : type.names) each.set(made.get(), each.get(from));
  for (const group& each : type.groups) {
    for (std::size_t i = 0; i < each.size(from); ++i) {
      void* const inner = copy_of(each.type(), each.at(from, i));
      try {
        each.insert(made.get(), i, inner);
      } catch (...) {
        each.type().release(inner);
        throw;
      }
    }
  }
  return made.take();
}

bool equal(const record_type& type, void* a, void* b) {
  if (a == b) return true;
  for (const field& each : type.fields) {
    if (!(each.get(a) == each.get(b))) return false;
  }
  for (const name_list& each : type.names) {
    if (each.get(a) != each.get(b)) return false;
  }
  for (const group& each : type.groups) {
    if (each.size(a) != each.size(b)) return false;
    for (std::size_t i = 0; i < each.size(a); ++i) {
      if (!equal(each.type(), each.at(a, i), each.at(b, i))) return false;
    }
  }
  return true;
}

others_run::others_run() : state(PyEval_SaveThread()) {}

others_run::~others_run() {
  while (_Py_IsFinalizing() != 0) pause();
  PyEval_RestoreThread(static_cast<PyThreadState*>(state));
}

std::shared_lock<std::shared_mutex> records_stay() {
  return std::shared_lock(guard());
}

records_change::records_change() : lock(guard(), std::try_to_lock) {
  if (lock.owns_lock()) return;
  const others_run meanwhile;
  lock.lock();
}

std::size_t changes_of_keys() {
  return key_changes;
}

void note_change_of_key() {
  ++key_changes;
}

}  // namespace zrt4::python
