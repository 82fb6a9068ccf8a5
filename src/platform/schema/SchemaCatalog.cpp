#include "platform/schema/SchemaCatalog.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "platform/schema/component/SchemaFailure.h"
#include "platform/xml/FileUri.h"
#include "platform/xml/LoadTree.h"
#include "platform/xml/ReadXmlFile.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::string_view kCatalogNamespace = "urn:oasis:names:tc:entity:xmlns:xml:catalog";
constexpr std::size_t kMaxCatalogs = 100;
constexpr std::size_t kMaxCatalogBytes = std::size_t{4} * 1024 * 1024;

/// What is asked: a set of bits, of which a question has one.
enum Subject : unsigned {
  kLocation = 1,
  kLocatedNamespace = 2,
  kBareNamespace = 4,
};

/// How the name of an entry is compared with what is asked, the stronger the earlier.
enum class Match : std::uint8_t { whole, start, end };

struct EntryKind {
  std::string_view strElement, strName, strTarget;  // the element and its attributes
  Match match;
  unsigned subjects;
};

constexpr unsigned kUri = kLocation | kLocatedNamespace | kBareNamespace;
constexpr std::array<EntryKind, 7> kKinds = {{
    {"uri", "name", "uri", Match::whole, kUri},
    {"system", "systemId", "uri", Match::whole, kLocation},
    {"public", "publicId", "uri", Match::whole, kLocatedNamespace | kBareNamespace},
    {"rewriteURI", "uriStartString", "rewritePrefix", Match::start, kUri},
    {"rewriteSystem", "systemIdStartString", "rewritePrefix", Match::start, kLocation},
    {"uriSuffix", "uriSuffix", "uri", Match::end, kUri},
    {"systemSuffix", "systemIdSuffix", "uri", Match::end, kLocation},
}};

struct Entry {
  std::string strName;
  std::string strTarget;  // a URI; what stands in the place of the name where that is a start
  unsigned subjects;
};

/// The entries of one file.
struct CatalogFile {
  std::unordered_multimap<std::string, Entry> whole;
  std::vector<Entry> starts, ends;
  std::vector<std::string> colNext;  // the paths of the catalogs to ask after it
};

/// What holds for the entries below an element.
struct Scope {
  std::string strBase;
  bool blnPreferPublic = true;
};

[[noreturn]] void refuseCatalog(const std::string& strPath, const std::string& strReason,
                                std::size_t lngLine = 0) {
  throw SchemaFailure("The catalog '" + strPath + "' cannot be read: " + strReason,
                      {strPath, lngLine}, strReason);
}

bool isCatalogElement(const TreeNode* node, std::string_view strName) {
  return isElement(node, kCatalogNamespace, strName);
}

Scope scopeOf(const TreeNode* element, Scope around) {
  if (const auto strBase = attributeOf(element, "xml:base")) {
    around.strBase = resolveUri(*strBase, around.strBase).value_or(around.strBase);
  }
  const std::string_view strPrefer = attributeText(element, "prefer");
  if (!strPrefer.empty()) around.blnPreferPublic = strPrefer == "public";
  return around;
}

void readEntry(const TreeNode* element, const Scope& around, CatalogFile& file) {
  const Scope scope = scopeOf(element, around);
  if (isCatalogElement(element, "nextCatalog")) {
    const auto strUri = resolveUri(attributeText(element, "catalog"), scope.strBase);
    const auto strPath = strUri ? pathOfUri(*strUri) : std::nullopt;
    if (strPath) file.colNext.push_back(*strPath);
    return;
  }
  for (const EntryKind& kind : kKinds) {
    if (!isCatalogElement(element, kind.strElement)) continue;
    if (!findAttribute(element, kind.strName) || !findAttribute(element, kind.strTarget)) return;
    const auto strTarget = resolveUri(attributeText(element, kind.strTarget), scope.strBase);
    if (!strTarget) return;
    Entry entry{escapedUri(attributeText(element, kind.strName)), *strTarget, kind.subjects};
    if (kind.strElement == "public" && !around.blnPreferPublic) entry.subjects = kBareNamespace;
    std::string strName = entry.strName;
    if (kind.match == Match::whole) file.whole.emplace(std::move(strName), std::move(entry));
    if (kind.match == Match::start) file.starts.push_back(std::move(entry));
    if (kind.match == Match::end) file.ends.push_back(std::move(entry));
  }
}

