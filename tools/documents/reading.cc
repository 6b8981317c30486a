#include "reading.hh"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

#include "file_error.hh"
#include "input_file.hh"
#include "json_reading.hh"
#include "json_text.hh"
#include "message.hh"
#include "placed_channels.hh"
#include "received_messages.hh"
#include "record_types.hh"
#include "type_masks.hh"

namespace {

bool is_about_xml(const received_message& one) {
  return one.topic == zrt4::message_topic::xml || one.topic == zrt4::message_topic::limit;
}

// Where the XML is damaged, that says it all.
std::vector<received_message> to_report(std::vector<received_message> received) {
  const auto xml_end = std::stable_partition(received.begin(), received.end(), is_about_xml);
  if (xml_end != received.begin()) {
    received.erase(xml_end, received.end());
  } else {
    const auto is_remark = [](const received_message& one) {
      return one.severity == zrt4::message_severity::remark;
    };
    received.erase(std::remove_if(received.begin(), received.end(), is_remark), received.end());
  }
  return received;
}

// What is not about the XML names no file.
std::string line_of(const std::string& file, const received_message& one) {
  return is_about_xml(one) ? message_line(file + one.place(), one.text) : one.text + "\n";
}

template <class List>
void append(List& list, List& taken) {
  list.get()->reserve(list.size() + taken.size());
  const auto records = taken.release();
  list.get()->insert(list.get()->end(), records.begin(), records.end());
}

// The records of all documents that JSON holds.
template <class List>
reading read_json_into(List& list, input_file& file) {
  reading result;
  for (json_document& document : read_json(file)) {
    auto* const records = std::get_if<List>(&document.records);
    if (records == nullptr) throw file_error(file.name(), "holds documents of several kinds");
    result.errors += document.errors;
    result.messages.insert(result.messages.end(), document.messages.begin(),
                           document.messages.end());
    append(list, *records);
  }
  result.errors += static_cast<int>(result.messages.size());
  return result;
}

void make_masks(zrt4::channel_list& list) {
  for (chan_descr_2010& channel : list) {
    const bool is_told = channel.ev_type != untold_event_type;
    const std::string number = std::to_string(channel.ev_type);
    channel.ev_type = is_told ? zrt4::detail::event_type_of(number.c_str(), true) : 0;
    channel.dtype = zrt4::detail::data_type_of(std::to_string(channel.dtype).c_str(), true);
  }
}

// The older record holds less of a name.
reading read_narrow_json_into(zrt4::env_dictionary& list, input_file& file) {
  using entry = zrt4_env_index_dictionary_entry;
  zrt4::env_dictionary_2010 wide;
  reading result = read_json_into(wide, file);
  for (const zrt4_env_index_dictionary_entry_2010& from : wide) {
    auto* const narrow = static_cast<entry*>(std::calloc(1, sizeof(entry)));
    if (narrow == nullptr) throw std::bad_alloc();
    list.get()->push_back(narrow);
    narrow->index = from.index;
    const std::string_view name = from.data.env_prop;
    name.copy(narrow->data.env_prop, sizeof narrow->data.env_prop - 1);
    narrow->data.env_ch_abs_delta = from.data.env_ch_abs_delta;
    narrow->data.env_ch_rel_delta = from.data.env_ch_rel_delta;
    if (name == narrow->data.env_prop) continue;
    ++result.errors;
    result.messages.push_back(message_line(
        file.name(), "index " + std::to_string(from.index) + ": the property has " +
                         std::to_string(name.size()) + " bytes, of which the record keeps " +
                         std::to_string(sizeof narrow->data.env_prop - 1) +
                         "; --wide keeps them all"));
  }
  return result;
}

template <class List>
reading read_file(List& list, input_file& file) {
  return read_with_messages(file, [&] { return list.read_file(file.path()); });
}

reading read_xml(zrt4::channel_list& list, input_file& file, int dialect, zrt4::types wanted) {
  if (dialect != MORV_FORMAT) {
    return read_with_messages(file, [&] { return list.read_file(file.path(), wanted); });
  }
  // The reader of files makes no masks of this dialect's event types, and joins the numbers of
  // channels that it merges: 1 and 2 would become 3.
  const std::string text = file.content();
  reading how = read_with_messages(file, [&] { return list.read_text(text, wanted); });
  drop_twins(list);
  return how;
}

}  // namespace

