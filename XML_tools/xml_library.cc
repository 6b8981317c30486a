#include "xml_library.hh"

#include <mutex>
#include <xercesc/util/PlatformUtils.hpp>

namespace {

// The XML library counts its uses without any guard.
std::mutex beginnings_and_ends;

}  // namespace

void zrt4::begin_xml_library_use() {
  const std::lock_guard one_at_a_time(beginnings_and_ends);
  xercesc::XMLPlatformUtils::Initialize();
}

void zrt4::end_xml_library_use() noexcept {
  const std::lock_guard one_at_a_time(beginnings_and_ends);
  xercesc::XMLPlatformUtils::Terminate();
}
