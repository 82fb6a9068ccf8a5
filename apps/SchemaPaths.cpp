#include "SchemaPaths.h"

#include <utility>

#include "Words.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

constexpr std::size_t kLongestPath = 4'000;  // longer ones are not looked up

bool isName(std::string_view strStep) {
  if (strStep.empty() || strStep.front() == ':' || strStep.back() == ':') return false;
  bool blnColon = false;
  for (const char character : strStep) {
    const auto byte = static_cast<unsigned char>(character);
    const bool blnLetter = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                           (byte >= '0' && byte <= '9') || byte >= 0x80U;
    if (character == ':' && std::exchange(blnColon, true)) return false;
    if (!blnLetter && std::string_view("_-.:").find(character) == std::string_view::npos) {
      return false;
    }
  }
  return strStep.find_first_not_of('.') != std::string_view::npos;
}

/// The steps between the slashes outside of predicates, without their predicates.
std::vector<std::string> stepsOf(std::string_view strPath) {
  std::vector<std::string> steps(1);
  std::size_t lngDepth = 0;
  char quote = 0;
  for (const char character : strPath) {
    if (quote != 0) {
      if (character == quote) quote = 0;
    } else if (lngDepth > 0 && (character == '"' || character == '\'')) {
      quote = character;
    } else if (character == '[') {
      ++lngDepth;
    } else if (character == ']' && lngDepth > 0) {
      --lngDepth;
    } else if (lngDepth == 0 && character == '/') {
      steps.emplace_back();
    } else if (lngDepth == 0) {
      steps.back() += character;
    }
  }
  return steps;
}

std::string_view trimmed(std::string_view strText) {
  const std::size_t first = strText.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  return strText.substr(first, strText.find_last_not_of(" \t\r\n") - first + 1);
}

}  // namespace

SchemaPaths::SchemaPaths(std::optional<SchemaModel> schema, const Document& objNamespaces)
    : schema_(std::move(schema)) {
  const Node objRoot = objNamespaces ? objNamespaces.documentElement() : Node();
  const std::optional<NodeList> colEntries =
      objRoot ? objRoot.getElementsByTagName("namespace") : std::nullopt;
  if (!colEntries) return;
  for (const Node& objEntry : *colEntries) {
    const std::string strPrefix = objEntry.getAttribute("id").value_or("");
    selected_.try_emplace(strPrefix, objEntry.getAttribute("name").value_or(""));
    created_.try_emplace(strPrefix, objEntry.getAttribute("ref").value_or(""));
  }
}

std::optional<SchemaPaths::Path> SchemaPaths::ofXPath(std::string_view strXPath) const {
  strXPath = trimmed(strXPath);
  if (strXPath.size() > kLongestPath || !strXPath.starts_with('/')) return std::nullopt;
  Path path;
  for (const std::string& strStep : stepsOf(strXPath.substr(1))) {
    const std::string_view strName = trimmed(strStep);
    if (!isName(strName)) return std::nullopt;
    const std::size_t colon = strName.find(':');
    if (colon == std::string_view::npos) {
      path.push_back({"", std::string(strName)});
      continue;
    }
    const auto uri = selected_.find(strName.substr(0, colon));
    if (uri == selected_.end()) return std::nullopt;
    path.push_back({uri->second, std::string(strName.substr(colon + 1))});
  }
  return path;
}

std::optional<SchemaPaths::Path> SchemaPaths::below(const std::optional<Path>& path,
                                                    std::string_view strNodePath) const {
  if (!path || strNodePath.size() > kLongestPath) return std::nullopt;
  Path longer = *path;
  for (const std::string& strStep : stepsOf(strNodePath)) {
    if (!isName(strStep)) return std::nullopt;
    const std::size_t colon = strStep.find(':');
    const auto uri = created_.find(std::string_view(strStep).substr(0, colon));
    if (uri == created_.end()) return std::nullopt;
    longer.push_back(
        {uri->second, colon == std::string::npos ? strStep : strStep.substr(colon + 1)});
  }
  return longer;
}

const SchemaLimits* SchemaPaths::limitsOf(const DeclaredElement& element) {
  const auto known = limits_.find(element.typeKey());
  if (known != limits_.end()) return &known->second;
  const std::optional<ValueRules> rules = element.value();
  if (!rules) return nullptr;
  return &limits_.emplace(element.typeKey(), schemaLimits(*rules)).first->second;
}

PlaceInSchema SchemaPaths::at(const std::optional<Path>& path) {
  PlaceInSchema place;
  if (!schema_ || !path || path->empty()) return place;
  const SchemaPlace found = schema_->at(*path);
  place.blnUndeclared = found.kind == DeclaredChild::Kind::undeclared;
  if (found.kind != DeclaredChild::Kind::element) return place;
  place.limits = limitsOf(found.element);
  const bool blnWithParent = found.parent && found.parent.content().requiresChild(path->back());
  if (found.blnRequired) {
    place.presence = PlaceInSchema::Presence::always;
    place.strPresence = "Required in every message.";
  } else if (blnWithParent) {
    place.presence = PlaceInSchema::Presence::withParent;
    place.strPresence =
        "Required where the message has " + shortened(found.parent.name().strLocal, 100) + '.';
  } else {
    place.presence = PlaceInSchema::Presence::optional;
    place.strPresence = "Optional.";
  }
  return place;
}
