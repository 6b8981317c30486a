#ifndef ROW_JSON_HH
#define ROW_JSON_HH

// Records as JSON.

#include "json.hh"
#include "rows.hh"

/// A row of one value without groups is that value.
json to_json(const row& record);
json to_json(const cell& value);

#endif
