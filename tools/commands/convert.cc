#include "convert.hh"

#include <algorithm>
#include <deque>
#include <map>
#include <string_view>

#include "descriptor.hh"
#include "diff.hh"
#include "document_kind.hh"
#include "file_error.hh"
#include "input_file.hh"
#include "latin1.hh"
#include "message.hh"
#include "output_file.hh"
#include "quiet_output.hh"
#include "reading.hh"
#include "writable.hh"

namespace {

bool is_xml(output_format format) {
  return format == output_format::xml || format == output_format::variables;
}

output_format own_format(int dialect) {
  return dialect == MORV_FORMAT ? output_format::variables : output_format::xml;
}

// A document keeps the numbers of types; a text shows masks, as the listing does.
zrt4::types types_for(output_format format) {
  return is_xml(format) ? zrt4::types::numbers : zrt4::types::masks;
}

/// What `dump(file name)` writes.
template <class Dump>
std::string dumped(Dump&& dump) {
  descriptor memory(memory_file());
  std::string path = memory.path();
  {
    const quiet_output remarks;
    if (dump(path.data()) != 0) throw std::runtime_error("cannot write to memory");
  }
  return memory.read_all();
}

std::string text_of(zrt4::channel_list& list, output_format format) {
  if (is_xml(format)) {
    std::string document;
    const int dialect = format == output_format::xml ? ZRT4_FORMAT : MORV_FORMAT;
    dump_chan_desr(list.get(), nullptr, DUMP_XML_FILE, dialect, -1, &document, nullptr);
    return to_latin1(document);
  }
  const int mode = format == output_format::text ? DUMP_TXT_FILE : DUMP_TXT_FILE_SHORT;
  return dumped([&](char* path) {
    return dump_chan_desr(list.get(), path, mode, ZRT4_FORMAT, -1, nullptr, nullptr);
  });
}

// Standard output takes what there is, a file is not replaced by half of it.
exit_code finish(exit_code result, const std::string& content, const std::string& output) {
  if (result == exit_fine || is_standard_output(output)) {
    write_output(output, content);
  } else {
    report(output,
           "not written, because not all went well; without -o, standard output takes what "
           "there is");
  }
  return result;
}

exit_code write_channels(exit_code result, const std::string& file, zrt4::channel_list& list,
                         output_format format, const std::string& output) {
  writable fit;
  if (is_xml(format)) fit = check_channels(file, list);
  if (!fit.at_all) {
    report(file, "nothing is written: the document could not be read back");
    return exit_not_fine;
  }
  if (!fit.wholly) result = exit_not_fine;
  return finish(result, text_of(list, format), output);
}

struct narrow {
  using dictionary = zrt4::env_dictionary;
  static int dump(dictionary::pointers* list, char* path, int mode, std::string* document) {
    return dump_env_index_dict(list, path, mode, -1, document);
  }
};
struct wide_2010 {
  using dictionary = zrt4::env_dictionary_2010;
  static int dump(dictionary::pointers* list, char* path, int mode, std::string* document) {
    return dump_env_index_dict_2010(list, path, mode, -1, document);
  }
};

template <class Width>
exit_code convert_dictionary(input_file& file, output_format to, const std::string& output) {
  typename Width::dictionary list;
  exit_code result = exit_fine;
  if (const int errors = read_into(list, file); errors != 0) {
    report_errors(file.name(), errors, "what could be read is converted");
    result = exit_not_fine;
  }
  if (to == output_format::text) {
    const std::string text = dumped(
        [&](char* path) { return Width::dump(list.get(), path, ENV_INDX_DUMP_TXT_FILE, nullptr); });
    return finish(result, text, output);
  }
  const writable fit = check_dictionary(file.name(), list);
  if (!fit.at_all) {
    report(file.name(), "nothing is written: the document could not be read back");
    return exit_not_fine;
  }
  std::string document;
  Width::dump(list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, &document);
  if (!fit.wholly) result = exit_not_fine;
  return finish(result, to_latin1(document), output);
}

exit_code convert_channels(input_file& file, int dialect, output_format to,
                           const std::string& output) {
  zrt4::channel_list list;
  exit_code result = exit_fine;
  if (const int errors = read_into(list, file, dialect, types_for(to)); errors != 0) {
    report_errors(file.name(), errors, "what could be read is converted");
    result = exit_not_fine;
  }
  return write_channels(result, file.name(), list, to, output);
}

void add(zrt4::channel_list& base, zrt4::channel_list& from, bool force) {
  // No hash table: senders could choose properties that all have one hash.
  std::map<std::string_view, chan_descr_2010*> by_property;
  for (chan_descr_2010& channel : base) by_property.emplace(channel.prop_name, &channel);
  std::vector<chan_descr_2010*> merged;
  for (chan_descr_2010* channel : *from.get()) {
    const auto [known, is_new] = by_property.emplace(channel->prop_name, channel);
    if (is_new) {
      base.get()->push_back(channel);
    } else if (known->second != channel) {
      extend_channel_description(known->second, channel, force);
      merged.push_back(channel);
    }
  }
  from.get()->swap(merged);
}

// The first file read chooses what `same` means.
exit_code read_to_merge(zrt4::channel_list& list, const std::string& name, output_format& to) {
  input_file file(name);
  const document_kind kind = kind_of(file);
  if (!is_channels(kind)) throw wrong_kind(file, kind, "channel descriptions");
  const int dialect = dialect_of(kind);
  if (to == output_format::same) to = own_format(dialect);
  const int errors = read_into(list, file, dialect, types_for(to));
  if (errors == 0) return exit_fine;
  report_errors(file.name(), errors, "what could be read is merged");
  return exit_not_fine;
}

exit_code add_all_but_first(zrt4::channel_list& base, const std::vector<std::string>& files,
                            bool force, output_format to) {
  exit_code result = exit_fine;
  for (std::size_t i = 1; i < files.size(); ++i) {
    zrt4::channel_list from;
    result = std::max(result, read_to_merge(from, files[i], to));
    add(base, from, force);
  }
  return result;
}

}  // namespace

