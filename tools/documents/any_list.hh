#ifndef ANY_LIST_HH
#define ANY_LIST_HH

// The records of a document of any kind.

#include <cstddef>
#include <variant>

#include "document_kind.hh"
#include "reading.hh"
#include "record_types.hh"
#include "zrt4xml.hh"

class input_file;

/// Of dictionaries the wider record, which holds every name.
using any_list = std::variant<zrt4::event_list, zrt4::channel_list, zrt4::env_dictionary_2010,
                              zrt4::camera_features>;

/// An empty list for that kind.
any_list list_for(document_kind kind);

/// The records of a list, with the list as their holder.
struct held_records {
  const record_group* group;
  void* holder;

  const record_type& type() const { return *group->type; }
  std::size_t size() const { return group->size(holder); }
  const void* operator[](std::size_t position) const { return group->at(holder, position); }
};
held_records records_of(any_list& list);

/// Reads the whole file into `list`, which is one for that kind, with the numbers of types.
reading read_into(any_list& list, input_file& file, document_kind kind);

/// The same as the library has them: an event type that is not told is 0.
reading read_plain(any_list& list, input_file& file, document_kind kind);

#endif
