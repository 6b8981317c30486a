#include "any_list.hh"

#include <type_traits>

any_list list_for(document_kind kind) {
  switch (kind) {
    case document_kind::events:
      return zrt4::event_list();
    case document_kind::dictionary:
      return zrt4::env_dictionary_2010();
    case document_kind::camera:
      return zrt4::camera_features();
    case document_kind::channels:
    case document_kind::variables:
      break;
  }
  return zrt4::channel_list();
}

held_records records_of(any_list& list) {
  return std::visit([](auto& held) { return held_records{&records_in(held), &held}; }, list);
}

reading read_into(any_list& list, input_file& file, document_kind kind) {
  auto* const channels = std::get_if<zrt4::channel_list>(&list);
  if (channels == nullptr) return read_plain(list, file, kind);
  return read_into(*channels, file, dialect_of(kind), zrt4::types::numbers);
}

reading read_plain(any_list& list, input_file& file, document_kind kind) {
  return std::visit(
      [&](auto& held) {
        if constexpr (std::is_same_v<decltype(held), zrt4::channel_list&>) {
          return read_plain(held, file, dialect_of(kind));
        } else {
          return read_into(held, file);
        }
      },
      list);
}
