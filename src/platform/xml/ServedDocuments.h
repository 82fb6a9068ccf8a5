#pragma once

#include <cstddef>
#include <exception>
#include <functional>
#include <string>

namespace Varnel_Tolv_XML_Creation {

/// Texts that libxml2 gets on this thread, for as long as this object lives, when it loads one of
/// the locations that only stand for them. So a function of the library that takes no documents but
/// their locations reads what was looked at before, and nothing else.
class ServedDocuments {
 public:
  /// Gives the text of a document by its number. Called from within the library, each time that it
  /// loads the document.
  using Source = std::function<std::string(std::size_t)>;

  explicit ServedDocuments(Source source);
  ~ServedDocuments();
  ServedDocuments(const ServedDocuments&) = delete;
  ServedDocuments& operator=(const ServedDocuments&) = delete;

  /// The location of a document: an absolute URI, which is no part of another's.
  static std::string location(std::size_t lngNumber);

  /// Raises what the source has raised, if it has.
  void check() const;

  /// Makes the library's loader know the locations; prepareXmlLibrary does, once.
  static void prepareLoader();

 private:
  struct Loader;
  Source source_;
  std::exception_ptr exception_;
  ServedDocuments* outer_;
};

}  // namespace Varnel_Tolv_XML_Creation
