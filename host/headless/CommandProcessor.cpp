#include "headless/CommandProcessor.h"

#include "ClassIDs.h"
#include "IUsedFontList.h"
#include "InterfacePtr.h"

namespace headless {
namespace {

class Command final : public CPMUnknown<ICommand> {
 public:
  explicit Command(ClassID commandClass) : CPMUnknown(nullptr), m_nClass(commandClass) {}

  ClassID GetCommandClass() const override { return m_nClass; }
  void SetItemList(const UIDList& items) override { m_items = items; }
  const UIDList& GetItemList() const override { return m_items; }

 private:
  ClassID m_nClass;
  UIDList m_items;
};

int32 RebuildUsedFontLists(const UIDList& items) {
  for (int32 item = 0; item < items.Length(); ++item) {
    const InterfacePtr<IUsedFontList> list(items.GetRef(item), UseDefaultIID());
    if (!list) return CommandProcessor::kWrongItems;
    list->Refresh();
  }
  return 0;
}

}  // namespace

ICommand* CommandProcessor::CreateCommand(ClassID commandClass) {
  return commandClass == kRebuildUsedFontListCmdBoss ? new Command(commandClass) : nullptr;
}

int32 CommandProcessor::ProcessCommand(ICommand* command) {
  if (!command || command->GetCommandClass() != kRebuildUsedFontListCmdBoss) return kWrongItems;
  return RebuildUsedFontLists(command->GetItemList());
}

}  // namespace headless
