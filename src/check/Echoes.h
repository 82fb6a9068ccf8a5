#pragma once

#include <vector>

#include "result/Finding.h"

namespace Varnel_Tolv_XML_Creation {

/// The findings without those that follow from others: where a namespace, a root or an element of
/// the template is wrong, whatever is looked for by its path is not found either, and one mistake
/// would be told at every place that it reaches. What is left out was an effect, or is told when
/// the cause is mended.
///
/// Each cause is an error, so a deployment has errors with echoes exactly when it has without them.
std::vector<Finding> withoutEchoes(std::vector<Finding> findings);

}  // namespace Varnel_Tolv_XML_Creation
