#include "platform/schema/value/AtomicType.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "platform/schema/value/Moment.h"
#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// No message that is read here declares unparsed entities, and nothing else is an entity's name.
bool isEntity(std::string_view /*strText*/) noexcept { return false; }

constexpr AtomicType text(std::string_view strName, WhiteSpace whiteSpace,
                          bool (*hasForm)(std::string_view),
                          IdentifierKind identifier = IdentifierKind::none) {
  return {.strName = strName,
          .primitive = Primitive::string,
          .whiteSpace = whiteSpace,
          .identifier = identifier,
          .hasForm = hasForm};
}

constexpr std::optional<Decimal> bound(std::string_view strNumber) {
  if (strNumber.empty()) return std::nullopt;
  if (strNumber == "0") return Decimal{};
  const bool blnNegative = strNumber[0] == '-';
  return Decimal{blnNegative, strNumber.substr(blnNegative ? 1 : 0), {}};
}

constexpr AtomicType integer(std::string_view strName, std::string_view strLeast,
                             std::string_view strMost) {
  return {.strName = strName,
          .primitive = Primitive::decimal,
          .blnInteger = true,
          .least = bound(strLeast),
          .most = bound(strMost)};
}

constexpr std::array kTypes = {
    text("anySimpleType", WhiteSpace::preserve, nullptr),
    text("string", WhiteSpace::preserve, nullptr),
    AtomicType{"boolean", Primitive::boolean},
    AtomicType{"decimal", Primitive::decimal},
    AtomicType{"float", Primitive::floating},
    AtomicType{"double", Primitive::doubled},
    AtomicType{"duration", Primitive::duration},
    AtomicType{"dateTime", Primitive::dateTime},
    AtomicType{"time", Primitive::time},
    AtomicType{"date", Primitive::date},
    AtomicType{"gYearMonth", Primitive::gYearMonth},
    AtomicType{"gYear", Primitive::gYear},
    AtomicType{"gMonthDay", Primitive::gMonthDay},
    AtomicType{"gDay", Primitive::gDay},
    AtomicType{"gMonth", Primitive::gMonth},
    AtomicType{"hexBinary", Primitive::hexBinary},
    AtomicType{"base64Binary", Primitive::base64Binary},
    AtomicType{"anyURI", Primitive::anyURI},
    AtomicType{"QName", Primitive::qName},
    AtomicType{"NOTATION", Primitive::notation},
    text("normalizedString", WhiteSpace::replace, nullptr),
    text("token", WhiteSpace::collapse, nullptr),
    text("language", WhiteSpace::collapse, isLanguage),
    text("NMTOKEN", WhiteSpace::collapse, isNmtoken),
    text("Name", WhiteSpace::collapse, isName),
    text("NCName", WhiteSpace::collapse, isNCName),
    text("ID", WhiteSpace::collapse, isNCName, IdentifierKind::id),
    text("IDREF", WhiteSpace::collapse, isNCName, IdentifierKind::reference),
    text("ENTITY", WhiteSpace::collapse, isEntity),
    integer("integer", "", ""),
    integer("nonPositiveInteger", "", "0"),
    integer("negativeInteger", "", "-1"),
    integer("long", "-9223372036854775808", "9223372036854775807"),
    integer("int", "-2147483648", "2147483647"),
    integer("short", "-32768", "32767"),
    integer("byte", "-128", "127"),
    integer("nonNegativeInteger", "0", ""),
    integer("unsignedLong", "0", "18446744073709551615"),
    integer("unsignedInt", "0", "4294967295"),
    integer("unsignedShort", "0", "65535"),
    integer("unsignedByte", "0", "255"),
    integer("positiveInteger", "1", ""),
};

MomentKind momentKind(Primitive primitive) noexcept {
  // Both lists have the same order.
  return static_cast<MomentKind>(static_cast<int>(primitive) -
                                 static_cast<int>(Primitive::dateTime));
}

bool isMoment(Primitive primitive) noexcept {
  return primitive >= Primitive::dateTime && primitive <= Primitive::gMonth;
}

bool isBoolean(std::string_view strText) noexcept {
  return strText == "true" || strText == "false" || strText == "1" || strText == "0";
}

std::optional<double> parseFloating(Primitive primitive, std::string_view strText) noexcept {
  return primitive == Primitive::floating ? parseFloat(strText) : parseDouble(strText);
}

std::string shortest(double number) {
  std::array<char, 32> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number);
  return {text.data(), end};
}

/// The namespace of a qualified name; none when its prefix stands for nothing.
std::optional<std::string_view> namespaceOf(std::string_view strName, const PrefixLookup& lookup) {
  const std::string_view strPrefix = prefixOf(strName);
  const std::optional<std::string_view> strUri = lookup ? lookup(strPrefix) : std::nullopt;
  if (!strUri && strPrefix.empty()) return std::string_view();
  return strUri;
}

template <class Value>
std::partial_ordering order(const std::optional<Value>& left, const std::optional<Value>& right) {
  if (!left || !right) return std::partial_ordering::unordered;
  return *left <=> *right;
}

}  // namespace

