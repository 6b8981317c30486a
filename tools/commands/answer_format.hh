#ifndef ANSWER_FORMAT_HH
#define ANSWER_FORMAT_HH

/// How a subcommand that answers a question prints the answer.
enum class answer_format { text, json, nothing };

#endif
