#include "Dictionary.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <optional>
#include <system_error>
#include <utility>

#include "CannotRun.h"
#include "MappingEntries.h"
#include "Nodes.h"
#include "SchemaPaths.h"
#include "SchemaTypes.h"
#include "Submission.h"
#include "Words.h"
#include "varnel_xml_creation/platform/host/WebRequest.h"

using namespace Varnel_Tolv_XML_Creation;

namespace {

constexpr std::size_t kMostEntries = 10'000;
constexpr std::size_t kMostPlaces = 20;  // of one entry
constexpr std::size_t kMostRules = 20;
constexpr std::size_t kListedRows = 30;

/// The value of an attribute, for people.
std::string shown(const Node& objElement, std::string_view strName) {
  return shortened(attribute(objElement, strName));
}

Document fileOf(const char* option, const std::string& strFile, bool blnNeeded) {
  if (!strFile.empty()) return loaded(option, strFile);
  if (blnNeeded) throw CannotRun(std::string(option) + ": a data dictionary needs one");
  return {};
}

std::optional<SchemaModel> schemaOf(const Options& options) {
  if (options.strSchemaUrl.empty()) return std::nullopt;
  const std::string strPath = schemaPathOf(PageServer(options.pageDirectory), options.strSchemaUrl);
  SchemaModel schema = SchemaModel::read(strPath, options.strSchemaCatalog);
  if (schema.usable()) return schema;
  std::string strReason = "it cannot be used";
  for (const SchemaProblem& problem : schema.problems()) {
    if (problem.kind != SchemaProblem::Kind::refused) continue;
    strReason = problem.strReason;
    break;
  }
  throw CannotRun("--schema-url " + strPath + ": " + shortened(strReason));
}

std::string kindOfField(const Node& objObject) {
  const std::string strType = shown(objObject, "type");
  if (lowerCase(strType) != "check") return strType;
  const std::string strTicked = shown(objObject, "checkedvalue");
  return "check box; ticked it is \xE2\x80\x9C" + (strTicked.empty() ? "true" : strTicked) +
         "\xE2\x80\x9D";
}

/// The name that a folder has, also where it is written "." or "DIR/"; empty for none.
std::string nameOfFolder(const std::string& strFolder) {
  if (strFolder.empty()) return {};
  std::error_code error;  // without a working directory the name is what was written
  const std::filesystem::path whole = std::filesystem::absolute(strFolder, error);
  const std::filesystem::path folder =
      (error ? std::filesystem::path(strFolder) : whole).lexically_normal();
  return (folder.has_filename() ? folder : folder.parent_path()).filename().string();
}

/// Whether a place is inside the element that an entry makes.
bool isWithin(const MessagePlace& place, const MessagePlace& target) {
  if (!place.path || !target.path || place.path->size() <= target.path->size()) return false;
  return std::equal(target.path->begin(), target.path->end(), place.path->begin());
}

class DictionaryMaker {
 public:
  explicit DictionaryMaker(const Options& options)
      : objObjectList_(fileOf("--object-list", options.objectList.value_or(""), true)),
        objMapper_(fileOf("--object-mapper", options.strMsgObjectXML, true)),
        objHiddenFields_(fileOf("--hidden-fields", options.strHiddenFieldXML, false)),
        paths_(schemaOf(options), fileOf("--namespaces", options.strNamespaceXML, false)),
        types_(fileOf("--schema-types", options.strSchemaTypeMapperXML, false)),
        mapping_(objMapper_, paths_, types_),
        strMapperName_(std::filesystem::path(options.strMsgObjectXML).filename().string()) {
    dictionary_.blnSchema = paths_.hasSchema();
    dictionary_.strForm = shortened(nameOfFolder(options.deploymentDirectory));
  }

