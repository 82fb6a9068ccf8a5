#include "platform/schema/value/AtomicType.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <variant>

#include "platform/schema/value/Moment.h"
#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

/// No message that is read here declares unparsed entities, and nothing else is an entity's name.
bool isEntity(std::string_view /*strText*/) noexcept { return false; }

constexpr AtomicType primitive(std::string_view strName, Primitive primitive) {
  return {.strName = strName, .strBase = "anySimpleType", .primitive = primitive};
}

constexpr AtomicType text(std::string_view strName, std::string_view strBase, WhiteSpace whiteSpace,
                          bool (*hasForm)(std::string_view) = nullptr,
                          IdentifierKind identifier = IdentifierKind::none) {
  return {.strName = strName,
          .strBase = strBase,
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

constexpr AtomicType integer(std::string_view strName, std::string_view strBase,
                             std::string_view strLeast = "", std::string_view strMost = "") {
  return {.strName = strName,
          .strBase = strBase,
          .primitive = Primitive::decimal,
          .blnInteger = true,
          .least = bound(strLeast),
          .most = bound(strMost)};
}

constexpr std::array kTypes = {
    text("anySimpleType", "anyType", WhiteSpace::preserve),
    text("string", "anySimpleType", WhiteSpace::preserve),
    primitive("boolean", Primitive::boolean),
    primitive("decimal", Primitive::decimal),
    primitive("float", Primitive::floating),
    primitive("double", Primitive::doubled),
    primitive("duration", Primitive::duration),
    primitive("dateTime", Primitive::dateTime),
    primitive("time", Primitive::time),
    primitive("date", Primitive::date),
    primitive("gYearMonth", Primitive::gYearMonth),
    primitive("gYear", Primitive::gYear),
    primitive("gMonthDay", Primitive::gMonthDay),
    primitive("gDay", Primitive::gDay),
    primitive("gMonth", Primitive::gMonth),
    primitive("hexBinary", Primitive::hexBinary),
    primitive("base64Binary", Primitive::base64Binary),
    primitive("anyURI", Primitive::anyURI),
    primitive("QName", Primitive::qName),
    primitive("NOTATION", Primitive::notation),
    text("normalizedString", "string", WhiteSpace::replace),
    text("token", "normalizedString", WhiteSpace::collapse),
    text("language", "token", WhiteSpace::collapse, isLanguage),
    text("NMTOKEN", "token", WhiteSpace::collapse, isNmtoken),
    text("Name", "token", WhiteSpace::collapse, isName),
    text("NCName", "Name", WhiteSpace::collapse, isNCName),
    text("ID", "NCName", WhiteSpace::collapse, isNCName, IdentifierKind::id),
    text("IDREF", "NCName", WhiteSpace::collapse, isNCName, IdentifierKind::reference),
    text("ENTITY", "NCName", WhiteSpace::collapse, isEntity),
    integer("integer", "decimal"),
    integer("nonPositiveInteger", "integer", "", "0"),
    integer("negativeInteger", "nonPositiveInteger", "", "-1"),
    integer("long", "integer", "-9223372036854775808", "9223372036854775807"),
    integer("int", "long", "-2147483648", "2147483647"),
    integer("short", "int", "-32768", "32767"),
    integer("byte", "short", "-128", "127"),
    integer("nonNegativeInteger", "integer", "0"),
    integer("unsignedLong", "nonNegativeInteger", "0", "18446744073709551615"),
    integer("unsignedInt", "unsignedLong", "0", "4294967295"),
    integer("unsignedShort", "unsignedInt", "0", "65535"),
    integer("unsignedByte", "unsignedShort", "0", "255"),
    integer("positiveInteger", "nonNegativeInteger", "1"),
};

std::string shortest(double number) {
  std::array<char, 32> text{};
  const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), number);
  return {text.data(), end};
}

/// A value of a type whose texts do not stand for themselves.
using Value = std::variant<bool, Decimal, double, Duration, Moment>;

