#include "platform/schema/ShadowModel.h"

#include <libxml/xmlerror.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/schema/SchemaTypes.h"
#include "platform/schema/ShadowFrame.h"
#include "platform/xml/XmlCharacters.h"
#include "platform/xml/XmlTree.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

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

ShadowModel::ShadowModel(const SchemaCollection::Impl& schemas, Sink sink)
    : schemas_(schemas), sink_(std::move(sink)) {}

ShadowModel::~ShadowModel() = default;

void ShadowModel::start(const StartTag& tag) {
  auto frame = std::make_unique<Frame>(tag);
  const std::size_t lngOuterBindings = bindings_.size();
  bindings_.insert(bindings_.end(), tag.namespaces, tag.namespaces + 2 * tag.namespaceCount);
  if (frames_.empty()) {
    frame = root(tag);
  } else if (Frame& parent = *frames_.back(); parent.type) {
    frame->plug = place(parent, tag, *frame);
  } else {
    frame->plug = parent.plug;
    frame->scout = parent.scout;
    frame->blnUnchecked = !parent.scout;
  }
  frame->lngOuterBindings = lngOuterBindings;
  if (frame->plug) {
    CollapsedTag collapsedTag(tag);
    std::vector<const xmlChar*> bindings;
    if (frame->own) collapsedTag.bind(bindings = bindingsInForce());
    collapseValues(*frame, collapsedTag);
    frame->plug->start(collapsedTag.tag());
    const std::vector<RaisedError> raised = takeRaised();
    for (const RaisedError& error : raised) {
      if (endsChecking(error.code)) frame->type = nullptr;
      if (error.code == XML_SCHEMAV_CVC_ELT_3_1) frame->blnNilRefused = true;
    }
    const bool blnDeclared = !frames_.empty() && schema_->declares(view(tag.uri), view(tag.local));
    report(startReports(tag, blnDeclared, raised));
  }
  frames_.push_back(std::move(frame));
}

void ShadowModel::text(std::string_view strText) {
  if (frames_.empty()) return;
  Frame& frame = *frames_.back();
  if (!frame.plug) return;
  if (!isXmlWhiteSpace(strText)) frame.blnNilRefused = false;
  if (frame.type && hasElementsOnly(frame.type) && isXmlWhiteSpace(strText)) return;
  frame.plug->text(frame.type && trimsValue(frame.type) ? trimmed(strText) : strText);
  report(textReports(frame.strQName, takeRaised()));
}

void ShadowModel::end(const xmlChar* local, const xmlChar* uri) {
  const std::unique_ptr<Frame> frame = std::move(frames_.back());
  frames_.pop_back();
  bindings_.resize(frame->lngOuterBindings);
  if (!frame->plug) return;
  if (frame->scout) {
    const Muted muted(errors_);
    frame->scout->end(local, uri);
  }
  frame->plug->end(local, uri);
  std::vector<RaisedError> raised = takeRaised();
  std::erase_if(raised, [&](const RaisedError& error) {
    if (error.code == XML_SCHEMAV_ELEMENT_CONTENT) {
      return frame->blnReported || (frame->track && frame->track->lost());
    }
    if (error.code == XML_SCHEMAV_CVC_IDC) return !blnIdentitiesKnown_;
    return (frame->blnValueSpoilt || frame->blnNilRefused) && isValueError(error.code);
  });
  if (raised.empty()) return;
  NextElements expected;
  if (frame->type && contentModel(frame->type)) {
    if (!frame->track) frame->track = newTrack(*frame);
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
    take(*frame, tag, declaration);
  }
  return frame;
}

/// Finds who is to check a child of an element whose type is known. Nobody: null.
SchemaPlug* ShadowModel::place(Frame& parent, const StartTag& tag, Frame& child) {
  const bool blnDeclared = schema_->declares(view(tag.uri), view(tag.local));
  if (hasNoChildren(parent.type)) {
    parent.blnValueSpoilt = true;
    refuse(parent, tag, blnDeclared);
    return blnDeclared ? misplaced(tag, child) : nullptr;
  }
  if (!contentModel(parent.type)) {  // anything may stand here
    takeAnything(child, tag);
    return parent.plug;
  }

  if (!parent.track) parent.track = newTrack(parent);
  // An undeclared child can only be meant by a wildcard.
  if (blnDeclared || schema_->closure.blnWildcards) {
    // In content that is damaged already there may be many more to refuse.
    if (const xmlSchemaElement* declaration =
            parent.track->accept(tag.local, tag.uri, parent.blnDamaged)) {
      take(child, tag, declaration);
      return parent.plug;
    }
  }
  parent.blnDamaged = true;
  const bool blnCovered = blnDeclared || mayStandIn(parent, tag);
  refuse(parent, tag, blnCovered);
  return blnCovered ? resume(parent, tag, child) : nullptr;
}

/// The keys by which a child can be found in a model: as what it is, or as what a wildcard admits.
std::vector<std::string> ShadowModel::keysOf(const StartTag& tag) const {
  std::vector<std::string> keys;
  const std::string_view strUri = view(tag.uri);
  const std::string_view strLocal = view(tag.local);
  if (schema_->declares(strUri, strLocal)) keys.push_back(elementKey(strUri, strLocal));
  if (schema_->closure.blnWildcards) keys.push_back(wildcardKey(strUri));
  return keys;
}

/// Whether a wildcard admits a child somewhere in its parent.
bool ShadowModel::mayStandIn(const Frame& parent, const StartTag& tag) {
  if (!schema_->closure.blnWildcards) return false;
  return pathsOf(parent.type)->fromStart(wildcardKey(view(tag.uri))).has_value();
}

