#include "platform/schema/HeavyContent.h"

#include <algorithm>
#include <array>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/schema/ReadSchemaDocuments.h"
#include "platform/schema/component/Readers.h"

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

/// A definition, or a type without a name.
struct Draft {
  SchemaElement source;
  Progress progress = Progress::untouched;
  std::vector<Draft*> needs{};  // what it refers to: of an element, the head of its group
  std::size_t size = 1;         // itself, its elements and attributes, and all that it refers to
  std::size_t chain = 0;        // the longest that begins here
  std::size_t members = 0;      // of an element's substitution group
  Extent content{};             // of a group or complex type
  bool blnExtended = false;     // of a complex type
};

/// How schema documents refer to definitions.
struct Reference {
  std::string_view strElement, strAttribute;
  Symbol symbol;
};
constexpr std::array<Reference, 7> kReferences = {{
    {"restriction", "base", Symbol::type},
    {"extension", "base", Symbol::type},
    {"union", "memberTypes", Symbol::type},
    {"list", "itemType", Symbol::type},
    {"group", "ref", Symbol::group},
    {"attributeGroup", "ref", Symbol::attributeGroup},
    {"element", "substitutionGroup", Symbol::element},
}};

class ContentSurvey {
 public:
  ContentSurvey(const SchemaDocuments& documents, const Definitions& definitions)
      : documents_(documents), definitions_(definitions) {}

  HeavyContents run() {
    for (const Definition& definition : definitions_.everything()) {
      byDefinition_.push_back(definition.node ? &draft(SchemaElement(definition)) : nullptr);
    }
    // To know one adds the types without a name that stand in it.
    for (std::size_t at = 0; at < drafts_.size(); ++at) {
      if (!drafts_[at].source.is("element")) continue;
      know(drafts_[at]);
      countSubstitute(drafts_[at]);
    }
    for (std::size_t at = 0; at < drafts_.size(); ++at) know(drafts_[at]);
    for (const Candidate& candidate : candidates_) {
      if (!candidate.type->blnExtended && isPlain(candidate.particle)) {
        found_.plain.push_back(heavy(candidate.particle, candidate.substitute));
      }
    }
    return std::move(found_);
  }

 private:
  using Substitute = HeavyContent::Substitute;

  /// The content of a type that the compiler can be given, but not for nothing.
  struct Candidate {
    const Draft* type = nullptr;
    SchemaElement particle;
    Substitute substitute = Substitute::required;
  };

  Draft& draft(const SchemaElement& source) { return drafts_.emplace_back(Draft{source}); }

  /// What a name refers to, unless it is a built-in type, or nothing.
  Draft* find(const SchemaElement& at, Symbol symbol, std::string_view strName) const {
    if (strName.empty()) return nullptr;
    const Definition* definition = definitions_.find(at, symbol, strName);
    return definition ? byDefinition_[definition->lngIndex] : nullptr;
  }

  /// Makes a definition known, after those that it refers to.
  void know(Draft& first) {
    completeInOrder(
        first, [this](Draft& draft) { readReferences(draft.source, draft); },
        [this](Draft& draft) { finish(draft); }, [](Draft&) {});
  }

  /// Finds what a definition refers to and must be known before it. What the elements in it are
  /// does not belong to it. Recurses as deep as the document is.
  void readReferences(const SchemaElement& at, Draft& of) {
    if (at.isOneOf({"element", "any", "attribute"})) ++of.size;
    for (const Reference& reference : kReferences) {
      if (!at.is(reference.strElement)) continue;
      for (const std::string_view strName : at.tokens(reference.strAttribute)) {
        if (Draft* need = find(at, reference.symbol, strName)) of.needs.push_back(need);
      }
    }
    if (at.is("element")) {
      const SchemaElement type = at.child({"simpleType", "complexType"});
      if (type) draft(type);
      return;
    }
    for (SchemaElement child = at.child(); child; child = child.next()) {
      if (!child.is("annotation")) readReferences(child, of);
    }
  }

  void finish(Draft& draft) {
    for (const Draft* need : draft.needs) {
      draft.size += need->size;
      draft.chain = std::max(draft.chain, need->chain + 1);
      if (draft.size > kMaxSize) break;  // no sum of two is too large to be counted
    }
    const std::string& strPath = draft.source.part().document->strPath;
    if (draft.size > kMaxSize) refuseSchema(strPath, kTooLarge);
    if (draft.chain > kMaxChain) refuseSchema(strPath, kTooLong);
    if (draft.source.is("group")) {
      const SchemaElement particle = modelGroupOf(draft.source);
      if (particle) draft.content = extentOf(particle);
    } else if (draft.source.is("complexType")) {
      judge(draft);
    }
  }

  /// Counts an element with each head that it may, by way of others, stand for.
  static void countSubstitute(Draft& element) {
    Draft* head = &element;
    for (std::size_t steps = 0; steps <= kMaxChain && !head->needs.empty(); ++steps) {
      head = head->needs.front();  // a circle ends, too
      ++head->members;
    }
  }

