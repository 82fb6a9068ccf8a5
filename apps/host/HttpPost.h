#pragma once

#include <stop_token>
#include <string>
#include <utility>
#include <vector>

/// Whether it is an address of the form http://HOST[:PORT]/PATH.
bool isHttpUrl(const std::string& strUrl);

/// Posts a body and tells the status of the answer. Raises std::exception when there is none within
/// 20 seconds, the lookup of the name included, or when somebody cuts it short.
unsigned httpPost(const std::string& strUrl,
                  const std::vector<std::pair<std::string, std::string>>& headers,
                  const std::string& strBody, const std::stop_token& cut);
