// Dictionaries from a text to every destination, and back from what was written.

#include <cstring>
#include <random>

#include "dictionary_dumping.hh"
#include "own_locale.hh"

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);

using test::dateless;
using test::empty_document;
using test::EnvIndexDictDump;
using test::head;
using test::no_file;
using test::open_file;
using test::sample_channel;
using test::sample_line;
using test::sample_listing;
using test::tail;

TYPED_TEST_SUITE(EnvIndexDictDump, test::generations, test::titles);

TYPED_TEST(EnvIndexDictDump, FromTextToEveryDestination) {
  const std::string document = "<ENVINDEXDICT>" + sample_channel + "</ENVINDEXDICT>";
  this->expect_from_text(0, sample_listing, document, nullptr, ENV_INDX_DUMP_TO_SCREEN, -1);
  this->expect_from_text(0, sample_listing, document, no_file, ENV_INDX_DUMP_XML_STRING, -1);
  this->expect_from_text(0, this->opened_and_closed, document, this->file.name(),
                         ENV_INDX_DUMP_TXT_FILE, -1);
  EXPECT_EQ(this->file.content(), sample_line);
  open_file other;
  this->expect_from_text(0, this->opened_and_closed, document, this->file.name(),
                         ENV_INDX_DUMP_XML_FILE, other.descriptor());
  EXPECT_EQ(dateless(this->file.content()), head + sample_channel + tail);
  EXPECT_EQ(other.content(), this->file.content());
  this->expect_from_text(0, this->opened_and_closed, document, this->file.name(),
                         ENV_INDX_DUMP_XML_STRING, -1);
  EXPECT_EQ(this->file.content(), "");
}

TYPED_TEST(EnvIndexDictDump, FromTextReturnsTheDumpsResult) {
  const std::string document = "<ENVINDEXDICT>" + sample_channel + "</ENVINDEXDICT>";
  char folder[] = "/tmp";
  this->expect_from_text(1, this->name + " failed to open file: '/tmp'\n", document, folder,
                         ENV_INDX_DUMP_XML_FILE, -1);
  this->expect_from_text(2, TypeParam::write_failed, document, nullptr, ENV_INDX_DUMP_XML_FILE, -2);
}

TYPED_TEST(EnvIndexDictDump, FromTextWithoutEntriesIsAnEmptyDocument) {
  this->expect_from_text(0, this->opened_and_closed, "<ENVINDEXDICT/>", this->file.name(),
                         ENV_INDX_DUMP_XML_FILE, -1);
  EXPECT_EQ(dateless(this->file.content()), empty_document);
}

TYPED_TEST(EnvIndexDictDump, FromTextThatCannotBeReadIsToldAndReturnsThree) {
  for (const char* broken : {"", "no XML", "<ENVDICT/>", "<ENVINDEXDICT>", "<ENVINDEXDICT></X>"}) {
    this->expect_from_text(3, "Failed to parse ENV INDEX DICT list\n", broken, this->file.name(),
                           ENV_INDX_DUMP_XML_FILE, -1);
  }
  EXPECT_EQ(this->file.content(), "old content");
}

TYPED_TEST(EnvIndexDictDump, FromTextTheWrongRootIsAlsoTold) {
  std::string document = "<ENVDICT/>";
  const auto said =
      test::captured([&] { EXPECT_EQ(TypeParam::dump(document.data(), nullptr, 0, -1), 3); });
  EXPECT_EQ(said.out, "Failed to parse ENV INDEX DICT list\n");
  EXPECT_EQ(said.err, "WRONG root tag: 'ENVDICT' must be 'ENVINDEXDICT'\n");
}

// The address sanitizer would tell of a second release.
TYPED_TEST(EnvIndexDictDump, FromTextAnEntryListedTwiceIsReleasedOnce) {
  this->expect_from_text(0, this->opened_and_closed,
                         "<ENVINDEXDICT><CHANNEL><INDEX>1</INDEX><PROP>A</PROP><PROP>B</PROP>"
                         "</CHANNEL></ENVINDEXDICT>",
                         this->file.name(), ENV_INDX_DUMP_TXT_FILE, -1);
  EXPECT_EQ(this->file.content(), "1\tB\t0.000000\t0.000000\n1\tB\t0.000000\t0.000000\n");
}

// Whatever is written is read back: names whole, deltas to six decimals.
TYPED_TEST(EnvIndexDictDump, WhatIsWrittenIsReadBack) {
  using entry = typename TypeParam::entry;
  std::mt19937 random(7);
  const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcxyz0123456789./_-:+";
  typename TypeParam::list written;
  for (int i = 0; i < 1000; ++i) {
    std::string property;
    for (auto length = 1 + random() % TypeParam::longest; length > 0; --length) {
      property += alphabet[random() % alphabet.size()];
    }
    std::uniform_real_distribution<float> delta(-1000.0F, 1000.0F);
    written.get()->push_back(
        test::new_entry<entry>(static_cast<int>(random() & 0x7fffffffU) * (i % 2 != 0 ? 1 : -1),
                               property, delta(random), delta(random) * 1e-6F));
  }
  this->expect(0, "", written.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &this->text);
  typename TypeParam::list back;
  ASSERT_EQ(TypeParam::read(this->text.data(), back.get()), 0);
  ASSERT_EQ(back.size(), written.size());
  for (std::size_t i = 0; i < back.size(); ++i) {
    EXPECT_EQ(back[i].index, written[i].index);
    EXPECT_EQ(
        std::memcmp(back[i].data.env_prop, written[i].data.env_prop, sizeof back[i].data.env_prop),
        0);
    for (const auto field :
         {&decltype(entry::data)::env_ch_abs_delta, &decltype(entry::data)::env_ch_rel_delta}) {
      char decimals[64];
      std::snprintf(decimals, sizeof decimals, "%f", static_cast<double>(written[i].data.*field));
      EXPECT_EQ(back[i].data.*field, std::strtof(decimals, nullptr)) << decimals;
      EXPECT_NEAR(back[i].data.*field, written[i].data.*field, 4e-5F);
    }
  }
  // A second round changes nothing any more.
  std::string again;
  this->expect(0, "", back.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &again);
  EXPECT_EQ(dateless(again), dateless(this->text));
}
