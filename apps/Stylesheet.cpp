#include "Stylesheet.h"

#include <libxml/HTMLtree.h>
#include <libxml/dict.h>
#include <libxml/parser.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include "CannotRun.h"
#include "HtmlText.h"
#include "StylesheetLibrary.h"

namespace {

constexpr std::string_view kBuiltIn = "built-in:";
constexpr int kParserOptions =
    XSLT_PARSE_OPTIONS | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

// All that libxslt said, and of that the places in stylesheets.
thread_local std::string strComplaint;
thread_local std::string strPlaces;

// Of the stylesheet that is being read in this thread.
thread_local const Translation* translationNow = nullptr;

// What `loadDocument` threw in this thread: no exception may pass through libxslt, which calls it.
thread_local std::exception_ptr thrownWithin;

// Set once, before any thread.
xsltDocLoaderFunc standardLoader = nullptr;
BuiltInFile builtInFile = nullptr;
void (*tellFailure)(const std::string& strReason) = nullptr;

void complain(void* /*context*/, const char* format, ...) {
  std::array<char, 512> line{};
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(line.data(), line.size(), format, arguments);
  va_end(arguments);
  if (strComplaint.size() < 2000) strComplaint += line.data();
  // A place comes in a call of its own, with its kind ahead.
  const bool blnPlace = std::string_view(format).starts_with("%s: ");
  if (blnPlace && strPlaces.size() < 2000) strPlaces += line.data();
}

std::string inOneLine(std::string strText) {
  for (char& letter : strText) {
    if (letter == '\n') letter = ' ';
  }
  return strText;
}

void forgetComplaints() {
  strComplaint.clear();
  strPlaces.clear();
}

/// Why a document could not be parsed or compiled.
std::string complaint(bool blnParsed) {
  if (blnParsed) return inOneLine(strComplaint);
  const xmlError* const error = xmlGetLastError();
  if (error == nullptr || error->message == nullptr) return "it cannot be read";
  return inOneLine(error->message) + "(line " + std::to_string(error->line) + ')';
}

/// All documents of a stylesheet share its dictionary of names: nodes of one hand theirs to the
/// page.
xmlDocPtr builtInDocument(const std::string& strUri, xmlDictPtr dictionary) {
  const std::unique_ptr<xmlParserCtxt, void (*)(xmlParserCtxtPtr)> parser(xmlNewParserCtxt(),
                                                                          xmlFreeParserCtxt);
  if (!parser) throw std::bad_alloc();
  if (dictionary != nullptr) {
    xmlDictFree(parser->dict);
    parser->dict = dictionary;
    xmlDictReference(dictionary);
  }
  const std::string_view strText = builtInFile(strUri.substr(kBuiltIn.size()));
  std::unique_ptr<xmlDoc, void (*)(xmlDocPtr)> document(
      xmlCtxtReadMemory(parser.get(), strText.data(), static_cast<int>(strText.size()),
                        strUri.c_str(), nullptr, kParserOptions),
      xmlFreeDoc);
  if (document && translationNow != nullptr) translate(*document, *translationNow);
  return document.release();
}

/// Gives the built-in stylesheets to those that import them.
xmlDocPtr loadDocument(const xmlChar* uri, xmlDictPtr dictionary, int options, void* context,
                       xsltLoadType type) {
  try {
    const std::string strUri(reinterpret_cast<const char*>(uri));
    if (strUri.starts_with(kBuiltIn)) return builtInDocument(strUri, dictionary);
  } catch (...) {
    thrownWithin = std::current_exception();
    return nullptr;
  }
  return standardLoader(uri, dictionary, options | XML_PARSE_NONET, context, type);
}

/// To be called behind each call of libxslt that may load documents.
void throwWhatWasThrownWithin() {
  if (thrownWithin) std::rethrow_exception(std::exchange(thrownWithin, nullptr));
}

xsltSecurityPrefsPtr restrictions() {
  static xsltSecurityPrefsPtr const preferences = [] {
    xsltSecurityPrefsPtr const made = xslt().newSecurityPrefs();
    for (const xsltSecurityOption option :
         {XSLT_SECPREF_WRITE_FILE, XSLT_SECPREF_CREATE_DIRECTORY, XSLT_SECPREF_READ_NETWORK,
          XSLT_SECPREF_WRITE_NETWORK}) {
      xslt().setSecurityPrefs(made, option, xslt().securityForbid);
    }
    return made;
  }();
  return preferences;
}

const xmlChar* characters(const char* text) { return reinterpret_cast<const xmlChar*>(text); }

/// Whether an element of a stylesheet makes the same whatever it is applied to.
bool isFixed(xmlNodePtr element) {
  if (element->ns == nullptr || !xmlStrEqual(element->ns->href, XSLT_NAMESPACE)) {
    for (const xmlAttr* each = element->properties; each != nullptr; each = each->next) {
      // In a namespace it may be one of XSLT's; with a brace, made from the view.
      const xmlChar* const value = each->children == nullptr ? nullptr : each->children->content;
      if (each->ns != nullptr || xmlStrchr(value, '{') != nullptr) return false;
    }
    return true;
  }
  const auto is = [&](const char* name) {
    return xmlStrEqual(element->name, characters(name)) != 0;
  };
  if (is("template")) return xmlHasProp(element, characters("match")) == nullptr;
  if (is("import")) {
    const std::unique_ptr<xmlChar, void (*)(void*)> href(
        xmlGetNoNsProp(element, characters("href")), xmlFree);
    return xmlStrncmp(href.get(), characters(kBuiltIn.data()), kBuiltIn.size()) == 0;
  }
  return is("stylesheet") || is("transform") || is("output") || is("text");
}

/// Whether all that a stylesheet adds to a built-in one is fixed content in named templates.
bool isFixed(const xmlDoc& stylesheet) {
  const xmlNode* const root = xmlDocGetRootElement(&stylesheet);
  bool blnImports = false;
  for (xmlNodePtr node = xmlDocGetRootElement(&stylesheet); node != nullptr;) {
    if (node->type == XML_ELEMENT_NODE) {
      if (!isFixed(node)) return false;
      blnImports = blnImports || xmlStrEqual(node->name, characters("import")) != 0;
    }
    if (node->type == XML_ELEMENT_NODE && node->children != nullptr) {
      node = node->children;
      continue;
    }
    while (node != root && node->next == nullptr) node = node->parent;
    node = node == root ? nullptr : node->next;
  }
  return blnImports;
}

}  // namespace

