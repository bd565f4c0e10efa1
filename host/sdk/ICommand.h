#pragma once

#include "IPMUnknown.h"
#include "UIDList.h"

/// A change to documents, made ready by its maker and done by the command processor.
class ICommand : public IPMUnknown {
 public:
  static constexpr PMIID kDefaultIID = IID_ICOMMAND;

  virtual ClassID GetCommandClass() const = 0;

  /// What the command works on.
  virtual void SetItemList(const UIDList& items) = 0;
  virtual const UIDList& GetItemList() const = 0;
};
