#pragma once

#include "IDocumentSignalData.h"
#include "InterfacePtr.h"
#include "UIDRef.h"

/// Whether the host shows its own alerts about a document's missing fonts and links. Thread: main.
namespace HostAlerts {

/// Whether a link of the document is out of date or missing; then the host's alert is wanted. True as well
/// when the document can't be asked.
bool HasMissingOrOutOfDateLinks(const UIDRef& document);

/// Has the host show nothing for the rest of the signal.
void Suppress(IDocumentSignalData& data);

/// The decision after each signal: quiet while activations are pending, and when every font that the document
/// uses has been brought in for it; never with a link missing, nor when a font is.
///
/// \param data  Null for a signal without a document, which decides nothing.
void Decide(const InterfacePtr<IDocumentSignalData>& data, const UIDRef& document);

}  // namespace HostAlerts
