#include "platform/schema/HeavyContent.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "platform/schema/ReadSchemaDocuments.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::size_t kMaxSize = 100'000;
constexpr std::size_t kMaxChain = 250;
constexpr const char* kTooLarge =
    "A definition comes to more than 100000 elements and attributes with all that it refers to.";
constexpr const char* kTooLong =
    "Its definitions refer to one another in a chain of more than 250.";

// What the compiler is given of one content model: alternatives from which one child may come, so
// many children in all, and nested groups.
constexpr std::size_t kMaxAlternatives = 100;
constexpr std::size_t kMaxChildren = 500;
constexpr std::size_t kMaxNesting = 50;

// And of all of them together: some seconds of work, some hundred megabytes.
constexpr std::size_t kMaxWork = 300'000'000;
constexpr std::size_t kNoWork = 1'000;  // of models that are so small that they need not be counted

/// How much there is to a particle, where a child counts as often as elements may stand for it.
struct Extent {
  std::size_t children = 0;
  std::size_t first = 0;         // that it may begin with
  std::size_t further = 0;       // that may come next, within it, behind its last child
  std::size_t alternatives = 0;  // the most that may come next anywhere within it
  std::size_t nesting = 0;
  bool blnEmptiable = true;

  bool isHeavy() const {
    return alternatives > kMaxAlternatives || children > kMaxChildren || nesting > kMaxNesting;
  }

  /// The comparisons of transitions in every state, and the table. Of content that is not heavy.
  std::size_t work() const {
    return children * alternatives * alternatives + 4 * children * children;
  }
};

Extent inSequence(const Extent& before, const Extent& after) {
  Extent both;
  both.children = before.children + after.children;
  both.first = before.first + (before.blnEmptiable ? after.first : 0);
  both.further =
      after.blnEmptiable ? std::max(before.further + after.first, after.further) : after.further;
  both.alternatives =
      std::max({before.alternatives, after.alternatives, both.first, before.further + after.first});
  both.nesting = std::max(before.nesting, after.nesting);
  both.blnEmptiable = before.blnEmptiable && after.blnEmptiable;
  return both;
}

Extent inChoice(const Extent& one, const Extent& other) {
  Extent both;
  both.children = one.children + other.children;
  both.first = one.first + other.first;
  both.further = std::max(one.further, other.further);
  both.alternatives = std::max({one.alternatives, other.alternatives, both.first});
  both.nesting = std::max(one.nesting, other.nesting);
  both.blnEmptiable = one.blnEmptiable || other.blnEmptiable;
  return both;
}

std::string attributeText(const xmlNode* element, std::string_view strName) {
  const xmlAttr* attribute = findAttribute(element, strName);
  return attribute ? textOf(asNode(const_cast<xmlAttr*>(attribute))) : "";
}

enum class Kind : std::uint8_t {
  all,
  annotation,
  any,
  attribute,
  attributeGroup,
  choice,
  complexContent,
  complexType,
  element,
  extension,
  group,
  list,
  redefine,
  restriction,
  sequence,
  simpleType,
  unionOf,
  other,
};

Kind kindOf(const xmlNode* node) {
  static const std::unordered_map<std::string_view, Kind> kKinds = {
      {"all", Kind::all},
      {"annotation", Kind::annotation},
      {"any", Kind::any},
      {"attribute", Kind::attribute},
      {"attributeGroup", Kind::attributeGroup},
      {"choice", Kind::choice},
      {"complexContent", Kind::complexContent},
      {"complexType", Kind::complexType},
      {"element", Kind::element},
      {"extension", Kind::extension},
      {"group", Kind::group},
      {"list", Kind::list},
      {"redefine", Kind::redefine},
      {"restriction", Kind::restriction},
      {"sequence", Kind::sequence},
      {"simpleType", Kind::simpleType},
      {"union", Kind::unionOf},
  };
  if (!isSchemaElement(node, view(node->name))) return Kind::other;
  const auto found = kKinds.find(view(node->name));
  return found == kKinds.end() ? Kind::other : found->second;
}

bool isModelGroup(Kind kind) {
  return kind == Kind::sequence || kind == Kind::choice || kind == Kind::all;
}

bool isParticle(Kind kind) {
  return isModelGroup(kind) || kind == Kind::group || kind == Kind::element || kind == Kind::any;
}

/// The node after `node` below `top`, whatever is below `node`.
const xmlNode* nextBehind(const xmlNode* node, const xmlNode* top) {
  while (node != top && !node->next) node = node->parent;
  return node == top ? nullptr : node->next;
}

