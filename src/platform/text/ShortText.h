#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Copies and comparisons of texts that are a few bytes long, as names and answers are, without a
// call for them: the first and the last bytes of a piece are taken as one word each, which may
// overlap.

namespace Varnel_Tolv_XML_Creation {

template <class Word>
Word wordAt(const char* bytes) noexcept {
  Word word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

/// As memcpy.
inline void copyBytes(char* out, const char* in, std::size_t lngBytes) noexcept {
  const auto copyEnds = [=](auto first) {
    const auto last = wordAt<decltype(first)>(in + lngBytes - sizeof first);
    first = wordAt<decltype(first)>(in);
    std::memcpy(out, &first, sizeof first);
    std::memcpy(out + lngBytes - sizeof first, &last, sizeof last);
  };
  if (lngBytes > 2 * sizeof(std::uint64_t)) {
    std::memcpy(out, in, lngBytes);
  } else if (lngBytes >= sizeof(std::uint64_t)) {
    copyEnds(std::uint64_t{});
  } else if (lngBytes >= sizeof(std::uint32_t)) {
    copyEnds(std::uint32_t{});
  } else {
    for (std::size_t at = 0; at < lngBytes; ++at) out[at] = in[at];
  }
}

/// Whether two texts are the same.
inline bool isSame(std::string_view strText, std::string_view strOther) noexcept {
  const std::size_t lngBytes = strText.size();
  if (lngBytes != strOther.size()) return false;
  const auto sameEnds = [=](auto word) {
    using Word = decltype(word);
    const std::size_t lngLast = lngBytes - sizeof word;
    return wordAt<Word>(strText.data()) == wordAt<Word>(strOther.data()) &&
           wordAt<Word>(strText.data() + lngLast) == wordAt<Word>(strOther.data() + lngLast);
  };
  if (lngBytes > 2 * sizeof(std::uint64_t)) return strText == strOther;
  if (lngBytes >= sizeof(std::uint64_t)) return sameEnds(std::uint64_t{});
  if (lngBytes >= sizeof(std::uint32_t)) return sameEnds(std::uint32_t{});
  for (std::size_t at = 0; at < lngBytes; ++at) {
    if (strText[at] != strOther[at]) return false;
  }
  return true;
}

}  // namespace Varnel_Tolv_XML_Creation
