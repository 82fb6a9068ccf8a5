#include "platform/dom/DocumentState.h"

#include <utility>

#include "platform/text/ShortText.h"
#include "platform/xml/CopyTree.h"
#include "platform/xml/FileCacheEntry.h"
#include "platform/xml/LoadTree.h"
#include "platform/xml/ReadXmlFile.h"
#include "result/RuntimeError.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

constexpr std::string_view kReadOnlyInUse =
    "A read-only document to which there are handles stays as it is.";

/// Whether the index of ids may tell of an attribute, or of `top` or what is below it. What it does
/// not tell of comes and goes without changing it.
bool holdsId(const TreeNode* top) noexcept {
  if (isAttribute(top)) return isSame(top->name->strQualified, "id");
  for (const TreeNode* node = top; node; node = nextBelow(node, top)) {
    if (isElement(node) && findAttribute(node, "id")) return true;
  }
  return false;
}

/// Where the memory of a document comes from; null: from the heap.
std::shared_ptr<ChunkPool> poolOf(const DocumentSettings& settings) {
  return settings.cache ? settings.cache->chunkPool() : nullptr;
}

/// Whether a selection might look for an id all over the document.
bool looksForId(std::string_view strXPath) {
  const bool blnWide = strXPath.starts_with('/') || strXPath.find("//") != std::string_view::npos;
  return blnWide && strXPath.find("@id") != std::string_view::npos;
}

}  // namespace

DocumentState::DocumentState(const DocumentSettings& documentSettings, bool blnTopOnly)
    : settings(documentSettings),
      blnFragment(blnTopOnly),
      content_(&own_.emplace(documentSettings.lngMaxNodes, poolOf(documentSettings))) {}

DocumentState::DocumentState(const DocumentSettings& documentSettings,
                             std::shared_ptr<DocumentState> host)
    : settings(documentSettings),
      blnFragment(true),
      host_(std::move(host)),
      content_(&host_->changeable()) {}

bool DocumentContent::replace(std::size_t lngExpected, bool blnKeepBefore,
                              const std::function<TreeNode*(Tree& tree)>& fill, bool blnForOne) {
  // All that can fail comes first.
  const auto newTree = [this](std::size_t lngBytes) {
    Tree made(lngBytes, kMaxTreeBytes, lngMostNodes, pool);
    made.countTo(tree.budget());
    return made;
  };
  Tree fresh = newTree(blnKeepBefore ? 0 : lngExpected);
  Tree& target = blnKeepBefore ? tree : fresh;
  TreeNode* document = fill(target);
  const bool blnMade = document != nullptr;
  if (!blnMade) {
    if (!blnKeepBefore) fresh = newTree(0);  // what was read of it may be much
    document = target.newDocument();
  }
  std::unique_ptr<IdIndex> index;
  if (!blnForOne) index = std::make_unique<IdIndex>();
  if (index) index->build(document);
  ChildNameIndex freshNames;
  (blnKeepBefore ? childNames : freshNames).add(document);

  idIndex.drop();
  libraryTree.drop();
  models.forget();
  attributeNames = {};
  target.setDocument(document);
  if (!blnKeepBefore) {
    tree = std::move(fresh);
    childNames = std::move(freshNames);
  }
  if (index) idIndex.set(std::move(index));
  return blnMade;
}

std::shared_ptr<const DocumentContent> DocumentState::read(FileCache& cache,
                                                           std::string_view strLocation,
                                                           const DocumentSettings& limits,
                                                           ParseError& error) {
  constexpr std::size_t kTimesItsText = 4;  // about what a tree takes, with its indexes
  const std::size_t lngLimits[] = {limits.lngMaxBytes, limits.lngMaxNodes};
  std::string strName = "document";
  strName.append(reinterpret_cast<const char*>(lngLimits), sizeof lngLimits).append(strLocation);
  const auto made = cache.get(strName, [&]() -> FileCache::Made {
    FileCache::Made content;
    const std::optional<std::string> strBytes =
        readXmlFile(strLocation, limits.lngMaxBytes, error, &content.files);
    if (!strBytes) return {};
    auto document = std::make_shared<DocumentContent>(limits.lngMaxNodes);
    const bool blnLoaded = document->replace(strBytes->size(), false, [&](Tree& tree) {
      return loadTree(tree, *strBytes, XmlEncoding::declared, error);
    });
    if (!blnLoaded) return {};
    content.value = std::move(document);
    content.lngBytes = strBytes->size() * kTimesItsText;
    return content;
  });
  return std::static_pointer_cast<const DocumentContent>(made);
}

