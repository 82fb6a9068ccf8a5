#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "../../result/Export.h"

// What the library asks of the web server whose request it serves. A host implements the two
// interfaces over its own server, or uses the two classes here.

namespace Varnel_Tolv_XML_Creation {

/// The request that is being served.
class VARNEL_EXPORT Request {
 public:
  virtual ~Request() = default;

  /// The submitted value of the form field with exactly this name: several values joined by a
  /// comma and a blank in the order submitted, the empty text for a field not submitted.
  virtual std::string formItem(std::string_view strName) const = 0;

  /// The names of the submitted fields that begin with `strPrefix`, in any order, each once.
  /// `formItem` must give the empty text for every other name with that prefix.
  virtual std::vector<std::string> formNames(std::string_view strPrefix) const = 0;
};

/// The name of the field that a form has for the object with this id: the id in lower case,
/// Unicode's simple mapping in no locale.
VARNEL_EXPORT std::string fieldNameOf(std::string_view strId);

/// The names of the fields that a form has besides: for the label of a question and for the number
/// of rows of a table.
VARNEL_EXPORT std::string labelNameOf(std::string_view strId);
VARNEL_EXPORT std::string rowCountNameOf(std::string_view strId);

/// Whether a field has the name of one of these.
VARNEL_EXPORT bool isLabelOrRowCount(std::string_view strName);

/// The name of the field for a cell of a table, and what the names for all its cells begin with:
/// the ids as they are written, and a row by its number from 1.
VARNEL_EXPORT std::string cellNameOf(std::string_view strTableId, std::string_view strColumnId,
                                     std::string_view strRow);
VARNEL_EXPORT std::string cellPrefixOf(std::string_view strTableId);

/// The web server.
class VARNEL_EXPORT Server {
 public:
  virtual ~Server() = default;

  /// The file path of a location relative to the directory of the calling page.
  virtual std::string MapPath(std::string_view strLocation) const = 0;
};

/// Where the schema at a URL is: the URL starts from the directory above that of the calling page.
VARNEL_EXPORT std::string schemaPathOf(const Server& server, std::string_view strSchemaUrl);

/// The object context of a web request. Either item may be missing.
struct ObjectContext {
  const Request* request = nullptr;
  const Server* server = nullptr;
};

/// A form as a browser submits it, an application/x-www-form-urlencoded body: "+" is a blank, %XX a
/// byte, a malformed escape stands as it is; what then is not UTF-8 becomes U+FFFD. Names are
/// decoded like values; a pair without "=" is a name with the empty value.
class VARNEL_EXPORT FormCollection : public Request {
 public:
  FormCollection() = default;
  explicit FormCollection(std::string_view strBody);

  /// Adds one more value to a field. Both texts are taken as they stand, not decoded.
  void add(std::string_view strName, std::string_view strValue);

  /// Puts U+FFFD in the place of each character in a value that XML cannot hold, such as U+000B. A
  /// run fails at the first of them that it reads, and what it parked ends there.
  void replaceUnstorable();

  /// How many fields have U+FFFD in their value: what was replaced, bytes that were not UTF-8
  /// included. Such a form can be kept and should not be sent: nobody typed that.
  std::size_t unreadableFields() const;

  std::string formItem(std::string_view strName) const override;
  std::vector<std::string> formNames(std::string_view strPrefix) const override;

 private:
  friend class FormReads;  // which knows the fields by their numbers

  struct Item {
    std::string strName;
    std::string strValue;
  };

  using ByName = std::map<std::string, std::size_t, std::less<>>;

  /// As `add`, which is quickest when the name comes before that of `hint` and behind all others
  /// before that. Gives the next hint.
  ByName::iterator add(std::string strName, std::string strValue, ByName::iterator hint);
  const Item* find(std::string_view strName) const;
  void enter(std::size_t lngItem);

  std::vector<Item> items_;          // in the order of their first value
  ByName byName_;                    // their places
  std::vector<std::size_t> byHash_;  // the same, plus one; 0: free
};

/// A server that has one page, in a directory of this machine.
class VARNEL_EXPORT PageServer : public Server {
 public:
  explicit PageServer(std::filesystem::path pageDirectory);

  /// Resolved against the page's directory, which is the only root that there is: a location that
  /// begins with "/" is below it too, and a URL is but a path. "." and ".." are taken out of the
  /// text of the path, so ".." leads above the directory.
  std::string MapPath(std::string_view strLocation) const override;

 private:
  std::filesystem::path pageDirectory_;
};

}  // namespace Varnel_Tolv_XML_Creation