ViewElement ViewElement::add(const char* name, std::string_view strText) const {
  xmlNodePtr const child = xmlNewChild(node_, nullptr, characters(name), nullptr);
  if (child == nullptr) throw std::bad_alloc();
  if (!strText.empty()) {
    xmlNodeAddContentLen(child, characters(strText.data()), static_cast<int>(strText.size()));
  }
  return ViewElement(child);
}

const ViewElement& ViewElement::set(const char* name, std::string_view strValue) const {
  return strValue.empty() ? *this : setAlways(name, strValue);
}

const ViewElement& ViewElement::setAlways(const char* name, std::string_view strValue) const {
  if (xmlNewProp(node_, characters(name), characters(std::string(strValue).c_str())) == nullptr) {
    throw std::bad_alloc();
  }
  return *this;
}

const ViewElement& ViewElement::setFlag(const char* name, bool blnValue) const {
  return set(name, blnValue ? "true" : "");
}

ViewDocument::ViewDocument(const char* rootName) : document_(xmlNewDoc(nullptr)) {
  if (!document_) throw std::bad_alloc();
  document_->dict = xmlDictCreate();  // its few names are kept once
  if (document_->dict == nullptr) throw std::bad_alloc();
  xmlDocSetRootElement(document_.get(),
                       xmlNewDocNode(document_.get(), nullptr, characters(rootName), nullptr));
}

ViewElement ViewDocument::root() const {
  return ViewElement(xmlDocGetRootElement(document_.get()));
}

ViewDocument ViewDocument::parsed(const std::string& strXml) {
  xmlDocPtr const document =
      xmlReadMemory(strXml.data(), static_cast<int>(strXml.size()), nullptr, "UTF-8",
                    XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE);
  if (document == nullptr) throw std::runtime_error("the view of a page is no XML");
  return ViewDocument(document);
}

namespace {

struct TranslationNow {
  explicit TranslationNow(const Translation* translation) { translationNow = translation; }
  ~TranslationNow() { translationNow = nullptr; }
  TranslationNow(const TranslationNow&) = delete;
  TranslationNow& operator=(const TranslationNow&) = delete;
};

}  // namespace

struct Stylesheet::Compiled {
  struct Free {
    void operator()(xsltStylesheetPtr stylesheet) const { xslt().freeStylesheet(stylesheet); }
  };

  /// What the stylesheet says of its output, or the first of those that it imports to say so.
  template <class Value>
  Value said(Value xsltStylesheet::*member, Value nothing) const {
    xsltStylesheetPtr by = stylesheet.get();
    while (by != nullptr && by->*member == nothing) by = xslt().nextImport(by);
    return by == nullptr ? nothing : by->*member;
  }

