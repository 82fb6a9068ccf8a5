#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// 128 random bits as 32 hexadecimal digits.
std::string randomId();

/// Whether the text could be one of them.
bool isId(std::string_view strText);

/// What tells an id in the log, where nobody can open a form with it: the first 16 digits of its
/// SHA-256.
std::string digestOf(std::string_view strId);

enum class TokenState { good, stale, forged };

/// Proof that a page came from a host which knows the key, and for which address; it is good for a
/// day. `lngNow` counts milliseconds.
std::string makeToken(std::string_view strKey, std::string_view strSubject, std::int64_t lngNow);
TokenState checkToken(std::string_view strKey, std::string_view strSubject,
                      std::string_view strToken, std::int64_t lngNow);
