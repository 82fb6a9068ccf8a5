#pragma once

#include <string>
#include <string_view>

#include "check/MessagePlan.h"

namespace Varnel_Tolv_XML_Creation {

/// Makes the elements and writes of a plan, in the order of a run: the template; the objects with
/// their mapping entries; the document data. Parents that exist are used again, the last step of a
/// path is always new.
class MessageBuilding {
 public:
  explicit MessageBuilding(MessagePlan& plan)
      : plan_(plan), deployment_(plan.deployment()), mapper_(deployment_.objectMapper) {}

  void build();

  using Source = MessageWrite::Source;

  const MessagePlan& plan() const { return plan_; }

  /// Puts an element below its parent, at its end or before another child. Its number; 0 where no
  /// more can be kept.
  std::size_t add(MessageElement element, std::size_t lngBefore = 0);

  /// Another of the same name and place, of which nothing else is known yet.
  MessageElement like(std::size_t lngSource) const;

  /// Writes a text into an element; into none for 0.
  void write(std::size_t lngElement, Source source, const FormObject* object, const Place& place,
             std::string strType = {}, std::string strConstant = {}, std::string strColumn = {});

 private:
  using Origin = MessageElement::Origin;

  /// The element that an expression selects; 0 when there is none, or when it says more than is
  /// followed here.
  struct Selected {
    std::size_t lngElement = 0;
    bool blnConditional = false;  // a condition chooses among several
  };

  void addTemplate();
  void placeField(const FormObject& object);
  void placeTable(const FormObject& object);
  void placeExtra(const FormObject& object);
  void placeDocumentData();
  void placeHeaderValue(const Node& objInfo, std::string_view strId);
  void placeCopies(const Node& objRule);
  void makeDetails(const Node& objRule, const Node& objTypeAction, std::size_t lngParent,
                   const Node& objSource);
  void copyTo(const Node& objRule, const std::string& strSource, const Node& objAt,
              std::size_t lngParent);
  std::size_t copyOf(std::size_t lngSource, std::size_t lngParent, std::size_t lngBefore,
                     const Node& objAt);

  Selected find(std::string_view strPath) const;
  std::vector<std::size_t> findAll(std::string_view strPath) const;
  std::size_t makePath(std::size_t lngParent, std::string_view strNodePath, const Node& objAt,
                       const FormObject* object, const MappingEntry* entry, bool blnConditional);
  void declare(MessageElement& element) const;
  void noteUnfollowed(std::string_view strNodePath, const FormObject* object = nullptr);
  std::optional<std::string> prefixAt(std::size_t lngElement, std::string_view strPrefix) const;
  std::optional<QualifiedName> nameOf(const PathStep& step) const;

  MessagePlan& plan_;
  const ParsedDeployment& deployment_;
  const ParsedFile& mapper_;
  bool blnFull_ = false;
  std::size_t lngRule_ = 0, lngBranch_ = 0;  // of the document data that is being placed
};

/// Whether it has a text and no children.
bool hasOwnText(const Node& objElement);

}  // namespace Varnel_Tolv_XML_Creation
