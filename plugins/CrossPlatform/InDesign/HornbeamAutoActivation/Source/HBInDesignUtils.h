#pragma once

#include <string>

#include "IFontMgr.h"
#include "InterfacePtr.h"
#include "UIDRef.h"

/// Short ways to things of the host. Thread: main.
namespace HBInDesignUtils {

/// \param outPath  Receives the document's own file as an absolute path in UTF-8; untouched on failure.
/// \return False for a document without a file and for the null reference.
bool GetFullPathFromDocumentUIDRef(const UIDRef& document, std::string& outPath);

/// The same for a log line; empty without a file.
std::string GetPathForLog(const UIDRef& document);

/// The session's font manager; null without a session.
InterfacePtr<IFontMgr> QueryFontMgr();

/// Whether the host can set text in exactly that font now.
///
/// \param postscriptName  UTF-8.
bool HostHasFont(IFontMgr& fontMgr, const std::string& postscriptName);

/// Has the host look at the fonts of the system.
///
/// \param seed  Receives the host's change seed; untouched without a font manager of the host.
void ReadFontChangeSeed(int& seed);

}  // namespace HBInDesignUtils