void drop_twins(zrt4::channel_list& list) {
  for (chan_descr_2010& channel : list) {
    std::vector<bit_descr*>& bits = channel.bits;
    const auto is_twin = [&](std::size_t i) {
      return bits[i]->bit_name[0] == '\0' && i + 1 < bits.size() &&
             bits[i + 1]->bit == bits[i]->bit;
    };
    std::size_t kept = 0;
    for (std::size_t i = 0; i < bits.size(); ++i) {
      if (is_twin(i)) {
        delete bits[i];
      } else {
        bits[kept++] = bits[i];
      }
    }
    bits.resize(kept);
    channel.nbits = static_cast<std::int32_t>(kept);
  }
}

reading read_with_messages(input_file& file, const std::function<int()>& read) {
  reading result;
  received_messages received;
  result.errors = read();
  if (result.errors == 0) return result;
  result.reported = to_report(std::move(received.all));
  for (const received_message& one : result.reported) {
    result.messages.push_back(line_of(file.name(), one));
  }
  return result;
}

reading read_into(zrt4::event_list& list, input_file& file) {
  if (is_json(file)) return read_json_into(list, file);
  return read_file(list, file);
}

reading read_into(zrt4::channel_list& list, input_file& file, int dialect, zrt4::types wanted) {
  if (is_json(file)) {
    reading result = read_json_into(list, file);
    if (wanted == zrt4::types::masks) make_masks(list);
    return result;
  }
  if (wanted == zrt4::types::masks) return read_xml(list, file, dialect, wanted);
  placed_channels placed;
  reading how = read_placed(placed, file, dialect, wanted);
  if (dialect == MORV_FORMAT) drop_twins(placed.list);
  append(list, placed.list);
  return how;
}

reading read_plain(zrt4::channel_list& list, input_file& file, int dialect) {
  if (!is_json(file)) return read_xml(list, file, dialect, zrt4::types::numbers);
  reading result = read_json_into(list, file);
  for (chan_descr_2010& channel : list) {
    if (channel.ev_type == untold_event_type) channel.ev_type = 0;
  }
  return result;
}

reading read_into(zrt4::env_dictionary& list, input_file& file) {
  if (is_json(file)) return read_narrow_json_into(list, file);
  return read_file(list, file);
}

reading read_into(zrt4::env_dictionary_2010& list, input_file& file) {
  if (is_json(file)) return read_json_into(list, file);
  return read_file(list, file);
}

reading read_into(zrt4::camera_features& list, input_file& file) {
  if (is_json(file)) return read_json_into(list, file);
  reading result;
  received_messages received;
  result.errors = list.read_file(file.path());
  const auto damage = std::find_if(received.all.begin(), received.all.end(), [](const auto& one) {
    return is_about_xml(one) && one.severity >= zrt4::message_severity::error;
  });
  if (damage != received.all.end()) {
    result.errors = std::max(result.errors, 1);
    result.messages = {
        message_line(file.name() + damage->place(), "damaged here: " + damage->text)};
    result.reported = {*damage};
  }
  return result;
}

int read_written(zrt4::channel_list& list, const std::string& document, int dialect) {
  const received_messages unheard;
  placed_channels placed;
  const int errors = read_placed(placed, document);
  if (dialect == MORV_FORMAT) drop_twins(placed.list);
  append(list, placed.list);
  return errors;
}
int read_written(zrt4::env_dictionary& list, const std::string& document) {
  const received_messages unheard;
  return list.read_text(document);
}
int read_written(zrt4::env_dictionary_2010& list, const std::string& document) {
  const received_messages unheard;
  return list.read_text(document);
}

void report_reading(const std::string& file, const reading& result, const std::string& rest) {
  report(result.messages);
  report_errors(file, result.errors, rest);
}
