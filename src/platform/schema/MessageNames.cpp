#include "platform/schema/MessageNames.h"

#include <algorithm>
#include <utility>

#include "platform/xml/NamespaceUris.h"

namespace Varnel_Tolv_XML_Creation {

namespace {

InstanceAttribute instanceAttribute(std::string_view strUri, std::string_view strLocal) {
  if (strUri != kInstanceUri) return InstanceAttribute::none;
  if (strLocal == "type") return InstanceAttribute::type;
  if (strLocal == "nil") return InstanceAttribute::nil;
  const bool blnLocation = strLocal == "schemaLocation" || strLocal == "noNamespaceSchemaLocation";
  return blnLocation ? InstanceAttribute::location : InstanceAttribute::none;
}

std::uint64_t address(const xmlChar* text) noexcept {
  return static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(text));
}

}  // namespace

std::string MessageName::expanded() const {
  return ExpandedName{std::string(strUri), std::string(strLocal)}.text();
}

MessageNames::MessageNames(const NameTable* schemaNames, std::span<const std::string_view> setAside)
    : schemaNames_(schemaNames), setAside_(setAside), slots_(1024) {}

const MessageName& MessageNames::of(const xmlChar* local, const xmlChar* prefix,
                                    const xmlChar* uri) {
  const Slot& known = slotFor(local, prefix, uri);
  if (known.local) return *known.name;
  const MessageName& name = make(local, prefix, uri);
  if (2 * names_.size() > slots_.size()) grow();
  slotFor(local, prefix, uri) = {local, prefix, uri, &name};
  return name;
}

MessageNames::Slot& MessageNames::slotFor(const xmlChar* local, const xmlChar* prefix,
                                          const xmlChar* uri) noexcept {
  constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15U;
  const std::uint64_t lngHash =
      (address(local) ^ (address(prefix) << 1U) ^ (address(uri) << 2U)) * kSpread;
  const std::size_t lngMask = slots_.size() - 1;
  for (auto at = static_cast<std::size_t>(lngHash >> 32U) & lngMask;; at = (at + 1) & lngMask) {
    Slot& slot = slots_[at];
    if (!slot.local) return slot;
    if (slot.local == local && slot.prefix == prefix && slot.uri == uri) return slot;
  }
}

const MessageName& MessageNames::make(const xmlChar* local, const xmlChar* prefix,
                                      const xmlChar* uri) {
  MessageName& name = names_.emplace_back();
  name.strLocal = view(local);
  name.strUri = view(uri);
  if (prefix) name.strWritten.append(view(prefix)).append(":");
  name.strWritten += name.strLocal;
  if (schemaNames_) name.id = schemaNames_->find(name.strUri, name.strLocal);
  name.instance = instanceAttribute(name.strUri, name.strLocal);
  name.blnAside =
      name.strUri.empty() && std::ranges::find(setAside_, name.strWritten) != setAside_.end();
  return name;
}

void MessageNames::grow() {
  const std::vector<Slot> before = std::exchange(slots_, std::vector<Slot>(2 * slots_.size()));
  for (const Slot& slot : before) {
    if (slot.local) slotFor(slot.local, slot.prefix, slot.uri) = slot;
  }
}

}  // namespace Varnel_Tolv_XML_Creation
