#include <cstring>
#include <ctime>
#include <limits>
#include <string>

#include "parse_chan_descr.hh"
#include "support.hh"

namespace {

// A time zone for the time of one test.
class time_zone {
 public:
  explicit time_zone(const char* zone) {
    if (const char* old = std::getenv("TZ")) previous = old;
    set(zone);
  }
  time_zone(const time_zone&) = delete;
  time_zone& operator=(const time_zone&) = delete;
  ~time_zone() { set(previous.empty() ? nullptr : previous.c_str()); }

 private:
  static void set(const char* zone) {
    if (zone != nullptr) {
      setenv("TZ", zone, 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }
  std::string previous;
};

constexpr std::time_t first_of_december = 1638362707;  // 2021-12-01 12:45:07 UTC

std::string date_of(std::time_t when) {
  char date[40];
  create_isodate(date, &when);
  return date;
}

std::string date_line(std::time_t when) {
  return "\t<isodate>" + date_of(when) + "</isodate>\n";
}

}  // namespace

TEST(CreateIsodate, WritesDateAndTime) {
  const time_zone zone("UTC0");
  EXPECT_EQ(date_of(first_of_december), "2021-12-01T12:45:07");
  EXPECT_EQ(date_of(0), "1970-01-01T00:00:00");
}

TEST(CreateIsodate, WritesLocalTime) {
  {
    const time_zone zone("CET-1");
    EXPECT_EQ(date_of(first_of_december), "2021-12-01T13:45:07");
  }
  {
    const time_zone zone("EST5");
    EXPECT_EQ(date_of(first_of_december), "2021-12-01T07:45:07");
    EXPECT_EQ(date_of(0), "1969-12-31T19:00:00");
  }
}

TEST(CreateIsodate, FollowsSummerTime) {
  const time_zone zone("CET-1CEST,M3.5.0,M10.5.0/3");
  EXPECT_EQ(date_of(1616893199), "2021-03-28T01:59:59");
  EXPECT_EQ(date_of(1616893200), "2021-03-28T03:00:00");
}

TEST(CreateIsodate, FillsTwentyBytesOnly) {
  const time_zone zone("UTC0");
  char buffer[40];
  std::memset(buffer, '#', sizeof buffer);
  std::time_t when = first_of_december;
  create_isodate(buffer, &when);
  EXPECT_EQ(std::string(buffer, sizeof buffer),
            std::string("2021-12-01T12:45:07") + '\0' + std::string(20, '#'));
}

TEST(CreateIsodate, LeavesTheTimeAlone) {
  char buffer[40];
  std::time_t when = first_of_december;
  create_isodate(buffer, &when);
  EXPECT_EQ(when, first_of_december);
}

TEST(CreateIsodate, AVeryFarYearStaysWithinTheBuffer) {
  const time_zone zone("UTC0");
  std::tm last{};
  last.tm_year = std::numeric_limits<int>::max() - 1900;
  last.tm_mon = 11;
  last.tm_mday = 31;
  const std::time_t when = timegm(&last);
  if (when == -1) GTEST_SKIP() << "time_t is too short for it";
  EXPECT_EQ(date_of(when), "2147483647-12-31T00:00:00");
  EXPECT_EQ(date_of(std::numeric_limits<std::time_t>::max()), "");
}

TEST(CreateIsodate, NullBufferDoesNothing) {
  std::time_t when = first_of_december;
  create_isodate(nullptr, &when);
  create_isodate(nullptr);
  EXPECT_EQ(when, first_of_december);
}

TEST(CreateIsodate, WithoutATimeTakesTheCurrentOne) {
  const std::time_t before = std::time(nullptr);
  char buffer[40];
  create_isodate(buffer);
  const std::time_t after = std::time(nullptr);
  EXPECT_GE(std::string(buffer), date_of(before));
  EXPECT_LE(std::string(buffer), date_of(after));
  EXPECT_EQ(std::strlen(buffer), 19U);
}

TEST(SetXmlHeader, ReplacesEverything) {
  std::string text = "old content, longer than the declaration that comes in its place, so to say";
  set_xml_header(text);
  EXPECT_EQ(text, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n");
}

TEST(SetXmlHeader, FillsAnEmptyString) {
  std::string text;
  set_xml_header(text);
  EXPECT_EQ(text, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\" ?>\n");
}

TEST(AddIsoDate, AppendsOneLineOfFortyCharacters) {
  std::string text;
  const std::time_t before = std::time(nullptr);
  add_iso_date(text);
  const std::time_t after = std::time(nullptr);
  EXPECT_EQ(text.size(), 40U);
  EXPECT_GE(text, date_line(before));
  EXPECT_LE(text, date_line(after));
}

TEST(AddIsoDate, KeepsWhatIsThere) {
  std::string text = "<ROOT>\n";
  add_iso_date(text);
  EXPECT_THAT(text, testing::MatchesRegex("<ROOT>\n\t<isodate>[0-9]{4}-[0-9]{2}-[0-9]{2}"
                                          "T[0-9]{2}:[0-9]{2}:[0-9]{2}</isodate>\n"));
}

TEST(AddIsoDate, IsInLocalTime) {
  const time_zone zone("FAR-14");
  std::string text;
  const std::time_t before = std::time(nullptr);
  add_iso_date(text);
  std::time_t utc = before + std::time_t{14} * 3600;
  std::tm broken{};
  gmtime_r(&utc, &broken);
  char expected[40];
  (void)std::strftime(expected, sizeof expected, "%FT%H:%M", &broken);
  utc += 60;
  gmtime_r(&utc, &broken);
  char next_minute[40];
  (void)std::strftime(next_minute, sizeof next_minute, "%FT%H:%M", &broken);
  EXPECT_THAT(text, testing::AnyOf(testing::HasSubstr(expected), testing::HasSubstr(next_minute)));
}
