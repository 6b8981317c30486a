// Every reader and writer in several threads at once, with and without errors, each thread with a
// receiver of its own. Under ThreadSanitizer by scripts/check tsan.

#include <atomic>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "every_operation.hh"
#include "support.hh"

namespace {

constexpr int threads = 4;
#if defined(ZRT4_THREADS_CHECKED) || defined(ZRT4_LEAK_CHECKED)
constexpr int rounds = 10;
#else
constexpr int rounds = 50;
#endif

template <class Work>
void in_threads(Work work) {
  std::atomic<int> waiting{threads};
  std::vector<std::thread> all;
  for (int n = 0; n < threads; ++n) {
    all.emplace_back([&, n] {
      --waiting;
      while (waiting != 0) std::this_thread::yield();
      for (int round = 0; round < rounds; ++round) work(n);
    });
  }
  for (std::thread& each : all) each.join();
}

/// Of the listings, which print piece by piece, none: they are no business of several threads.
std::vector<test::operation> operations_of_one_thread() {
  std::vector<test::operation> all = test::readers();
  for (test::operation& each : test::writers()) {
    if (std::strstr(each.name, "listed") == nullptr) all.push_back(std::move(each));
  }
  return all;
}

void run_every_operation() {
  const std::vector<test::operation> operations = operations_of_one_thread();
  std::vector<std::string> expected(operations.size());
  std::vector<std::size_t> said(operations.size());
  for (std::size_t i = 0; i < operations.size(); ++i) {
    const zrt4::message_list messages;
    operations[i].run(&expected[i]);
    said[i] = messages.size();
  }
  std::atomic<int> different{0};
  std::vector<std::vector<test::operation>> own;  // their files are written
  for (int n = 0; n < threads; ++n) own.push_back(operations_of_one_thread());
  in_threads([&](int n) {
    for (std::size_t i = 0; i < operations.size(); ++i) {
      std::string result;
      const zrt4::message_list messages;
      own[static_cast<std::size_t>(n)][i].run(&result);
      if (result != expected[i] || messages.size() != said[i]) ++different;
    }
  });
  EXPECT_EQ(different, 0);
}

// Each thread has a document of its own, whose name and errors tell whose a message is.
void read_with_errors() {
  std::vector<std::unique_ptr<test::temporary_file>> files;
  for (int n = 0; n < threads; ++n) {
    const std::string name = "camera" + std::to_string(n);
    files.push_back(
        std::make_unique<test::temporary_file>("<" + name + "><Integer Name='n'/></r>"));
  }
  std::atomic<int> wrong{0};
  in_threads([&](int n) {
    const std::string name = "thread" + std::to_string(n);
    const std::string text = "WRONG root tag: " + name + " must be 'BMR'";
    zrt4::event_list events;
    const zrt4::read_report report = events.read_text_reported("<" + name + "/>");
    if (report.messages.size() != 1 || report.messages[0].text != text) ++wrong;
    const auto& file = *files[static_cast<std::size_t>(n)];
    zrt4::camera_features features;
    const zrt4::read_report damage = features.read_file_reported(file.path());
    if (damage.messages.size() != 1 || damage.messages[0].document != file.path() ||
        damage.messages[0].text != "expected end of tag 'camera" + std::to_string(n) + "'") {
      ++wrong;
    }
  });
  EXPECT_EQ(wrong, 0);
}

}  // namespace

TEST(Threads, RunEveryOperationWhenNobodyHoldsTheXmlLibrary) {
  run_every_operation();
}

TEST(Threads, RunEveryOperationWhileTheXmlLibraryIsHeld) {
  const zrt4::xml_session session;
  run_every_operation();
}

TEST(Threads, GetTheirOwnMessages) {
  read_with_errors();
  const zrt4::xml_session session;
  read_with_errors();
}

TEST(Threads, MakeAndEndSessions) {
  std::atomic<int> errors{0};
  in_threads([&](int) {
    const zrt4::xml_session session;
    zrt4::event_list list;
    errors += list.read_text("<BMR/>");
  });
  EXPECT_EQ(errors, 0);
}

TEST(Threads, LookUpInOneSelector) {
  char text[] =
      "<CHANDESCRIPTIONS><CHANNEL><PROP>A.B/C/D/E</PROP><NAME>first</NAME><EVTYPE>2</EVTYPE>"
      "</CHANNEL></CHANDESCRIPTIONS>";
  std::vector<char*> source{text};
  chan_selector selector;
  selector.set_mode(EXTR_FROM_XML);
  ASSERT_FALSE(selector.set_descriptions(&source, nullptr));
  const auto looked_up = [&selector] {
    const zrt4::message_list messages;
    char known[] = "first";
    char unknown[] = "second";
    const int types = selector.get_event_type(known);
    EXPECT_NE(types, 0);
    const std::vector<int> found{types,
                                 selector.get_event_type(unknown),
                                 selector.find_channel(2, known) ? 1 : 0,
                                 selector.get_data_type(known),
                                 selector.is_channel_slow(0),
                                 selector.get_subchannels(0)};
    return std::pair(found, messages.size());
  };
  const auto expected = looked_up();
  EXPECT_EQ(expected.second, 1U);
  std::atomic<int> wrong{0};
  in_threads([&](int) {
    if (looked_up() != expected) ++wrong;
  });
  EXPECT_EQ(wrong, 0);
}
