#include "platform/schema/ValidatingReader.h"

#include "platform/fault/InjectedFault.h"
#include "platform/schema/SaxReading.h"

namespace Varnel_Tolv_XML_Creation {

struct ValidatingReader::Impl {
  FaultInjector* faults = nullptr;
  bool blnValidate = false;
  const SchemaCollection* colSchemas = nullptr;
  SaxReading::Settings settings;
};

ValidatingReader::ValidatingReader() : impl_(std::make_unique<Impl>()) {}
ValidatingReader::~ValidatingReader() = default;

std::unique_ptr<ValidatingReader> ValidatingReader::create(FaultInjector* faults) {
  if (givesNothing(faults, DomOperation::createReader)) return nullptr;
  std::unique_ptr<ValidatingReader> reader(new ValidatingReader);
  reader->impl_->faults = faults;
  return reader;
}

void ValidatingReader::putFeature(std::string_view strName, bool blnValue) {
  if (strName == "schema-validation") {
    impl_->blnValidate = blnValue;
  } else if (strName == "exhaustive-errors") {
    impl_->settings.blnExhaustive = blnValue;
  } else if (strName == "undeclared-attributes") {
    impl_->settings.blnUndeclaredAttributes = blnValue;
  } else {
    throw RuntimeError(kInvalidArgument);
  }
}

void ValidatingReader::schemas(const SchemaCollection& colSchemas) {
  impl_->colSchemas = &colSchemas;
}

void ValidatingReader::contentHandler(SaxHandler* handler) {
  impl_->settings.contentHandler = handler;
}

void ValidatingReader::errorHandler(SaxHandler* handler) { impl_->settings.errorHandler = handler; }

void ValidatingReader::marks(std::span<const std::string_view> names) {
  impl_->settings.marks = names;
}

void ValidatingReader::violationHandler(ViolationHandler* handler,
                                        std::span<const std::string_view> setAside) {
  impl_->settings.parts = {handler, setAside};
}

template <class Text>
std::optional<RuntimeError> ValidatingReader::read(const Text& text) {
  try {
    mayFail(impl_->faults, DomOperation::parse);
  } catch (const RuntimeError& error) {
    return error;
  }
  SaxReading::Settings settings = impl_->settings;
  if (impl_->blnValidate && impl_->colSchemas) settings.schemas = impl_->colSchemas->impl_.get();
  return SaxReading(settings).read(text);
}

std::optional<RuntimeError> ValidatingReader::parse(std::string_view strText) {
  return read(strText);
}

std::optional<RuntimeError> ValidatingReader::parse(const Tree* tree) {
  return tree ? read(*tree) : read(std::string_view());
}

}  // namespace Varnel_Tolv_XML_Creation