  /// Whether pages are such as `htmlText` writes.
  bool isPlainHtml() const {
    constexpr xmlChar* kNoText = nullptr;
    return xmlStrEqual(said(&xsltStylesheet::method, kNoText), characters("html")) != 0 &&
           said(&xsltStylesheet::indent, -1) == 0 &&
           xmlStrcasecmp(said(&xsltStylesheet::encoding, kNoText), characters("UTF-8")) == 0;
  }

  /// What the stylesheet makes of a view; null when it gives up.
  std::unique_ptr<xmlDoc, void (*)(xmlDocPtr)> transformed(const ViewDocument& view) const;

  std::unique_ptr<xsltStylesheet, Free> stylesheet;
  bool blnPlainHtml = false;
  bool blnFixed = false;  // the built-in one, or with no more than fixed content beside it
};

Stylesheet::Stylesheet(const std::string& strFile, const std::string& strBuiltIn,
                       const Translation& translation)
    : compiled_(std::make_unique<Compiled>()) {
  forgetComplaints();
  const TranslationNow now(translation ? &translation : nullptr);
  const bool blnOwn = !strFile.empty() && std::filesystem::exists(strFile);
  xmlDocPtr const document = blnOwn ? xmlReadFile(strFile.c_str(), nullptr, kParserOptions)
                                    : builtInDocument(std::string(kBuiltIn) + strBuiltIn, nullptr);
  compiled_->blnFixed = document != nullptr && (!blnOwn || isFixed(*document));
  // The stylesheet owns its document, unless there is none.
  if (document != nullptr) compiled_->stylesheet.reset(xslt().parseStylesheetDoc(document));
  throwWhatWasThrownWithin();
  if (!compiled_->stylesheet || compiled_->stylesheet->errors != 0) {
    throw CannotRun((blnOwn ? "page.xsl: " : "the built-in stylesheet: ") +
                    complaint(document != nullptr));
  }
  compiled_->blnPlainHtml = compiled_->isPlainHtml();
}

Stylesheet::~Stylesheet() = default;

std::unique_ptr<xmlDoc, void (*)(xmlDocPtr)> Stylesheet::Compiled::transformed(
    const ViewDocument& view) const {
  forgetComplaints();
  const std::unique_ptr<xsltTransformContext, void (*)(xsltTransformContextPtr)> context(
      xslt().newTransformContext(stylesheet.get(), view.get()), xslt().freeTransformContext);
  if (!context) throw std::bad_alloc();
  xslt().setCtxtSecurityPrefs(restrictions(), context.get());
  std::unique_ptr<xmlDoc, void (*)(xmlDocPtr)> page(
      xslt().applyStylesheetUser(stylesheet.get(), view.get(), nullptr, nullptr, nullptr,
                                 context.get()),
      xmlFreeDoc);
  throwWhatWasThrownWithin();
  if (context->state != XSLT_STATE_OK) page.reset();
  if (page && blnPlainHtml) htmlSetMetaEncoding(page.get(), characters("UTF-8"));
  return page;
}

std::string Stylesheet::apply(const ViewDocument& view) const {
  const auto page = compiled_->transformed(view);
  if (page && compiled_->blnPlainHtml) {
    if (std::optional<std::string> strPage = htmlText(*page)) return *std::move(strPage);
  }
  xmlChar* text = nullptr;
  int lngSize = 0;
  const bool blnDone = page && xslt().saveResultToString(&text, &lngSize, page.get(),
                                                         compiled_->stylesheet.get()) == 0;
  const std::unique_ptr<xmlChar, void (*)(void*)> owned(text, xmlFree);
  if (!blnDone || text == nullptr) {
    // What else was said may quote an answer, as the messages of a stylesheet do.
    tellFailure(strPlaces.empty() ? "it ended itself" : inOneLine(strPlaces));
    throw std::runtime_error("the stylesheet gave up");
  }
  return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(lngSize)};
}

bool Stylesheet::takesPlaces() const { return compiled_->blnFixed && compiled_->blnPlainHtml; }

std::optional<std::string> Stylesheet::applyToPlaces(const ViewDocument& view) const {
  const auto page = compiled_->transformed(view);
  return page ? htmlText(*page) : std::nullopt;
}

void prepareStylesheets(BuiltInFile builtIn, void (*failed)(const std::string& strReason)) {
  builtInFile = builtIn;
  tellFailure = failed;
  xmlInitParser();
  xslt().init();
  xslt().setGenericErrorFunc(nullptr, complain);
  standardLoader = *xslt().docDefaultLoader;
  xslt().setLoaderFunc(loadDocument);
}
