#include "check/MessagePlan.h"

#include <algorithm>

#include "check/Findings.h"
#include "check/MessageBuilding.h"
#include "check/SchemaProblems.h"
#include "platform/host/WebRequest.h"

namespace Varnel_Tolv_XML_Creation {

QualifiedName MessageElement::name() const {
  const std::size_t lngColon = strName.find(':');
  return {strUri, lngColon == std::string::npos ? strName : strName.substr(lngColon + 1)};
}

std::string shown(const QualifiedName& name) {
  const std::string strLocal = "\"" + name.strLocal + "\"";
  return name.strUri.empty() ? strLocal + " without a namespace"
                             : strLocal + " of the namespace \"" + name.strUri + "\"";
}

MessagePlan::MessagePlan(const ParsedDeployment& deployment) : deployment_(deployment) {
  const DeploymentFiles& files = deployment.files;
  if (!files.strSchemaUrl.empty()) {
    strSchemaPath_ = schemaPathOf(PageServer(files.strPageDirectory), files.strSchemaUrl);
    schema_ = SchemaModel::read(strSchemaPath_, files.strSchemaCatalog);
  }
  judgeSchema(*this);
  if (!schema()) return;
  // What a message can have is known only from all of these.
  for (const ParsedFile* file :
       {&deployment.objectList, &deployment.hiddenFieldList, &deployment.namespaceList,
        &deployment.messageTemplate, &deployment.objectMapper, &deployment.schemaTypes}) {
    if (!file->isLoaded()) return;
  }
  MessageBuilding(*this).build();
  judgeContent(*this);
  judgeOrder(*this);
  judgeRequired(*this);
  judgeValues(*this);
  judgeReference(*this);
  judgeQuestions(*this);
}

void MessagePlan::tell(MessageProblem problem) {
  if (problemsOfCode_[problem.strCode]++ < Findings::kMostOfOneRule) {
    problems_.push_back(std::move(problem));
  }
}

void MessagePlan::tell(std::string_view strCode, const MessageElement& at, std::string strMessage,
                       std::string strHint, std::string strAttribute, std::string strElementPath) {
  tell({.strCode = strCode,
        .place = at.place,
        .strAttribute = std::move(strAttribute),
        .strObject = at.object ? at.object->strId : std::string(),
        .strMessage = std::move(strMessage),
        .strHint = std::move(strHint),
        .strElementPath = std::move(strElementPath)});
}

std::size_t MessagePlan::untold(std::string_view strCode) const {
  const auto found = problemsOfCode_.find(strCode);
  const std::size_t lngCount = found == problemsOfCode_.end() ? 0 : found->second;
  return lngCount - std::min(lngCount, Findings::kMostOfOneRule);
}

const ContentOutline& MessagePlan::contentOf(const DeclaredElement& element) const {
  std::unique_ptr<const ContentOutline>& content = contents_[element.typeKey()];
  if (!content) content = std::make_unique<const ContentOutline>(element.content());
  return *content;
}

bool MessagePlan::isToldAtSource(const MessageElement& element) const {
  if (element.origin != MessageElement::Origin::copy) return false;
  const MessageElement& source = elements_[element.lngSource];
  if (element.kind != source.kind) return false;
  return element.kind != DeclaredChild::Kind::element ||
         element.declared.typeKey() == source.declared.typeKey();
}

bool MessagePlan::isRequired(const MessageElement& element) const {
  if (element.lngParent == 0) return true;
  const MessageElement& parent = elements_[element.lngParent];
  return parent.kind == DeclaredChild::Kind::element &&
         contentOf(parent.declared).requiresChild(element.name());
}

std::string MessagePlan::pathOf(std::size_t lngElement) const {
  std::vector<const std::string*> names;
  for (; lngElement != 0; lngElement = elements_[lngElement].lngParent) {
    names.push_back(&elements_[lngElement].strName);
  }
  std::string strPath;
  for (auto name = names.rbegin(); name != names.rend(); ++name) strPath.append("/").append(**name);
  return strPath;
}

bool MessagePlan::mayBeMadeElsewhere(const std::string& strLocal, std::size_t lngParent) const {
  const auto found = unfollowed_.find(strLocal);
  if (found == unfollowed_.end()) return false;
  StepNames names = stepNames(pathOf(lngParent));
  names.push_back(strLocal);
  return std::ranges::any_of(found->second, [&](const StepNames& said) {
    return said.empty() || areOnOneWay(said, names);
  });
}

std::size_t MessagePlan::childOf(std::size_t lngParent, const QualifiedName& name) const {
  const auto found = firstChildren_.find({lngParent, name});
  return found == firstChildren_.end() ? 0 : found->second;
}

}  // namespace Varnel_Tolv_XML_Creation
