#include <libxml/hash.h>
#include <libxml/xmlschemas.h>

#include <exception>
#include <new>
#include <utility>

#include "platform/fault/InjectedFault.h"
#include "platform/schema/CompiledSchema.h"
#include "platform/xml/XmlLibrary.h"
#include "platform/xml/XmlMemory.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

struct FreeSchemaParser {
  void operator()(xmlSchemaParserCtxt* parser) const noexcept { xmlSchemaFreeParserCtxt(parser); }
};

/// The first error of a compilation.
struct CompileRun {
  std::string strReason;
  std::exception_ptr exception;
};

void onCompileError(void* context, xmlError* report) {
  CompileRun& run = *static_cast<CompileRun*>(context);
  noteShortage(*report);
  try {
    if (report->level < XML_ERR_ERROR || !run.strReason.empty()) return;
    run.strReason = report->message ? report->message : "It is not valid.";
    while (run.strReason.ends_with('\n')) run.strReason.pop_back();
  } catch (...) {
    run.exception = std::current_exception();
  }
}

std::unique_ptr<xmlSchema, FreeXmlSchema> compile(xmlDoc* document, std::string_view strPath) {
  prepareXmlLibrary();
  const MemoryWatch memory;
  CompileRun run;
  const std::unique_ptr<xmlSchemaParserCtxt, FreeSchemaParser> parser(
      xmlSchemaNewDocParserCtxt(document));
  if (!parser) throw std::bad_alloc();
  xmlSchemaSetParserStructuredErrors(parser.get(), onCompileError, &run);
  std::unique_ptr<xmlSchema, FreeXmlSchema> schema(xmlSchemaParse(parser.get()));
  if (run.exception) std::rethrow_exception(run.exception);
  memory.check();
  if (!schema || !run.strReason.empty()) {
    refuseSchema(strPath, run.strReason.empty() ? "It is not valid." : run.strReason);
  }
  return schema;
}

}  // namespace

xmlSchemaElement* CompiledSchema::globalElement(const xmlChar* local, const xmlChar* uri) const {
  if (view(uri) != view(schema->targetNamespace)) return nullptr;
  return static_cast<xmlSchemaElement*>(xmlHashLookup(schema->elemDecl, local));
}

const CompiledSchema* SchemaCollection::Impl::schemaFor(
    std::string_view strRootNamespaceUri) const {
  if (schemas.empty()) return nullptr;
  const auto found = schemas.find(strRootNamespaceUri);
  return found == schemas.end() ? &schemas.begin()->second : &found->second;
}

SchemaCollection::SchemaCollection(FaultInjector* faults) : impl_(std::make_unique<Impl>(faults)) {}
SchemaCollection::~SchemaCollection() = default;
SchemaCollection::SchemaCollection(SchemaCollection&&) noexcept = default;
SchemaCollection& SchemaCollection::operator=(SchemaCollection&&) noexcept = default;

void SchemaCollection::add(std::string_view strNamespaceUri, std::string_view strPath) {
  if (givesNothing(impl_->faults, DomOperation::addSchema)) {
    throw RuntimeError(kXmlFailure, "Injected failure");
  }
  CompiledSchema compiled;
  compiled.closure = readSchemaClosure(strNamespaceUri, strPath);
  compiled.schema = compile(compiled.closure.document.get(), strPath);
  impl_->schemas.insert_or_assign(std::string(strNamespaceUri), std::move(compiled));
}

}  // namespace Varnel_Tolv_XML_Creation