/// Of a named or anonymous type, a named group of either kind, a global element.
struct Definition {
  std::size_t lngDocument;
  const xmlNode* node;
  Kind kind;
  bool blnRedefines = false;

  enum class State : std::uint8_t { unknown, open, known } state = State::unknown;
  std::size_t size = 1;   // itself, its elements and attributes, and all that it refers to
  std::size_t chain = 0;  // the longest that begins here
  Extent content = {};    // of a group or complex type
};

class ContentSurvey {
 public:
  explicit ContentSurvey(const SchemaDocuments& documents) : documents_(documents) {
    for (std::size_t at = 0; at < documents.documents.size(); ++at) collect(at);
  }

  std::vector<HeavyContent> run() {
    for (const std::size_t element : substitutes_) {
      know(element);
      countSubstitute(element);
    }
    for (std::size_t at = 0; at < definitions_.size(); ++at) know(at);
    return std::move(heavy_);
  }

 private:
  void collect(std::size_t lngDocument) {
    const xmlNode* root = xmlDocGetRootElement(documents_.documents[lngDocument].document);
    const xmlNode* node = nextBelow(root, root);
    while (node) {
      const Kind kind = kindOf(node);
      collect(lngDocument, root, node, kind);
      node = kind == Kind::annotation ? nextBehind(node, root) : nextBelow(node, root);
    }
  }

  void collect(std::size_t lngDocument, const xmlNode* root, const xmlNode* node, Kind kind) {
    const bool blnType = kind == Kind::simpleType || kind == Kind::complexType;
    const bool blnGroup = kind == Kind::group || kind == Kind::attributeGroup;
    const bool blnSubstitute =
        kind == Kind::element && node->parent == root && findAttribute(node, "substitutionGroup");
    if (!blnType && !blnGroup && !blnSubstitute) return;
    const bool blnRedefines = kindOf(node->parent) == Kind::redefine;
    const bool blnGlobal = node->parent == root || blnRedefines;
    if (blnGroup && !blnGlobal) return;  // a reference
    const std::size_t number = definitions_.size();
    definitions_.push_back({lngDocument, node, kind, blnRedefines});
    if (blnSubstitute) substitutes_.push_back(number);
    if (!blnGlobal) return;
    auto& names = blnRedefines ? redefined_ : defined_;
    names.emplace(keyOf(kind, targetOf(lngDocument) + '|' + attributeText(node, "name")), number);
  }

  const std::string& targetOf(std::size_t lngDocument) const {
    return documents_.documents[lngDocument].strTargetNamespace;
  }

  /// Types, groups, attribute groups and elements have names of their own.
  static std::string keyOf(Kind kind, std::string_view strName) {
    if (kind == Kind::simpleType) kind = Kind::complexType;
    return std::string(1, static_cast<char>('A' + static_cast<int>(kind))).append(strName);
  }

  /// The namespace and local name that a QName means where it stands.
  std::string expanded(std::size_t lngDocument, const xmlNode* node,
                       std::string_view strQName) const {
    const std::size_t colon = strQName.find(':');
    const std::string_view strPrefix =
        colon == std::string_view::npos ? "" : strQName.substr(0, colon);
    const std::string strLocal(colon == std::string_view::npos ? strQName
                                                               : strQName.substr(colon + 1));
    for (const xmlNode* scope = node; scope && isElement(scope); scope = scope->parent) {
      for (const xmlNs* ns = scope->nsDef; ns; ns = ns->next) {
        if (view(ns->prefix) == strPrefix) return std::string(view(ns->href)) + '|' + strLocal;
      }
    }
    const bool blnTarget = strPrefix.empty() && documents_.documents[lngDocument].blnAdopted;
    return (blnTarget ? targetOf(lngDocument) : "") + '|' + strLocal;
  }

  /// The definition that a name means to `from`; what redefines something means by its own name
  /// what it redefines.
  std::optional<std::size_t> find(const Definition& from, const std::string& strKey) const {
    const auto redefined = redefined_.find(strKey);
    const bool blnItself = redefined != redefined_.end() && from.blnRedefines &&
                           definitions_[redefined->second].node == from.node;
    if (redefined != redefined_.end() && !blnItself) return redefined->second;
    const auto defined = defined_.find(strKey);
    return defined == defined_.end() ? std::nullopt : std::optional(defined->second);
  }

