#include "local_text.hh"

#include <algorithm>
#include <cstring>
#include <vector>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLString.hpp>

using xercesc::XMLString;

namespace zrt4::detail {

namespace {

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

}  // namespace

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
  const scanner_text local(XMLString::transcode(units));
  return local ? std::string(local.get()) : std::string();
}

}  // namespace zrt4::detail
