#ifndef CHANNEL_DUMPING_HH
#define CHANNEL_DUMPING_HH

// What the tests of dumped channel descriptions share.

#include <unistd.h>

#include "handmade_channels.hh"
#include "support.hh"
#include "without_date.hh"

namespace test {

inline const std::string empty_elements =
    declaration + std::string("<CHANDESCRIPTIONS>\n</CHANDESCRIPTIONS>\n\n");
inline const std::string empty_variables =
    declaration + std::string("<DAQvariables>\n</DAQvariables>\n\n");

class pipe_pair {
 public:
  pipe_pair() {
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  }
  pipe_pair(const pipe_pair&) = delete;
  pipe_pair& operator=(const pipe_pair&) = delete;
  ~pipe_pair() {
    close_writer();
    close_reader();
  }
  int writer() const { return ends[1]; }
  void close_writer() { close_end(ends[1]); }
  void close_reader() { close_end(ends[0]); }
  std::string content() {
    close_writer();
    std::string text;
    char part[4096];
    for (ssize_t size = 0; (size = read(ends[0], part, sizeof part)) > 0;) {
      text.append(part, static_cast<std::size_t>(size));
    }
    return text;
  }

 private:
  static void close_end(int& end) {
    if (end != -1) close(end);
    end = -1;
  }
  int ends[2];
};

/// The same two channels for every mode, the second with everything.
struct two_channels : records {
  two_channels() {
    auto& plain = add("P/1", "D1");
    plain.dtype = 0x10;
    auto& full = add("P/2", "D2");
    full.stream = -2;
    full.ev_type = 0x80000001;
    full.set_point = 5;
    full.max_size = 8;
    full.dtype = 0x200;
    test::set(full.prop_desc, "two words");
    test::set(full.units, "mm");
    add_bit(full, 3, "ON", "is on");
    add_bit(full, -4, "", "");
    auto& dim = add_dim(full, 0, "time", "time axis", "s");
    add_stat(dim, 1, "mean", "mean value", "ms");
    add_stat(dim, 2, "", "", "");
    add_dim(full, 1);
  }
};

struct ChanDescrDump : testing::Test {
  test::temporary_file file{"old content"};
  int dump(records& from, int mode, int format = ZRT4_FORMAT) {
    return dump_chan_desr(&from.list, file.name(), mode, format, -1, nullptr, nullptr);
  }
};

}  // namespace test

#endif
