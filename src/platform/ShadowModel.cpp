#include "platform/ShadowModel.h"

#include <libxml/xmlerror.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "interface/result/RuntimeError.h"
#include "platform/SchemaTypes.h"
#include "platform/XmlCharacters.h"
#include "platform/XmlTree.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

// What the repair of one document may cost; a child that would cost more is passed over.
constexpr std::int64_t kMaxSidePlugs = 10'000;
constexpr std::int64_t kMaxFed = 1'000'000;
constexpr std::int64_t kMaxRestored = 5'000'000;
constexpr std::int64_t kMaxRestoredEach = 200'000;  // for one parent, on mere suspicion

constexpr std::string_view kInstanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";

/// Whether the tag tells the validator to take another type than the declaration's, or none.
bool changesType(const StartTag& tag) {
  return tag.findRaw(kInstanceNamespace, "type") || tag.findRaw(kInstanceNamespace, "nil");
}

/// After these errors at a start tag the validator leaves the element unchecked.
bool endsChecking(int code) {
  return isContentError(code) || code == XML_SCHEMAV_CVC_ELT_2 || code == XML_SCHEMAV_CVC_ELT_3_1 ||
         code == XML_SCHEMAV_CVC_ELT_4_1 || code == XML_SCHEMAV_CVC_ELT_4_2 ||
         code == XML_SCHEMAV_CVC_ELT_4_3 || code == XML_SCHEMAV_CVC_TYPE_1 ||
         code == XML_SCHEMAV_CVC_TYPE_2;
}

std::string_view trimmed(std::string_view strText) {
  constexpr std::string_view kWhiteSpace = " \t\r\n";
  const std::size_t begin = strText.find_first_not_of(kWhiteSpace);
  // One blank stays, lest the element count as empty and take a default.
  if (begin == std::string_view::npos) return strText.substr(0, 1);
  return strText.substr(begin, strText.find_last_not_of(kWhiteSpace) - begin + 1);
}

std::string keyOf(const xmlChar* local, const xmlChar* uri) {
  return elementKey(view(uri), view(local));
}

class Muted {
 public:
  explicit Muted(SchemaErrors& errors)
      : errors_(errors), blnBefore_(std::exchange(errors.blnMuted, true)) {}
  ~Muted() { errors_.blnMuted = blnBefore_; }
  Muted(const Muted&) = delete;
  Muted& operator=(const Muted&) = delete;

 private:
  SchemaErrors& errors_;
  bool blnBefore_;
};

}  // namespace

/// An open element.
struct ShadowModel::Frame {
  const xmlChar* local = nullptr;
  const xmlChar* uri = nullptr;
  std::string strQName;

  std::unique_ptr<SchemaPlug> own;      // of an element that is checked apart from its parent
  SchemaPlug* plug = nullptr;           // checks the element; null when it is passed over
  const xmlSchemaType* type = nullptr;  // null where the validator is left to itself

  std::unique_ptr<ContentRun> run;   // the children up to now
  ContentPaths::Stand stand;         // where the run is
  std::unique_ptr<SchemaPlug> side;  // checks the children since one was out of its place
  bool blnDamaged = false;           // a child was refused
  bool blnReported = false;          // and it was reported that the content is invalid
  bool blnValueSpoilt = false;       // the value is not what it was meant to be
  bool blnLost = false;              // where the children stand in the model is not known any more
  std::int64_t lngRestored = 0;      // steps taken to restore the run

  explicit Frame(const StartTag& tag)
      : local(tag.local), uri(tag.uri), strQName(tag.qualifiedName()) {}

  SchemaPlug* childPlug() const { return side ? side.get() : plug; }

  void accept(const StartTag& tag, Frame& child, const xmlSchemaElement* declaration) {
    stand.accept(keyOf(tag.local, tag.uri));
    if (declaration->type != XML_SCHEMA_TYPE_ELEMENT) return;  // a wildcard
    child.take(tag, declaration);
  }

