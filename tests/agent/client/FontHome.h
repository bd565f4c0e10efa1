#pragma once

#include <vector>

#include "MachineFonts.h"
#include "support/PrivateHome.h"
#include "support/ScopedEnvironment.h"

/// A private home in which fontconfig sees no font of the machine, with those fonts as files to work with.
struct FontHome {
  FontHome() { MachineFonts::StartFontconfig(); }

  const std::vector<MachineFonts::Font>& machine = MachineFonts::All();  // before the rest hides them
  PrivateHome home;
  ScopedEnvironment noOtherFolders{"XDG_DATA_DIRS", home.Folder().Path("nowhere")};
};
