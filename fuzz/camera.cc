#include "fuzz.hh"
#include "zrt4_gige_descr.hh"

const unsigned fuzz::ways = 1;

void fuzz::read(const std::string& input, unsigned /*way*/) {
  std::vector<ZRT4GigEFeature*> features;
  zrt4_fill_gige_descr(file_of(input), &features);
  zrt4_dump_gige_descr(&features);
  zrt4_clean_gige_descr(&features);
}
