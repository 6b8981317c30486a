#ifndef CHANNEL_DOCUMENTS_HH
#define CHANNEL_DOCUMENTS_HH

// The XML documents that records are written as, without what stands around the channels.

#include "handmade_channels.hh"
#include "support.hh"

namespace test {

/// What stands between the root's tags.
inline std::string body(records& from, int format, std::vector<dim_params*>* dims = nullptr) {
  const std::string root = format == ZRT4_FORMAT ? "CHANDESCRIPTIONS" : "DAQvariables";
  const std::string head = std::string(declaration) + "<" + root + ">\n";
  const std::string tail = "</" + root + ">\n\n";
  const std::string document = dumped(from, format, dims);
  if (document.size() < head.size() + tail.size()) return "too short: " + document;
  EXPECT_EQ(document.substr(0, head.size()), head);
  EXPECT_EQ(document.substr(document.size() - tail.size()), tail);
  return document.substr(head.size(), document.size() - head.size() - tail.size());
}

inline std::string elements(records& from, std::vector<dim_params*>* dims = nullptr) {
  return body(from, ZRT4_FORMAT, dims);
}

inline std::string variables(records& from) {
  return body(from, MORV_FORMAT);
}

/// A channel with every text and number; without bits and dimensions.
struct full_channel : records {
  full_channel() : one(add("FAC/DEV/LOC/PROP", "DAQ.NAME")) {
    one.stream = -1;
    one.ev_type = 0xffffffff;
    one.dtype = 0x80000002;
    one.db_key = 42;
    one.count = 7;
    one.set_point = 1;
    one.max_size = 1;
    test::set(one.sb_name, "SERVER");
    test::set(one.subsystem, "RF");
    test::set(one.units, "mm");
    test::set(one.prop_desc, "a description");
  }
  chan_descr_2010& one;
};

}  // namespace test

#endif
