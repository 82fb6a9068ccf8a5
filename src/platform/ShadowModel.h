#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/CompiledSchema.h"
#include "platform/ContentPaths.h"
#include "platform/ContentRun.h"
#include "platform/SchemaPlug.h"
#include "platform/SchemaReports.h"

namespace Varnel_Tolv_XML_Creation {

/// Checks a document, event by event, against a schema and reports everything that is wrong.
///
/// The library's validator passes over the rest of a parent once it has met a child that the
/// content model does not allow. Therefore such a child never reaches it: a shadow of the content
/// models, one run for each open element, is asked first. A child that no schema declares is left
/// out. For one that is out of its place the validator is first fed, muted, the elements that are
/// missing before it or, where it cannot come any more, a second validator takes over the rest of
/// the parent, led to the place by a shortest way through the content models. Inside elements whose
/// type is not known from their declaration (wildcards, xsi:type, xsi:nil, an unknown root) the
/// validator is left to itself.
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
  SchemaPlug* place(Frame& parent, const StartTag& tag, Frame& child);
  bool accepts(Frame& parent, const StartTag& tag, bool blnDeclared, Frame& child,
               NextElements& expected);
  void refuse(Frame& parent, const StartTag& tag, bool blnDeclared, const NextElements& expected);
  SchemaPlug* resume(Frame& parent, const StartTag& tag, Frame& child);
  NextElements expectedIn(const Frame& parent);
  bool bridge(Frame& parent, const std::string& strKey);
  std::unique_ptr<SchemaPlug> sidePlug(const Frame& parent, const ContentPaths::Way& way);
  SchemaPlug* misplaced(const StartTag& tag, Frame& child);
  bool restore(Frame& parent);
  bool feed(SchemaPlug& plug, const ContentPaths::Way& way);
  ContentPaths* pathsOf(const xmlSchemaType* type);
  std::vector<RaisedError> takeRaised();
  void report(const SchemaReports& reports);

  const SchemaCollection::Impl& schemas_;
  Sink sink_;
  const CompiledSchema* schema_ = nullptr;
  SchemaErrors errors_;
  ElementNamePool names_;
  std::unordered_map<const xmlSchemaType*, std::unique_ptr<ContentPaths>> paths_;
  std::vector<std::unique_ptr<Frame>> frames_;
  bool blnIdentitiesKnown_ = true;  // every key and reference has come to the validator
  std::int64_t lngSidePlugs_ = 0;
  std::int64_t lngFed_ = 0;
  std::int64_t lngRestored_ = 0;
};

}  // namespace Varnel_Tolv_XML_Creation