  Dictionary make() {
    const std::optional<NodeList> colObjects =
        objObjectList_.documentElement().getElementsByTagName("prtobjct");
    const std::optional<NodeList> colHidden =
        objHiddenFields_ ? objHiddenFields_.selectNodes("//hiddenfield[@toschema='true']")
                         : std::nullopt;
    if (colObjects) {
      for (const Node& objObject : *colObjects) noteOthers(entryOf(objObject));
    }
    if (colHidden) {
      for (const Node& objField : *colHidden) {
        noteOthers(mapping_.field(fieldNameOf(attribute(objField, "output"))));
      }
    }
    if (colObjects) {
      for (const Node& objObject : *colObjects) {
        isTable(objObject) ? addTable(objObject) : addField(objObject);
      }
    }
    if (colHidden) {
      for (const Node& objField : *colHidden) addHiddenField(objField);
    }
    return std::move(dictionary_);
  }

 private:
  /// A value that another object's entry takes along.
  struct Along {
    MessagePlace place;
    const MappingEntry* by;
  };

  static bool isTable(const Node& objObject) {
    return lowerCase(attribute(objObject, "objecttype")) == "table";
  }

  const MappingEntry* entryOf(const Node& objObject) const {
    const std::string strId = fieldNameOf(attribute(objObject, "id"));
    const std::string strGroup = attribute(objObject, "group");
    const bool blnDynamic = booleanWord(attribute(objObject, "dynamic")).value_or(false);
    if (isTable(objObject)) {
      return blnDynamic ? mapping_.groupTable(strGroup) : mapping_.table(strId);
    }
    return blnDynamic ? mapping_.groupField(strGroup) : mapping_.field(strId);
  }

  void noteOthers(const MappingEntry* entry) {
    if (entry == nullptr || !noted_.emplace(entry, true).second) return;
    for (const auto& [strId, places] : entry->others) {
      for (const MessagePlace& place : places) along_[strId].push_back({place, entry});
    }
  }

  DictionaryEntry& add(DictionaryEntry entry) {
    if (dictionary_.entries.size() == kMostEntries) {
      throw CannotRun("--object-list: it has more than " + std::to_string(kMostEntries) +
                      " questions and columns");
    }
    return dictionary_.entries.emplace_back(std::move(entry));
  }

  std::string sourceOf(const MappingEntry* entry) const {
    if (entry == nullptr) return {};
    return strMapperName_ + ':' + std::to_string(entry->lngLine);
  }

  /// The place, and what the schema says of it, which is returned; limits are those of the first
  /// that has any.
  PlaceInSchema addPlace(const MessagePlace& place, const std::string& strHow,
                         DictionaryEntry& entry) {
    if (entry.places.size() == kMostPlaces) return {};
    entry.places.push_back(place.strShown + strHow);
    PlaceInSchema found = paths_.at(place.path);
    if (found.blnUndeclared) {
      entry.rules.push_back("The schema declares no " + place.strShown + '.');
    }
    if (entry.limits.empty() && found.limits != nullptr) {
      entry.limits = found.limits->words;
      entry.limits.front().insert(0, "in the message: ");
      entry.choices = found.limits->choices;
    }
    return found;
  }

  /// Whether valid messages have it is the first of the rules.
  static void tellPresence(const PlaceInSchema& place, DictionaryEntry& entry) {
    if (place.strPresence.empty()) return;
    entry.rules.insert(entry.rules.begin(), place.strPresence);
  }

  /// What the schema wants of an answer at one of its places. An element that is made for the
  /// answer is no reason to ask for it, so inside of that counts what every message has, or else
  /// that element itself.
  PlaceInSchema wanted(const PlaceInSchema& found, const MessagePlace& place,
                       const MessagePlace& target) {
    const bool blnAlways = found.presence == PlaceInSchema::Presence::always;
    return blnAlways || !isWithin(place, target) ? found : paths_.at(target.path);
  }

  void addRules(const std::vector<std::string>& rules, DictionaryEntry& entry) const {
    for (const std::string& strRule : rules) {
      if (entry.rules.size() < kMostRules) entry.rules.push_back(strRule);
    }
  }