exit_code convert(const std::string& file_name, output_format to, bool wide,
                  const std::string& output) {
  input_file file(file_name);
  const document_kind kind = kind_of(file);
  if (kind == document_kind::dictionary) {
    if (to != output_format::xml && to != output_format::text) {
      throw file_error(file.name(), "a dictionary converts to xml or text only");
    }
    return wide ? convert_dictionary<wide_2010>(file, to, output)
                : convert_dictionary<narrow>(file, to, output);
  }
  if (!is_channels(kind)) throw wrong_kind(file, kind, "channel descriptions or a dictionary");
  if (wide) throw file_error(file.name(), "--wide is for dictionaries only");
  return convert_channels(file, dialect_of(kind), to, output);
}

exit_code merge(const std::vector<std::string>& files, bool force, output_format to,
                const std::string& output) {
  zrt4::channel_list base;
  const exit_code first = read_to_merge(base, files.front(), to);
  const exit_code others = add_all_but_first(base, files, force, to);
  return write_channels(std::max(first, others), shown_name(files.front()), base, to, output);
}

exit_code merge_dry_run(const std::vector<std::string>& files, bool force, answer_format wanted) {
  zrt4::channel_list base;
  output_format to = output_format::same;
  const exit_code first = read_to_merge(base, files.front(), to);
  std::vector<row> before = rows_of(base);
  std::deque<std::string> texts;
  detach(before, texts);
  const exit_code others = add_all_but_first(base, files, force, to);
  std::vector<row> after = rows_of(base);
  print_differences("merge", shown_name(files.front()), "merged",
                    differences(before, after, "channel"), wanted);
  return std::max(first, others);
}