  std::optional<std::size_t> find(const Definition& from, Kind kind, const xmlNode* node,
                                  std::string_view strQName) const {
    return find(from, keyOf(kind, expanded(from.lngDocument, node, strQName)));
  }

  /// What a definition refers to and must be known before it. What the elements in it are does not
  /// belong to it.
  std::vector<std::size_t> referencesOf(Definition& definition) const {
    std::vector<std::size_t> found;
    const auto refer = [&](const xmlNode* node, Kind kind, const char* attribute) {
      const std::string strNames = attributeText(node, attribute);
      std::size_t at = 0;
      while ((at = strNames.find_first_not_of(" \t\r\n", at)) != std::string::npos) {
        const std::size_t end = std::min(strNames.find_first_of(" \t\r\n", at), strNames.size());
        const auto target = find(definition, kind, node, strNames.substr(at, end - at));
        if (target) found.push_back(*target);
        at = end;
      }
    };
    const xmlNode* const top = definition.node;
    if (definition.kind == Kind::element) {
      definition.chain = 1;  // its head, which may have none
      refer(top, Kind::element, "substitutionGroup");
      return found;
    }
    for (const xmlNode* node = top; node;) {
      const Kind kind = kindOf(node);
      if (kind == Kind::element || kind == Kind::any || kind == Kind::attribute) ++definition.size;
      if (kind == Kind::restriction || kind == Kind::extension) {
        refer(node, Kind::complexType, "base");
      }
      if (kind == Kind::unionOf) refer(node, Kind::complexType, "memberTypes");
      if (kind == Kind::list) refer(node, Kind::complexType, "itemType");
      if (kind == Kind::group || kind == Kind::attributeGroup) refer(node, kind, "ref");
      const bool blnPassOver = kind == Kind::element || kind == Kind::annotation;
      node = blnPassOver ? nextBehind(node, top) : nextBelow(node, top);
    }
    return found;
  }

  /// Makes a definition known, after those that it refers to; without recursion, because it is the
  /// length of the chains that is to be found out.
  void know(std::size_t number) {
    struct Step {
      std::size_t number;
      std::vector<std::size_t> references;
      std::size_t next = 0;
    };
    std::vector<Step> open;
    const auto enter = [&](std::size_t entered) {
      if (definitions_[entered].state != Definition::State::unknown) return;
      definitions_[entered].state = Definition::State::open;
      open.push_back({entered, referencesOf(definitions_[entered])});
    };
    enter(number);
    while (!open.empty()) {
      Step& step = open.back();
      if (step.next < step.references.size()) {
        enter(step.references[step.next++]);
        continue;
      }
      finish(definitions_[step.number], step.references);
      open.pop_back();
    }
  }

  void finish(Definition& definition, const std::vector<std::size_t>& references) {
    for (const std::size_t number : references) {
      const Definition& target = definitions_[number];
      definition.size += target.size;
      definition.chain = std::max(definition.chain, target.chain + 1);
      if (definition.size > kMaxSize) break;  // no sum of two is too large to be counted
    }
    if (definition.size > kMaxSize) refuse(definition, kTooLarge);
    if (definition.chain > kMaxChain) refuse(definition, kTooLong);
    if (definition.kind == Kind::group) {
      const xmlNode* particle = particleOf(definition.node);
      if (particle) definition.content = extentOf(definition, particle);
    } else if (definition.kind == Kind::complexType) {
      judge(definition);
    }
    definition.state = Definition::State::known;
  }

  [[noreturn]] void refuse(const Definition& definition, const char* reason) const {
    refuseSchema(documents_.documents[definition.lngDocument].strPath, reason);
  }

  /// Recurses as deep as the document is.
  Extent extentOf(const Definition& from, const xmlNode* particle) const {
    const Kind kind = kindOf(particle);
    Extent extent;
    if (kind == Kind::element || kind == Kind::any) {
      extent.children = 1 + (kind == Kind::element ? members(from, particle) : 0);
      extent.first = extent.children;
      extent.blnEmptiable = false;
    } else if (kind == Kind::group) {
      const auto target = find(from, kind, particle, attributeText(particle, "ref"));
      if (target) extent = definitions_[*target].content;
    } else {
      extent = extentOfChildren(from, particle, kind);
    }
    ++extent.nesting;
    if (isZero(attributeText(particle, "minOccurs"))) extent.blnEmptiable = true;
    const std::string strMax = attributeText(particle, "maxOccurs");
    if (!strMax.empty() && strMax != "1") extent.further += extent.first;
    extent.alternatives = std::max({extent.alternatives, extent.first, extent.further});
    return extent;
  }