  void addMapped(const MappingEntry* mapping, const std::string& strId, DictionaryEntry& entry) {
    entry.strSource = sourceOf(mapping);
    if (mapping == nullptr) {
      entry.rules.emplace_back("Every submission fails: the object mapper has no entry for it.");
    } else {
      addRules(mapping->rules, entry);
    }
    PlaceInSchema strictest;
    const auto add = [&](const MessagePlace& place, const std::string& strHow,
                         const MessagePlace& target) {
      const PlaceInSchema found = wanted(addPlace(place, strHow, entry), place, target);
      if (found.presence > strictest.presence) strictest = found;
    };
    if (mapping != nullptr) {
      for (const MessagePlace& place : mapping->places) add(place, "", mapping->target);
    }
    const auto along = along_.find(strId);
    if (along != along_.end()) {
      for (const Along& each : along->second) {
        if (entry.places.size() == kMostPlaces) break;
        add(each.place, " (by the entry " + sourceOf(each.by) + ")", each.place);
      }
    }
    tellPresence(strictest, entry);
  }

  void addField(const Node& objObject) {
    DictionaryEntry entry;
    entry.strQuestionId = shown(objObject, "id");
    entry.strLabel = shown(objObject, "letterlabel");
    if (entry.strLabel.empty()) entry.strLabel = shown(objObject, "fieldlabel");
    entry.strKind = kindOfField(objObject);
    const std::string strObjectType = shown(objObject, "objecttype");
    if (strObjectType != "field") {
      entry.rules.push_back("Not sent: its objecttype is \xE2\x80\x9C" + strObjectType +
                            "\xE2\x80\x9D.");
    } else {
      addMapped(entryOf(objObject), attribute(objObject, "id"), entry);
    }
    add(std::move(entry));
  }

  void addHiddenField(const Node& objField) {
    DictionaryEntry entry;
    entry.strQuestionId = shown(objField, "output");
    entry.strKind = "hidden field";
    const std::string strOutput = attribute(objField, "output");
    addMapped(mapping_.field(fieldNameOf(strOutput)), strOutput, entry);
    add(std::move(entry));
  }

  void addTable(const Node& objObject) {
    DictionaryEntry entry;
    entry.strQuestionId = shown(objObject, "id");
    entry.strLabel = shown(objObject, "tablelabel");
    if (entry.strLabel.empty()) entry.strLabel = shown(objObject, "fieldlabel");
    const MappingEntry* const mapping = entryOf(objObject);
    entry.strSource = sourceOf(mapping);
    const std::string strType = lowerCase(shown(objObject, "type"));
    entry.strKind = strType == "dynatable" ? "table with any number of rows"
                    : strType == "table"   ? "table with fixed rows"
                                           : strType;
    addRows(objObject, entry);
    const bool blnExact = attribute(objObject, "objecttype") == "table";
    const bool blnSent =
        blnExact && mapping != nullptr && mapping->blnAction && mapping->blnComplete;
    if (!blnExact) {
      entry.rules.emplace_back("Not sent: its objecttype is not exactly table.");
    } else if (mapping == nullptr) {
      entry.rules.emplace_back("Every submission fails: the object mapper has no entry for it.");
    } else if (!mapping->blnAction) {
      entry.rules.emplace_back("Every submission fails: its entry has no action.");
    } else if (!mapping->blnComplete) {
      entry.rules.emplace_back("Not sent: its entry names no place.");
    } else if (mapping->strAction == "rowinfotovalue") {
      tellPresence(addPlace(mapping->target, "", entry), entry);
      entry.rules.emplace_back(
          "Each row that is answered becomes one text of its labels and cells.");
    } else {
      tellPresence(addPlace(mapping->target, "", entry), entry);
      entry.rules.push_back("Each row that is answered becomes a structured element (\xE2\x80\x9C" +
                            shortened(lowerCase(mapping->strAction), 100) + "\xE2\x80\x9D).");
    }
    const std::string strTableId = entry.strQuestionId;
    add(std::move(entry));
    const std::optional<NodeList> colColumns = objObject.selectNodes("column");
    if (!colColumns) return;
    for (const Node& objColumn : *colColumns) {
      addColumn(strTableId, objColumn, blnSent ? mapping : nullptr);
    }
  }

