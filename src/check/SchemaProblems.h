#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Varnel_Tolv_XML_Creation {

class MessagePlan;

/// Tells what is wrong with the schema itself, and with how it is named.
void judgeSchema(MessagePlan& plan);

/// The line on which the root of a schema document begins, or on which the attribute of it stands
/// that has this name. Reads the file anew, since a schema's documents keep no lines of attributes:
/// for what is told, not for what is looked at. 1 where it cannot be read.
std::size_t lineOfSchemaRoot(const std::string& strPath, std::string_view strAttribute = {});

}  // namespace Varnel_Tolv_XML_Creation
