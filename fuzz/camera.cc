#include "fuzz.hh"
#include "zrt4_gige_descr.hh"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::set_up();
  fuzz::input_file file(data, size);
  std::vector<ZRT4GigEFeature*> features;
  zrt4_fill_gige_descr(file.name(), &features);
  zrt4_dump_gige_descr(&features);
  zrt4_clean_gige_descr(&features);
  return 0;
}
