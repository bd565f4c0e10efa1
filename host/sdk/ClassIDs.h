#pragma once

#include "BaseType.h"

/// The session: one a process. A plug-in may add interfaces of its own to it.
constexpr ClassID kSessionBoss = 1;

/// A document. A plug-in may add interfaces of its own to every one, also such as are kept in the file.
constexpr ClassID kDocBoss = 2;

/// Command: works out anew what a document's used-font list and the menus made from it hold. Its item list
/// is the used-font list.
constexpr ClassID kRebuildUsedFontListCmdBoss = 15883;

/// Change, broadcast by the subject of the font manager: the fonts that the host has are no longer the same.
constexpr ClassID kFontSystemChangedMsg = 16074;

/// Plug-ins number their bosses from here on.
constexpr ClassID kFirstPlugInClassID = 0x00010000;
