// The convenience header's writing and looking up.

#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>
#include <csignal>
#include <set>

#include "own_locale.hh"
#include "support.hh"
#include "without_date.hh"
#include "zrt4xml.hh"

using test::without_date;
using zrt4::camera_features;
using zrt4::channel_list;
using zrt4::dialect;
using zrt4::env_dictionary;
using zrt4::env_dictionary_2010;
using zrt4::event_list;

[[maybe_unused]] static const auto* const english = test::locale_of_literals::in(LC_MESSAGES);

namespace {

const std::string three_channels =
    "<CHANDESCRIPTIONS>"
    "<CHANNEL><EVTYPE>1</EVTYPE><PROP>A</PROP><NAME>a</NAME></CHANNEL>"
    "<CHANNEL><EVTYPE>6</EVTYPE><PROP>B</PROP><NAME>b</NAME></CHANNEL>"
    "<CHANNEL><EVTYPE>4</EVTYPE><PROP>C</PROP><NAME>b</NAME></CHANNEL></CHANDESCRIPTIONS>";

const std::string dictionary =
    "<ENVINDEXDICT><CHANNEL><INDEX>7</INDEX><PROP>A</PROP><DABS>0.5</DABS></CHANNEL>"
    "<CHANNEL><INDEX>-3</INDEX><PROP>B</PROP></CHANNEL></ENVINDEXDICT>";

channel_list channels() {
  channel_list list;
  EXPECT_EQ(list.read_text(three_channels), 0);
  return list;
}

/// A folder that goes with all that is in it.
class temporary_folder {
 public:
  temporary_folder() {
    if (mkdtemp(path_) == nullptr) throw std::runtime_error("no temporary folder");
  }
  temporary_folder(const temporary_folder&) = delete;
  temporary_folder& operator=(const temporary_folder&) = delete;
  ~temporary_folder() { std::filesystem::remove_all(path_); }

  std::string operator/(const std::string& name) const { return std::string(path_) + "/" + name; }
  std::set<std::string> names() const {
    std::set<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
      found.insert(entry.path().filename());
    }
    return found;
  }

 private:
  char path_[sizeof "/tmp/zrt4_test_XXXXXX"] = "/tmp/zrt4_test_XXXXXX";
};

std::string content_of(const std::string& name) {
  std::ostringstream text;
  text << std::ifstream(name, std::ios::binary).rdbuf();
  return text.str();
}

void make_file(const std::string& name, const std::string& content) {
  std::ofstream(name, std::ios::binary) << content;
}

std::filesystem::perms mode_of(const std::string& name) {
  return std::filesystem::status(name).permissions();
}

/// While it lives, no file can grow beyond `size`.
class file_size_limit {
 public:
  explicit file_size_limit(rlim_t size) : handler(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit now{size, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &now);
  }
  file_size_limit(const file_size_limit&) = delete;
  file_size_limit& operator=(const file_size_limit&) = delete;
  ~file_size_limit() {
    setrlimit(RLIMIT_FSIZE, &before);
    (void)std::signal(SIGXFSZ, handler);
  }

 private:
  rlimit before{};
  void (*handler)(int);
};

}  // namespace

TEST(WriteText, OfChannelsIsTheDocumentOfTheDump) {
  channel_list list = channels();
  for (const dialect as : {dialect::elements, dialect::variables}) {
    std::string expected;
    ASSERT_EQ(dump_chan_desr(list.get(), nullptr, DUMP_XML_FILE, static_cast<int>(as), -1,
                             &expected, nullptr),
              0);
    EXPECT_EQ(list.write_text(as), expected);
  }
  const channel_list& constant = list;
  EXPECT_THAT(constant.write_text(), testing::HasSubstr("<CHANDESCRIPTIONS>"));
  EXPECT_THAT(constant.write_text(dialect::variables), testing::HasSubstr("<DAQvariables>"));
  EXPECT_THAT(channel_list().write_text(), testing::EndsWith("<CHANDESCRIPTIONS>\n"
                                                             "</CHANDESCRIPTIONS>\n\n"));
}

TEST(WriteText, OfADictionaryIsTheDocumentOfTheDump) {
  env_dictionary list;
  ASSERT_EQ(list.read_text(dictionary), 0);
  std::string expected;
  ASSERT_EQ(dump_env_index_dict(list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &expected), 0);
  expected = without_date(expected);
  EXPECT_EQ(without_date(list.write_text()), expected);
  env_dictionary_2010 wide;
  ASSERT_EQ(wide.read_text(dictionary), 0);
  EXPECT_EQ(without_date(wide.write_text()), expected);
}

