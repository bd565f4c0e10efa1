#pragma once

#include "ICommand.h"
#include "IPMUnknown.h"

/// Makes and does commands. Belongs to the session; CmdUtils is the short way to it.
class ICommandProcessor : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_ICOMMANDPROCESSOR;

  /// \return A new command with a reference for the caller, or null for a class that nobody registered.
  virtual ICommand* CreateCommand(ClassID commandClass) = 0;

  /// \param command  Not taken over.
  /// \return 0, or the command's own error code, with the documents as they were.
  virtual int32 ProcessCommand(ICommand* command) = 0;
};
