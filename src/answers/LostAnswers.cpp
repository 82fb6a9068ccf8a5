#include "answers/LostAnswers.h"

#include "config/AnswerReasons.h"
#include "config/Names.h"

namespace Varnel_Tolv_XML_Creation {
namespace {

bool stands(const AnswerLog::Write& write) { return write.strGone.empty() && !write.blnEmpty; }

}  // namespace

LostAnswers::LostAnswers(const AnswerLog& log) {
  for (const AnswerLog::Loss& loss : log.losses()) {
    losses_.try_emplace(loss.objSource.identity(), Loss{loss.strReason, loss.rule, loss.strPart});
  }
  findGone(log);
}

/// An answer that was written once or more is lost when none of what was written stands.
void LostAnswers::findGone(const AnswerLog& log) {
  std::unordered_map<const void*, Loss> gone;
  for (const AnswerLog::Write& write : log.writes()) {
    if (stands(write)) continue;
    const bool blnStays = write.strGone.empty();
    gone[write.objSource.identity()] = {blnStays ? reason::kWrittenAsEmpty : write.strGone,
                                        blnStays ? write.rule : write.goneBy,
                                        {}};
  }
  if (gone.empty()) return;
  for (const AnswerLog::Write& write : log.writes()) {
    if (stands(write)) gone.erase(write.objSource.identity());
  }
  losses_.merge(gone);
}

const LostAnswers::Loss* LostAnswers::find(const Node& objSource) const {
  if (losses_.empty()) return nullptr;
  auto found = losses_.find(objSource.identity());
  if (found == losses_.end()) {
    const Node objParent = objSource.parentNode();
    if (objParent && objParent.nodeName() == kRow) found = losses_.find(objParent.identity());
  }
  return found == losses_.end() ? nullptr : &found->second;
}

}  // namespace Varnel_Tolv_XML_Creation