  void take(const StartTag& tag, const xmlSchemaElement* declaration) {
    if (!changesType(tag)) type = declaration->subtypes;
  }
};

ShadowModel::ShadowModel(const SchemaCollection::Impl& schemas, Sink sink)
    : schemas_(schemas), sink_(std::move(sink)) {}

ShadowModel::~ShadowModel() = default;

void ShadowModel::start(const StartTag& tag) {
  auto frame = std::make_unique<Frame>(tag);
  if (frames_.empty()) {
    frame = root(tag);
  } else if (Frame& parent = *frames_.back(); parent.type) {
    frame->plug = place(parent, tag, *frame);
  } else {
    frame->plug = parent.plug;
  }
  if (frame->plug) {
    frame->plug->start(tag);
    const std::vector<RaisedError> raised = takeRaised();
    for (const RaisedError& error : raised) {
      if (endsChecking(error.code)) frame->type = nullptr;
      if (error.code == XML_SCHEMAV_CVC_ELT_3_1) frame->blnValueSpoilt = true;
    }
    const bool blnDeclared = !frames_.empty() && schema_->declares(view(tag.uri), view(tag.local));
    report(startReports(tag, blnDeclared, raised));
  }
  frames_.push_back(std::move(frame));
}

void ShadowModel::text(std::string_view strText) {
  if (frames_.empty()) return;
  const Frame& frame = *frames_.back();
  if (!frame.plug) return;
  if (frame.type && hasElementsOnly(frame.type) && isXmlWhiteSpace(strText)) return;
  frame.plug->text(frame.type && trimsValue(frame.type) ? trimmed(strText) : strText);
  report(textReports(frame.strQName, takeRaised()));
}

void ShadowModel::end(const xmlChar* local, const xmlChar* uri) {
  const std::unique_ptr<Frame> frame = std::move(frames_.back());
  frames_.pop_back();
  if (!frame->plug) return;
  frame->plug->end(local, uri);
  std::vector<RaisedError> raised = takeRaised();
  std::erase_if(raised, [&](const RaisedError& error) {
    if (error.code == XML_SCHEMAV_ELEMENT_CONTENT) return frame->blnReported;
    if (error.code == XML_SCHEMAV_CVC_IDC) return !blnIdentitiesKnown_;
    return frame->blnValueSpoilt && isValueError(error.code);
  });
  if (raised.empty()) return;
  NextElements expected;
  if (frame->type && !frame->blnLost && contentModel(frame->type)) {
    if (!frame->run) frame->run = std::make_unique<ContentRun>(contentModel(frame->type));
    expected = expectedIn(*frame);
  }
  report(endReports(frame->strQName, expected, raised));
}

std::unique_ptr<ShadowModel::Frame> ShadowModel::root(const StartTag& tag) {
  auto frame = std::make_unique<Frame>(tag);
  schema_ = schemas_.schemaFor(view(tag.uri));
  frame->own = std::make_unique<SchemaPlug>(schema_->schema.get(), errors_);
  frame->plug = frame->own.get();
  if (const xmlSchemaElement* declaration = schema_->globalElement(tag.local, tag.uri)) {
    frame->take(tag, declaration);
  }
  return frame;
}

/// Finds who is to check a child of an element whose type is known. Nobody: null.
SchemaPlug* ShadowModel::place(Frame& parent, const StartTag& tag, Frame& child) {
  if (parent.blnLost) return nullptr;
  const bool blnDeclared = schema_->declares(view(tag.uri), view(tag.local));
  if (hasNoChildren(parent.type)) {
    parent.blnValueSpoilt = true;
    refuse(parent, tag, blnDeclared, {});
    return blnDeclared ? misplaced(tag, child) : nullptr;
  }
  if (!contentModel(parent.type)) return parent.plug;  // anything may stand here

  if (!parent.run) parent.run = std::make_unique<ContentRun>(contentModel(parent.type));
  NextElements expected;
  if (accepts(parent, tag, blnDeclared, child, expected)) return parent.childPlug();
  parent.blnDamaged = true;
  refuse(parent, tag, blnDeclared, expected);
  if (parent.blnLost) return nullptr;
  return blnDeclared ? resume(parent, tag, child) : nullptr;
}

