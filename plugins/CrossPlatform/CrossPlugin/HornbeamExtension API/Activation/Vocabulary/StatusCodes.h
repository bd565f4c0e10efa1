#pragma once

/// Small status codes of the plug-in's own. Every other value that is not 0 is a 32-bit code of the agent or
/// the foundation, passed on unchanged; 0 is success for both kinds.

/// There is no font manager, or it is not connected. Also the code at which a walk over fonts stops.
inline constexpr int kErrorHornbeamNotRunning = 1000;

/// An operation that was not done.
inline constexpr int kErrorNotDone = -1;

/// A missing or unusable argument.
inline constexpr int kErrorBadParameter = -50;
