#pragma once

#include <cstdint>

#include "GErrorCodes.h"

/// The error codes that travel between Kiln and its clients, out of the numbering that the whole system
/// shares.
namespace kiln::codes {

inline constexpr uint32_t kSuccess = CoreErrorCodes::kSuccess;
inline constexpr uint32_t kError = CoreErrorCodes::kError;
inline constexpr uint32_t kInvalidParam = CoreErrorCodes::kInvalidParam;
inline constexpr uint32_t kNotFound = CoreErrorCodes::kNotFound;
inline constexpr uint32_t kItemAlreadyExists = CoreErrorCodes::kItemAlreadyExists;
inline constexpr uint32_t kNotImplemented = CoreErrorCodes::kNotImplemented;
inline constexpr uint32_t kDatabaseError = CoreErrorCodes::kDatabaseError;
inline constexpr uint32_t kVersionMismatch = CoreErrorCodes::kVersionMismatch;
inline constexpr uint32_t kNotInitialized = CoreErrorCodes::kNotInitialized;
inline constexpr uint32_t kStopped = CoreErrorCodes::kStopped;
inline constexpr uint32_t kOpenFailed = GFileCodes::kOpenFailed;
inline constexpr uint32_t kFileNotFound = GFileSystemCodes::kFileNotFound;
inline constexpr uint32_t kDirectoryNotFound = GFileSystemCodes::kDirectoryNotFound;
inline constexpr uint32_t kInvalidPath = GFileSystemCodes::kInvalidPath;
inline constexpr uint32_t kDiskFull = GFileSystemCodes::kDiskFull;
inline constexpr uint32_t kMessageTooLarge = GIPCReceiverCodes::kMessageTooLarge;
inline constexpr uint32_t kReplyTimeout = GIPCClientCodes::kReplyTimeout;
inline constexpr uint32_t kServiceUnavailable = GIPCClientCodes::kServiceUnavailable;
inline constexpr uint32_t kDatabaseCorrupted = GSqliteDatabaseCodes::kDatabaseCorrupted;
inline constexpr uint32_t kDatabaseFull = GSqliteDatabaseCodes::kDatabaseFull;
inline constexpr uint32_t kDatabaseOpenFailed = GSqliteDatabaseCodes::kDatabaseOpenFailed;
inline constexpr uint32_t kSchemaVersionMismatch = GSqliteDatabaseConnMgrCodes::kSchemaVersionMismatch;
inline constexpr uint32_t kNotLoggedIn = GOspreyServerFacadeCodes::kNotLoggedIn;
inline constexpr uint32_t kAlreadyLoggedIn = GOspreyServerFacadeCodes::kAlreadyLoggedIn;
inline constexpr uint32_t kAgentNotFound = GOspreyConfigCodes::kAgentNotFound;
inline constexpr uint32_t kAgentRunningInWrongMode = GOspreyConfigCodes::kAgentRunningInWrongMode;
inline constexpr uint32_t kInvalidVault = GOspreySdkCodes::kInvalidVault;
inline constexpr uint32_t kVaultInUse = GOspreySdkCodes::kVaultInUse;
inline constexpr uint32_t kUninitialized = GAgentIFCodes::kUninitialized;
inline constexpr uint32_t kShutdown = GAgentIFCodes::kShutdown;
inline constexpr uint32_t kFileSystemError = GFontActivationManagerCodes::kOSFileSystemError;
inline constexpr uint32_t kCantDeactivateSystemFonts =
    GFontActivationManagerCodes::kCantDeActivateSystemFonts;
inline constexpr uint32_t kInvalidFontIDs = GFontActivationManagerCodes::kInvalidFontIDs;
inline constexpr uint32_t kFontToolCrashed = GFontToolConnectorCodes::kFontToolCrashed;
inline constexpr uint32_t kFontToolFailedToLaunch = GFontToolConnectorCodes::kFontToolFailedToLaunch;
inline constexpr uint32_t kWorkgroupNotFound = GOspreySetManagerCodes::kWorkgroupNotFound;
inline constexpr uint32_t kSetNotFound = GOspreySetManagerCodes::kSetNotFound;
inline constexpr uint32_t kCannotAddSetsToSystemWorkgroup =
    GOspreySetManagerCodes::kCannotAddSetsToSystemWorkgroup;
inline constexpr uint32_t kCannotAddFontsToWorkgroup =
    GOspreyWorkgroupManagerCodes::kCannotAddFontsToUnsupportedWorkgroup;
inline constexpr uint32_t kFromRestrictedWorkgroup = GOspreyWorkgroupManagerCodes::kFromRestrictedWorkgroup;
inline constexpr uint32_t kRestrictedWorkgroup = GOspreyWorkgroupManagerCodes::kRestrictedWorkgroup;
inline constexpr uint32_t kCannotAddSystemFontsToWorkgroup =
    GOspreyDataFacadeCodes::kCannotAddSystemFontsToWorkgroup;
inline constexpr uint32_t kCannotAddSystemFontsToSet = GOspreyDataFacadeCodes::kCannotAddSystemFontsToSet;
inline constexpr uint32_t kSetsMustBelongToSameWorkgroup =
    GOspreyDataFacadeCodes::kSetsMustBelongToSameWorkgroup;
inline constexpr uint32_t kFontNotInSourceContainer = GOspreyFontManagerCodes::kFontNotInSourceContainer;
inline constexpr uint32_t kFontMissing = GOspreyAssetManagerCodes::kFontMissing;
inline constexpr uint32_t kLicenseComplianceViolation = GOspreyAssetManagerCodes::kLicenseComplianceViolation;
inline constexpr uint32_t kCouldNotCreateFolder = GOspreyExportFontsCodes::kCouldNotCreateFolder;
inline constexpr uint32_t kCouldNotCopyFile = GOspreyExportFontsCodes::kCouldNotCopyFile;
inline constexpr uint32_t kNoFontsToExport = GOspreyExportFontsCodes::kNoFontsToExport;
inline constexpr uint32_t kNotGrantedPermissionToExportFonts =
    GOspreyExportFontsCodes::kNotGrantedPermissionToExportFonts;
inline constexpr uint32_t kCannotWriteToDestinationFolder =
    GOspreyExportFontsCodes::kCannotWriteToDestinationFolder;
inline constexpr uint32_t kNoAvailableFontsToExport = GOspreyExportFontsCodes::kNoAvailableFontsToExport;
inline constexpr uint32_t kFailedToConnect = GFontServerProxyCodes::kFailedToConnect;
inline constexpr uint32_t kSignInFailed = GFontServerProxyCodes::kSignInFailed;
inline constexpr uint32_t kNotAFontFile = GFontToolResultsCodes::kNotAFontFile;
inline constexpr uint32_t kCorrupt = GFontToolResultsCodes::kCorrupt;
inline constexpr uint32_t kInstanceAlreadyRunning = GAgentAppControllerCodes::kInstanceAlreadyRunning;
inline constexpr uint32_t kInvalidMessage = GKVMessageDataHandlerCodes::kInvalidMessage;

}  // namespace kiln::codes