std::optional<Value> parse(Primitive primitive, std::string_view strText) noexcept {
  switch (primitive) {
    case Primitive::boolean:
      if (strText == "true" || strText == "1") return true;
      if (strText == "false" || strText == "0") return false;
      return std::nullopt;
    case Primitive::decimal:
      return Decimal::parse(strText);
    case Primitive::floating:
      return parseFloat(strText);
    case Primitive::doubled:
      return parseDouble(strText);
    case Primitive::duration:
      return Duration::parse(strText);
    default:
      return Moment::parse(primitive, strText);
  }
}

/// The one text that all texts of a value share.
struct Canonical {
  std::string operator()(bool value) const { return value ? "1" : "0"; }
  std::string operator()(double value) const { return shortest(value); }
  std::string operator()(const auto& value) const { return value.canonical(); }
};

/// The namespace of a qualified name; none when its prefix stands for nothing.
std::optional<std::string_view> namespaceOf(std::string_view strName, const PrefixLookup& lookup) {
  const std::string_view strPrefix = prefixOf(strName);
  const std::optional<std::string_view> strUri = lookup ? lookup(strPrefix) : std::nullopt;
  if (!strUri && strPrefix.empty()) return std::string_view();
  return strUri;
}

}  // namespace

std::span<const AtomicType> AtomicType::all() noexcept { return kTypes; }

bool AtomicType::isValue(std::string_view strText, const PrefixLookup& lookup) const {
  switch (primitive) {
    case Primitive::string:
      return !hasForm || hasForm(strText);
    case Primitive::decimal: {
      if (blnInteger && strText.find('.') != std::string_view::npos) return false;
      const std::optional<Decimal> number = Decimal::parse(strText);
      return number && (!least || *number >= *least) && (!most || *number <= *most);
    }
    case Primitive::hexBinary:
      return hexOctets(strText).has_value();
    case Primitive::base64Binary:
      return base64Octets(strText).has_value();
    case Primitive::anyURI:
      return isAnyUri(strText);
    case Primitive::qName:
    case Primitive::notation:
      return isQualifiedName(strText) && namespaceOf(strText, lookup).has_value();
    default:
      return parse(primitive, strText).has_value();
  }
}

std::string atomicKey(Primitive primitive, std::string_view strText, const PrefixLookup& lookup) {
  std::string strKey(1, static_cast<char>('a' + static_cast<int>(primitive)));
  switch (primitive) {
    case Primitive::string:
    case Primitive::anyURI:
      return strKey.append(strText);
    case Primitive::hexBinary:
      if (!hexOctets(strText)) break;
      strKey += strText;
      for (char& digit : strKey)
        digit = digit >= 'A' && digit <= 'F' ? static_cast<char>(digit + 32) : digit;
      return strKey;
    case Primitive::base64Binary:
      if (!base64Octets(strText)) break;
      strKey += strText;
      std::erase(strKey, ' ');
      return strKey;
    case Primitive::qName:
    case Primitive::notation: {
      const auto strUri = namespaceOf(strText, lookup);
      if (!strUri || !isQualifiedName(strText)) break;
      return strKey.append("{").append(*strUri).append("}").append(withoutPrefix(strText));
    }
    default:
      if (const std::optional<Value> value = parse(primitive, strText)) {
        return strKey + std::visit(Canonical(), *value);
      }
  }
  return strKey.append("?").append(strText);
}

std::partial_ordering compareValues(Primitive primitive, std::string_view strLeft,
                                    std::string_view strRight) {
  const std::optional<Value> left = parse(primitive, strLeft);
  const std::optional<Value> right = parse(primitive, strRight);
  if (!left || !right) return std::partial_ordering::unordered;
  // No number is equal to itself here, where it is to the processor.
  const auto isNoNumber = [](const Value& value) {
    const double* number = std::get_if<double>(&value);
    return number && std::isnan(*number);
  };
  if (isNoNumber(*left) && isNoNumber(*right)) return std::partial_ordering::equivalent;
  return *left <=> *right;
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
