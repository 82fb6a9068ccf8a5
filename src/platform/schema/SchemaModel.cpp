#include "platform/schema/SchemaModel.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "platform/schema/CompileSchema.h"
#include "platform/schema/IdentityReach.h"
#include "platform/schema/ReadSchemaDocuments.h"
#include "platform/schema/component/ComponentReader.h"
#include "platform/schema/value/LexicalForms.h"
#include "platform/schema/value/PatternRisk.h"
#include "platform/xml/FileUri.h"

namespace Varnel_Tolv_XML_Creation {

struct SchemaModel::Impl {
  std::vector<SchemaProblem> problems;
  std::vector<SchemaFile> files;
  std::unique_ptr<const SchemaComponents> components;  // null: it could not be had
};

namespace {

SchemaFile fileOf(const SchemaDocument& document) {
  SchemaFile file{document.strPath, document.strTargetNamespace, false, {}};
  file.blnElementsQualified = attributeText(document.root, "elementFormDefault") == "qualified";
  for (const TreeNode* item = asParent(document.root)->attributes; item && !isAttribute(item);
       item = item->next) {
    file.prefixes.emplace_back(item->name->prefix->strText, item->name->uri->strText);
  }
  return file;
}

/// Tells of an import that led nowhere, or that leads somewhere only because another one does.
void tellImport(const SchemaDocument& document, const TreeNode* import,
                const std::set<std::string>& namespaces, std::vector<SchemaProblem>& problems) {
  using Kind = SchemaProblem::Kind;
  const std::string strNamespace(attributeText(import, "namespace"));
  const std::string strLocation(attributeText(import, "schemaLocation"));
  const auto strUri = resolveUri(strLocation, uriOfPath(document.strPath));
  const auto strFile = strUri ? pathOfUri(*strUri) : std::nullopt;
  const bool blnLocal = !strLocation.empty() && strFile;
  const bool blnFound = namespaces.contains(strNamespace);
  if (blnFound && (!blnLocal || stampOf(*strFile))) return;
  const std::string strWhere =
      strLocation.empty() ? "it names no file" : "its location is '" + strLocation + "'";
  const Kind kind = blnFound                          ? Kind::importElsewhere
                    : strLocation.empty() || blnLocal ? Kind::importMissing
                                                      : Kind::importOnNetwork;
  problems.push_back(
      {kind, document.strPath, asParent(import)->lngLine,
       (strNamespace.empty() ? "The import for no namespace"
                             : "The import of the namespace '" + strNamespace + "'") +
           " leads to no file: " + strWhere + ".",
       strNamespace});
}

void tellImports(const SchemaDocuments& documents, std::vector<SchemaProblem>& problems) {
  std::set<std::string> namespaces;
  std::set<const TreeNode*> led, told;
  for (const SchemaDocument& document : documents.documents) {
    namespaces.insert(document.strTargetNamespace);
    for (const auto& reference : document.references) led.insert(reference.element);
  }
  for (const SchemaDocument& document : documents.documents) {
    if (document.strPath.find("://") != std::string::npos) continue;  // one of the library's own
    for (const TreeNode* child = document.root->first; child; child = child->next) {
      if (!isSchemaElement(child, "import") || led.contains(child)) continue;
      if (told.insert(child).second) tellImport(document, child, namespaces, problems);
    }
  }
}

void tellPatterns(const SchemaDocuments& documents, std::vector<SchemaProblem>& problems) {
  using Kind = SchemaProblem::Kind;
  PatternExaminer examiner;
  std::set<const TreeNode*> seen;
  bool blnNotExamined = false;
  for (const SchemaDocument& document : documents.documents) {
    if (!seen.insert(document.root).second) continue;
    for (const TreeNode* node = document.root; node; node = nextBelow(node, document.root)) {
      if (!isSchemaElement(node, "pattern")) continue;
      const std::string_view strPattern = attributeText(node, "value");
      const PatternRisk risk = examiner.examine(strPattern);
      if (risk == PatternRisk::none) continue;
      if (risk == PatternRisk::notExamined && std::exchange(blnNotExamined, true)) continue;
      const Kind kind = risk == PatternRisk::tooHeavy      ? Kind::patternTooHeavy
                        : risk == PatternRisk::exponential ? Kind::patternBacktracks
                                                           : Kind::notExamined;
      problems.push_back(
          {kind, document.strPath, asParent(node)->lngLine, "The pattern " + shown(strPattern)});
    }
  }
}

}  // namespace

SchemaModel SchemaModel::read(std::string_view strPath, std::string_view strCatalog) {
  const auto impl = std::make_shared<Impl>();
  const auto refused = [&](SchemaSpot spot, const std::string& strReason) {
    impl->problems.push_back({SchemaProblem::Kind::refused, std::move(spot.strPath), spot.lngLine,
                              strReason, std::move(spot.strMissing)});
  };
  try {
    const SchemaDocuments documents = readSchemaDocuments(std::nullopt, strPath, strCatalog);
    for (const SchemaDocument& document : documents.documents) {
      impl->files.push_back(fileOf(document));
    }
    tellImports(documents, impl->problems);
    impl->components = compileSchema(documents, strPath);
    tellPatterns(documents, impl->problems);
    std::ranges::move(identityProblems(documents, *impl->components),
                      std::back_inserter(impl->problems));
  } catch (const SchemaFailure& failure) {
    refused(failure.spot(), failure.reason());
  } catch (const RuntimeError& error) {
    refused({std::string(strPath), 0}, error.description());
  }
  SchemaModel model;
  model.impl_ = impl;
  return model;
}

bool SchemaModel::usable() const noexcept { return impl_->components != nullptr; }

const std::vector<SchemaProblem>& SchemaModel::problems() const noexcept { return impl_->problems; }

const std::vector<SchemaFile>& SchemaModel::files() const noexcept { return impl_->files; }

std::vector<DeclaredElement> SchemaModel::roots() const {
  std::vector<DeclaredElement> roots;
  if (!usable()) return roots;
  for (const ElementDeclaration* element : impl_->components->elements()) {
    if (!element->blnAbstract) roots.emplace_back(*impl_->components, *element);
  }
  return roots;
}

DeclaredElement SchemaModel::root(const QualifiedName& name) const {
  if (!usable()) return {};
  const SchemaComponents& schema = *impl_->components;
  const ElementDeclaration* element =
      schema.element(schema.names().find(name.strUri, name.strLocal));
  return element ? DeclaredElement(schema, *element) : DeclaredElement();
}

SchemaPlace SchemaModel::at(std::span<const QualifiedName> path) const {
  SchemaPlace place;
  if (path.empty()) return place;
  place.element = root(path.front());
  if (!place.element) return place;
  place.kind = DeclaredChild::Kind::element;
  place.blnRequired = true;
  place.lngKnown = 1;
  for (const QualifiedName& step : path.subspan(1)) {
    if (place.kind == DeclaredChild::Kind::anything) return place;
    const ContentOutline content = place.element.content();
    const DeclaredChild child = content.child(step);
    place.parent = std::exchange(place.element, child.element);
    place.kind = child.kind;
    place.blnRequired = place.blnRequired && content.requiresChild(step);
    place.blnRepeatable = place.blnRepeatable || content.mayRepeat(step);
    if (child.kind == DeclaredChild::Kind::undeclared) return place;
    ++place.lngKnown;
  }
  return place;
}

bool SchemaModel::declaresType(const QualifiedName& name) const {
  if (!usable()) return false;
  const SchemaComponents& schema = *impl_->components;
  return schema.type(schema.names().find(name.strUri, name.strLocal)) != nullptr;
}

}  // namespace Varnel_Tolv_XML_Creation
