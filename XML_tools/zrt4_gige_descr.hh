#ifndef ZRT4_GIGE_DESCR_HH
#define ZRT4_GIGE_DESCR_HH

/// Feature descriptions of GigE cameras. Texts are in the local code page, of any length. What
/// holds for the whole library stands in docs/contract.md.

#include <string>
#include <vector>
#include <xercesc/dom/DOMNodeList.hpp>

#include "zrt4_export.hh"

/// Kinds of features, indices of `FeatureTags`.
enum feature_tags {
  FEATURE_TYPE_UNDEF = 0,
  FEATURE_TYPE_INT = 1,
  FEATURE_TYPE_FLOAT = 2,
  FEATURE_TYPE_ENUMER = 3,
  FEATURE_TYPE_BOOL = 4,
  FEATURE_TYPE_STRING = 5,
  FEATURE_TYPE_COMMAND = 6,
  FEATURE_TYPE_REGISTER = 7,
  FEATURE_TYPE_LONG = 8,
  FEATURE_TYPE_MAX = 9
};

/// Elements that say more about a feature, indices of `MoreTags`.
enum more_tags {
  MORE_TAGS_EXTENSION = 0,  ///< known, and without effect
  MORE_TAGS_PVRENAME = 1,
  MORE_TAGS_TOOLTIP = 2,
  MORE_TAGS_DESCRIPTION = 3,
  MORE_TAGS_MAX = 4
};

/// Attributes that matter, indices of `Attributes`.
enum attribute_names { ATTRIBUTE_NAME = 0, ATTRIBUTE_MAX = 1 };

ZRT4_EXPORT extern const char* const FeatureTags[FEATURE_TYPE_MAX];
ZRT4_EXPORT extern const char* const MoreTags[MORE_TAGS_MAX];
ZRT4_EXPORT extern const char* const Attributes[ATTRIBUTE_MAX];

/// One feature.
struct ZRT4_EXPORT ZRT4GigEFeature {
  ZRT4GigEFeature();
  ~ZRT4GigEFeature();

  int type;                 ///< a `feature_tags` value
  std::string name;         ///< from the "Name" attribute
  std::string extension;    ///< alternative control-system name, from "PvRename"
  std::string tooltip;      ///< from "ToolTip"
  std::string description;  ///< from "Description"
};

/// Reads the features of a camera file into `out`; docs/camera_features.md describes the elements.
/// Once the file is read, `out` is emptied without releasing the records that it holds: call
/// `zrt4_clean_gige_descr` before, or they are lost. The new records belong to the caller.
///
/// Returns false on success, also for a file that is not well formed, of which what stands before
/// the error counts, silently, and for an empty file, which has no features. Returns true, with
/// `out` as it was, when
/// - an argument is null (nothing is printed);
/// - the XML library cannot be set up ("Error during Xerces-c Initialization.  Exception message:
///   <reason>");
/// - the file cannot be opened or read, or its first line cannot be decoded ("An error occurred
///   during parsing  Message: <reason>");
/// - memory runs out while the file is parsed ("OutOfMemoryException", or "An error occurred during
///   parsing"), or the scanner fails otherwise ("DOM Error during parsing: '<name>' ...").
/// The lines go to standard output.
ZRT4_EXPORT bool zrt4_fill_gige_descr(char* file_name, std::vector<ZRT4GigEFeature*>* out);

/// Lists the features that have a name on standard output, numbered by their position from 0.
/// Nothing when `out` is null or empty; null entries are skipped.
ZRT4_EXPORT void zrt4_dump_gige_descr(std::vector<ZRT4GigEFeature*>* out);

/// Releases the records and empties `out`. Nothing when `out` is null or empty; null entries are
/// skipped.
ZRT4_EXPORT void zrt4_clean_gige_descr(std::vector<ZRT4GigEFeature*>* out);

/// Walks `nodes` and everything below them in document order and appends the features found to
/// `out`, whose records belong to the caller. The XML library has to be in use. Elements, "Name"
/// attributes and texts apply to the feature found last. Fields without a text are left "Unknown"
/// (never mentioned) or "Waiting" (mentioned, without a text). Returns false, also when an argument
/// is null; true when a DOM exception ended the walk of `nodes` themselves, with "Message is:
/// <text>" on standard output where the exception has a text. One further down ends the level that
/// it hits, prints the same, and the walk goes on.
ZRT4_EXPORT bool dump_nodes(xercesc::DOMNodeList* nodes, std::vector<ZRT4GigEFeature*>* out);

#endif