/// Reports a child that is not allowed: each one that is not declared, otherwise the first.
void ShadowModel::refuse(Frame& parent, const StartTag& tag, bool blnDeclared) {
  if (!blnDeclared) {
    report({undeclaredElement(tag.qualifiedName(), XML_SCHEMAV_ELEMENT_CONTENT)});
    return;
  }
  blnIdentitiesKnown_ = false;
  if (std::exchange(parent.blnReported, true)) return;
  report({invalidContent(expectedIn(parent), XML_SCHEMAV_ELEMENT_CONTENT)});
}

NextElements ShadowModel::expectedIn(const Frame& frame) {
  if (!frame.track) return {};
  NextElements next = frame.track->next();
  if (!schema_->closure.blnCounts || frame.track->lost()) return next;
  return pathsOf(frame.type)->complete(frame.track->stand(), std::move(next));
}

/// Finds who is to check a child that was refused.
SchemaPlug* ShadowModel::resume(Frame& parent, const StartTag& tag, Frame& child) {
  for (const std::string& strKey : keysOf(tag)) {
    if (SchemaPlug* plug = resumeBy(strKey, parent, tag, child)) return plug;
  }
  return misplaced(tag, child);
}

SchemaPlug* ShadowModel::resumeBy(const std::string& strKey, Frame& parent, const StartTag& tag,
                                  Frame& child) {
  if (const xmlSchemaElement* found = bridge(parent, *parent.track, *parent.plug, tag, strKey)) {
    take(child, tag, found);
    return parent.plug;
  }
  if (parent.sideTrack) {
    const xmlSchemaElement* found = parent.sideTrack->accept(tag.local, tag.uri, true);
    if (!found) found = bridge(parent, *parent.sideTrack, *parent.sidePlug, tag, strKey);
    if (found) {
      take(child, tag, found);
      return parent.sidePlug.get();
    }
  }
  ContentPaths& paths = *pathsOf(parent.type);
  const std::optional<ContentPaths::Way> way = paths.fromStart(strKey);
  if (!way || !costs_.mayFeed(paths.costOf(*way))) return nullptr;
  std::unique_ptr<ContentTrack> track = newTrack(parent);
  const std::optional<ContentPaths::Way> taken = track->advance(*way);
  if (!taken) return nullptr;
  const xmlSchemaElement* found = track->accept(tag.local, tag.uri, false);
  if (!found) return nullptr;
  std::unique_ptr<SchemaPlug> plug = sidePlug(parent, *taken);
  if (!plug) return nullptr;
  parent.sideTrack = std::move(track);
  parent.sidePlug = std::move(plug);
  take(child, tag, found);
  return parent.sidePlug.get();
}

/// Feeds what is missing between where a track stands and the child, and lets it accept this. Null
/// when the child does not come after that.
const xmlSchemaElement* ShadowModel::bridge(const Frame& parent, ContentTrack& track,
                                            SchemaPlug& plug, const StartTag& tag,
                                            const std::string& strKey) {
  if (track.lost()) return nullptr;
  ContentPaths& paths = *pathsOf(parent.type);
  const std::optional<ContentPaths::Way> way = paths.from(track.stand(), track.next(), strKey);
  if (!way || !costs_.mayFeed(paths.costOf(*way))) return nullptr;
  const std::optional<ContentPaths::Way> taken = track.advance(*way);
  if (!taken) return nullptr;
  feed(plug, *taken);
  return track.accept(tag.local, tag.uri, false);
}

/// A validator that begins at the parent and has come by a shortest way to where the child stands.
std::unique_ptr<SchemaPlug> ShadowModel::sidePlug(const Frame& parent,
                                                  const ContentPaths::Way& way) {
  if (!costs_.mayPlug()) return nullptr;
  auto plug = std::make_unique<SchemaPlug>(roots().schema(), errors_);
  const Muted muted(errors_);
  std::vector<const xmlChar*> bindings = bindingsInForce();
  StartTag tag;
  tag.local = roots().nameFor(parent.type);
  tag.uri = roots().schema()->targetNamespace;
  tag.namespaces = bindings.data();
  tag.namespaceCount = static_cast<int>(bindings.size() / 2);
  plug->start(tag);
  feed(*plug, way);
  return plug;
}

/// A child that the parent's model does not hold at all is checked as if it were a root.
SchemaPlug* ShadowModel::misplaced(const StartTag& tag, Frame& child) {
  const xmlSchemaElement* declaration = schema_->globalElement(tag.local, tag.uri);
  if (!declaration || !costs_.mayPlug()) return nullptr;
  child.own = std::make_unique<SchemaPlug>(schema_->schema.get(), errors_);
  take(child, tag, declaration);
  return child.own.get();
}

void ShadowModel::feed(SchemaPlug& plug, const ContentPaths::Way& way) {
  const Muted muted(errors_);
  for (const ContentPaths::Step& step : way) {
    plug.start(step.name.local, step.name.uri);
    plug.end(step.name.local, step.name.uri);
  }
}

std::unique_ptr<ContentTrack> ShadowModel::newTrack(const Frame& parent) {
  return std::make_unique<ContentTrack>(contentModel(parent.type), costs_, *schema_);
}

ContentPaths* ShadowModel::pathsOf(const xmlSchemaType* type) {
  if (!type || !contentModel(type)) return nullptr;
  std::unique_ptr<ContentPaths>& paths = paths_[type];
  const ElementNames* candidates =
      schema_->closure.blnCounts ? &schema_->closure.declared : nullptr;
  if (!paths) {
    paths = std::make_unique<ContentPaths>(contentModel(type), names_, candidates,
                                           schema_->closure.lngMaxRequired);
  }
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
