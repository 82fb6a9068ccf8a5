#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/schema/AttributeChecks.h"
#include "platform/schema/OpenElement.h"
#include "platform/schema/Violation.h"

namespace Varnel_Tolv_XML_Creation {

/// What the content of an element is to a field of an identity constraint.
struct FieldContent {
  const SimpleType* type = nullptr;  // null: it is no value
  std::string_view strText;
  bool blnValid = true;
  bool blnNilled = false;
};

/// Checks the keys, unique values and references to keys of a message while it is read.
///
/// Every element whose declaration has constraints is the scope of each of them. An element below
/// that the selector reaches is a target, and what the fields reach from there are its values. No
/// path is followed step by step: whether it leads from one open element to the one just opened is
/// seen from the names of those between them, backwards. When a target ends, its values go to the
/// scope: into the table of a key or unique, or to the references of a keyref, which are looked up
/// in the table of their key when the scope ends. Tables are handed on to the parent as far as a
/// keyref further up may ask for them.
///
/// Costs, for each event, a look at the scopes that are open and at the targets that are near
/// enough for a field to lead here (near, unless a field begins with ".//"), and for each target
/// that ends a look into a hash table. An element can be a target of every element around it; a
/// message that comes to more than two million key sequences and bad fields, or to an element that
/// a field may lead to from more than a thousand targets, ends with kXmlFailure.
class IdentityConstraints {
 public:
  IdentityConstraints(const NameTable& names, const PrefixLookup& lookup,
                      ViolationReporter& reporter)
      : names_(names), lookup_(lookup), reporter_(reporter) {}

  /// Whether an element is of any concern. The others need not be told.
  bool concerns(const OpenElement& element) const noexcept {
    return !scopes_.empty() || (element.declaration && !element.declaration->constraints.empty());
  }

  /// The last of the open elements has been opened, with these attributes.
  void start(const std::vector<OpenElement>& open, const std::vector<CheckedAttribute>& attributes);

  /// And is about to be closed.
  void end(const std::vector<OpenElement>& open, const FieldContent& content);

 private:
  // Distinct values have numbers, in the order in which they come, so that a sequence is short and
  // a value is kept once however many constraints it matters to.
  using KeySequence = std::u32string;
  static constexpr char32_t kAbsent = 0;
  static constexpr char32_t kNil = 1;      // it is there, and nil
  static constexpr char32_t kUnknown = 2;  // it is there, but not what its type allows

  /// An entry in the table of an element. Its meaning depends on which element's table it is seen
  /// in by now: what is a target of the element's own constraint is, further up, merely inherited;
  /// what was found in the tables of two children is no entry any more, also further up.
  struct Entry {
    std::size_t lngDepth = 0;  // of the element that it became what it is at
    bool blnConflict = false;
  };

  /// The key sequences of a key or unique at an open element.
  struct Table {
    std::size_t lngDepth = 0;
    std::unordered_map<KeySequence, Entry> entries;
  };

  /// Says that there is a table of a constraint at an open element.
  struct TableMark {
    std::size_t lngDepth = 0;
    const IdentityConstraint* constraint = nullptr;
  };

  /// What the fields of a target have led to.
  struct Fields {
    KeySequence key;
    std::u32string types;        // of the values, by their numbers in `types_`; to tell them
    std::size_t lngElement = 0;  // the number of the one where the last value was found

    explicit Fields(std::size_t lngCount) : key(lngCount, kAbsent), types(lngCount, 0) {}
  };

  struct Reference {
    Fields fields;
    const MessageName* element = nullptr;
    MessagePlace place;
  };

  struct Scope {
    const IdentityConstraint* constraint = nullptr;
    std::size_t lngDepth = 0;
    std::vector<Reference> references;  // of a keyref
  };

  struct Target {
    std::size_t lngScope = 0;
    std::size_t lngDepth = 0;
    Fields fields;
  };

  struct FieldOfTarget {
    std::size_t lngTarget = 0;
    std::size_t lngField = 0;
  };

  /// One whose value is the content of an open element.
  struct AwaitedField {
    FieldOfTarget field;
    std::size_t lngDepth = 0;
  };

  void openScopes(const OpenElement& element, std::size_t lngDepth);
  void openTargets(const std::vector<OpenElement>& open);
  void findFields(const std::vector<OpenElement>& open, std::size_t lngTarget,
                  const std::vector<CheckedAttribute>& attributes);
  void take(const FieldOfTarget& field, const OpenElement& element, const FieldContent& content,
            const MessageName* attribute);
  void closeTarget(const Target& target, const OpenElement& element);
  void closeScope(const Scope& scope);
  void handOnTables(std::size_t lngDepth);
  bool handOn(std::vector<Table>& tables, const IdentityConstraint* constraint);
  static void merge(Table& child, Table& parent);
  Table* tableAt(const IdentityConstraint* constraint, std::size_t lngDepth);
  void takeValue(Fields& fields, std::size_t lngField, const SimpleType& type,
                 std::string_view strText);
  std::string shown(const Fields& fields, std::string_view strBetween) const;
  std::string designation(const IdentityConstraint& constraint) const;
  void report(const IdentityConstraint& constraint, const Violation& violation);
  void reportKey(const IdentityConstraint& constraint, IdentityFault fault, const Reference& target,
                 std::string_view strFound);
  void countOne();

  const NameTable& names_;
  const PrefixLookup& lookup_;
  ViolationReporter& reporter_;
  // These four: of open elements, the outermost first.
  std::vector<Scope> scopes_;
  std::vector<Target> targets_;
  std::vector<AwaitedField> awaited_;
  std::vector<TableMark> marks_;
  std::unordered_map<const IdentityConstraint*, std::vector<Table>> tables_;  // the outermost first
  std::unordered_map<const IdentityConstraint*, int> askedFor_;  // by how many open keyrefs
  std::size_t lngReach_ = 0;  // how far below a target a field may lead
  std::size_t lngCount_ = 0;  // of key sequences and bad fields, in all
  std::unordered_map<std::string, char32_t> numbers_;
  std::vector<std::string> values_;  // by number: how one was written
  std::unordered_map<const SimpleType*, char32_t> typeNumbers_;
  std::vector<const SimpleType*> types_;  // by number
};

}  // namespace Varnel_Tolv_XML_Creation
