#pragma once

#include <libxml/tree.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "StylesheetTexts.h"

/// An element of a document that a page is made from. The document owns it.
class ViewElement {
 public:
  explicit ViewElement(xmlNodePtr node) : node_(node) {}

  /// A new last child, with `strText` as its text.
  ViewElement add(const char* name, std::string_view strText = {}) const;

  /// Sets an attribute; an empty value leaves it out, but for `setAlways`.
  const ViewElement& set(const char* name, std::string_view strValue) const;
  const ViewElement& setAlways(const char* name, std::string_view strValue) const;
  const ViewElement& setFlag(const char* name, bool blnValue) const;

 private:
  xmlNodePtr node_;
};

/// What a page shows, as data: nothing in it is markup, and all that reaches the page goes through
/// a stylesheet. Texts are UTF-8 of characters that XML can hold.
class ViewDocument {
 public:
  explicit ViewDocument(const char* rootName);

  /// The view that was written as XML. Raises std::runtime_error for what is none.
  static ViewDocument parsed(const std::string& strXml);
  ViewElement root() const;
  xmlDocPtr get() const { return document_.get(); }

 private:
  struct Free {
    void operator()(xmlDocPtr document) const { xmlFreeDoc(document); }
  };
  explicit ViewDocument(xmlDocPtr document) : document_(document) {}

  std::unique_ptr<xmlDoc, Free> document_;
};

/// Makes pages from view documents. Several threads may use one at the same time.
class Stylesheet {
 public:
  /// The stylesheet of the file, or the built-in one of this name when there is no such file. It
  /// may import a built-in one, "built-in:page.xsl"; it reads and writes nothing else but files
  /// beside it. With a translation the built-in ones are in another language. Raises CannotRun.
  explicit Stylesheet(const std::string& strFile = "", const std::string& strBuiltIn = "page.xsl",
                      const Translation& translation = nullptr);
  ~Stylesheet();

  /// The page as text. Raises std::runtime_error when the stylesheet gives up.
  std::string apply(const ViewDocument& view) const;

  /// Whether it is built in, but for fixed content in named templates: then it takes all texts as
  /// they are, and places of other texts too.
  bool takesPlaces() const;

  /// The page for a view that has such places in its texts; none for a page that `htmlText` does
  /// not write.
  std::optional<std::string> applyToPlaces(const ViewDocument& view) const;

 private:
  struct Compiled;
  std::unique_ptr<Compiled> compiled_;
};

/// The text of a built-in file by its name; empty when there is none.
using BuiltInFile = std::string_view (*)(std::string_view strName);

/// To be called once, before threads are started. `failed` is told why a stylesheet gave up.
void prepareStylesheets(BuiltInFile builtIn, void (*failed)(const std::string& strReason));
