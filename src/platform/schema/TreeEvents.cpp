#include "platform/schema/TreeEvents.h"

#include <algorithm>
#include <cstddef>

#include "platform/schema/StartTag.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

// The parser refuses names, values, tags and all names together by limits of 50,000 to ten million
// bytes. What is shorter than these is far from them, also when each character is written as a
// reference.
constexpr std::size_t kLong = 1'000'000;
constexpr std::size_t kLongName = 10'000;

const xmlChar* xmlText(std::string_view strText) noexcept {
  return reinterpret_cast<const xmlChar*>(strText.data());
}

/// Null for none. A NUL stands behind each part.
const xmlChar* partText(const NamePart* part) noexcept {
  return part->strText.empty() ? nullptr : xmlText(part->strText);
}

}  // namespace

TreeEvents::TreeEvents(const Tree& tree)
    : tree_(tree), node_(tree.document()), scope_(tree.names().parts()) {}

bool TreeEvents::tellTheText(const Tree& tree) {
  if (tree.names().bytes() > kLong) return false;
  std::size_t lngRoots = 0;
  for (const TreeNode* top = tree.document()->first; top; top = top->next) {
    if (top->kind == NodeKind::documentType) return false;
    if (isElement(top)) ++lngRoots;
  }
  if (lngRoots != 1) return false;
  TreeEvents events(tree);
  // Mostly what is known of the document as a whole is enough.
  constexpr std::size_t kShort = kLong / (kMaxAttributes + 1);  // of a name with its value
  const std::size_t lngName = tree.names().longest();
  if (lngName < kShort && tree.isPlain(kShort - lngName)) {
    while (events.next() != Event::start) {
    }
    if (events.bindsAllPrefixes()) return events.blnExact_;
  }
  while (events.blnExact_ && events.next() != Event::none) {
  }
  return events.blnExact_;
}

/// Whether what has been told binds the prefix of each name with a colon, and nothing binds it
/// otherwise.
bool TreeEvents::bindsAllPrefixes() const {
  const TreeName* name = tree_.names().withColon();
  if (name && !tree_.names().bindPrefixesOnce()) return false;
  for (; name; name = name->nextWithColon) {
    const NamePart* const prefix = prefixOf(*name);
    if (!prefix || !scope_.uriOf(prefix)) return false;
  }
  return true;
}

/// What stands before the colon of a name in no namespace; null when no name has it for a prefix.
const NamePart* TreeEvents::prefixOf(const TreeName& name) const {
  return tree_.names().findPart(name.strLocal.substr(0, name.strLocal.find(':')));
}

TreeEvents::Event TreeEvents::next() {
  while (true) {
    const TreeNode* const following = blnOpen_ ? node_->first : node_->next;
    if (!following) {
      if (!blnOpen_) node_ = node_->parent;
      blnOpen_ = false;
      if (isDocument(node_)) return Event::none;
      scope_.leave();
      return Event::end;
    }
    node_ = following;
    blnOpen_ = isElement(node_);
    if (blnOpen_) {
      readTag();
      return Event::start;
    }
    if (node_->lngSize > kLong) blnExact_ = false;
    if (isText(node_)) return Event::text;
    if (isCData(node_)) {
      if (text().find('\r') != std::string_view::npos) blnExact_ = false;
      return Event::text;
    }
  }
}

void TreeEvents::leaveOut(std::span<const std::string_view> names) {
  for (const std::string_view strName : names) {
    markNames_.push_back(tree_.names().find(strName, {}));
  }
  marks_.resize(names.size());
}

/// Keeps the value of an attribute that is left out. Whether it is one.
bool TreeEvents::takeMark(const TreeNode* attribute) noexcept {
  for (std::size_t lngMark = 0; lngMark < markNames_.size(); ++lngMark) {
    if (attribute->name != markNames_[lngMark]) continue;
    marks_[lngMark] = valueOf(attribute);
    return true;
  }
  return false;
}

void TreeEvents::readTag() {
  const TreeName& name = *node_->name;
  std::size_t lngTag = name.strQualified.size();
  namespaces_.clear();
  scope_.enter(node_, [&](const NamePart& declared, const NamePart& bound) {
    lngTag += declared.strText.size() + bound.strText.size();
    namespaces_.push_back(partText(&declared));
    namespaces_.push_back(xmlText(bound.strText));
  });
  local_ = xmlText(name.strLocal);
  prefix_ = partText(name.prefix);
  uri_ = partText(name.uri);
  if (NamespaceScope::isPrefixPartOf(&name)) {
    const std::size_t lngColon = name.strLocal.find(':');
    const NamePart* const written = prefixOf(name);
    const NamePart* const bound = written ? scope_.uriOf(written) : nullptr;
    if (bound && !bound->strText.empty()) {
      local_ = xmlText(name.strLocal.substr(lngColon + 1));
      prefix_ = partText(written);
      uri_ = partText(bound);
    } else {
      blnExact_ = false;
    }
  }

  const TreeNode* const first = firstAttribute(node_);
  std::size_t lngCount = 0;
  for (const TreeNode* item = first; item; item = item->next) ++lngCount;
  attributes_.resize(lngCount * StartTag::kPointersPerAttribute);
  const xmlChar** parts = attributes_.data();
  std::fill(marks_.begin(), marks_.end(), std::string_view());
  for (const TreeNode* item = first; item; item = item->next) {
    if (takeMark(item)) {
      --lngCount;
      continue;
    }
    const TreeName& stated = *item->name;
    const xmlChar* const value = reinterpret_cast<const xmlChar*>(item->value);
    *parts++ = xmlText(stated.strLocal);
    *parts++ = partText(stated.prefix);
    *parts++ = partText(stated.uri);
    *parts++ = value;
    *parts++ = value + item->lngSize;
    if (NamespaceScope::isPrefixPartOf(&stated)) blnExact_ = false;
    lngTag += stated.strQualified.size() + item->lngSize;
    if (stated.strQualified.size() > kLongName) blnExact_ = false;
  }
  attributes_.resize(lngCount * StartTag::kPointersPerAttribute);
  if (lngTag > kLong || name.strQualified.size() > kLongName) blnExact_ = false;
}

}  // namespace Varnel_Tolv_XML_Creation
