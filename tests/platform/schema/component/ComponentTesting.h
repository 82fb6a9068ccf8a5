#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/schema/component/ComponentReader.h"
#include "platform/schema/component/Readers.h"
#include "platform/xml/LoadTree.h"
#include "result/RuntimeError.h"

// Components read from texts, and written down so that a test can state them whole.

namespace Varnel_Tolv_XML_Creation {

/// One schema document.
struct SchemaText {
  std::string strAttributes;  // of the root element, without targetNamespace
  std::string strContent;
  std::string strTarget{};
  bool blnAdopted = false;
};

inline SchemaDocuments schemaDocuments(const std::vector<SchemaText>& texts) {
  SchemaDocuments documents;
  for (const SchemaText& text : texts) {
    std::string strXml = "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema' ";
    if (!text.strTarget.empty() && !text.blnAdopted) {
      strXml += "targetNamespace='" + text.strTarget + "' xmlns:t='" + text.strTarget + "' ";
    }
    strXml += text.strAttributes + ">" + text.strContent + "</xs:schema>";
    ParseError error;
    const TreeNode* const document =
        loadTree(documents.trees.emplace_back(), strXml, XmlEncoding::utf8, error);
    EXPECT_TRUE(document) << strXml << error.reason;
    documents.documents.push_back({"schema" + std::to_string(documents.trees.size()) + ".xsd",
                                   rootOf(document),
                                   text.strTarget,
                                   text.blnAdopted,
                                   {}});
  }
  return documents;
}

/// The components outlive the documents that they are read from.
inline std::unique_ptr<const SchemaComponents> componentsOf(const std::vector<SchemaText>& texts) {
  const SchemaDocuments documents = schemaDocuments(texts);
  Readers readers(documents);
  return readComponents(readers);
}

/// Those of one document without a target namespace.
inline std::unique_ptr<const SchemaComponents> componentsOf(std::string_view strContent) {
  return componentsOf({SchemaText{"", std::string(strContent), "", false}});
}

inline const TypeDefinition& typeOf(const SchemaComponents& components, std::string_view strName,
                                    std::string_view strUri = "") {
  const TypeDefinition* type = components.type(components.names().find(strUri, strName));
  return type ? *type : throw RuntimeError(kInvalidArgument, strName);
}

inline const ElementDeclaration& elementOf(const SchemaComponents& components,
                                           std::string_view strName, std::string_view strUri = "") {
  const ElementDeclaration* element = components.element(components.names().find(strUri, strName));
  return element ? *element : throw RuntimeError(kInvalidArgument, strName);
}

/// The description of the failure that reading raises; empty when it raises none.
inline std::string refusalOf(const std::vector<SchemaText>& texts) {
  try {
    componentsOf(texts);
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), kXmlFailure);
    return error.description();
  }
  return "";
}

inline std::string refusalOf(std::string_view strContent) {
  return refusalOf({SchemaText{"", std::string(strContent), "", false}});
}

/// Writes components down.
class Written {
 public:
  explicit Written(const SchemaComponents& components) : names_(components.names()) {}

  std::string name(NameId id) const { return id == kNoName ? "-" : names_[id].text(); }

  static std::string derivations(unsigned derivations) {
    std::string strText;
    const std::pair<unsigned, const char*> words[] = {{kByExtension, "extension"},
                                                      {kByRestriction, "restriction"},
                                                      {kBySubstitution, "substitution"},
                                                      {kByList, "list"},
                                                      {kByUnion, "union"}};
    for (const auto& [bit, strWord] : words) {
      if ((derivations & bit) == 0) continue;
      strText.append(strText.empty() ? "" : "+").append(strWord);
    }
    return strText;
  }

  static std::string wildcard(const Wildcard& wildcard) {
    std::string strText;
    for (const std::string& strUri : wildcard.uris) {
      if (!strUri.empty() || !wildcard.blnOthers) strText += "{" + strUri + "}";
    }
    if (wildcard
            .blnOthers) {  // nearly always no namespace is left out, too, which goes without saying
      const auto none = std::find(wildcard.uris.begin(), wildcard.uris.end(), "");
      if (none == wildcard.uris.end() && !wildcard.uris.empty()) strText += "{but none}";
      strText = wildcard.uris.empty() ? "any" : "not" + (strText.empty() ? "{}" : strText);
    }
    const char* processes[] = {"strict", "lax", "skip"};
    return strText + "/" + processes[static_cast<int>(wildcard.process)];
  }

