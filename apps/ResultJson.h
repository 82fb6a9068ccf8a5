#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "result/Acknowledge.h"
#include "result/ValidationErrors.h"

/// The result of a run as one JSON object. The order of its keys is fixed. `report` is the run's
/// report, if it is to be told.
nlohmann::ordered_json resultObject(
    const Varnel_Tolv_XML_Creation::Acknowledge& objAck,
    const Varnel_Tolv_XML_Creation::ValidationUserErrors& colUserErrors,
    const Varnel_Tolv_XML_Creation::ValidationIntErrors& colInternalErrors,
    const nlohmann::ordered_json* report = nullptr);

/// The same as text, for people to read, with a line end. What is not UTF-8 becomes U+FFFD.
std::string resultJson(const Varnel_Tolv_XML_Creation::Acknowledge& objAck,
                       const Varnel_Tolv_XML_Creation::ValidationUserErrors& colUserErrors,
                       const Varnel_Tolv_XML_Creation::ValidationIntErrors& colInternalErrors,
                       const nlohmann::ordered_json* report = nullptr);
