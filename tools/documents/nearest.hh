#ifndef NEAREST_HH
#define NEAREST_HH

#include <string>
#include <string_view>
#include <vector>

/// The one of `known` that a person most likely meant by `given`: one of few other letters, or in
/// another case. Empty when none is near.
std::string_view nearest(std::string_view given, const std::vector<std::string_view>& known);

/// "; did you mean 'bits'?", or nothing when none is near.
std::string did_you_mean(std::string_view given, const std::vector<std::string_view>& known);

/// The same, or when none is near all of them behind `introduction`: "; there are bits, name".
std::string did_you_mean_or_all(std::string_view given, const std::vector<std::string_view>& known,
                                std::string_view introduction);

#endif
