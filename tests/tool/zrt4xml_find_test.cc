// `find`, run as a user runs it: what a DAQ client would get for a channel, from one description.

#include <map>
#include <random>

#include "chan_selector.hh"
#include "tool_support.hh"

using test::channel;
using test::one_event;
using test::run;
using test::run_result;
using test::variable;

namespace {

std::string described(int event_type, const std::string& property, const std::string& name,
                      const std::string& more = "") {
  const std::string type =
      event_type != 0 ? "<EVTYPE>" + std::to_string(event_type) + "</EVTYPE>" : std::string();
  return "<CHANNEL>" + type + "<PROP>" + property + "</PROP><NAME>" + name + "</NAME>" + more +
         "</CHANNEL>";
}

std::string document(const std::string& channels) {
  return "<CHANDESCRIPTIONS>" + channels + "</CHANDESCRIPTIONS>";
}

}  // namespace

TEST(ToolFind, PrintsWhatTheSelectorAnswers) {
  const test::temporary_file file(channel());
  const run_result result = run("find --name A/B/C --event NORMAL " + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "channel:       A.C\n"
            "property:      A/B/C\n"
            "event types:   0x2 NORMAL\n"
            "data type:     0x80000200 1CHAN_2010\n"
            "slow:          no\n"
            "main linac:    no\n"
            "sub-channels:  0\n"
            "stands in:     " +
                file.path() +
                ":1\n"
                "selected for NORMAL: yes\n");
  EXPECT_EQ(result.err, "");
}

