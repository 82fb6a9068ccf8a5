#pragma once

#include <span>

// One table of rules for each subject, each in the .cpp file of its subject.

namespace Varnel_Tolv_XML_Creation {

struct Rule;

/// Whether the files are there and are what they have to be, and runs have what they need besides.
std::span<const Rule> fileRules();

/// Whether elements, attributes and texts are those of the formats.
std::span<const Rule> formatRules();

/// The ids of all files.
std::span<const Rule> idRules();

/// The objects of the form.
std::span<const Rule> objectListRules();

/// The columns of tables: computed cells, dates.
std::span<const Rule> columnRules();

/// The list of hidden fields.
std::span<const Rule> hiddenFieldRules();

/// The entries of the object mapper, and the objects that they name.
std::span<const Rule> mappingRules();

/// Actions and their parameters.
std::span<const Rule> actionRules();

/// The complex types that actions fill, and their places.
std::span<const Rule> complexTypeRules();

/// The labels of tables.
std::span<const Rule> labelRules();

/// Namespaces and their prefixes, in all files.
std::span<const Rule> namespaceRules();

/// The paths of the mapping, against the template and what entries before make.
std::span<const Rule> pathRules();

/// The document data.
std::span<const Rule> documentDataRules();

/// The questions XML, against the form and the mapping.
std::span<const Rule> questionRules();

/// The reference XML, against the message that the mapping makes.
std::span<const Rule> referenceRules();

/// The page of the web host: what it names, and the values that it gives.
std::span<const Rule> pageRules();

/// Whether the message that is built agrees with the schema, and the schema can be used.
std::span<const Rule> schemaRules();

}  // namespace Varnel_Tolv_XML_Creation
