#include "Spoiling.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

#include "MomentBeyond.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

// No form takes more; a type that allows it is not too narrow for any answer.
constexpr std::size_t kLongest = 100'000;
constexpr std::size_t kLong = 10'000;  // where no rule tells a length
constexpr std::string_view kOfNoKind = "~";
constexpr std::string_view kNoSuchDay = "31.02.2025";

class Spoilings {
 public:
  void add(SpoilingKind kind, std::string strValue) {
    const bool blnKnown = std::ranges::any_of(
        list_, [&](const Spoiling& known) { return known.strValue == strValue; });
    if (!blnKnown) list_.push_back({kind, std::move(strValue)});
  }
  std::vector<Spoiling> take() { return std::move(list_); }

 private:
  std::vector<Spoiling> list_;
};

bool isNumber(const ValueRules& rules) {
  return rules.strPrimitive == "decimal" || rules.strPrimitive == "float" ||
         rules.strPrimitive == "double";
}

/// A number further from zero than `strBound`, or across it: never one that the bound allows.
std::optional<std::string> beyond(std::string_view strBound, bool blnUpper) {
  const bool blnNegative = strBound.starts_with('-');
  if (blnNegative || strBound.starts_with('+')) strBound.remove_prefix(1);
  if (strBound.empty() || strBound.front() < '0' || strBound.front() > '9') return std::nullopt;
  // A digit before the others makes any number larger.
  if (blnUpper) return blnNegative ? "1" : "1" + std::string(strBound);
  return blnNegative ? "-1" + std::string(strBound) : "-1";
}

void addLengths(const ValueRules& rules, Spoilings& list) {
  const std::optional<std::size_t> lngMax = rules.maxLength();
  const std::optional<std::size_t> lngMin = rules.minLength();
  if (lngMax && *lngMax < kLongest) list.add(SpoilingKind::tooLong, std::string(*lngMax + 1, 'x'));
  if (lngMin && *lngMin > 1 && *lngMin <= kLongest) {
    list.add(SpoilingKind::tooShort, std::string(*lngMin - 1, 'x'));
  }
}

void addKinds(const ValueRules& rules, Spoilings& list) {
  const bool blnText = rules.variety == ValueRules::Variety::atomic &&
                       (rules.strPrimitive == "string" || rules.strPrimitive == "anyURI");
  if (!rules.enumeration.empty()) {
    std::string strCode = "no-such-code";
    while (std::ranges::find(rules.enumeration, strCode) != rules.enumeration.end()) strCode += 'x';
    list.add(SpoilingKind::noSuchCode, std::move(strCode));
  } else if (!blnText || !rules.patterns.empty()) {
    list.add(SpoilingKind::wrongKind, std::string(kOfNoKind));
  }
  // Texts that look much like a value: conversions let them pass, or do not.
  if (rules.strPrimitive == "date" || rules.strPrimitive == "dateTime") {
    list.add(SpoilingKind::wrongKind, std::string(kNoSuchDay));
  }
  if (isNumber(rules)) list.add(SpoilingKind::wrongKind, "1x");
}

void addBounds(const ValueRules& rules, Spoilings& list) {
  for (const char* const name : {"minExclusive", "maxExclusive"}) {
    if (const auto bound = rules.facet(name)) {
      list.add(SpoilingKind::outOfBounds, std::string(*bound));
    }
  }
  for (const auto& [name, blnUpper] : {std::pair{"minInclusive", false},
                                       {"minExclusive", false},
                                       {"maxInclusive", true},
                                       {"maxExclusive", true}}) {
    const auto bound = rules.facet(name);
    if (!bound) continue;
    std::optional<std::string> strBeyond = isNumber(rules)
                                               ? beyond(*bound, blnUpper)
                                               : momentBeyond(rules.strPrimitive, *bound, blnUpper);
    if (strBeyond) list.add(SpoilingKind::outOfBounds, std::move(*strBeyond));
  }
  if (!isNumber(rules)) return;
  // No type of a message counts more digits than this many.
  constexpr std::string_view kDigits = "1111111111111111111111111";
  for (const auto& [name, strBefore] : {std::pair{"fractionDigits", "1."}, {"totalDigits", ""}}) {
    const auto digits = rules.facet(name);
    if (!digits || digits->empty() || digits->size() > 2 ||
        digits->find_first_not_of("0123456789") != digits->npos) {
      continue;
    }
    const std::size_t lngDigits = std::stoul(std::string(*digits)) + 1;
    if (lngDigits <= kDigits.size()) {
      list.add(SpoilingKind::outOfBounds, strBefore + std::string(kDigits.substr(0, lngDigits)));
    }
  }
}

}  // namespace

std::string_view spoilingName(SpoilingKind kind) noexcept {
  constexpr std::array<std::string_view, 6> kNames = {
      "empty", "too-long", "too-short", "wrong-kind", "no-such-code", "out-of-bounds"};
  return kNames[static_cast<std::size_t>(kind)];
}

std::vector<Spoiling> spoilings(const std::vector<ValueRules>& rulesOfPlaces) {
  Spoilings list;
  list.add(SpoilingKind::empty, "");
  for (const ValueRules& rules : rulesOfPlaces) {
    addLengths(rules, list);
    addKinds(rules, list);
    addBounds(rules, list);
  }
  if (rulesOfPlaces.empty()) {
    list.add(SpoilingKind::tooLong, std::string(kLong, 'x'));
    list.add(SpoilingKind::wrongKind, std::string(kOfNoKind));
  }
  return list.take();
}
