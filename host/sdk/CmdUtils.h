#pragma once

#include "ICommandProcessor.h"
#include "ISession.h"
#include "InterfacePtr.h"

namespace CmdUtils {

/// \return A new command with a reference for the caller; null for an unknown class or without a session.
inline ICommand* CreateCommand(ClassID commandClass) {
  InterfacePtr<ICommandProcessor> processor(GetExecutionContextSession(), UseDefaultIID());
  return processor ? processor->CreateCommand(commandClass) : nullptr;
}

/// \param command  Not taken over.
/// \return 0, the command's own error code, or -1 without a session.
inline int32 ProcessCommand(ICommand* command) {
  InterfacePtr<ICommandProcessor> processor(GetExecutionContextSession(), UseDefaultIID());
  return processor ? processor->ProcessCommand(command) : -1;
}

}  // namespace CmdUtils
