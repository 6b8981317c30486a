// The documents of examples/dictionaries, as they stand there.

#include <set>

#include "dictionary_support.hh"
#include "own_locale.hh"

[[maybe_unused]] static const auto* const points = test::locale_of_literals::in(LC_NUMERIC);

namespace {

std::string example(const std::string& name) {
  return ZRT4_SOURCE_DIR "/examples/dictionaries/" + name;
}

std::string content(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

template <class Generation>
typename Generation::list read(std::string path) {
  typename Generation::list list;
  EXPECT_EQ(Generation::readf(path.data(), list.get()), 0) << path;
  return list;
}

template <class Generation>
std::set<std::string> names(const typename Generation::list& list) {
  std::set<std::string> result;
  for (const auto& entry : list) result.insert(entry.data.env_prop);
  return result;
}

template <class Generation>
struct EnvDictionaryExamples : testing::Test {};
TYPED_TEST_SUITE(EnvDictionaryExamples, test::generations, test::titles);

}  // namespace

TYPED_TEST(EnvDictionaryExamples, Small) {
  const auto list = read<TypeParam>(example("small.xml"));
  ASSERT_EQ(list.size(), 3U);
  EXPECT_STREQ(list[1].data.env_prop, "GUN.VACUUM/ION.PUMP/L0.01/PRESSURE");
  EXPECT_EQ(list[1].data.env_ch_rel_delta, 0.1F);
  EXPECT_EQ(list[2].index, 2);
}

TYPED_TEST(EnvDictionaryExamples, LinacIsAsTheLibraryWritesIt) {
  auto list = read<TypeParam>(example("linac.xml"));
  EXPECT_EQ(list.size(), 325U);
  EXPECT_EQ(names<TypeParam>(list).size(), 325U);
  std::string written;
  EXPECT_EQ(TypeParam::dump(list.get(), nullptr, ENV_INDX_DUMP_XML_STRING, -1, &written), 0);
  const std::string stands = content(example("linac.xml"));
  const std::size_t after_date = stands.find("</isodate>");
  EXPECT_EQ(written.substr(after_date), stands.substr(after_date));
}

TYPED_TEST(EnvDictionaryExamples, LongNamesNeedTheWiderRecord) {
  const auto list = read<TypeParam>(example("long_names.xml"));
  EXPECT_EQ(list.size(), 8U);
  EXPECT_EQ(names<TypeParam>(list).size(), TypeParam::longest == 255 ? 8U : 3U);
}
