#include "xml_library_calls.hh"

#include <dlfcn.h>

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "zrt4_export.hh"

namespace test {

xml_library_calls xml_library;

}  // namespace test

namespace {

template <class Function>
Function* real(const char* symbol) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, symbol));
}

}  // namespace

XERCES_CPP_NAMESPACE_BEGIN

ZRT4_EXPORT void XMLPlatformUtils::Initialize(const char* const locale, const char* const nls_home,
                                              PanicHandler* const panic,
                                              MemoryManager* const memory) {
  ++test::xml_library.initialised;
  if (test::xml_library.initialisation_fails) {
    throw RuntimeException("test", 1, XMLExcepts::CM_BinOpHadUnaryType, fgMemoryManager);
  }
  using initialize = void(const char*, const char*, PanicHandler*, MemoryManager*);
  real<initialize>(
      "_ZN11xercesc_3_216XMLPlatformUtils10InitializeEPKcS2_PNS_12PanicHandlerEPNS_"
      "13MemoryManagerE")(locale, nls_home, panic, memory);
}

ZRT4_EXPORT void XMLPlatformUtils::Terminate() {
  ++test::xml_library.terminated;
  // A failed initialisation took no use of the library that could be given back here.
  if (test::xml_library.initialisation_fails) return;
  real<void()>("_ZN11xercesc_3_216XMLPlatformUtils9TerminateEv")();
}

XERCES_CPP_NAMESPACE_END
