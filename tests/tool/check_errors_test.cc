// What a reader counts as an error is explained by a line, and what is told as one is counted.

#include <algorithm>

#include "finding_support.hh"
#include "random_documents.hh"
#include "zrt4xml.hh"

using test::check_of;
using test::check_result;

namespace {

class CheckErrors : public testing::Test {
  const zrt4::xml_session session;
};

bool explains_an_error(const finding& each) {
  return each.what == rule::damage || each.what == rule::missing_attribute;
}

std::size_t lines_of_errors(const check_result& result) {
  return static_cast<std::size_t>(
      std::count_if(result.found.begin(), result.found.end(), explains_an_error));
}

}  // namespace

TEST_F(CheckErrors, OneLineForEach) {
  const struct {
    const char* document;
    int errors;
    std::size_t lines;
  } cases[] = {
      {"<BMR><EVENT></BMR>", 1, 1},
      {"<BMR>\n", 1, 1},
      {"<!DOCTYPE BMR [<!ELEMENT BMR ANY>]><BMR><EVENT/><EVENT/></BMR>", 1, 1},
      {"<!DOCTYPE BMR [<!ELEMENT X ANY>]><BMR><EVENT/></BMR>", 2, 2},  // none at all is read
      {"<DAQvariables><DaqBits><bitTitle/></DaqBits></DAQvariables>", 1, 1},
      {"<DAQvariables><DaqFloat><bitTitle>x</bitTitle></DaqFloat></DAQvariables>", 0, 0},
  };
  for (const auto& [document, errors, expected_lines] : cases) {
    const check_result result = check_of(document);
    EXPECT_EQ(result.errors, errors) << document;
    EXPECT_EQ(lines_of_errors(result), expected_lines) << document;
  }
}

// Those that a reader meets at each step of one element are told once, with their number.
TEST_F(CheckErrors, ErrorsOfOneElement) {
  const check_result result = check_of(
      "<DAQvariables><DaqBits><vindo>A</vindo><bitTitle>x</bitTitle></DaqBits>"
      "</DAQvariables>");
  EXPECT_EQ(result.errors, 2);
  EXPECT_EQ(lines_of_errors(result), 1U);
}

TEST_F(CheckErrors, OfDocumentsFullOfThem) {
  test::random_documents documents(11);
  int damaged = 0;
  for (unsigned i = 0; i != 2000; ++i) {
    const auto kind = static_cast<test::random_documents::format>(i % documents.formats);
    const std::string document = documents.next(kind);
    try {
      const check_result result = check_of(document);
      ASSERT_EQ(result.errors != 0, lines_of_errors(result) != 0) << document;
      if (result.errors != 0) ++damaged;
    } catch (const std::runtime_error&) {  // of no kind
    }
  }
  EXPECT_GT(damaged, 200);
}
