#ifndef ROW_JSON_HH
#define ROW_JSON_HH

// Records as JSON.

#include "json.hh"
#include "rows.hh"

/// A row of one value without groups is that value.
json to_json(const row& record);
json to_json(const cell& value);
/// What stands beside the value under its name and "_name": the name of a number, or of a threshold
/// that JSON has no number for. Empty when nothing does.
std::string name_beside(const row::field& field);

#endif