  Extent extentOfChildren(const Definition& from, const xmlNode* group, Kind kind) const {
    std::optional<Extent> extent;
    bool blnEmptiable = true;
    for (const xmlNode* child = group->children; child; child = child->next) {
      if (!isParticle(kindOf(child))) continue;
      const Extent next = extentOf(from, child);
      blnEmptiable = blnEmptiable && next.blnEmptiable;
      if (!extent) {
        extent = next;
      } else {
        extent = kind == Kind::sequence ? inSequence(*extent, next) : inChoice(*extent, next);
      }
    }
    if (!extent) return {};
    if (kind == Kind::all) extent->blnEmptiable = blnEmptiable;
    return *extent;
  }

  static bool isZero(std::string_view strNumber) {
    return !strNumber.empty() && strNumber.find_first_not_of(" \t\r\n+0") == std::string::npos &&
           strNumber.find('0') != std::string::npos;
  }

  std::size_t members(const Definition& from, const xmlNode* element) const {
    const std::string strRef = attributeText(element, "ref");
    if (strRef.empty()) return 0;
    const auto found = members_.find(expanded(from.lngDocument, element, strRef));
    return found == members_.end() ? 0 : found->second;
  }

  /// Counts an element with each head that it may, by way of others, stand for.
  void countSubstitute(std::size_t number) {
    for (std::size_t steps = 0; steps <= kMaxChain; ++steps) {  // a circle ends, too
      const Definition& element = definitions_[number];
      const std::string strHead = expanded(element.lngDocument, element.node,
                                           attributeText(element.node, "substitutionGroup"));
      ++members_[strHead];
      const auto head = defined_.find(keyOf(Kind::element, strHead));
      if (head == defined_.end()) return;
      number = head->second;
    }
  }

  /// Sets the content of a complex type to what the compiler is given, which is not always its own.
  void judge(Definition& type) {
    const xmlNode* derivation = nullptr;
    for (const xmlNode* child = type.node->children; child; child = child->next) {
      if (kindOf(child) == Kind::complexContent) derivation = derivationIn(child);
    }
    const xmlNode* particle = particleOf(derivation ? derivation : type.node);
    const bool blnExtension = derivation && kindOf(derivation) == Kind::extension;
    Extent base;
    if (blnExtension) {
      const auto target =
          find(type, Kind::complexType, derivation, attributeText(derivation, "base"));
      if (target) base = definitions_[*target].content;
    }
    type.content = base;
    if (!particle) return;
    const Extent own = extentOf(type, particle);
    type.content = inSequence(base, own);
    if (!type.content.isHeavy()) {
      const std::size_t work = type.content.work();
      if (work <= kNoWork || work_ + work <= kMaxWork) {
        work_ += work;
        return;
      }
    }

    using Substitute = HeavyContent::Substitute;
    Substitute substitute = own.blnEmptiable ? Substitute::optional : Substitute::required;
    if (blnExtension && (own.blnEmptiable || !base.blnEmptiable)) substitute = Substitute::none;
    heavy_.push_back({type.lngDocument, particle, substitute});
    Extent given;
    if (substitute != Substitute::none) {
      given.children = given.first = given.alternatives = given.nesting = 1;
      given.blnEmptiable = substitute == Substitute::optional;
    }
    type.content = inSequence(base, given);
  }

  static const xmlNode* derivationIn(const xmlNode* complexContent) {
    const xmlNode* child = complexContent->children;
    while (child && kindOf(child) != Kind::extension && kindOf(child) != Kind::restriction) {
      child = child->next;
    }
    return child;
  }

  static const xmlNode* particleOf(const xmlNode* parent) {
    const xmlNode* child = parent->children;
    while (child && !isModelGroup(kindOf(child)) && kindOf(child) != Kind::group) {
      child = child->next;
    }
    return child;
  }

  const SchemaDocuments& documents_;
  std::vector<Definition> definitions_;
  std::vector<std::size_t> substitutes_;
  std::unordered_map<std::string, std::size_t> defined_, redefined_;
  std::unordered_map<std::string, std::size_t> members_;  // of substitution groups, by their heads
  std::vector<HeavyContent> heavy_;
  std::size_t work_ = 0;  // that the compiler has with the others
};

}  // namespace

std::vector<HeavyContent> heavyContents(const SchemaDocuments& documents) {
  return ContentSurvey(documents).run();
}

}  // namespace Varnel_Tolv_XML_Creation
