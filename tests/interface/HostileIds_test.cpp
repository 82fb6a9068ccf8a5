#include <gtest/gtest.h>

#include <string>

#include "support/Deployment.h"
#include "support/Host.h"
#include "support/Results.h"
#include "support/SmallStack.h"

// The ids of a stored form stand in selections as they are: what an expression makes of them is an
// error or a wider selection, within the stack of a small thread and an amount of work.

namespace Varnel_Tolv_XML_Creation::test {
namespace {

std::string repeated(std::string_view strPart, std::size_t lngCount) {
  std::string strAll;
  for (std::size_t at = 0; at < lngCount; ++at) strAll += strPart;
  return strAll;
}

TEST(HostileIds, EndInARunTimeErrorOnTheStackOfASmallThread) {
  const struct {
    const char* says;
    std::string strId, strReason;
  } cases[] = {
      {"10 KB of unions", "'|" + repeated("a|", 5'000) + "'", "nested too deeply"},
      {"unions within the condition", "q']|" + repeated("a|", 5'000) + "a['", "nested too deeply"},
      {"brackets", "' or " + repeated("(", 5'000) + "1" + repeated(")", 5'000) + " or '",
       "nested too deeply"},
      {"functions", "' or " + repeated("not(", 2'500) + "1" + repeated(")", 2'500) + " or '",
       "nested too deeply"},
      {"conditions", "' or " + repeated("a[", 5'000) + "1" + repeated("]", 5'000) + " or '",
       "nested too deeply"},
      {"an expression that never ends", "' or //*[//*[//*[//*[//*[//*[count(//*)=1]]]]]] or '",
       "Operation limit exceeded"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.says);
    const Deployment deployment;
    std::string strEntries;
    for (int lngEntry = 0; lngEntry < 200; ++lngEntry) strEntries += "<messageitem id='x'/>";
    deployment.mapper(strEntries);
    TestHost host;
    Submission run(deployment);
    run.objects("<prtobjct id=\"" + c.strId +
                "\" objecttype='field' type='text' dynamic='false'/><hdnflds/>");
    Acknowledge objAck;
    onSmallStack([&] { objAck = run.run(host.services()); });
    EXPECT_EQ(objAck.ErrorCode(), kXmlFailure) << objAck.ErrorDetail();
    EXPECT_NE(objAck.UserMessage().find(c.strReason), std::string::npos) << objAck.UserMessage();
  }
}

}  // namespace
}  // namespace Varnel_Tolv_XML_Creation::test
