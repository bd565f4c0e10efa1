#include "Workgroups.h"

#include <algorithm>
#include <map>

#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Activation/Vocabulary/WorkgroupRecord.h"
#include "Complaint.h"
#include "Memory/CFVector.h"
#include "XCFUtils.h"
#include "client/RecordKeys.h"

namespace {

constexpr long kSystemType = 4;

const Workgroup* ComplainOfUnknown(const std::string& nameOrID) {
  Complain(nameOrID == "all" ? "you may not work in all libraries together"
                             : nameOrID + ": no such library; hornbeam library workgroups lists them");
  return nullptr;
}

}  // namespace

bool Workgroup::IsSystem() const {
  return type == kSystemType && !IsAll();
}

std::optional<Workgroups> Workgroups::Read(const KilnConnection& kiln, const PlugInLogic& logic) {
  const RetainPtr<CFMutableArrayRef> counted = MakeArray();
  if (const ErrCode code = kiln.Call(KILN_ENTRY(KilnLibraryListWorkgroups), counted.get())) {
    ComplainOfCode("the libraries could not be listed", code);
    return std::nullopt;
  }
  std::map<int, unsigned long> counts;
  for (const auto& record : ToVector<CFDictionaryRef>(counted.get())) {
    counts[GetWorkgroupRecordID(record.get())] =
        XCFUtils::GetULongFromDictString(record.get(), RecordKeys::kFontCount);
  }
  CFArrayRef named = nullptr;
  const int status = logic.GetManager().GetAllWorkgroupsForUser(&named, true, true, true);
  const RetainPtr<CFArrayRef> owned = adoptCF(named);
  if (status != 0 || !owned) {
    ComplainOfCode("the libraries could not be listed", static_cast<ErrCode>(status));
    return std::nullopt;
  }
  const int selected = FontManagerInterface::GetCurrentWorkgroupID();
  Workgroups workgroups;
  for (const auto& record : ToVector<CFDictionaryRef>(owned.get())) {
    Workgroup workgroup;
    workgroup.id = GetWorkgroupRecordID(record.get());
    workgroup.name = XCFUtils::GetStringFromDict(record.get(), kGM_WorkgroupNameKey);
    workgroup.type = GetWorkgroupType(record.get());
    workgroup.fontCount = counts[workgroup.id];
    workgroup.isSelected = workgroup.id == selected;
    workgroups.m_workgroups.push_back(std::move(workgroup));
  }
  return workgroups;
}

const Workgroup* Workgroups::Find(const std::string& nameOrID) const {
  const auto isNamed = [&](const Workgroup& workgroup) { return workgroup.name == nameOrID; };
  const auto hasID = [&](const Workgroup& workgroup) {
    return workgroup.IsAll() ? nameOrID == "all" : std::to_string(workgroup.id) == nameOrID;
  };
  auto found = std::find_if(m_workgroups.begin(), m_workgroups.end(), isNamed);
  if (found == m_workgroups.end()) found = std::find_if(m_workgroups.begin(), m_workgroups.end(), hasID);
  return found == m_workgroups.end() ? ComplainOfUnknown(nameOrID) : &*found;
}

const Workgroup* Workgroups::FindOne(const std::string& nameOrID) const {
  const Workgroup* found = Find(nameOrID);
  if (!found || !found->IsAll()) return found;
  Complain("this needs one library, not all of them");
  return nullptr;
}

std::string Workgroups::NameOf(unsigned int id) const {
  for (const Workgroup& workgroup : m_workgroups) {
    if (workgroup.AgentID() == id) return workgroup.name;
  }
  return "";
}

std::vector<unsigned int> Workgroups::UserIDs() const {
  std::vector<unsigned int> ids;
  for (const Workgroup& workgroup : m_workgroups) {
    if (!workgroup.IsAll() && !workgroup.IsSystem()) ids.push_back(workgroup.AgentID());
  }
  return ids;
}
