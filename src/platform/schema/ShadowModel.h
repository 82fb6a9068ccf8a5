#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/schema/CollapsedTag.h"
#include "platform/schema/CompiledSchema.h"
#include "platform/schema/ContentPaths.h"
#include "platform/schema/ContentTrack.h"
#include "platform/schema/SchemaPlug.h"
#include "platform/schema/SchemaReports.h"
#include "platform/schema/SchemaRoots.h"

namespace Varnel_Tolv_XML_Creation {

/// Checks a document, event by event, against a schema and reports everything that is wrong.
///
/// The library's validator passes over the rest of a parent once it has met a child that the
/// content model does not allow. Therefore such a child never reaches it: a shadow of the content
/// models, one track for each open element, is asked first. A child that no schema declares is left
/// out. Before one that comes too early the validator is fed, muted, the elements that are missing.
/// One that comes too late or once too often goes to a second validator, which was led to its place
/// by a shortest way through the parent's content model and stands by for more of the kind. Inside
/// elements whose type is not known here (declared for a wildcard, or as xsi:type, in a namespace
/// that is not the schema's own; xsi:nil; an unknown root) the validator is left to itself.
///
/// The library also takes white space around an attribute's value for a part of most values. What
/// it says of a value as written tells whether that is a text, so a scout is asked first: another
/// validator, begun at the element's type, or led along where that is not known.
class ShadowModel {
 public:
  using Sink = std::function<void(const SchemaReport&)>;

  ShadowModel(const SchemaCollection::Impl& schemas, Sink sink);
  ~ShadowModel();

  /// To be called before anybody else hears of the event. They raise what the sink raises, and
  /// kXmlFailure when the library's validator fails by itself.
  void start(const StartTag& tag);
  void text(std::string_view strText);
  void end(const xmlChar* local, const xmlChar* uri);

 private:
  struct Frame;

  std::unique_ptr<Frame> root(const StartTag& tag);
  void take(Frame& frame, const StartTag& tag, const xmlSchemaElement* declaration);
  void takeAnything(Frame& frame, const StartTag& tag);
  void takeType(Frame& frame, const StartTag& tag, const xmlSchemaType* type);
  const xmlSchemaType* namedType(std::string_view strName) const;
  SchemaRoots& roots();
  std::vector<const xmlChar*> bindingsInForce() const;
  void collapseValues(Frame& frame, CollapsedTag& tag);
  std::vector<RaisedError> askScout(SchemaPlug& scout, const StartTag& tag);
  SchemaPlug* place(Frame& parent, const StartTag& tag, Frame& child);
  void refuse(Frame& parent, const StartTag& tag, bool blnDeclared);
  NextElements expectedIn(const Frame& frame);
  std::vector<std::string> keysOf(const StartTag& tag) const;
  bool mayStandIn(const Frame& parent, const StartTag& tag);
  SchemaPlug* resume(Frame& parent, const StartTag& tag, Frame& child);
  SchemaPlug* resumeBy(const std::string& strKey, Frame& parent, const StartTag& tag, Frame& child);
  const xmlSchemaElement* bridge(const Frame& parent, ContentTrack& track, SchemaPlug& plug,
                                 const StartTag& tag, const std::string& strKey);
  std::unique_ptr<SchemaPlug> sidePlug(const Frame& parent, const ContentPaths::Way& way);
  SchemaPlug* misplaced(const StartTag& tag, Frame& child);
  std::unique_ptr<ContentTrack> newTrack(const Frame& parent);
  ContentPaths* pathsOf(const xmlSchemaType* type);
  void feed(SchemaPlug& plug, const ContentPaths::Way& way);
  std::vector<RaisedError> takeRaised();
  void report(const SchemaReports& reports);

  const SchemaCollection::Impl& schemas_;
  Sink sink_;
  const CompiledSchema* schema_ = nullptr;
  std::optional<SchemaRoots> roots_;
  SchemaErrors errors_;
  ElementNamePool names_;
  std::unordered_map<const xmlSchemaType*, std::unique_ptr<ContentPaths>> paths_;
  std::vector<std::unique_ptr<Frame>> frames_;
  std::vector<const xmlChar*> bindings_;  // prefix and namespace, of all open elements
  bool blnIdentitiesKnown_ = true;        // every key and reference has come to the validator
  RepairCosts costs_;
};

}  // namespace Varnel_Tolv_XML_Creation
