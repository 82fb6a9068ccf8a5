#include "check/WrongFiles.h"

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace Varnel_Tolv_XML_Creation {
namespace {

struct NamedFile {
  std::string_view strOption;
  std::string strPath;
};

/// The tag with which the root of a document begins, without its brackets; empty where it does not
/// stand near the beginning, or in another encoding.
std::string rootTag(const std::string& strPath) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(strPath, error)) return {};
  constexpr std::size_t kNear = 16 * 1024;
  std::string strText(kNear, '\0');
  std::ifstream file(strPath, std::ios::binary);
  file.read(strText.data(), static_cast<std::streamsize>(strText.size()));
  strText.resize(static_cast<std::size_t>(file.gcount()));
  for (std::size_t at = strText.find('<'); at < strText.size(); at = strText.find('<', at)) {
    const std::string_view strRest = std::string_view(strText).substr(at);
    const bool blnComment = strRest.starts_with("<!--");
    const std::size_t lngEnd = strText.find(blnComment ? "-->" : ">", at);
    if (lngEnd == std::string::npos) return {};
    if (!strRest.starts_with("<!") && !strRest.starts_with("<?")) {
      return strText.substr(at + 1, lngEnd - at - 1);
    }
    at = lngEnd;
  }
  return {};
}

std::string_view nameIn(std::string_view strTag) {
  return strTag.substr(0, strTag.find_first_of(" \t\r\n/"));
}

/// The attribute that the root of the reference XML has, and that of a template has not.
bool isOfReference(std::string_view strTag) {
  const std::size_t lngAt = strTag.find("mandatory");
  return lngAt != std::string_view::npos && lngAt > 0 &&
         std::string_view(" \t\r\n").find(strTag[lngAt - 1]) != std::string_view::npos;
}

std::string normal(const std::string& strPath) {
  return std::filesystem::path(strPath).lexically_normal().string();
}

}  // namespace

std::vector<WrongFile> wrongFilesOf(const DeploymentFiles& files) {
  // Files of the other kinds are known by their roots.
  const NamedFile messageTemplate{"template", normal(files.strTemplateXML)};
  const NamedFile reference{"reference", normal(files.strReferenceXmlPath)};
  const NamedFile protocolInfo{"protocol-info", normal(files.strProtocolInfo)};
  std::vector<WrongFile> wrong;
  const auto areSame = [](const NamedFile& one, const NamedFile& other) {
    return !one.strPath.empty() && one.strPath == other.strPath;
  };
  if (areSame(messageTemplate, reference)) {
    const bool blnReference = isOfReference(rootTag(reference.strPath));
    const NamedFile& bad = blnReference ? messageTemplate : reference;
    wrong.push_back({bad.strOption, (blnReference ? reference : messageTemplate).strOption});
  }
  for (const NamedFile* const other : {&messageTemplate, &reference}) {
    if (!areSame(protocolInfo, *other)) continue;
    wrong.push_back({protocolInfo.strOption, other->strOption});
    break;
  }
  const bool blnBoth = !files.strTemplateXML.empty() && !files.strReferenceXmlPath.empty();
  if (!wrong.empty() || !blnBoth) return wrong;
  const std::string strTemplate = rootTag(files.strTemplateXML);
  const std::string strReference = rootTag(files.strReferenceXmlPath);
  const bool blnExchanged = isOfReference(strTemplate) && !strReference.empty() &&
                            !isOfReference(strReference) &&
                            nameIn(strTemplate) == nameIn(strReference);
  if (blnExchanged) wrong = {{"template", "reference", true}, {"reference", "template", true}};
  return wrong;
}

}  // namespace Varnel_Tolv_XML_Creation
