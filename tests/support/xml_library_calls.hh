#ifndef XML_LIBRARY_CALLS_HH
#define XML_LIBRARY_CALLS_HH

namespace test {

/// How the library under test holds the XML library, in the programs that link
/// zrt4_test_xml_library_calls: their Initialize and Terminate stand in front of the real ones,
/// count the calls and fail on request.
struct xml_library_calls {
  int initialised = 0;
  int terminated = 0;
  bool initialisation_fails = false;
};
extern xml_library_calls xml_library;

}  // namespace test

#endif
