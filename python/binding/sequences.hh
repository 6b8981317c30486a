#ifndef SEQUENCES_HH
#define SEQUENCES_HH

// Records in a row, as Python's lists: those of a document, and those inside a record.

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "record.hh"

namespace zrt4::python {

/// The records of a document. They are shared with other lists, and with whoever holds one.
class record_list {
 public:
  explicit record_list(const record_type& of) : kind(of) {}
  record_list(const record_list&) = delete;
  record_list& operator=(const record_list&) = delete;
  /// Of many records, while other threads run Python: nobody knows those that go.
  ~record_list();

  const record_type& type() const { return kind; }
  std::size_t size() const { return records.size(); }
  const std::shared_ptr<record>& at(std::size_t position) const { return records[position]; }
  void insert(std::size_t position, const std::shared_ptr<record>& given);
  void erase(std::size_t position);
  void take_all(std::vector<std::shared_ptr<record>>&& from);
  const std::vector<std::shared_ptr<record>>& all() const { return records; }

  /// The position of the first that has this key; of several keys, the first counts first.
  std::optional<std::size_t> find(std::string_view key);

 private:
  using keys = std::vector<std::pair<std::string_view, std::uint32_t>>;
  void make_index();

  const record_type& kind;
  std::vector<std::shared_ptr<record>> records;
  /// Sorted, one for each key of a record. No hash table: senders could choose texts that all have
  /// one hash.
  std::vector<keys> index;
  std::size_t index_made_at = 0;
  bool index_is_made = false;
};

/// The records inside one, for as long as someone looks at them.
class inner_list {
 public:
  inner_list(std::shared_ptr<record> of, const group& in) : owner(std::move(of)), which(in) {}

  const record_type& type() const { return which.type(); }
  std::size_t size() const { return owner->inner_count(which); }
  std::shared_ptr<record> at(std::size_t position) const { return owner->inner(which, position); }
  void insert(std::size_t position, const std::shared_ptr<record>& given) {
    owner->insert(which, position, given);
  }
  void erase(std::size_t position) { owner->erase(which, position); }

  std::optional<std::size_t> find(std::string_view key) const;

 private:
  std::shared_ptr<record> owner;
  const group& which;
};

}  // namespace zrt4::python

#endif
