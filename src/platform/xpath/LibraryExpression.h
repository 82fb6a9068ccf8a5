#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// How an expression is written for libxml2, which bounds neither its stack nor the work of its
// operators. The operators that look at texts or at many nodes become calls of functions that count
// what they do (LibraryFunctions.h): `a = b` is written `varnel-equal(a,b)`.

namespace Varnel_Tolv_XML_Creation {

/// The names of the functions that stand for operators. No expression may call them itself.
inline constexpr std::string_view kReservedFunctions = "varnel-";

struct LibraryExpression {
  std::string strText;

  /// How deep the library nests calls to compile and evaluate it, in frames of at most 200 bytes.
  std::size_t lngDepth = 0;

  /// Whether a step may come to one node from several: the library then compares each node that it
  /// finds with all that it has.
  bool blnMeets = false;
};

/// What can be written without overflowing a stack of 256 KiB: a thousand operators or steps in one
/// another's operands, or some three hundred brackets.
inline constexpr std::size_t kMaxLibraryDepth = 1000;

/// An expression for the library. None for one that is certainly malformed; the library tells what
/// is wrong with it, and with what seems well-formed here and is not.
std::optional<LibraryExpression> writeForLibrary(std::string_view strXPath);

/// `lngDepth` of an expression as it stands, malformed ones included.
std::size_t libraryDepth(std::string_view strXPath);

}  // namespace Varnel_Tolv_XML_Creation