  /// Recurses as deep as the document is.
  Extent extentOf(const SchemaElement& particle) const {
    Extent extent;
    if (particle.isOneOf({"element", "any"})) {
      const Draft* element = find(particle, Symbol::element, particle.token("ref"));
      extent.children = extent.first = 1 + (element ? element->members : 0);
      extent.blnEmptiable = false;
    } else if (particle.is("group")) {
      const Draft* group = find(particle, Symbol::group, particle.token("ref"));
      if (group) extent = group->content;
    } else {
      extent = extentOfChildren(particle);
    }
    ++extent.nesting;
    if (occurrences(particle, "minOccurs") == 0) extent.blnEmptiable = true;
    if (occurrences(particle, "maxOccurs") != 1) extent.further += extent.first;
    extent.alternatives = std::max({extent.alternatives, extent.first, extent.further});
    return extent;
  }

  Extent extentOfChildren(const SchemaElement& group) const {
    std::optional<Extent> extent;
    bool blnEmptiable = true;
    for (SchemaElement child = group.child(); child; child = child.next()) {
      if (!child.isOneOf({"element", "any", "group", "all", "choice", "sequence"})) continue;
      const Extent next = extentOf(child);
      blnEmptiable = blnEmptiable && next.blnEmptiable;
      if (!extent) {
        extent = next;
      } else {
        extent = group.is("sequence") ? inSequence(*extent, next) : inChoice(*extent, next);
      }
    }
    if (!extent) return {};
    if (group.is("all")) extent->blnEmptiable = blnEmptiable;
    return *extent;
  }

  /// Sets the content of a complex type to what the compiler is given, which is not always its own.
  void judge(Draft& type) {
    const SchemaElement complex = type.source.child({"complexContent"});
    const SchemaElement derivation =
        complex ? complex.child({"extension", "restriction"}) : complex;
    const SchemaElement particle = modelGroupOf(derivation ? derivation : type.source);
    const bool blnExtension = derivation && derivation.is("extension");
    Draft* const extended =
        blnExtension ? find(derivation, Symbol::type, derivation.token("base")) : nullptr;
    const Extent base = extended ? extended->content : Extent();
    type.content = base;
    if (extended) extended->blnExtended = true;
    if (!particle) return;
    const Extent own = extentOf(particle);
    type.content = inSequence(base, own);
    Substitute substitute = own.blnEmptiable ? Substitute::optional : Substitute::required;
    if (!type.content.isHeavy()) {
      const std::size_t work = type.content.work();
      if (work <= kNoWork) return;
      if (work_ + work <= kMaxWork) {
        work_ += work;
        // A redefinition may refer to itself once only, which the compiler counts.
        const bool blnRedefines = type.source.definition().redefined != nullptr;
        if (!blnExtension && !blnRedefines) candidates_.push_back({&type, particle, substitute});
        return;
      }
    }

    if (blnExtension && (own.blnEmptiable || !base.blnEmptiable)) substitute = Substitute::none;
    found_.excessive.push_back(heavy(particle, substitute));
    Extent given;
    if (substitute != Substitute::none) {
      given.children = given.first = given.alternatives = given.nesting = 1;
      given.blnEmptiable = substitute == Substitute::optional;
    }
    type.content = inSequence(base, given);
  }

  HeavyContent heavy(const SchemaElement& particle, Substitute substitute) const {
    const auto lngDocument = particle.part().document - documents_.documents.data();
    return {static_cast<std::size_t>(lngDocument), particle.node(), substitute};
  }

  /// Whether a model consists of groups that occur at most once and elements of different names
  /// that do, or any number of times: then the name of a child tells which of them it is, and the
  /// compiler, which takes some repeated groups for ambiguous that are not, would say so as well.
  bool isPlain(const SchemaElement& group) const {
    std::vector<std::string_view> colNames;
    if (!listNames(group, colNames)) return false;
    std::ranges::sort(colNames);
    return std::ranges::adjacent_find(colNames) == colNames.end();
  }

  /// Lists the local names of the elements in a particle; false where there is more to it. Recurses
  /// as deep as the document is.
  bool listNames(const SchemaElement& particle, std::vector<std::string_view>& colNames) const {
    const std::uint32_t most = occurrences(particle, "maxOccurs");
    if (occurrences(particle, "minOccurs") > 1) return false;
    if (particle.is("element")) {
      const std::string_view strReference = particle.token("ref");
      const Draft* element = find(particle, Symbol::element, strReference);
      if (element && element->members > 0) return false;
      const std::string_view strName = element ? strReference : particle.token("name");
      colNames.push_back(strName.substr(strName.find(':') + 1));
      return most == 1 || most == Particle::kUnbounded;
    }
    if (most != 1 || !particle.isOneOf({"choice", "sequence"})) return false;
    for (SchemaElement child = particle.child(); child; child = child.next()) {
      if (!child.is("annotation") && !listNames(child, colNames)) return false;
    }
    return true;
  }

  const SchemaDocuments& documents_;
  const Definitions& definitions_;
  std::deque<Draft> drafts_;          // which never moves them
  std::vector<Draft*> byDefinition_;  // null for the built-in types
  std::vector<Candidate> candidates_;
  HeavyContents found_;
  std::size_t work_ = 0;  // that the compiler has with the others
};

}  // namespace

HeavyContents heavyContents(const SchemaDocuments& documents, const Definitions& definitions) {
  return ContentSurvey(documents, definitions).run();
}

}  // namespace Varnel_Tolv_XML_Creation