std::span<const AtomicType> AtomicType::all() noexcept { return kTypes; }

bool AtomicType::isValue(std::string_view strText, const PrefixLookup& lookup) const {
  switch (primitive) {
    case Primitive::string:
      return !hasForm || hasForm(strText);
    case Primitive::boolean:
      return isBoolean(strText);
    case Primitive::decimal: {
      if (blnInteger && strText.find('.') != std::string_view::npos) return false;
      const std::optional<Decimal> number = Decimal::parse(strText);
      return number && (!least || *number >= *least) && (!most || *number <= *most);
    }
    case Primitive::floating:
    case Primitive::doubled:
      return parseFloating(primitive, strText).has_value();
    case Primitive::duration:
      return Duration::parse(strText).has_value();
    case Primitive::hexBinary:
      return hexOctets(strText).has_value();
    case Primitive::base64Binary:
      return base64Octets(strText).has_value();
    case Primitive::anyURI:
      return isAnyUri(strText);
    case Primitive::qName:
    case Primitive::notation:
      return isQName(strText) && namespaceOf(strText, lookup).has_value();
    default:
      return Moment::parse(momentKind(primitive), strText).has_value();
  }
}

bool AtomicType::allows(Facet facet) const noexcept {
  switch (facet) {
    case Facet::pattern:
    case Facet::whiteSpace:
    case Facet::enumeration:
      return true;
    case Facet::length:
    case Facet::minLength:
    case Facet::maxLength:
      return primitive == Primitive::string || primitive >= Primitive::hexBinary;
    case Facet::totalDigits:
    case Facet::fractionDigits:
      return primitive == Primitive::decimal;
    default:
      return primitive >= Primitive::decimal && primitive <= Primitive::gMonth;
  }
}

std::string atomicKey(Primitive primitive, std::string_view strText, const PrefixLookup& lookup) {
  std::string strKey(1, static_cast<char>('a' + static_cast<int>(primitive)));
  if (primitive == Primitive::boolean && isBoolean(strText)) {
    return strKey + (strText == "true" || strText == "1" ? "1" : "0");
  }
  if (primitive == Primitive::decimal) {
    if (const auto number = Decimal::parse(strText)) return strKey + number->canonical();
  }
  if (primitive == Primitive::floating || primitive == Primitive::doubled) {
    if (const auto number = parseFloating(primitive, strText)) return strKey + shortest(*number);
  }
  if (primitive == Primitive::duration) {
    if (const auto duration = Duration::parse(strText)) return strKey + duration->canonical();
  }
  if (isMoment(primitive)) {
    if (const auto moment = Moment::parse(momentKind(primitive), strText)) {
      return strKey + moment->canonical();
    }
  }
  if (primitive == Primitive::hexBinary && hexOctets(strText)) {
    strKey += strText;
    for (char& digit : strKey)
      digit = digit >= 'A' && digit <= 'F' ? static_cast<char>(digit + 32) : digit;
    return strKey;
  }
  if (primitive == Primitive::base64Binary && base64Octets(strText)) {
    strKey += strText;
    std::erase(strKey, ' ');
    return strKey;
  }
  if ((primitive == Primitive::qName || primitive == Primitive::notation) && isQName(strText)) {
    if (const auto strUri = namespaceOf(strText, lookup)) {
      return strKey.append("{").append(*strUri).append("}").append(withoutPrefix(strText));
    }
  }
  const bool blnAny = primitive == Primitive::string || primitive == Primitive::anyURI;
  return strKey.append(blnAny ? "" : "?").append(strText);
}

std::partial_ordering compareValues(Primitive primitive, std::string_view strLeft,
                                    std::string_view strRight) {
  switch (primitive) {
    case Primitive::decimal:
      return order(Decimal::parse(strLeft), Decimal::parse(strRight));
    case Primitive::floating:
    case Primitive::doubled: {
      const std::optional<double> left = parseFloating(primitive, strLeft);
      const std::optional<double> right = parseFloating(primitive, strRight);
      // No number is equal to itself here, where it is to the processor.
      if (left && right && std::isnan(*left) && std::isnan(*right)) {
        return std::partial_ordering::equivalent;
      }
      return order(left, right);
    }
    case Primitive::duration:
      return order(Duration::parse(strLeft), Duration::parse(strRight));
    default:
      return order(Moment::parse(momentKind(primitive), strLeft),
                   Moment::parse(momentKind(primitive), strRight));
  }
}

std::optional<std::size_t> lengthOf(Primitive primitive, std::string_view strText) {
  switch (primitive) {
    case Primitive::hexBinary:
      return hexOctets(strText);
    case Primitive::base64Binary:
      return base64Octets(strText);
    case Primitive::qName:
    case Primitive::notation:
      return std::nullopt;
    default:
      // Every character has one byte that does not continue another.
      return static_cast<std::size_t>(std::count_if(
          strText.begin(), strText.end(), [](char byte) { return (byte & 0xC0) != 0x80; }));
  }
}

}  // namespace Varnel_Tolv_XML_Creation
