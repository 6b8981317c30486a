#include <cstdio>
#include <memory>
#include <string>
#include <utility>

#include "channel_document.hh"
#include "diagnostics.hh"
#include "parse_chan_descr.hh"
#include "type_masks.hh"
#include "written_channels.hh"
#include "xml_writer.hh"

namespace {

using zrt4::message_severity;
using zrt4::message_topic;
using zrt4::detail::tell;
using zrt4::detail::written_daq_name;

using channels = std::vector<chan_descr_2010*>;

struct closing {
  void operator()(std::FILE* file) const { (void)std::fclose(file); }
};
using open_file = std::unique_ptr<std::FILE, closing>;

enum result { done = 0, not_opened = 1, refused = 2, not_read = 3 };

void write_full_text(std::FILE* file, const chan_descr_2010& channel) {
  std::fprintf(file, "%d\t%d\t%s\t%s\t%d\t\"%s\"\t\"%s\"\t%d\t%d\t%d\n", channel.stream,
               static_cast<int>(channel.ev_type), written_daq_name(channel), channel.prop_name,
               channel.set_point, channel.prop_desc, channel.units, channel.max_size, channel.nbits,
               channel.ndims);
  for (const bit_descr* bit : channel.bits) {
    std::fprintf(file, "%d\t%s\t\"%s\"\n", bit->bit, bit->bit_name, bit->bit_desc);
  }
  for (const dim_descr* dim : channel.dims) {
    std::fprintf(file, "%d\t%s\t\"%s\"\t\"%s\"\n", dim->dim, dim->dim_name, dim->units,
                 dim->dim_desc);
    std::fprintf(file, "%d\n", dim->nstats);
    for (const stat_descr* stat : dim->stats) {
      std::fprintf(file, "%d\t%s\t\"%s\"\t\"%s\"\n", stat->stat, stat->stat_name, stat->units,
                   stat->stat_desc);
    }
  }
}

// Naming the block has always ended a line on standard output too.
const char* block_name(std::uint32_t dtype) {
  if (dtype == 0) return "UNKNOWN";
  int lowest = 0;
  while (!zrt4::detail::has_bit(dtype, lowest)) ++lowest;
  if (!zrt4::detail::is_received()) {
    (void)std::fputc('\n', stdout);
    (void)std::fflush(stdout);
  }
  return block_name_itoa(lowest);
}

void write_short_text(std::FILE* file, const chan_descr_2010& channel) {
  std::fprintf(file, "%50s\t%d\t%s\n", written_daq_name(channel), channel.max_size,
               block_name(channel.dtype));
}

void write_text(std::FILE* file, const channels& list,
                void (*write)(std::FILE* file, const chan_descr_2010& channel)) {
  if (file == nullptr) return;
  zrt4::detail::for_each_property(
      list, [&](const chan_descr_2010& channel, std::size_t) { write(file, channel); });
}

result deliver(std::string document, open_file& file, int fd, std::string* sout) {
  if (file != nullptr) zrt4::detail::write_document(file.get(), document);
  if (fd != -1 && !zrt4::detail::write_document(fd, document)) {
    tell({message_topic::cannot_write, message_severity::error, stdout},
         {"dump_chan_desr()  write failed\n"});
    // Deliberately left open: callers find the file as it was when the descriptor failed.
    (void)file.release();
    return refused;
  }
  if (sout != nullptr) {
    if (sout->empty()) {
      *sout = std::move(document);
    } else {
      *sout += document;
    }
  }
  return done;
}

}  // namespace

int dump_chan_desr(std::vector<chan_descr_2010*>* chdscr_list, char* file_name, int mode,
                   int format, int fd, std::string* sout, std::vector<dim_params*>* dims) {
  if (chdscr_list == nullptr || static_cast<unsigned>(format) >= INVD_FORMAT) {
    tell({message_topic::invalid_argument, message_severity::error, stdout},
         {"dump_chan_desr() invalid argument: '\n"});
    return refused;
  }
  open_file file;
  if (file_name != nullptr && *file_name != '\0') {
    file.reset(std::fopen(file_name, "w"));
    if (file == nullptr) {
      zrt4::detail::tell_not_opened("dump_chan_desr()", file_name);
      return not_opened;
    }
  }
  if (file == nullptr && fd == -1 && sout == nullptr) {
    if (!chdscr_list->empty()) print_zrt4_chan_descr(chdscr_list);
    return done;
  }
  switch (mode) {
    case DUMP_TXT_FILE:
      write_text(file.get(), *chdscr_list, write_full_text);
      return done;
    case DUMP_TXT_FILE_SHORT:
      write_text(file.get(), *chdscr_list, write_short_text);
      return done;
    case DUMP_XML_FILE: {
      // A descriptor may fail, and then the string is as it was, with the memory it had.
      std::string* const gives_memory = fd == -1 ? sout : nullptr;
      return deliver(zrt4::detail::chan_descr_document(*chdscr_list, format, file != nullptr, dims,
                                                       gives_memory),
                     file, fd, sout);
    }
    default:
      return done;
  }
}

int dump_chan_desr_from_xml(char* xml, char* file_name, int mode, int format, int fd) {
  channels list;
  std::unique_ptr<channels, void (*)(channels*)> released(&list, clean_chan_desr_list);
  if (parse_descr_list_read(xml, &list, true, false) != 0) {
    tell({message_topic::not_read, message_severity::error, stdout, false},
         {"Failed to parse CHANDESCR list\n"});
    // Deliberately not released: what a broken text described has always been left alone.
    (void)released.release();
    return not_read;
  }
  return dump_chan_desr(&list, file_name, mode, format, fd, nullptr, nullptr);
}
