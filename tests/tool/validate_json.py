"""Says whether standard input is a JSON document that a schema describes.

validate_json.py SCHEMA [DEFINITION]
"""

import json
import sys

import jsonschema

with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
jsonschema.Draft7Validator.check_schema(schema)
if len(sys.argv) > 2:
    schema = {"$ref": "#/definitions/" + sys.argv[2], "definitions": schema["definitions"]}
document = json.loads(sys.stdin.buffer.read().decode("utf-8", errors="strict"))
errors = list(jsonschema.Draft7Validator(schema).iter_errors(document))
for error in errors:
    print("/".join(map(str, error.absolute_path)), error.message, file=sys.stderr)
print("invalid" if errors else "valid")
sys.exit(1 if errors else 0)