TEST(WriteFile, ReadsBack) {
  const temporary_folder folder;
  const channel_list list = channels();
  EXPECT_EQ(list.write_file(folder / "new.xml"), 0);
  EXPECT_EQ(content_of(folder / "new.xml"), list.write_text());
  EXPECT_EQ(list.write_file(folder / "new.xml", dialect::variables), 0);
  EXPECT_EQ(content_of(folder / "new.xml"), list.write_text(dialect::variables));
  channel_list again;
  EXPECT_EQ(again.read_file(folder / "new.xml"), 0);
  ASSERT_EQ(again.size(), 3U);
  EXPECT_STREQ(again[1].daq_name, "b");

  env_dictionary entries;
  ASSERT_EQ(entries.read_text(dictionary), 0);
  EXPECT_EQ(entries.write_file(folder / "dictionary.xml"), 0);
  EXPECT_EQ(without_date(content_of(folder / "dictionary.xml")),
            without_date(entries.write_text()));
  EXPECT_EQ(folder.names(), (std::set<std::string>{"dictionary.xml", "new.xml"}));
}

TEST(WriteFile, NewFileHasTheModeOfTheUmask) {
  const temporary_folder folder;
  const mode_t before = umask(027);
  EXPECT_EQ(channels().write_file(folder / "new.xml"), 0);
  umask(before);
  EXPECT_EQ(mode_of(folder / "new.xml"), std::filesystem::perms{0640});
}

TEST(WriteFile, KeepsModeAndFollowsLinks) {
  const temporary_folder folder;
  make_file(folder / "old.xml", "old");
  std::filesystem::permissions(folder / "old.xml", std::filesystem::perms{0604});
  std::filesystem::create_symlink("old.xml", folder / "link.xml");
  EXPECT_EQ(channels().write_file(folder / "link.xml"), 0);
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.xml"));
  EXPECT_EQ(content_of(folder / "old.xml"), channels().write_text());
  EXPECT_EQ(mode_of(folder / "old.xml"), std::filesystem::perms{0604});
}

TEST(WriteFile, MakesWhatALinkNamesAndBreaksNone) {
  const temporary_folder folder;
  std::filesystem::create_directory(folder / "sub");
  std::filesystem::create_symlink("sub/second", folder / "first");
  std::filesystem::create_symlink("../made.xml", folder / "sub/second");
  EXPECT_EQ(channels().write_file(folder / "first"), 0);
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "first"));
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "sub/second"));
  EXPECT_TRUE(std::filesystem::is_regular_file(folder / "made.xml"));
  std::filesystem::create_symlink("none/new.xml", folder / "nowhere");
  EXPECT_EQ(channels().write_file(folder / "nowhere"), ENOENT);
  {
    std::filesystem::create_symlink("limited.xml", folder / "first_of_two");
    const file_size_limit limit(100);
    EXPECT_EQ(channels().write_file(folder / "first_of_two"), EFBIG);
  }
  std::filesystem::create_symlink("round", folder / "round");
  EXPECT_EQ(channels().write_file(folder / "round"), ELOOP);
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "round"));
  EXPECT_EQ(folder.names(), (std::set<std::string>{"first", "first_of_two", "made.xml", "nowhere",
                                                   "round", "sub"}));
}

TEST(WriteFile, TakesTheLongestName) {
  const temporary_folder folder;
  const std::string longest(255, 'n');
  EXPECT_EQ(channels().write_file(folder / longest), 0);
  EXPECT_EQ(channels().write_file(folder / longest), 0);
  EXPECT_EQ(folder.names(), std::set<std::string>{longest});
  EXPECT_EQ(channels().write_file(folder / (longest + "n")), ENAMETOOLONG);
}

TEST(WriteFile, ReturnsTheSystemsErrorNumber) {
  const temporary_folder folder;
  const channel_list list = channels();
  const test::output printed = test::captured([&] {
    EXPECT_EQ(list.write_file(folder / "none/new.xml"), ENOENT);
    EXPECT_EQ(list.write_file(folder / "."), EISDIR);
    EXPECT_EQ(list.write_file(""), ENOENT);
    EXPECT_EQ(list.write_file("/dev/full"), ENOSPC);
    EXPECT_EQ(list.write_file("/dev/null"), 0);
  });
  EXPECT_EQ(printed.out + printed.err, "");
  EXPECT_TRUE(folder.names().empty());
}

TEST(WriteFile, FailedWriteLeavesTheOldFileAndNothingBeside) {
  const temporary_folder folder;
  make_file(folder / "old.xml", "old");
  {
    const file_size_limit limit(100);
    EXPECT_EQ(channels().write_file(folder / "old.xml"), EFBIG);
    EXPECT_EQ(channels().write_file(folder / "new.xml"), EFBIG);
  }
  EXPECT_EQ(content_of(folder / "old.xml"), "old");
  EXPECT_EQ(folder.names(), (std::set<std::string>{"old.xml"}));
}

