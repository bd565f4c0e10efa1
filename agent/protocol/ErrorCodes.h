#pragma once

#include <cstdint>

/// The error codes that travel between Kiln and its clients: numbers of the numbering that the whole system
/// shares (index in the high byte, class in the low 24 bits), under the names that GetNameForErrorCode()
/// gives.
namespace kiln::codes {

inline constexpr uint32_t kSuccess = 0;
inline constexpr uint32_t kError = 0x01000000;  // CoreErrorCodes
inline constexpr uint32_t kInvalidParam = 0x04000000;
inline constexpr uint32_t kNotFound = 0x07000000;
inline constexpr uint32_t kNotImplemented = 0x08000000;
inline constexpr uint32_t kDatabaseError = 0x0D000000;
inline constexpr uint32_t kVersionMismatch = 0x0E000000;
inline constexpr uint32_t kNotInitialized = 0x11000000;
inline constexpr uint32_t kStopped = 0x14000000;

inline constexpr uint32_t kOpenFailed = 0x02001004;    // GFile
inline constexpr uint32_t kFileNotFound = 0x01001005;  // GFileSystem
inline constexpr uint32_t kDirectoryNotFound = 0x02001005;
inline constexpr uint32_t kInvalidPath = 0x05001005;
inline constexpr uint32_t kDiskFull = 0x09001005;

inline constexpr uint32_t kMessageTooLarge = 0x03001009;  // GIPCReceiver
inline constexpr uint32_t kReplyTimeout = 0x0200100E;     // GIPCClient
inline constexpr uint32_t kServiceUnavailable = 0x0300100E;

inline constexpr uint32_t kDatabaseCorrupted = 0x0B001012;  // GSqliteDatabase
inline constexpr uint32_t kDatabaseFull = 0x0C001012;
inline constexpr uint32_t kDatabaseOpenFailed = 0x0D001012;
inline constexpr uint32_t kSchemaVersionMismatch = 0x02001013;  // GSqliteDatabaseConnMgr

inline constexpr uint32_t kNotLoggedIn = 0x01002004;    // GOspreyServerFacade
inline constexpr uint32_t kAgentNotFound = 0x02002005;  // GOspreyConfig
inline constexpr uint32_t kAgentRunningInWrongMode = 0x03002005;
inline constexpr uint32_t kInvalidVault = 0x01002008;  // GOspreySdk
inline constexpr uint32_t kVaultInUse = 0x02002008;
inline constexpr uint32_t kUninitialized = 0x0100200D;  // GAgentIF
inline constexpr uint32_t kShutdown = 0x0200200D;

inline constexpr uint32_t kFileSystemError = 0x01004001;  // GFontActivationManager::kOSFileSystemError
inline constexpr uint32_t kCantDeactivateSystemFonts = 0x08004001;
inline constexpr uint32_t kInvalidFontIDs = 0x09004001;
inline constexpr uint32_t kFontToolCrashed = 0x01004006;  // GFontToolConnector
inline constexpr uint32_t kFontToolFailedToLaunch = 0x02004006;
inline constexpr uint32_t kWorkgroupNotFound = 0x0A004009;          // GOspreySetManager
inline constexpr uint32_t kCannotAddFontsToWorkgroup = 0x0200400B;  // GOspreyWorkgroupManager
inline constexpr uint32_t kFontMissing = 0x0300400C;                // GOspreyAssetManager
inline constexpr uint32_t kLicenseComplianceViolation = 0x0500400C;
inline constexpr uint32_t kNotAFontFile = 0x0100400D;  // GFontToolResults
inline constexpr uint32_t kCorrupt = 0x0500400D;
inline constexpr uint32_t kInstanceAlreadyRunning = 0x01004014;  // GAgentAppController
inline constexpr uint32_t kInvalidMessage = 0x01004015;          // GKVMessageDataHandler

}  // namespace kiln::codes
