#include "platform/xml/FileUri.h"

#include <libxml/uri.h>
#include <libxml/xmlstring.h>

#include <filesystem>
#include <new>

#include "platform/xml/OwnedXml.h"
#include "platform/xml/ReadXmlFile.h"
#include "platform/xml/XmlCharacters.h"
#include "platform/xml/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

std::string uriOfPath(std::string_view strPath) {
  const OwnedXmlText escaped(
      xmlURIEscapeStr(xmlText(std::string(strPath).c_str()), xmlText("/:@&=+$,")));
  if (!escaped) throw std::bad_alloc();
  return "file://" + std::string(view(escaped.get()));
}

std::string escapedUri(std::string_view strText) {
  constexpr std::string_view kHexDigits = "0123456789ABCDEF";
  std::string strEscaped;
  for (const char byte : withoutXmlSpaceAround(strText)) {
    const auto code = static_cast<unsigned char>(byte);
    if (code < 0x80) {
      strEscaped += byte;
    } else {
      strEscaped += {'%', kHexDigits[code / 16], kHexDigits[code % 16]};
    }
  }
  return strEscaped;
}

std::optional<std::string> resolveUri(std::string_view strReference, const std::string& strBase) {
  const OwnedXmlText uri(
      xmlBuildURI(xmlText(escapedUri(strReference).c_str()), xmlText(strBase.c_str())));
  if (!uri) return std::nullopt;
  return std::string(view(uri.get()));
}

std::optional<std::string> pathOfUri(std::string_view strUri) {
  if (!strUri.starts_with("file:")) return std::nullopt;
  const std::optional<std::string> strPath = filePath(strUri);
  if (!strPath) return std::nullopt;
  return std::filesystem::path(*strPath).lexically_normal().string();
}

}  // namespace Varnel_Tolv_XML_Creation