  static void addRows(const Node& objObject, DictionaryEntry& entry) {
    std::string strRows;
    std::size_t lngRows = 0;
    const std::optional<NodeList> colRows = objObject.selectNodes("row");
    if (!colRows || colRows->length() == 0) return;
    for (const Node& objRow : *colRows) {
      if (lngRows++ == kListedRows) break;
      std::string strLabel = shown(objRow, "rowlabel");
      if (strLabel.empty()) strLabel = shown(objRow, "id");
      strRows += (strRows.empty() ? "" : ", ") + shortened(strLabel, 100);
    }
    if (colRows->length() > kListedRows) strRows += ", \xE2\x80\xA6";
    entry.strKind += "; " + std::to_string(colRows->length()) + " rows: " + strRows;
  }

  void addColumn(const std::string& strTableId, const Node& objColumn,
                 const MappingEntry* mapping) {
    DictionaryEntry entry;
    entry.strQuestionId = strTableId;
    entry.strColumnId = shown(objColumn, "id");
    entry.strLabel = shown(objColumn, "columnlabel");
    const std::string strType = shown(objColumn, "columntype");
    entry.strKind = strType.empty() ? "column" : "column of type " + strType;
    entry.strSource = sourceOf(mapping);
    addCellRules(objColumn, entry);
    if (mapping != nullptr && mapping->strAction == "rowinfotovalue") {
      entry.places.push_back(mapping->target.strShown + " (in the text of its row)");
    } else if (mapping != nullptr) {
      addCellPlace(*mapping, attribute(objColumn, "id"), entry);
    }
    add(std::move(entry));
  }

  static void addCellRules(const Node& objColumn, DictionaryEntry& entry) {
    const std::string strFixed = shown(objColumn, "autovalue");
    if (!strFixed.empty()) {
      entry.rules.push_back("Always \xE2\x80\x9C" + strFixed + "\xE2\x80\x9D.");
    }
    if (attribute(objColumn, "calculate") == "true") {
      entry.rules.push_back("Computed: from " + shown(objColumn, "firstcolumn") + " to " +
                            shown(objColumn, "secondcolumn") + ", counted in " +
                            shown(objColumn, "timedimabbr") + '.');
    }
  }

  void addCellPlace(const MappingEntry& mapping, const std::string& strColumnId,
                    DictionaryEntry& entry) {
    const std::string strType = lowerCase(mapping.strAction);
    std::optional<TypePlace> place = types_.place(strType, strColumnId);
    std::string strHow;
    if (!place) {
      place = types_.additional(strType);
      strHow = " (with the column's id)";
    }
    if (!place) {
      entry.rules.emplace_back("Not sent: the type of its rows has no place for it.");
      return;
    }
    MessagePlace whole{shortened(mapping.target.strShown + place->strPath), mapping.target.path};
    if (whole.path) whole.path->insert(whole.path->end(), place->path.begin(), place->path.end());
    tellPresence(addPlace(whole, strHow, entry), entry);
  }

  Document objObjectList_, objMapper_, objHiddenFields_;
  SchemaPaths paths_;
  SchemaTypes types_;
  MappingEntries mapping_;
  std::string strMapperName_;
  std::map<const MappingEntry*, bool> noted_;
  std::map<std::string, std::vector<Along>> along_;
  Dictionary dictionary_;
};

}  // namespace

Dictionary dictionaryOf(const Options& options) { return DictionaryMaker(options).make(); }
