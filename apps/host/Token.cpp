#include "host/Token.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/hmac.h>
#include <sys/random.h>

#include <array>
#include <charconv>
#include <span>
#include <stdexcept>

namespace {

constexpr std::int64_t kLifetime = std::int64_t{24} * 3600 * 1000;

std::string hexadecimal(std::span<const unsigned char> bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string strText;
  for (const unsigned char byte : bytes) {
    strText += kDigits[byte >> 4];
    strText += kDigits[byte & 15];
  }
  return strText;
}

std::string signature(std::string_view strKey, std::string_view strMoment,
                      std::string_view strSubject) {
  const std::string strText = std::string(strMoment) + ' ' + std::string(strSubject);
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned int lngSize = 0;
  if (::HMAC(::EVP_sha256(), strKey.data(), static_cast<int>(strKey.size()),
             reinterpret_cast<const unsigned char*>(strText.data()), strText.size(), digest.data(),
             &lngSize) == nullptr) {
    throw std::runtime_error("HMAC");
  }
  return hexadecimal({digest.data(), lngSize});
}

}  // namespace

std::string randomId() {
  std::array<unsigned char, 16> bytes{};
  if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
    throw std::runtime_error("getrandom");
  }
  return hexadecimal(bytes);
}

bool isId(std::string_view strText) {
  return strText.size() == 32 &&
         strText.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

std::string digestOf(std::string_view strId) {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned int lngSize = 0;
  if (::EVP_Digest(strId.data(), strId.size(), digest.data(), &lngSize, ::EVP_sha256(), nullptr) !=
      1) {
    throw std::runtime_error("EVP_Digest");
  }
  return hexadecimal(std::span(digest).first(8));
}

std::string makeToken(std::string_view strKey, std::string_view strSubject, std::int64_t lngNow) {
  const std::string strMoment = std::to_string(lngNow);
  return strMoment + '.' + signature(strKey, strMoment, strSubject);
}

TokenState checkToken(std::string_view strKey, std::string_view strSubject,
                      std::string_view strToken, std::int64_t lngNow) {
  const std::size_t lngDot = strToken.find('.');
  if (lngDot == std::string_view::npos) return TokenState::forged;
  const std::string_view strMoment = strToken.substr(0, lngDot);
  const std::string_view strGiven = strToken.substr(lngDot + 1);
  const std::string strExpected = signature(strKey, strMoment, strSubject);
  if (strGiven.size() != strExpected.size() ||
      ::CRYPTO_memcmp(strGiven.data(), strExpected.data(), strExpected.size()) != 0) {
    return TokenState::forged;
  }
  std::int64_t lngMoment = 0;
  std::from_chars(strMoment.data(), strMoment.data() + strMoment.size(), lngMoment);
  return lngNow - lngMoment > kLifetime ? TokenState::stale : TokenState::good;
}
