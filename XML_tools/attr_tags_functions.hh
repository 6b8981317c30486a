#ifndef ATTR_TAGS_FUNCTIONS_HH
#define ATTR_TAGS_FUNCTIONS_HH

/// Tag builders: each appends one XML tag to the string `a`, which is never cleared. Nothing is
/// escaped or indented: element names `b`, attribute names and values must be valid XML as they
/// are. A null name, vector or entry is a caller error. Nothing is printed. A string that would
/// grow beyond its maximum size throws `std::length_error`.

#include <string>
#include <vector>

#include "zrt4_export.hh"

ZRT4_EXPORT void START_TAG(std::string& a, const char* b);   ///< `<b>`
ZRT4_EXPORT void START_TAGN(std::string& a, const char* b);  ///< `<b>` and a line end
ZRT4_EXPORT void END_TAG(std::string& a, const char* b);     ///< `</b>`
ZRT4_EXPORT void END_TAGN(std::string& a, const char* b);    ///< `</b>` and a line end

/// With attributes: `<b `, then for each name in `at` the name, `="`, the value of `v` at the same
/// position and `"`, pairs separated by one blank, then the closing text. The blank after the
/// element name is written also when there are no attributes. Values beyond the names are ignored.
/// Too few values throw `std::out_of_range` at the first missing one; what was appended so far, up
/// to that pair's opening quote, stays.
ZRT4_EXPORT void START_TAG_ATTR(std::string& a, const char* b, const std::vector<const char*>* at,
                                const std::vector<const char*>* v);  ///< `<b ... />`
ZRT4_EXPORT void START_TAG_ATTRN(std::string& a, const char* b, const std::vector<const char*>* at,
                                 const std::vector<const char*>* v);  ///< `<b ... />`, line end
ZRT4_EXPORT void START_TAG_ATTRNS(std::string& a, const char* b, const std::vector<const char*>* at,
                                  const std::vector<const char*>* v);  ///< `<b ... >`
ZRT4_EXPORT void START_TAG_ATTRNNS(std::string& a, const char* b,
                                   const std::vector<const char*>* at,
                                   const std::vector<const char*>* v);  ///< `<b ... >`, line end

#endif
