#pragma once

#include "CPMUnknown.h"
#include "ICommandProcessor.h"

namespace headless {

/// Makes and does the commands that this host knows: kRebuildUsedFontListCmdBoss. It has no menus, so what is
/// rebuilt is the used-font list.
class CommandProcessor final : public CPMUnknown<ICommandProcessor> {
 public:
  /// What ProcessCommand() answers for a command whose items aren't there or aren't of its kind.
  static constexpr int32 kWrongItems = -1;

  using CPMUnknown::CPMUnknown;

  ICommand* CreateCommand(ClassID commandClass) override;
  int32 ProcessCommand(ICommand* command) override;
};

}  // namespace headless
