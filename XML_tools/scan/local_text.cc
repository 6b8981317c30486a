#include "local_text.hh"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUTF8Transcoder.hpp>
#include <xercesc/util/XMLUniDefs.hpp>

using xercesc::XMLString;

namespace zrt4::detail {

namespace {

thread_local bool wants_utf8 = false;

constexpr unsigned first_beyond_ascii = 0x80;

struct release_text {
  void operator()(char* text) const { XMLString::release(&text); }
};
using scanner_text = std::unique_ptr<char, release_text>;

// Copies while the units are ASCII and returns how many were copied.
std::size_t narrow(const XMLCh* units, std::size_t length, char* to) {
  unsigned seen = 0;
  for (std::size_t i = 0; i < length; ++i) {
    seen |= units[i];
    to[i] = static_cast<char>(units[i]);
  }
  if (seen < first_beyond_ascii) return length;
  const auto* end =
      std::find_if(units, units + length, [](XMLCh unit) { return unit >= first_beyond_ascii; });
  return static_cast<std::size_t>(end - units);
}

// A UTF-16 unit is at most three bytes, a pair of them four.
constexpr std::size_t most_bytes_of_unit = 3;

// Writes at most `most_bytes_of_unit` bytes for each unit and returns how many they are. Half a
// pair becomes a blank, or nothing at the end.
std::size_t to_utf8(const XMLCh* units, std::size_t length, char* to) {
  constexpr XMLCh name[] = {xercesc::chLatin_U, xercesc::chLatin_T, xercesc::chLatin_F,
                            xercesc::chDash,    xercesc::chDigit_8, xercesc::chNull};
  xercesc::XMLUTF8Transcoder transcoder(name, length);
  XMLSize_t eaten = 0;
  return transcoder.transcodeTo(units, length, reinterpret_cast<XMLByte*>(to),
                                most_bytes_of_unit * length, eaten,
                                xercesc::XMLTranscoder::UnRep_RepChar);
}

}  // namespace

utf8_texts::utf8_texts() : before(std::exchange(wants_utf8, true)) {}

utf8_texts::~utf8_texts() {
  wants_utf8 = before;
}

bool utf8_texts::are_wanted() {
  return wants_utf8;
}

bool code_page::probe() {
  XMLCh units[first_beyond_ascii] = {};
  char expected[first_beyond_ascii] = {};
  for (unsigned i = 1; i < first_beyond_ascii; ++i) {
    units[i - 1] = static_cast<XMLCh>(i);
    expected[i - 1] = static_cast<char>(i);
  }
  const scanner_text local(XMLString::transcode(units));
  return local && std::strcmp(local.get(), expected) == 0;
}

const char* local_text::assign(const XMLCh* units, std::size_t length, code_page& page) {
  char* to = room_for(length + 1);
  if (!page.keeps_ascii() || narrow(units, length, to) != length) return transcode(units, length);
  to[length] = '\0';
  return to;
}

const char* local_text::assign(const XMLCh* units, code_page& page) {
  if (units == nullptr) return nullptr;
  return assign(units, XMLString::stringLen(units), page);
}

char* local_text::room_for(std::size_t size) {
  if (size > capacity) {
    const std::size_t grown = std::max({size, 2 * capacity, std::size_t{64}});
    bytes.reset(new char[grown]);
    capacity = grown;
  }
  return bytes.get();
}

const char* local_text::transcode(const XMLCh* units, std::size_t length) {
  if (wants_utf8) {
    char* to = room_for(most_bytes_of_unit * length + 1);
    to[to_utf8(units, length, to)] = '\0';
    return to;
  }
  std::vector<XMLCh> terminated(units, units + length);
  terminated.push_back(0);
  const scanner_text local(XMLString::transcode(terminated.data()));
  if (!local) return nullptr;
  const std::size_t size = std::strlen(local.get()) + 1;
  return static_cast<const char*>(std::memcpy(room_for(size), local.get(), size));
}

std::string to_local(const XMLCh* units) {
  if (units == nullptr) return {};
  // A message may have to be printed before the XML library has a transcoder; those are ASCII.
  std::string plain(XMLString::stringLen(units), '\0');
  if (narrow(units, plain.size(), plain.data()) == plain.size()) return plain;
  if (xercesc::XMLPlatformUtils::fgTransService == nullptr) return {};
  if (wants_utf8) {
    const std::size_t length = plain.size();
    plain.resize(most_bytes_of_unit * length);
    plain.resize(to_utf8(units, length, plain.data()));
    return plain;
  }
  const scanner_text local(XMLString::transcode(units));
  return local ? std::string(local.get()) : std::string();
}

}  // namespace zrt4::detail
