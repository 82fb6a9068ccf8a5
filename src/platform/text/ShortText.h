#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

// Copies, comparisons and hashes of texts that are a few bytes long, as names and answers are,
// without a call for them: the first and the last bytes of a piece are taken as one word each,
// which may overlap.

namespace Varnel_Tolv_XML_Creation {

/// A word with this byte everywhere, times it.
inline constexpr std::uint64_t kEveryByte = 0x0101010101010101;

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

/// Whether `test` accepts each of some words that together have the bytes of a text and no others.
template <class Test>
bool everyWord(std::string_view strText, const Test& test) {
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  constexpr std::size_t kHalf = sizeof(std::uint32_t);
  const char* const bytes = strText.data();
  const std::size_t lngSize = strText.size();
  if (lngSize >= kWord) {
    for (std::size_t at = 0; at + kWord < lngSize; at += kWord) {
      if (!test(wordAt<std::uint64_t>(bytes + at))) return false;
    }
    return test(wordAt<std::uint64_t>(bytes + lngSize - kWord));
  }
  if (lngSize >= kHalf) {
    const std::uint64_t lngFirst = wordAt<std::uint32_t>(bytes);
    return test(lngFirst << 32U | wordAt<std::uint32_t>(bytes + lngSize - kHalf));
  }
  if (lngSize == 0) return true;
  std::uint64_t lngWord = kEveryByte * static_cast<unsigned char>(*bytes);
  for (std::size_t at = 1; at < lngSize; ++at) {
    lngWord = lngWord << 8U | static_cast<unsigned char>(bytes[at]);
  }
  return test(lngWord);
}

inline constexpr std::uint64_t kHashFactor = 0x9E3779B97F4A7C15;

/// The same for texts that are the same.
inline std::uint64_t hashOf(std::string_view strText) noexcept {
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  const char* const bytes = strText.data();
  const std::size_t lngSize = strText.size();
  std::uint64_t lngHash = lngSize * kHashFactor;
  const auto mix = [&](std::uint64_t lngWord) {
    lngHash = (lngHash ^ lngWord) * kHashFactor;
    lngHash ^= lngHash >> 32U;
  };
  if (lngSize >= kWord) {
    for (std::size_t at = 0; at + kWord < lngSize; at += kWord)
      mix(wordAt<std::uint64_t>(bytes + at));
    mix(wordAt<std::uint64_t>(bytes + lngSize - kWord));
  } else if (lngSize >= sizeof(std::uint32_t)) {
    const auto lngLast = wordAt<std::uint32_t>(bytes + lngSize - sizeof(std::uint32_t));
    mix(std::uint64_t{wordAt<std::uint32_t>(bytes)} << 32U | lngLast);
  } else {
    std::uint64_t lngWord = 0;
    for (const char byte : strText) lngWord = lngWord << 8U | static_cast<unsigned char>(byte);
    mix(lngWord);
  }
  return lngHash;
}

}  // namespace Varnel_Tolv_XML_Creation