bool DocumentState::load(std::optional<std::string_view> strText, XmlEncoding encoding,
                         ParseError error, bool blnHandlesExist) {
  if (shared_ && blnHandlesExist) refuse(kReadOnlyInUse);
  const bool blnLoaded =
      own_->replace(strText ? strText->size() : 0, blnHandlesExist, [&](Tree& tree) -> TreeNode* {
        return strText ? loadTree(tree, *strText, encoding, error) : nullptr;
      });
  shared_.reset();
  content_ = &*own_;
  becomeOther(std::move(error));
  return blnLoaded;
}

bool DocumentState::take(std::shared_ptr<const DocumentContent> loaded, ParseError error,
                         bool blnHandlesExist) {
  const bool blnLoaded = loaded != nullptr;
  if (settings.blnReadOnly) {
    if (blnHandlesExist) refuse(kReadOnlyInUse);
    // What it had of its own goes, where there is any.
    if (!loaded || own_->tree.document()->first) {
      own_->replace(0, false, [](Tree&) { return nullptr; });
    }
    shared_ = std::move(loaded);
    content_ = shared_ ? shared_.get() : &*own_;
  } else {
    const auto copy = [&](Tree& tree) -> TreeNode* {
      if (!loaded) return nullptr;
      TreeNode* const document = tree.newDocument();
      const bool blnOwn = tree.share({loaded, &loaded->tree});
      const TreeNode* child = loaded->tree.document()->first;
      for (; child; child = child->next) {
        linkNode(document, copyNode(child, true, tree, blnOwn), nullptr);
      }
      return document;
    };
    own_->replace(0, blnHandlesExist, copy, true);
  }
  becomeOther(std::move(error));
  return blnLoaded;
}

void DocumentState::becomeOther(ParseError error) {
  parseError = std::move(error);
  lngWrittenBytes_ = 0;
  boundNames_.forget();
  models.clear();
}

const SelectionNamespaces& DocumentState::namespaces() const {
  static const SelectionNamespaces kNone;
  return selectionNamespaces ? *selectionNamespaces : kNone;
}

void DocumentState::declare(std::string_view strDeclarations) {
  selectionNamespaces = std::make_shared<const SelectionNamespaces>(strDeclarations);
  boundNames_.forget();
}

std::optional<TreeNode*> DocumentState::firstOf(const PathView& path) {
  if (settings.blnReadOnly || blnFragment) return std::nullopt;
  return boundNames_.first(path, content_->tree, content_->childNames, namespaces());
}

DocumentSettings DocumentState::settingsOfCopy() const {
  DocumentSettings copied = settings;
  copied.blnReadOnly = false;
  return copied;
}

void DocumentState::refuseSize() const {
  refuse(kTextTooLarge + std::to_string(settings.lngMaxBytes) + " bytes.");
}

void DocumentState::changingIds(DocumentContent& content, const TreeNode* parent,
                                const TreeNode* ids) noexcept {
  if (holdsId(ids) && topOf(parent) == content.tree.document()) content.idIndex.drop();
}

SelectionContext DocumentState::selectionContext(TreeNode* node, std::string_view strXPath) const {
  const TreeNode* top = topOf(node);
  SelectionContext context;
  const DocumentContent& content = this->content();
  context.tree = &content.tree;
  context.node = node;
  context.namespaces = &namespaces();
  if (top == content.tree.document()) {
    context.index = content.idIndex.get(top, false);
    if (!context.index && looksForId(strXPath)) context.index = content.idIndex.get(top, true);
    context.libraryTree = &content.libraryTree;
  }
  context.childNames = &content.childNames;
  context.blnFragment = blnFragment || !isDocument(top);
  return context;
}

void refuse(std::string_view strReason) { throw RuntimeError(kXmlFailure, strReason); }

}  // namespace Varnel_Tolv_XML_Creation