TEST(ToolFind, EventTypeByNumberAndBothDialects) {
  const test::temporary_file file(variable);
  const run_result result = run("find --name A/B/C --event 1 - <" + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_THAT(result.out, testing::HasSubstr("event types:   0x2 NORMAL\n"));
  EXPECT_THAT(result.out, testing::EndsWith("selected for NORMAL: yes\n"));
}

TEST(ToolFind, NotSelectedOrNotFoundIsExitCodeOne) {
  const test::temporary_file file(channel());
  const run_result other_event = run("find --name A/B/C --event BOR " + file.path());
  EXPECT_EQ(other_event.code, 1);
  EXPECT_THAT(other_event.out, testing::EndsWith("selected for BOR: no\n"
                                                 "because:       no channel has event type "
                                                 "BOR\n"));
  const run_result unknown = run("find --name nothing " + file.path());
  EXPECT_EQ(unknown.code, 1);
  EXPECT_EQ(unknown.out, "");
  EXPECT_EQ(unknown.err, "zrt4xml: nothing: no channel has this DAQ name or property\n");
}

TEST(ToolFind, WrongUsage) {
  const test::temporary_file file(channel());
  EXPECT_EQ(run("find " + file.path()).code, 2);
  EXPECT_EQ(run("find --name A.C --event NONSENSE " + file.path()).code, 2);
  EXPECT_EQ(run("find --name A.C --event 32 " + file.path()).code, 2);
  EXPECT_EQ(run("find --name A.C /nonexistent").code, 2);
}

TEST(ToolFind, NothingToSearchIsToldByTheFileAlone) {
  const run_result missing = run("find --name A.C /nonexistent");
  EXPECT_EQ(missing.out, "");
  EXPECT_EQ(missing.err, "zrt4xml: /nonexistent: No such file or directory\n");
  const test::temporary_file events(one_event);
  const run_result other_kind = run("find --name A.C " + events.path());
  EXPECT_EQ(other_kind.code, 2);
  EXPECT_EQ(other_kind.out, "");
  EXPECT_EQ(other_kind.err, "zrt4xml: " + events.path() +
                                ": of another kind (event list) than is needed here: channel "
                                "descriptions\n");
}

// The first channel bears the name as a property by which its event type is not looked up.
TEST(ToolFind, PrintsOneChannelWhereTheNameIsAnothersProperty) {
  const test::temporary_file file(document(described(6, "x", "a", "<DTYPE>13</DTYPE><DIM>1</DIM>") +
                                           described(1, "B", "x", "<DTYPE>41</DTYPE>")));
  const run_result result = run("find --name x " + file.path());
  EXPECT_EQ(result.code, 0);
  EXPECT_EQ(result.out,
            "channel:       x\n"
            "property:      B\n"
            "event types:   0x2 NORMAL\n"
            "data type:     0x80000200 1CHAN_2010\n"
            "slow:          no\n"
            "main linac:    no\n"
            "sub-channels:  0\n"
            "stands in:     " +
                file.path() + ":1\n" + "name also of:  a, property x, event types 0x40 IMAGE, " +
                file.path() + ":1\n");
  EXPECT_EQ(result.err, "");
}

TEST(ToolFind, PrintsTheFirstChannelWithAnEventTypeAndNamesTheOthers) {
  const test::temporary_file file(
      document(described(0, "A", "n", "<DTYPE>13</DTYPE>") + "\n" +
               described(6, "C", "n", "<DTYPE>38</DTYPE><DIM>1</DIM><DIM>2</DIM>") + "\n" +
               described(4, "B", "n", "<DTYPE>41</DTYPE>")));
  EXPECT_EQ(run("find --name n " + file.path()).out,
            "channel:       n\n"
            "property:      C\n"
            "event types:   0x40 IMAGE\n"
            "data type:     0x80000040 BPM_2010\n"
            "slow:          no\n"
            "main linac:    no\n"
            "sub-channels:  2\n"
            "stands in:     " +
                file.path() + ":2\n" + "name also of:  n, property A, event types 0x0, " +
                file.path() + ":1\n" + "name also of:  n, property B, event types 0x10 ENV, " +
                file.path() + ":3\n");
  EXPECT_EQ(run("find --name B " + file.path()).out,
            "channel:       n\n"
            "property:      B\n"
            "event types:   0x10 ENV\n"
            "data type:     0x80000200 1CHAN_2010\n"
            "slow:          yes\n"
            "main linac:    no\n"
            "sub-channels:  1\n"
            "stands in:     " +
                file.path() + ":3\n");
  EXPECT_EQ(run("find --name A " + file.path()).out, "");
}

// By event type or by DAQ name.
TEST(ToolFind, PrintsWhatBelongsToTheMainLinac) {
  const test::temporary_file file(
      document(described(20, "A", "n") + described(1, "B", "RF.ML") + described(1, "C", "ML")));
  for (const auto& [name, belongs] :
       std::map<std::string, std::string>{{"n", "yes"}, {"RF.ML", "yes"}, {"ML", "no"}}) {
    EXPECT_THAT(run("find --name " + name + " " + file.path()).out,
                testing::HasSubstr("main linac:    " + belongs + "\n"))
        << name;
  }
}

// What several channels decide together, and which of them counts, is the selector's answer.
TEST(ToolFind, AgreesWithTheSelector) {
  std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): the same documents every time
  const auto below = [&](unsigned end) { return static_cast<int>(random() % end); };
  const std::string names[] = {"a", "b", "c.ML"};
  for (int round = 0; round < 40; ++round) {
    constexpr int event_types[] = {0, 1, 2, 4, 6, 20, 28};
    std::string channels;
    for (int i = 0; i < 3; ++i) {
      channels += described(event_types[below(7)], names[below(3)], names[below(3)]);
    }
    const test::temporary_file file(document(channels));
    chan_selector selector;
    std::vector<char*> source{const_cast<char*>(file.path().c_str())};
    ASSERT_FALSE(selector.set_descriptions(&source, nullptr));
    std::string name = names[below(3)];
    const int event = event_types[below(7)];
    const run_result result =
        run("find --name " + name + " --event " + std::to_string(event) + " " + file.path());
    char types[sizeof "event types:   0x80000000"] = "";
    if (const int mask = selector.get_event_type(name.data()); mask != 0) {
      std::snprintf(types, sizeof types, "event types:   0x%x", static_cast<unsigned>(mask));
    }
    EXPECT_THAT(result.out, testing::HasSubstr(types)) << channels << name;
    EXPECT_EQ(result.out.find("channel: ") != std::string::npos, *types != '\0');
    const bool is_selected = selector.find_channel(event, name.data());
    EXPECT_THAT(result.out, testing::HasSubstr(is_selected ? ": yes\n" : ": no\nbecause: "))
        << channels << name << event;
    EXPECT_EQ(result.code, is_selected && *types != '\0' ? 0 : 1) << channels << name << event;
  }
}

// Event types count for the selection only when the last file was read cleanly.
TEST(ToolFind, TypesOfADamagedFileDoNotSelect) {
  const test::temporary_file good(document(described(6, "A", "a")));
  const test::temporary_file damaged("<CHANDESCRIPTIONS>" + described(7, "B", "b"));
  const std::string question = "find --name b --event 7 ";
  EXPECT_THAT(
      run(question + good.path() + " " + damaged.path()).out,
      testing::EndsWith("selected for WS: no\nbecause:       event type WS stands only in a "
                        "document that was not read cleanly, and does not count\n"));
  EXPECT_THAT(run(question + damaged.path() + " " + good.path()).out,
              testing::EndsWith("selected for WS: yes\n"));
}
