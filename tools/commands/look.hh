#ifndef LOOK_HH
#define LOOK_HH

/// How a subcommand that answers a question prints the answer.
enum class look { text, json, nothing };

#endif