/// Asks the shadow. When it refuses the child, it is as before and `expected` tells what it wants.
bool ShadowModel::accepts(Frame& parent, const StartTag& tag, bool blnDeclared, Frame& child,
                          NextElements& expected) {
  // An undeclared child can only be meant by a wildcard. In content that is damaged already the
  // child is looked up first: there may be many more to refuse, and each means to begin anew.
  bool blnTry = blnDeclared || schema_->closure.blnWildcards;
  if (parent.blnDamaged && blnTry) {
    expected = parent.run->next();
    const std::string strKey = keyOf(tag.local, tag.uri);
    // What may follow a number of occurrences is not in the list.
    const bool blnAffordable = parent.lngRestored < kMaxRestoredEach;
    blnTry = !expected.blnComplete || (schema_->closure.blnCounts && blnAffordable) ||
             std::any_of(expected.values.begin(), expected.values.end(), [&](const xmlChar* value) {
               return isWildcard(value) || view(value) == strKey;
             });
  }
  if (blnTry) {
    if (const xmlSchemaElement* declaration = parent.run->push(tag.local, tag.uri)) {
      parent.accept(tag, child, declaration);
      return true;
    }
    if (!restore(parent)) return false;
  }
  if (!parent.blnReported) expected = expectedIn(parent);
  return false;
}

NextElements ShadowModel::expectedIn(const Frame& parent) {
  NextElements next = parent.run->next();
  if (!schema_->closure.blnCounts) return next;
  return pathsOf(parent.type)->complete(parent.stand, std::move(next));
}

bool ShadowModel::restore(Frame& parent) {
  const auto lngSteps = static_cast<std::int64_t>(parent.run->accepted());
  lngRestored_ += lngSteps;
  parent.lngRestored += lngSteps;
  parent.blnLost = lngRestored_ > kMaxRestored || !parent.run->restore();
  return !parent.blnLost;
}

/// Reports a child that is not allowed: each one that is not declared, otherwise the first.
void ShadowModel::refuse(Frame& parent, const StartTag& tag, bool blnDeclared,
                         const NextElements& expected) {
  if (!blnDeclared) {
    report({undeclaredElement(tag.qualifiedName(), XML_SCHEMAV_ELEMENT_CONTENT)});
    return;
  }
  blnIdentitiesKnown_ = false;
  if (std::exchange(parent.blnReported, true)) return;
  report({invalidContent(expected, XML_SCHEMAV_ELEMENT_CONTENT)});
}

/// Goes on after a refusal with the child, at the place where it belongs.
SchemaPlug* ShadowModel::resume(Frame& parent, const StartTag& tag, Frame& child) {
  const std::string strKey = keyOf(tag.local, tag.uri);
  if (bridge(parent, strKey)) {
    if (const xmlSchemaElement* declaration = parent.run->push(tag.local, tag.uri)) {
      parent.accept(tag, child, declaration);
      return parent.childPlug();
    }
    if (!restore(parent)) return nullptr;
  }
  const ContentPaths::Way* way = pathsOf(parent.type)->fromStart(strKey);
  if (!way) return misplaced(tag, child);

  auto run = std::make_unique<ContentRun>(contentModel(parent.type));
  ContentPaths::Stand stand;
  for (const ElementName& name : *way) {
    if (!run->push(name.local, name.uri)) return misplaced(tag, child);
    stand.accept(keyOf(name.local, name.uri));
  }
  const xmlSchemaElement* declaration = run->push(tag.local, tag.uri);
  if (!declaration) return misplaced(tag, child);
  std::unique_ptr<SchemaPlug> side = sidePlug(parent, *way);
  if (!side) {
    parent.blnLost = true;
    return nullptr;
  }
  parent.side = std::move(side);
  parent.run = std::move(run);
  parent.stand = std::move(stand);
  parent.accept(tag, child, declaration);
  return parent.childPlug();
}

