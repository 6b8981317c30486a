#include "packing.hh"

#include <zlib.h>

#include <new>
#include <stdexcept>

namespace {

std::string deflated(std::string_view bytes) {
  std::string to(compressBound(bytes.size()), '\0');
  uLongf size = to.size();
  const int result =
      compress2(reinterpret_cast<Bytef*>(to.data()), &size,
                reinterpret_cast<const Bytef*>(bytes.data()), bytes.size(), Z_DEFAULT_COMPRESSION);
  if (result == Z_MEM_ERROR) throw std::bad_alloc();
  if (result != Z_OK) throw std::runtime_error("cannot be compressed");
  to.resize(size);
  return to;
}

std::string base64(std::string_view bytes) {
  constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  const auto byte = [&](std::size_t place) -> unsigned {
    return place < bytes.size() ? static_cast<unsigned char>(bytes[place]) : 0U;
  };
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    const unsigned group = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
    text += digits[group >> 18];
    text += digits[group >> 12 & 63U];
    text += i + 1 < bytes.size() ? digits[group >> 6 & 63U] : '=';
    text += i + 2 < bytes.size() ? digits[group & 63U] : '=';
  }
  return text;
}

}  // namespace

std::string packed(std::string_view bytes) {
  return base64(deflated(bytes));
}
