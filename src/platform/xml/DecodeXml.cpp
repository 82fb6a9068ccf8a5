#include "platform/xml/DecodeXml.h"

#include <iconv.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <new>

#include "platform/text/Text.h"
#include "platform/xml/XmlCharacters.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

using namespace std::string_view_literals;

constexpr const char* kUtf8 = "utf-8";
constexpr const char* kUtf16Le = "utf-16le";
constexpr const char* kUtf16Be = "utf-16be";

/// How an input begins, and what that tells.
struct Beginning {
  std::string_view strBytes;
  std::size_t lngMark;   // bytes to be left out
  const char* encoding;  // null: none that is taken
};

// The longer ones first.
constexpr auto kBeginnings = std::to_array<Beginning>({
    {"\x00\x00\xfe\xff"sv, 0, nullptr},
    {"\xff\xfe\x00\x00"sv, 0, nullptr},
    {"\x00\x00\x00<"sv, 0, nullptr},
    {"<\x00\x00\x00"sv, 0, nullptr},
    {"\x4c\x6f\xa7\x94"sv, 0, nullptr},  // "<?xml" in EBCDIC
    {"\xef\xbb\xbf"sv, 3, kUtf8},
    {"\xfe\xff"sv, 2, kUtf16Be},
    {"\xff\xfe"sv, 2, kUtf16Le},
    {"\x00<"sv, 0, kUtf16Be},
    {"<\x00"sv, 0, kUtf16Le},
});

// In all of these a byte below 128 is the character of ASCII.
constexpr auto kNamed = std::to_array<std::string_view>(
    {"us-ascii",     "iso-8859-1",   "iso-8859-2",   "iso-8859-3",   "iso-8859-4",
     "iso-8859-5",   "iso-8859-6",   "iso-8859-7",   "iso-8859-8",   "iso-8859-9",
     "iso-8859-10",  "iso-8859-11",  "iso-8859-13",  "iso-8859-14",  "iso-8859-15",
     "iso-8859-16",  "windows-1250", "windows-1251", "windows-1252", "windows-1253",
     "windows-1254", "windows-1255", "windows-1256", "windows-1257", "windows-1258"});

ParseError refused(const std::string& strReason) {
  return {XML_ERR_UNSUPPORTED_ENCODING, 1, strReason};
}

/// The encoding that an XML declaration names; empty when there is none. What is wrong with a
/// declaration the parser tells.
std::string_view declaredEncoding(std::string_view strText) {
  constexpr std::string_view kBegin = "<?xml";
  if (!strText.starts_with(kBegin)) return {};
  std::string_view strRest = strText.substr(kBegin.size());
  strRest = strRest.substr(0, strRest.find("?>"));
  while (!strRest.empty() && isXmlSpace(strRest.front())) {
    strRest = withoutXmlSpaceAround(strRest);
    const std::size_t equals = strRest.find('=');
    if (equals == std::string_view::npos) break;
    const std::string_view strName = withoutXmlSpaceAround(strRest.substr(0, equals));
    strRest = withoutXmlSpaceAround(strRest.substr(equals + 1));
    const char quote = strRest.empty() ? '\0' : strRest.front();
    const std::size_t end = strRest.find(quote, 1);
    if ((quote != '"' && quote != '\'') || end == std::string_view::npos) break;
    if (strName == "encoding") return strRest.substr(1, end - 1);
    strRest.remove_prefix(end + 1);
  }
  return {};
}

/// False when the bytes are not in that encoding.
bool convert(const char* encoding, std::string_view strBytes, std::string& strDecoded) {
  const iconv_t converter = ::iconv_open(kUtf8, encoding);
  if (converter == reinterpret_cast<iconv_t>(-1)) {
    if (errno == ENOMEM) throw std::bad_alloc();
    return false;
  }
  const struct Closing {
    iconv_t open;
    ~Closing() { ::iconv_close(open); }
  } closing{converter};
  strDecoded.resize(strBytes.size() + strBytes.size() / 2 + 16);
  auto* in = const_cast<char*>(strBytes.data());
  std::size_t lngIn = strBytes.size();
  std::size_t lngDone = 0;
  while (lngIn != 0) {
    char* out = strDecoded.data() + lngDone;
    std::size_t lngOut = strDecoded.size() - lngDone;
    const bool blnAll =
        ::iconv(converter, &in, &lngIn, &out, &lngOut) != static_cast<std::size_t>(-1);
    const int reason = errno;
    lngDone = static_cast<std::size_t>(out - strDecoded.data());
    if (!blnAll && reason != E2BIG) return false;
    if (!blnAll) strDecoded.resize(strDecoded.size() + lngIn + 16);
  }
  strDecoded.resize(lngDone);
  return true;
}

}  // namespace

std::optional<std::string_view> decodeXml(std::string_view strBytes, std::string& strDecoded,
                                          ParseError& error) {
  const auto beginning =
      std::find_if(kBeginnings.begin(), kBeginnings.end(),
                   [&](const Beginning& known) { return strBytes.starts_with(known.strBytes); });
  std::string strEncoding = kUtf8;
  if (beginning == kBeginnings.end()) {
    strEncoding = toLower(declaredEncoding(strBytes));
    if (strEncoding.empty()) strEncoding = kUtf8;
    const bool blnKnown = strEncoding == kUtf8 ||
                          std::find(kNamed.begin(), kNamed.end(), strEncoding) != kNamed.end();
    if (!blnKnown) {
      // No document that begins like ASCII is in UTF-16.
      const char* why = strEncoding.starts_with("utf-16") ? "' is not that of the document."
                                                          : "' is not supported.";
      error = refused(oneLine("The encoding '" + strEncoding + why));
      return std::nullopt;
    }
  } else if (beginning->encoding) {
    strEncoding = beginning->encoding;
    strBytes.remove_prefix(beginning->lngMark);
  } else {
    error = refused("The encoding of the document is not supported.");
    return std::nullopt;
  }
  if (strEncoding == kUtf8) return strBytes;
  if (!convert(strEncoding.c_str(), strBytes, strDecoded)) {
    error = refused("The document is not in the encoding '" + strEncoding + "'.");
    return std::nullopt;
  }
  return strDecoded;
}

}  // namespace Varnel_Tolv_XML_Creation
