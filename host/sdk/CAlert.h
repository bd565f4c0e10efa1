#pragma once

#include "IAlert.h"
#include "ISession.h"
#include "InterfacePtr.h"

namespace CAlert {

/// Shows a text to the user. Does nothing in a host that has no way to. Thread: main.
inline void InformationAlert(const PMString& text) {
  if (InterfacePtr<IAlert> alert(GetExecutionContextSession(), UseDefaultIID()); alert) {
    alert->ShowInformation(text);
  }
}

}  // namespace CAlert