TEST(WriteFile, WriteProtectedFileStays) {
  if (geteuid() == 0) GTEST_SKIP() << "root may write everything";
  const temporary_folder folder;
  make_file(folder / "old.xml", "old");
  std::filesystem::permissions(folder / "old.xml", std::filesystem::perms{0444});
  EXPECT_EQ(channels().write_file(folder / "old.xml"), EACCES);
  EXPECT_EQ(content_of(folder / "old.xml"), "old");
}

TEST(WriteFile, OrThrows) {
  const temporary_folder folder;
  const channel_list list = channels();
  list.write_file_or_throw(folder / "new.xml", dialect::variables);
  EXPECT_EQ(content_of(folder / "new.xml"), list.write_text(dialect::variables));
  env_dictionary entries;
  ASSERT_EQ(entries.read_text(dictionary), 0);
  entries.write_file_or_throw(folder / "dictionary.xml");
  EXPECT_EQ(without_date(content_of(folder / "dictionary.xml")),
            without_date(entries.write_text()));
  try {
    entries.write_file_or_throw(folder / "none/new.xml");
    FAIL() << "it was written";
  } catch (const std::system_error& error) {
    EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
    EXPECT_EQ(error.what(), folder / "none/new.xml: No such file or directory");
  }
  EXPECT_THROW(list.write_file_or_throw("/dev/full"), std::system_error);
}

TEST(LookUp, ChannelsByPropertyAndByDaqName) {
  channel_list list = channels();
  EXPECT_EQ(list.find("B"), &list[1]);
  EXPECT_EQ(list.find("b"), nullptr);
  EXPECT_EQ(list.find_by_daq_name("b"), &list[1]);
  EXPECT_EQ(list.find_by_daq_name("B"), nullptr);
  const channel_list& constant = list;
  EXPECT_EQ(constant.find_by_daq_name("a"), &list[0]);
  static_assert(std::is_same_v<decltype(constant.find_by_daq_name("a")), const chan_descr_2010*>);
}

TEST(LookUp, EventsByType) {
  event_list list;
  ASSERT_EQ(list.read_text("<BMR><EVENT><TYPE>1</TYPE></EVENT><EVENT><TYPE>4</TYPE></EVENT>"
                           "<EVENT><TYPE>4</TYPE></EVENT></BMR>"),
            0);
  EXPECT_EQ(list.find(ZRT4_EV_ENV), &list[1]);
  EXPECT_EQ(list.find(ZRT4_EV_HB), nullptr);
  const event_list& constant = list;
  EXPECT_EQ(constant.find(ZRT4_EV_NORMAL), &list[0]);
}

template <class List>
class LookUpInDictionary : public testing::Test {};
using widths = testing::Types<env_dictionary, env_dictionary_2010>;
TYPED_TEST_SUITE(LookUpInDictionary, widths);

TYPED_TEST(LookUpInDictionary, ByIndexAndByProperty) {
  TypeParam list;
  ASSERT_EQ(list.read_text(dictionary), 0);
  EXPECT_EQ(list.find(7), &list[0]);
  EXPECT_EQ(list.find(-3), &list[1]);
  EXPECT_EQ(list.find(0), nullptr);
  EXPECT_EQ(list.find("B"), &list[1]);
  EXPECT_EQ(list.find(""), nullptr);
  const TypeParam& constant = list;
  EXPECT_EQ(constant.find(7), &list[0]);
  EXPECT_EQ(constant.find("A"), &list[0]);
}

// A program may fill the whole field.
TYPED_TEST(LookUpInDictionary, PropertyWithoutAZeroBehindIt) {
  TypeParam list;
  ASSERT_EQ(list.read_text(dictionary), 0);
  auto& field = list[0].data.env_prop;
  std::fill(std::begin(field), std::end(field), 'x');
  EXPECT_EQ(list.find(std::string(sizeof field, 'x')), &list[0]);
  EXPECT_EQ(list.find(std::string(sizeof field - 1, 'x')), nullptr);
}

TEST(LookUp, FeaturesByName) {
  const test::temporary_file file("<Camera><Integer Name='Width'/><Float Name='Gain'/></Camera>");
  camera_features list;
  ASSERT_EQ(list.read_file(file.path()), 0);
  EXPECT_EQ(list.find("Gain"), &list[1]);
  EXPECT_EQ(list.find("gain"), nullptr);
  const camera_features& constant = list;
  EXPECT_EQ(constant.find("Width"), &list[0]);
}
