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

  std::unique_ptr<ContentTrack> track;      // the children in `plug`
  std::unique_ptr<SchemaPlug> sidePlug;     // checks the children that come too late
  std::unique_ptr<ContentTrack> sideTrack;  // and these
  bool blnDamaged = false;                  // a child was refused
  bool blnReported = false;                 // and it was reported that the content is invalid
  bool blnValueSpoilt = false;              // the value is not what it was meant to be

  explicit Frame(const StartTag& tag)
      : local(tag.local), uri(tag.uri), strQName(tag.qualifiedName()) {}

  void take(const StartTag& tag, const xmlSchemaElement* declaration) {
    const bool blnWildcard = declaration->type != XML_SCHEMA_TYPE_ELEMENT;
    if (!blnWildcard && !changesType(tag)) type = declaration->subtypes;
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
    if (error.code == XML_SCHEMAV_ELEMENT_CONTENT) {
      return frame->blnReported || (frame->track && frame->track->lost());
    }
    if (error.code == XML_SCHEMAV_CVC_IDC) return !blnIdentitiesKnown_;
    return frame->blnValueSpoilt && isValueError(error.code);
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
    frame->take(tag, declaration);
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
  if (!contentModel(parent.type)) return parent.plug;  // anything may stand here

  if (!parent.track) parent.track = newTrack(parent);
  // An undeclared child can only be meant by a wildcard.
  if (blnDeclared || schema_->closure.blnWildcards) {
    // In content that is damaged already there may be many more to refuse.
    if (const xmlSchemaElement* declaration =
            parent.track->accept(tag.local, tag.uri, parent.blnDamaged)) {
      child.take(tag, declaration);
      return parent.plug;
    }
  }
  parent.blnDamaged = true;
  refuse(parent, tag, blnDeclared);
  return blnDeclared ? resume(parent, tag, child) : nullptr;
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
  if (const xmlSchemaElement* found = bridge(parent, *parent.track, *parent.plug, tag)) {
    child.take(tag, found);
    return parent.plug;
  }
  if (parent.sideTrack) {
    const xmlSchemaElement* found = parent.sideTrack->accept(tag.local, tag.uri, true);
    if (!found) found = bridge(parent, *parent.sideTrack, *parent.sidePlug, tag);
    if (found) {
      child.take(tag, found);
      return parent.sidePlug.get();
    }
  }
  ContentPaths& paths = *pathsOf(parent.type);
  const std::optional<ContentPaths::Way> way = paths.fromStart(keyOf(tag.local, tag.uri));
  if (!way) return misplaced(tag, child);
  if (!costs_.mayFeed(paths.costOf(*way))) return nullptr;
  std::unique_ptr<ContentTrack> track = newTrack(parent);
  if (!track->advance(*way)) return misplaced(tag, child);
  const xmlSchemaElement* found = track->accept(tag.local, tag.uri, false);
  if (!found) return misplaced(tag, child);
  std::unique_ptr<SchemaPlug> plug = sidePlug(parent, *way);
  if (!plug) return nullptr;
  parent.sideTrack = std::move(track);
  parent.sidePlug = std::move(plug);
  child.take(tag, found);
  return parent.sidePlug.get();
}

/// Feeds what is missing between where a track stands and the child, and lets it accept this. Null
/// when the child does not come after that.
const xmlSchemaElement* ShadowModel::bridge(const Frame& parent, ContentTrack& track,
                                            SchemaPlug& plug, const StartTag& tag) {
  if (track.lost()) return nullptr;
  ContentPaths& paths = *pathsOf(parent.type);
  const std::optional<ContentPaths::Way> way =
      paths.from(track.stand(), track.next(), keyOf(tag.local, tag.uri));
  if (!way || !costs_.mayFeed(paths.costOf(*way)) || !track.advance(*way)) return nullptr;
  feed(plug, *way);
  return track.accept(tag.local, tag.uri, false);
}

/// A validator that has come by the shortest ways from the root to where the parent's child stands.
std::unique_ptr<SchemaPlug> ShadowModel::sidePlug(const Frame& parent,
                                                  const ContentPaths::Way& way) {
  if (!costs_.mayPlug()) return nullptr;
  auto plug = std::make_unique<SchemaPlug>(schema_->schema.get(), errors_);
  const Muted muted(errors_);
  auto at = std::find_if(frames_.rbegin(), frames_.rend(),
                         [](const std::unique_ptr<Frame>& frame) { return frame->own != nullptr; })
                .base() -
            1;
  for (; at->get() != &parent; ++at) {
    const Frame& child = **std::next(at);
    ContentPaths* paths = pathsOf((*at)->type);
    if (!paths) return nullptr;
    const std::optional<ContentPaths::Way> toChild =
        paths->fromStart(keyOf(child.local, child.uri));
    if (!toChild || !costs_.mayFeed(paths->costOf(*toChild))) return nullptr;
    plug->start((*at)->local, (*at)->uri);
    feed(*plug, *toChild);
  }
  plug->start(parent.local, parent.uri);
  feed(*plug, way);
  return plug;
}

/// A child that the parent's model does not hold at all is checked as if it were a root.
SchemaPlug* ShadowModel::misplaced(const StartTag& tag, Frame& child) {
  const xmlSchemaElement* declaration = schema_->globalElement(tag.local, tag.uri);
  if (!declaration || !costs_.mayPlug()) return nullptr;
  child.own = std::make_unique<SchemaPlug>(schema_->schema.get(), errors_);
  child.take(tag, declaration);
  return child.own.get();
}

void ShadowModel::feed(SchemaPlug& plug, const ContentPaths::Way& way) {
  const Muted muted(errors_);
  for (const ElementName& name : way) {
    plug.start(name.local, name.uri);
    plug.end(name.local, name.uri);
  }
}

std::unique_ptr<ContentTrack> ShadowModel::newTrack(const Frame& parent) {
  return std::make_unique<ContentTrack>(contentModel(parent.type), costs_,
                                        schema_->closure.blnCounts);
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
