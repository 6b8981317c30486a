// Messages as records: each topic as it arrives, who gets it, and receivers that throw.

#include "messages.hh"

#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>
#include <xercesc/util/OutOfMemoryException.hpp>

#include "every_operation.hh"
#include "own_locale.hh"
#include "support.hh"

[[maybe_unused]] static const auto* const english = test::locale_of_literals::in(LC_MESSAGES);

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using zrt4::message_list;
using zrt4::message_severity;
using zrt4::message_topic;

constexpr auto remark = message_severity::remark;
constexpr auto warning = message_severity::warning;
constexpr auto error = message_severity::error;
constexpr auto fatal = message_severity::fatal_error;

/// severity, topic, "document:line:column", text
using shown_message = std::tuple<message_severity, message_topic, std::string, std::string>;

/// What arrives while `act` runs; nothing may be printed.
template <class Action>
std::vector<shown_message> met(Action act) {
  std::vector<shown_message> shown;
  const auto printed = test::captured([&] {
    const message_list list;
    act();
    for (const zrt4::kept_message& m : list) {
      const std::string at = ":" + std::to_string(m.line) + ":" + std::to_string(m.column);
      shown.emplace_back(m.severity, m.topic, m.document + (m.line != 0 ? at : ""), m.text);
    }
  });
  EXPECT_EQ(printed.out + printed.err, "");
  return shown;
}

std::vector<shown_message> met_in_events(const std::string& text) {
  return met([&] {
    zrt4::event_list list;
    EXPECT_NE(list.read_text(text), 0);
  });
}

std::vector<shown_message> met_in_variables(const std::string& text) {
  return met([&] {
    zrt4::channel_list list;
    (void)list.read_text("<DAQvariables><DaqBits>" + text + "</DaqBits></DAQvariables>");
  });
}

shown_message one(message_severity severity, message_topic topic, const std::string& where,
                  const std::string& text) {
  return {severity, topic, where, text};
}

struct thrown_by_receiver : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class throwing_receiver : public zrt4::message_receiver {
 public:
  void receive(const zrt4::message& m) override { throw thrown_by_receiver(m.text); }
};

}  // namespace

TEST(Messages, FatalErrorOfTheXml) {
  EXPECT_THAT(met_in_events("<BMR>\n<EVENT>"),
              ElementsAre(one(fatal, message_topic::xml, "my_mem_info:2:8",
                              "input ended before all started tags were ended; last tag started is "
                              "'EVENT'")));
}

TEST(Messages, ErrorOfTheXml) {
  EXPECT_THAT(met_in_events("<!DOCTYPE BMR [<!ELEMENT BMR EMPTY>]><BMR><x/></BMR>"),
              ElementsAre(one(error, message_topic::xml, "my_mem_info:1:45",
                              "no declaration found for element 'x'")));
}

TEST(Messages, WarningOfTheXml) {
  EXPECT_THAT(
      met_in_events("<!DOCTYPE BMR [<!ELEMENT BMR ANY><!ATTLIST BMR a CDATA 'x' a CDATA 'y'>]>"
                    "<BMR/>"),
      ElementsAre(one(warning, message_topic::xml, "my_mem_info:1:61",
                      "attribute 'a' has already been declared for element 'BMR'")));
}

TEST(Messages, Limit) {
  std::string document = "<!DOCTYPE BMR [";
  for (int n = 0; n <= 4096; ++n) document += "<!ENTITY e" + std::to_string(n) + " 'x'>";
  const auto all = met_in_events(document + "]><BMR/>");
  ASSERT_EQ(all.size(), 2U);
  EXPECT_EQ(std::get<1>(all[0]), message_topic::limit);
  EXPECT_EQ(std::get<3>(all[0]), "too many entities");
  EXPECT_EQ(all[1], one(error, message_topic::not_started, "my_mem_info", "scanFirst() failed"));
}

