#pragma once

#include <libxml/schemasInternals.h>
#include <libxml/xmlregexp.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Varnel_Tolv_XML_Creation {

/// What a content model allows next.
struct NextElements {
  std::vector<const xmlChar*> values;  // `local|uri`, `*|uri`, `not *|uri`; the model's own strings
  bool blnComplete = true;             // not so where there are more than can be listed
};

bool isWildcard(const xmlChar* value) noexcept;

/// Whether such a wildcard stands for elements of a namespace, empty for none.
bool admits(const xmlChar* wildcard, std::string_view strUri) noexcept;

/// What tells the elements of a model apart: `local|uri`, and the wildcard for what it has
/// admitted.
std::string keyOf(const xmlChar* local, const xmlChar* uri, const xmlSchemaElement* matched);

/// A content model and the children that it has accepted so far.
class ContentRun {
 public:
  static constexpr int kMaxListed = 128;

  explicit ContentRun(xmlRegexp* model);
  ContentRun(const ContentRun&) = delete;  // the model's run keeps its address
  ContentRun& operator=(const ContentRun&) = delete;

  /// What the model has for the next child: its declaration or a wildcard. Null when it does not
  /// allow the child here; the run is then of no use until it is restored. The names must outlive
  /// the run.
  xmlSchemaElement* push(const xmlChar* local, const xmlChar* uri);

  /// Refuses the child accepted last after all.
  void takeBack() { word_.pop_back(); }

  /// Back to where it was before the child that was refused. Takes a step for each accepted child.
  bool restore();

  NextElements next() const;
  std::size_t accepted() const noexcept { return word_.size(); }

 private:
  struct Name {
    const xmlChar* local;
    const xmlChar* uri;
  };
  struct Free {
    void operator()(xmlRegExecCtxt* run) const noexcept { xmlRegFreeExecCtxt(run); }
  };

  void begin();

  xmlRegexp* model_;
  std::unique_ptr<xmlRegExecCtxt, Free> run_;
  void* matched_ = nullptr;
  std::vector<Name> word_;
};

}  // namespace Varnel_Tolv_XML_Creation