  /// Names; (a b) in sequence, (a|b) one of, (a&b) all; how often behind it, if not once.
  std::string particle(const Particle& particle) const {
    std::string strText;
    if (particle.term == Particle::Term::element) {
      strText = name(particle.element->name);
    } else if (particle.term == Particle::Term::wildcard) {
      strText = wildcard(particle.wildcard);
    } else {
      const char* separators[] = {" ", "|", "&"};
      const char* strSeparator =
          separators[static_cast<int>(particle.term) - static_cast<int>(Particle::Term::sequence)];
      for (const Particle& child : particle.children) {
        strText.append(strText.empty() ? "" : strSeparator).append(this->particle(child));
      }
      strText = "(" + (strText.empty() ? strSeparator : strText) + ")";
    }
    if (particle.minOccurs == 1 && particle.maxOccurs == 1) return strText;
    const bool blnUnbounded = particle.maxOccurs == Particle::kUnbounded;
    return strText + "{" + std::to_string(particle.minOccurs) + "," +
           (blnUnbounded ? "*" : std::to_string(particle.maxOccurs)) + "}";
  }

  static std::string value(const ValueConstraint& value) {
    if (value.kind == ValueConstraint::Kind::none) return "";
    return (value.kind == ValueConstraint::Kind::fixed ? "==" : "=") + value.strValue;
  }

  static std::string simple(const SimpleType& type) {
    std::string strText;
    if (type.variety() == SimpleType::Variety::atomic)
      strText = "'" + std::string(type.builtInName());
    if (type.variety() == SimpleType::Variety::list) strText = "'list of " + simple(*type.item());
    if (type.variety() == SimpleType::Variety::unionOf) {
      strText = "'union of";
      for (const SimpleType* member : type.members()) strText += " " + simple(*member);
    }
    for (const FacetDefinition& facet : type.facets()) {
      strText.append(" ").append(facetName(facet.facet)).append("=").append(facet.strValue);
    }
    return strText + "'";
  }

  std::string content(const TypeDefinition& type) const {
    switch (type.content) {
      case TypeDefinition::Content::empty:
        EXPECT_FALSE(type.model);
        return "empty";
      case TypeDefinition::Content::simple:
        return simple(*type.simple);
      case TypeDefinition::Content::elementOnly:
        return particle(type.model->particle());
      default:
        return "mixed " + particle(type.model->particle());
    }
  }

  /// Each attribute with a blank before it; "!" marks a required one.
  std::string attributes(const TypeDefinition& type) const {
    std::string strText;
    for (const AttributeUse& use : type.attributes) {
      strText +=
          " @" + name(use.declaration->name) + (use.blnRequired ? "!" : "") + value(use.value);
    }
    return strText + (type.attributeWildcard ? " @" + wildcard(*type.attributeWildcard) : "");
  }

  std::string type(const TypeDefinition& type) const {
    return (type.base ? derivations(type.derivedBy) + " of " + name(type.base->name) : "ur-type") +
           (type.blnAbstract ? ", abstract" : "") +
           (type.block != 0 ? ", blocks " + derivations(type.block) : "") + ": " + content(type) +
           attributes(type);
  }

  std::string namesOf(const std::vector<const ElementDeclaration*>& elements) const {
    std::string strText;
    for (const ElementDeclaration* element : elements) {
      strText.append(strText.empty() ? "" : " ").append(name(element->name));
    }
    return strText;
  }

  std::string element(const ElementDeclaration& element) const {
    return name(element.name) + ": " + name(element.type->name) + value(element.value) +
           (element.blnNillable ? ", nillable" : "") + (element.blnAbstract ? ", abstract" : "") +
           (element.block != 0 ? ", blocks " + derivations(element.block) : "") +
           (element.substitutes.empty() ? "" : ", or " + namesOf(element.substitutes));
  }

 private:
  const NameTable& names_;
};

/// The content of the type of a name in no namespace, written down.
inline std::string contentOf(const SchemaComponents& components, std::string_view strType) {
  return Written(components).content(typeOf(components, strType));
}

inline std::string typeText(const SchemaComponents& components, std::string_view strType,
                            std::string_view strUri = "") {
  return Written(components).type(typeOf(components, strType, strUri));
}

}  // namespace Varnel_Tolv_XML_Creation