TEST(Messages, LimitOfTheScannersOwn) {
  std::string references;
  for (int n = 0; n <= 50'000; ++n) references += "&e;";
  const auto all = met_in_events("<!DOCTYPE BMR [<!ELEMENT BMR ANY><!ENTITY e 'x'>]><BMR>" +
                                 references + "</BMR>");
  ASSERT_EQ(all.size(), 1U);
  EXPECT_EQ(std::get<1>(all[0]), message_topic::limit) << std::get<3>(all[0]);
}

TEST(Messages, WrongRoots) {
  EXPECT_THAT(met_in_events("<x/>"),
              ElementsAre(one(error, message_topic::wrong_root, "my_mem_info:1:5",
                              "WRONG root tag: x must be 'BMR'")));
  EXPECT_THAT(met([] {
                zrt4::env_dictionary list;
                EXPECT_EQ(list.read_text("\n<x/>"), 1);
              }),
              ElementsAre(one(error, message_topic::wrong_root, "my_mem_info:2:5",
                              "WRONG root tag: 'x' must be 'ENVINDEXDICT'")));
  const auto channels = met([] {
    zrt4::channel_list list;
    EXPECT_EQ(list.read_text("<x/>"), 1);
  });
  ASSERT_EQ(channels.size(), 1U);
  EXPECT_EQ(std::get<1>(channels[0]), message_topic::wrong_root);
}

TEST(Messages, FilesThatCannotBeOpened) {
  char directory[4096];
  ASSERT_NE(getcwd(directory, sizeof directory), nullptr);
  const std::string reason =
      "unable to open primary document entity '" + std::string(directory) + "/no such.xml'";
  EXPECT_THAT(met([] {
                zrt4::event_list list;
                EXPECT_EQ(list.read_file("no such.xml"), 1);
              }),
              ElementsAre(one(fatal, message_topic::cannot_open, "no such.xml", reason)));
  EXPECT_THAT(met([] {
                zrt4::camera_features list;
                EXPECT_EQ(list.read_file("no such.xml"), 1);
              }),
              ElementsAre(one(error, message_topic::cannot_open, "no such.xml", reason)));
}

TEST(Messages, DamageOfACameraFileIsNoLongerSilent) {
  test::temporary_file file("<r>\n<Integer Name='a'></r>");
  EXPECT_THAT(met([&] {
                zrt4::camera_features list;
                EXPECT_EQ(list.read_file(file.path()), 0);
                EXPECT_EQ(list.size(), 1U);
              }),
              ElementsAre(one(fatal, message_topic::xml, file.path() + ":2:21",
                              "expected end of tag 'Integer'")));
  zrt4::camera_features list;
  const auto printed = test::captured([&] { EXPECT_EQ(list.read_file(file.path()), 0); });
  EXPECT_EQ(printed.out + printed.err, "");
}

TEST(Messages, AttributesAndTextsThatAreMissing) {
  EXPECT_THAT(met_in_variables("<vindo>A</vindo><bitTitle/>"),
              ElementsAre(one(error, message_topic::missing_attribute, "my_mem_info:1:51",
                              "No attributebit found for bitTitle prop: A")));
  EXPECT_THAT(met_in_variables("<vindo>A</vindo><bitTitle bit='2'/>"),
              ElementsAre(one(remark, message_topic::empty_text, "my_mem_info:1:59",
                              "bitTitle is not defined for bit  2 prop:A")));
}

TEST(Messages, Selector) {
  char name[] = "X";
  char text[] =
      "<CHANDESCRIPTIONS><CHANNEL><PROP>A</PROP><EVTYPE>1</EVTYPE></CHANNEL>"
      "</CHANDESCRIPTIONS>";
  std::vector<char*> source{text};
  chan_selector selector;
  EXPECT_THAT(met([&] {
                EXPECT_EQ(selector.get_event_type(name), 0);
                selector.set_mode(EXTR_FROM_XML);
                EXPECT_FALSE(selector.set_descriptions(&source, nullptr));
                EXPECT_EQ(selector.get_event_type(name), 0);
                EXPECT_EQ(selector.get_event_type(nullptr), 0);
              }),
              ElementsAre(one(error, message_topic::nothing_loaded, "",
                              "get_event_type() No descroption !!!!"),
                          one(error, message_topic::not_found, "", "CHANNEL X NOT FOUND"),
                          one(error, message_topic::not_found, "", "CHANNEL (null) NOT FOUND")));
}

TEST(Messages, DumpsOfChannels) {
  zrt4::channel_list list;
  char file[] = "no such folder/channels";
  char broken[] = "<CHANDESCRIPTIONS>";
  const int closed = open("/dev/null", O_RDONLY);
  EXPECT_THAT(
      met([&] {
        EXPECT_EQ(dump_chan_desr(nullptr, nullptr, 0, 0, -1, nullptr, nullptr), 2);
        EXPECT_EQ(dump_chan_desr(list.get(), file, 0, 0, -1, nullptr, nullptr), 1);
        EXPECT_EQ(dump_chan_desr(list.get(), nullptr, DUMP_XML_FILE, ZRT4_FORMAT, closed, nullptr,
                                 nullptr),
                  2);
        EXPECT_EQ(dump_chan_desr_from_xml(broken, nullptr, 0, 0, -1), 3);
      }),
      ElementsAre(
          one(error, message_topic::invalid_argument, "", "dump_chan_desr() invalid argument: '"),
          one(error, message_topic::cannot_open, "no such folder/channels",
              "dump_chan_desr() failed to open file: 'no such folder/channels': No such "
              "file or directory"),
          one(error, message_topic::cannot_write, "", "dump_chan_desr()  write failed"),
          one(fatal, message_topic::xml, "my_mem_info:1:19",
              "input ended before all started tags were ended; last tag started is "
              "'CHANDESCRIPTIONS'"),
          one(error, message_topic::not_read, "", "Failed to parse CHANDESCR list")));
  close(closed);
}

TEST(Messages, DumpsOfDictionaries) {
  zrt4::env_dictionary list;
  const test::temporary_file file("");
  std::string name = file.path();
  EXPECT_THAT(
      met([&] {
        EXPECT_EQ(dump_env_index_dict(list.get(), name.data(), ENV_INDX_DUMP_TXT_FILE, -1, nullptr),
                  0);
      }),
      ElementsAre(one(remark, message_topic::file_created, name,
                      "dump_env_index_dict()  file: '" + name + "' has been created"),
                  one(remark, message_topic::file_closed, name,
                      "dump_env_index_dict()  file: '" + name + "' has been closed")));
}

TEST(Messages, RecordsThatNoCounterOwns) {
  auto* channel = new chan_descr_2010();
  bit_descr bit{};
  channel->bits.push_back(&bit);
  channel->prop_name[0] = 'P';
  std::vector<chan_descr_2010*> list{channel};
  EXPECT_THAT(met([&] { clean_chan_desr_list(&list); }),
              ElementsAre(one(error, message_topic::unowned_records, "",
                              "ERROR: nbits = 0, but bits.size() > 0 prop: P")));
}

TEST(Messages, ReleaseIsCompleteWhenAReceiverThrows) {
  bit_descr bit{};
  std::vector<chan_descr_2010*> list;
  for (int n = 0; n < 2; ++n) {
    list.push_back(new chan_descr_2010());
    list.back()->bits.push_back(&bit);
  }
  throwing_receiver receiver;
  EXPECT_THROW(clean_chan_desr_list(&list), thrown_by_receiver);
  EXPECT_THAT(list, IsEmpty());
}

TEST(Messages, ListingsAreNone) {
  zrt4::event_list list;
  ASSERT_EQ(list.read_text("<BMR><EVENT><TYPE>1</TYPE></EVENT></BMR>"), 0);
  const auto printed = test::captured([&] {
    const message_list received;
    zrt4_print_ev_list(list.get());
    EXPECT_TRUE(received.empty());
  });
  EXPECT_THAT(printed.out, testing::StartsWith("Entry[0]\n"));
}

TEST(Messages, InnermostReceiverGetsThem) {
  zrt4::event_list list;
  message_list outer;
  {
    const message_list inner;
    (void)list.read_text("<x/>");
    EXPECT_EQ(inner.size(), 1U);
  }
  EXPECT_TRUE(outer.empty());
  (void)list.read_text("<x/>");
  EXPECT_EQ(outer.size(), 1U);
}

TEST(Messages, OfAReceiverItselfGoToTheNextOne) {
  class reading_receiver : public zrt4::message_receiver {
    void receive(const zrt4::message&) override {
      zrt4::event_list list;
      (void)list.read_text("<inner/>");
    }
  };
  message_list outer;
  reading_receiver receiver;
  zrt4::event_list list;
  (void)list.read_text("<outer/>");
  ASSERT_EQ(outer.size(), 1U);
  EXPECT_EQ(outer[0].text, "WRONG root tag: inner must be 'BMR'");
}

TEST(Messages, WhatAReceiverThrowsArrivesFromEveryReader) {
  throwing_receiver receiver;
  const std::string broken = "<BMR><EVENT><TYPE>1</TYPE></EVENT>";
  zrt4::event_list events;
  EXPECT_THROW((void)events.read_text(broken), thrown_by_receiver);
  EXPECT_EQ(events.size(), 1U);
  EXPECT_THROW((void)events.read_file("no such.xml"), thrown_by_receiver);
  EXPECT_THROW((void)events.read_text("<!DOCTYPE BMR SYSTEM 'x'><BMR/>"), thrown_by_receiver);
  zrt4::channel_list channels;
  EXPECT_THROW((void)channels.read_text("<DAQvariables><DaqBits><bitTitle/></DaqBits>"),
               thrown_by_receiver);
  EXPECT_THROW((void)channels.read_text("<CHANDESCRIPTIONS><CHANNEL><NAME>n</NAME>"),
               thrown_by_receiver);
  zrt4::env_dictionary dictionary;
  EXPECT_THROW((void)dictionary.read_text("<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX>"),
               thrown_by_receiver);
  test::temporary_file file("<r><Integer Name='a'></r>");
  zrt4::camera_features camera;
  EXPECT_THROW((void)camera.read_file(file.path()), thrown_by_receiver);
  EXPECT_THROW((void)camera.read_file("no such.xml"), thrown_by_receiver);
}

// The scanner throws and takes both kinds for its own.
TEST(Messages, AlsoWhatTheScannerThrowsItself) {
  struct scanner_receiver : zrt4::message_receiver {
    void receive(const zrt4::message&) override { throw xercesc::OutOfMemoryException(); }
  } receiver;
  zrt4::event_list events;
  EXPECT_THROW((void)events.read_text("<BMR>"), xercesc::OutOfMemoryException);
  test::temporary_file file("<r>");
  zrt4::camera_features camera;
  EXPECT_THROW((void)camera.read_file(file.path()), xercesc::OutOfMemoryException);
}

TEST(Messages, AStepThatThrowsEndsTheDocument) {
  char text[] = "<BMR><EVENT></BMR>";
  SAX_Memory_Parser parser(text);
  ASSERT_FALSE(parser.start());
  char* tag = nullptr;
  EXPECT_EQ(parser.parse(&tag, nullptr), 0);
  EXPECT_EQ(parser.parse(&tag, nullptr), 0);
  {
    throwing_receiver receiver;
    EXPECT_THROW(parser.parse(&tag, nullptr), thrown_by_receiver);
  }
  EXPECT_EQ(parser.get_error_counter(), 1);
  EXPECT_EQ(parser.parse(&tag, nullptr), -1);
}

// With the sanitizers: nothing leaks.
TEST(Messages, EveryOperationSurvivesAReceiverThatThrows) {
  throwing_receiver receiver;
  for (const auto& operation : test::readers()) {
    try {
      operation.run(nullptr);
    } catch (const thrown_by_receiver&) {
    }
  }
  for (const auto& operation : test::writers()) {
    try {
      operation.run(nullptr);
    } catch (const thrown_by_receiver&) {
    }
  }
}

TEST(ReadReport, HasWhatWasMet) {
  zrt4::event_list list;
  const zrt4::read_report clean = list.read_text_reported("<BMR/>");
  EXPECT_TRUE(clean.is_clean());
  EXPECT_THAT(clean.messages, IsEmpty());
  const zrt4::read_report wrong = list.read_text_reported("<x/>");
  EXPECT_EQ(wrong.count, 1);
  ASSERT_EQ(wrong.messages.size(), 1U);
  EXPECT_EQ(wrong.messages[0].topic, message_topic::wrong_root);
  EXPECT_EQ(wrong.summary(), "my_mem_info:1:5: WRONG root tag: x must be 'BMR'");
}

TEST(ReadReport, IsThrown) {
  zrt4::channel_list list;
  EXPECT_TRUE(
      list.read_text_or_throw("<CHANDESCRIPTIONS/>", zrt4::types::masks, zrt4::duplicates::merge)
          .is_clean());
  try {
    list.read_file_or_throw("no such.xml");
    ADD_FAILURE() << "nothing was thrown";
  } catch (const zrt4::document_error& thrown) {
    EXPECT_EQ(thrown.report().count, 1);
    EXPECT_THAT(thrown.what(), testing::StartsWith("no such.xml: unable to open"));
  }
}
