#ifndef BITS_HH
#define BITS_HH

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "exit_code.hh"

/// `zrt4xml show --bits`: prints the word of the first channel with that DAQ name or property, with
/// its bits, and what `value` says, if there is one.
exit_code show_bits(const std::vector<std::string>& files, const std::string& name,
                    std::optional<std::uint32_t> value);

/// A value of 32 bits: "43", "-1", "0x2B" or "0b101011".
std::optional<std::uint32_t> word_of(const std::string& text);

#endif