CatalogFile readCatalog(const std::string& strPath, std::string_view strBytes) {
  Tree tree;
  ParseError error;
  const TreeNode* const document = loadTree(tree, strBytes, XmlEncoding::declared, error);
  if (!document) {
    refuseCatalog(strPath, error.reason, static_cast<std::size_t>(std::max(error.line, 0)));
  }
  const TreeNode* const root = rootOf(document);
  if (!isCatalogElement(root, "catalog")) refuseCatalog(strPath, "It is not an XML catalog.");
  CatalogFile file;
  const Scope scope = scopeOf(root, {uriOfPath(strPath), true});
  for (const TreeNode* child = root->first; child; child = child->next) {
    if (!isElement(child)) continue;
    if (isCatalogElement(child, "group")) {
      const Scope group = scopeOf(child, scope);
      for (const TreeNode* member = child->first; member; member = member->next) {
        if (isElement(member)) readEntry(member, group, file);
      }
    } else {
      readEntry(child, scope, file);
    }
  }
  return file;
}

/// The URI that stands for what is asked, by one file; none when none of its entries fits.
std::optional<std::string> targetIn(const CatalogFile& file, const std::string& strAsked,
                                    Subject subject) {
  const auto [first, last] = file.whole.equal_range(strAsked);
  for (auto entry = first; entry != last; ++entry) {
    if (entry->second.subjects & subject) return entry->second.strTarget;
  }
  const auto longest = [&](const std::vector<Entry>& entries, const auto& fits) {
    const Entry* found = nullptr;
    for (const Entry& entry : entries) {
      if ((entry.subjects & subject) && fits(entry.strName) &&
          (!found || entry.strName.size() > found->strName.size())) {
        found = &entry;
      }
    }
    return found;
  };
  if (const Entry* entry = longest(
          file.starts, [&](const auto& strStart) { return strAsked.starts_with(strStart); })) {
    return entry->strTarget + strAsked.substr(entry->strName.size());
  }
  if (const Entry* entry =
          longest(file.ends, [&](const auto& strEnd) { return strAsked.ends_with(strEnd); })) {
    return entry->strTarget;
  }
  return std::nullopt;
}

}  // namespace

struct SchemaCatalog::Impl {
  explicit Impl(FilesRead& read) : filesRead(read) {}

  FilesRead& filesRead;
  std::string strCatalog, strBeside;
  std::optional<std::vector<CatalogFile>> files;  // in the order in which they are asked

  /// A catalog is asked before those that it names as next, and these before those behind it.
  void read() {
    files.emplace();
    std::unordered_set<std::string> seen;
    std::vector<std::string> pending = {strBeside};
    if (!strCatalog.empty()) pending.push_back(strCatalog);
    while (!pending.empty()) {
      const std::string strPath = std::move(pending.back());
      pending.pop_back();
      if (!seen.insert(strPath).second) continue;
      if (seen.size() > kMaxCatalogs) refuseCatalog(strPath, "It is one catalog too many.");
      ParseError error;
      const auto strBytes = readXmlFile(strPath, kMaxCatalogBytes, error, &filesRead);
      if (!strBytes && strPath != strCatalog && error.errorCode == ParseError::kCannotOpen)
        continue;
      if (!strBytes) refuseCatalog(strPath, error.reason);
      const CatalogFile& file = files->emplace_back(readCatalog(strPath, *strBytes));
      pending.insert(pending.end(), file.colNext.rbegin(), file.colNext.rend());
    }
  }

  std::optional<std::string> find(std::string_view strAsked, Subject subject) {
    if (!files) read();
    const std::string strEscaped = escapedUri(strAsked);
    for (const CatalogFile& file : *files) {
      if (const auto strTarget = targetIn(file, strEscaped, subject)) return pathOfUri(*strTarget);
    }
    return std::nullopt;
  }
};

SchemaCatalog::SchemaCatalog(std::string_view strCatalog, std::string_view strSchemaPath,
                             FilesRead& files)
    : impl_(std::make_unique<Impl>(files)) {
  using std::filesystem::path;
  if (!strCatalog.empty()) {
    impl_->strCatalog = std::filesystem::absolute(path(strCatalog)).lexically_normal().string();
  }
  impl_->strBeside = (path(strSchemaPath).parent_path() / "catalog.xml").string();
}

SchemaCatalog::~SchemaCatalog() = default;

std::optional<std::string> SchemaCatalog::fileOfLocation(std::string_view strUri) {
  return impl_->find(strUri, kLocation);
}

std::optional<std::string> SchemaCatalog::fileOfNamespace(std::string_view strNamespaceUri,
                                                          bool blnLocated) {
  return impl_->find(strNamespaceUri, blnLocated ? kLocatedNamespace : kBareNamespace);
}

}  // namespace Varnel_Tolv_XML_Creation
