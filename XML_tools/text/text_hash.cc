#include "text_hash.hh"

#include <sys/auxv.h>

namespace zrt4::detail {

text_hash::text_hash() {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): that is how the kernel's addresses arrive
  const void* random = reinterpret_cast<const void*>(getauxval(AT_RANDOM));
  if (random != nullptr) std::memcpy(key, random, sizeof key);
}

}  // namespace zrt4::detail
