#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "varnel_xml_creation/platform/schema/DeclaredElement.h"

/// In which way an answer is made wrong.
enum class SpoilingKind : std::uint8_t {
  empty,
  tooLong,
  tooShort,
  wrongKind,
  noSuchCode,
  outOfBounds,
};

/// "empty", "too-long", "too-short", "wrong-kind", "no-such-code", "out-of-bounds".
std::string_view spoilingName(SpoilingKind kind) noexcept;

struct Spoiling {
  SpoilingKind kind{};
  std::string strValue;
};

/// Answers that a type most likely refuses, each once: the empty one first, then what the rules of
/// each place forbid. Where there are no rules, as the answer has no place of its own or stands in
/// a larger text, a very long one and one of no kind. What becomes of an answer on its way into the
/// message is not known here: only the schema can say that one is wrong.
std::vector<Spoiling> spoilings(
    const std::vector<Varnel_Tolv_XML_Creation::ValueRules>& rulesOfPlaces);
