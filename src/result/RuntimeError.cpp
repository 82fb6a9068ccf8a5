#include "result/RuntimeError.h"

#include <new>

namespace Varnel_Tolv_XML_Creation {

struct RuntimeError::Texts {
  std::string strDescription;
  std::string strSource;
};

namespace {

std::string_view standardDescription(RuntimeErrorNumber lngNumber) {
  switch (lngNumber) {
    case kInvalidArgument:
      return "Invalid procedure call or argument";
    case kOverflow:
      return "Overflow";
    case kOutOfMemory:
      return "Out of memory";
    case kSubscriptOutOfRange:
      return "Subscript out of range";
    case kTypeMismatch:
      return "Type mismatch";
    case kObjectNotSet:
      return "Object variable or With block variable not set";
    case kInvalidUseOfNull:
      return "Invalid use of Null";
    default:
      return "Internal error";
  }
}

}  // namespace

RuntimeError::RuntimeError(std::int32_t lngNumber, std::string_view strDescription,
                           std::string_view strSource)
    : lngNumber_(lngNumber),
      texts_(std::make_shared<const Texts>(
          Texts{std::string(strDescription), std::string(strSource)})) {}

RuntimeError::RuntimeError(RuntimeErrorNumber lngNumber)
    : RuntimeError(lngNumber, standardDescription(lngNumber)) {}

const std::string& RuntimeError::description() const noexcept { return texts_->strDescription; }

const std::string& RuntimeError::source() const noexcept { return texts_->strSource; }

const char* RuntimeError::what() const noexcept { return texts_->strDescription.c_str(); }

RuntimeError CurrentRuntimeError() {
  try {
    throw;
  } catch (const RuntimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return RuntimeError(kOutOfMemory);
  } catch (const std::exception& error) {
    return RuntimeError(kInternalError, error.what());
  } catch (...) {
    return RuntimeError(kInternalError);
  }
}

}  // namespace Varnel_Tolv_XML_Creation
