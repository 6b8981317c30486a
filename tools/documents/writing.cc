#include "writing.hh"

#include <stdexcept>
#include <utility>

#include "descriptor.hh"
#include "latin1.hh"
#include "message.hh"
#include "output_file.hh"
#include "received_messages.hh"
#include "writable.hh"

namespace {

bool is_xml(document_form form) {
  return form == document_form::xml || form == document_form::variables;
}

/// What `dump(file name)` writes.
template <class Dump>
std::string dumped(Dump&& dump) {
  descriptor memory(memory_file());
  std::string path = memory.path();
  {
    const received_messages unheard;
    if (dump(path.data()) != 0) throw std::runtime_error("cannot write to memory");
  }
  return memory.read_all();
}

writable check_list(const zrt4::channel_list& list) {
  return check_channels(list);
}
template <class Entry>
writable check_list(const zrt4::basic_env_dictionary<Entry>& list) {
  return check_dictionary(list);
}

std::string document_of(zrt4::channel_list& list, document_form form) {
  std::string document;
  const int dialect = form == document_form::xml ? ZRT4_FORMAT : MORV_FORMAT;
  dump_chan_desr(list.get(), nullptr, DUMP_XML_FILE, dialect, -1, &document, nullptr);
  return document;
}

std::string text_of(zrt4::channel_list& list, document_form form) {
  const int mode = form == document_form::text ? DUMP_TXT_FILE : DUMP_TXT_FILE_SHORT;
  return dumped([&](char* path) {
    return dump_chan_desr(list.get(), path, mode, ZRT4_FORMAT, -1, nullptr, nullptr);
  });
}

int dump(zrt4::env_dictionary& list, char* path, int mode, std::string* document) {
  return dump_env_index_dict(list.get(), path, mode, -1, document);
}
int dump(zrt4::env_dictionary_2010& list, char* path, int mode, std::string* document) {
  return dump_env_index_dict_2010(list.get(), path, mode, -1, document);
}

template <class Entry>
std::string document_of(zrt4::basic_env_dictionary<Entry>& list, document_form /*form*/) {
  std::string document;
  dump(list, nullptr, ENV_INDX_DUMP_XML_STRING, &document);
  return document;
}

template <class Entry>
std::string text_of(zrt4::basic_env_dictionary<Entry>& list, document_form /*form*/) {
  return dumped([&](char* path) { return dump(list, path, ENV_INDX_DUMP_TXT_FILE, nullptr); });
}

template <class List>
written written_in(List& list, document_form form) {
  if (!is_xml(form)) return {true, {}, text_of(list, form)};
  writable fit = check_list(list);
  if (!fit.at_all) return {false, std::move(fit.losses), {}};
  return {true, std::move(fit.losses), to_latin1(document_of(list, form))};
}

template <class List>
bool write(List& list, bool read_cleanly, const std::string& file, document_form form,
           const std::string& output) {
  const written made = written_in(list, form);
  for (const std::string& loss : made.losses) report(file, loss);
  if (!made.at_all) {
    report(file, "nothing is written: the document could not be read back");
    return false;
  }
  const bool all_well = read_cleanly && made.losses.empty();
  if (all_well || is_standard_output(output)) {
    write_output(output, made.content);
  } else {
    report(output,
           "not written, because not all went well; without -o, standard output takes what there "
           "is");
  }
  return all_well;
}

}  // namespace

written written_form(zrt4::channel_list& list, document_form form) {
  return written_in(list, form);
}
written written_form(zrt4::env_dictionary& list, document_form form) {
  return written_in(list, form);
}
written written_form(zrt4::env_dictionary_2010& list, document_form form) {
  return written_in(list, form);
}

document_form form_of(int dialect) {
  return dialect == MORV_FORMAT ? document_form::variables : document_form::xml;
}

// A document keeps the numbers of types; a text shows masks, as the listing does.
zrt4::types types_for(document_form form) {
  return is_xml(form) ? zrt4::types::numbers : zrt4::types::masks;
}

bool write_list(zrt4::channel_list& list, bool read_cleanly, const std::string& file,
                document_form form, const std::string& output) {
  return write(list, read_cleanly, file, form, output);
}
bool write_list(zrt4::env_dictionary& list, bool read_cleanly, const std::string& file,
                document_form form, const std::string& output) {
  return write(list, read_cleanly, file, form, output);
}
bool write_list(zrt4::env_dictionary_2010& list, bool read_cleanly, const std::string& file,
                document_form form, const std::string& output) {
  return write(list, read_cleanly, file, form, output);
}