/// Feeds what is missing between where the parent's children stand and a child with this key.
bool ShadowModel::bridge(Frame& parent, const std::string& strKey) {
  const ContentPaths::Way* way =
      pathsOf(parent.type)->from(parent.stand, parent.run->next(), strKey);
  if (!way) return false;
  // The run first, which can be restored: the validator cannot.
  for (const ElementName& name : *way) {
    if (!parent.run->push(name.local, name.uri)) {
      restore(parent);
      return false;
    }
    parent.stand.accept(keyOf(name.local, name.uri));
  }
  return feed(*parent.childPlug(), *way);
}

/// A validator that has come by the shortest ways from the root to where the parent's child stands.
std::unique_ptr<SchemaPlug> ShadowModel::sidePlug(const Frame& parent,
                                                  const ContentPaths::Way& way) {
  if (++lngSidePlugs_ > kMaxSidePlugs) return nullptr;
  auto plug = std::make_unique<SchemaPlug>(schema_->schema.get(), errors_);
  const Muted muted(errors_);
  auto at = std::find_if(frames_.rbegin(), frames_.rend(),
                         [](const std::unique_ptr<Frame>& frame) { return frame->own != nullptr; })
                .base() -
            1;
  for (; at->get() != &parent; ++at) {
    const Frame& child = **std::next(at);
    ContentPaths* paths = pathsOf((*at)->type);
    const ContentPaths::Way* toChild =
        paths ? paths->fromStart(keyOf(child.local, child.uri)) : nullptr;
    if (!toChild) return nullptr;
    plug->start((*at)->local, (*at)->uri);
    if (!feed(*plug, *toChild)) return nullptr;
  }
  plug->start(parent.local, parent.uri);
  if (!feed(*plug, way)) return nullptr;
  return plug;
}

/// A child that the parent's model does not hold at all is checked as if it were a root.
SchemaPlug* ShadowModel::misplaced(const StartTag& tag, Frame& child) {
  const xmlSchemaElement* declaration = schema_->globalElement(tag.local, tag.uri);
  if (!declaration || ++lngSidePlugs_ > kMaxSidePlugs) return nullptr;
  child.own = std::make_unique<SchemaPlug>(schema_->schema.get(), errors_);
  child.take(tag, declaration);
  return child.own.get();
}

bool ShadowModel::feed(SchemaPlug& plug, const ContentPaths::Way& way) {
  lngFed_ += static_cast<std::int64_t>(way.size()) + 1;
  if (lngFed_ > kMaxFed) return false;
  const Muted muted(errors_);
  for (const ElementName& name : way) {
    plug.start(name.local, name.uri);
    plug.end(name.local, name.uri);
  }
  return true;
}

ContentPaths* ShadowModel::pathsOf(const xmlSchemaType* type) {
  if (!type || !contentModel(type)) return nullptr;
  std::unique_ptr<ContentPaths>& paths = paths_[type];
  const ElementNames* candidates =
      schema_->closure.blnCounts ? &schema_->closure.declared : nullptr;
  if (!paths) paths = std::make_unique<ContentPaths>(contentModel(type), names_, candidates);
  return paths.get();
}

std::vector<RaisedError> ShadowModel::takeRaised() {
  std::vector<RaisedError> raised = std::exchange(errors_.raised, {});
  for (const RaisedError& error : raised) {
    if (error.code == XML_SCHEMAV_INTERNAL) {
      throw RuntimeError(kXmlFailure, "The schema validator has failed.");
    }
  }
  return raised;
}

void ShadowModel::report(const SchemaReports& reports) {
  for (const SchemaReport& one : reports) sink_(one);
}

}  // namespace Varnel_Tolv_XML_Creation
