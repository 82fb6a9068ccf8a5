#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// The forms of XML Schema's types that are not decimals or times. Texts come with their white space
// normalised.

namespace Varnel_Tolv_XML_Creation {

/// What is done to white space in a text; each does what the one before it does.
enum class WhiteSpace : unsigned char { preserve, replace, collapse };

/// The types that all others derive from, by their values. Those of dates and times stand together.
enum class Primitive : unsigned char {
  string,
  boolean,
  decimal,
  floating,
  doubled,
  duration,
  dateTime,
  time,
  date,
  gYearMonth,
  gYear,
  gMonthDay,
  gDay,
  gMonth,
  hexBinary,
  base64Binary,
  anyURI,
  qName,
  notation,
};

/// A text after white-space normalisation. Copies only a text that normalisation changes inside.
class Normalised {
 public:
  Normalised(std::string_view strText, WhiteSpace whiteSpace);
  Normalised(const Normalised&) = delete;
  Normalised& operator=(const Normalised&) = delete;

  std::string_view text() const noexcept { return strView_; }

 private:
  std::string strChanged_;
  std::string_view strView_;
};

/// Takes the next item off the front of the text of a list; an empty one at its end.
std::string_view takeItem(std::string_view& strList) noexcept;

/// A text as the description of an error shows it: one line that is not too long.
std::string shown(std::string_view strText);

bool isName(std::string_view strText);  // the names of XML 1.0, colons included
bool isNmtoken(std::string_view strText);
bool isLanguage(std::string_view strText) noexcept;

/// Whether a text is a reference to a resource, or will be one once the characters that may not
/// stand in one are escaped: of those XML Schema leaves out none.
bool isAnyUri(std::string_view strText) noexcept;

/// The octets that a text stands for, in number; nothing when it has not the form.
std::optional<std::size_t> hexOctets(std::string_view strText) noexcept;
std::optional<std::size_t> base64Octets(std::string_view strText) noexcept;

/// The number that a text stands for as a float (rounded to one) or a double.
std::optional<double> parseFloat(std::string_view strText) noexcept;
std::optional<double> parseDouble(std::string_view strText) noexcept;

}  // namespace Varnel_Tolv_XML_Creation
