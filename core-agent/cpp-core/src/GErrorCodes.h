#pragma once

#include "GTypes.h"

/// The error codes as constants, `Class::kName`.
///
/// Each class of the list has a structure `ClassCodes` with one constant a code. A class that exists in this
/// system derives from its structure (GFile from GFileCodes); the others, which are the agent's, have their
/// own name for it below. The name of a code is what GetNameForErrorCode() gives (GErrors.h).
#define GERROR_CLASS(number, name, codes)            \
  struct name##Codes {                               \
    static constexpr TErrCode kClassNumber = number; \
    codes                                            \
  };
#define GERROR_CODE(index, name) static constexpr TErrCode name = (TErrCode{index} << 24) | kClassNumber;
#define GERROR_CODE_OF(number, index, name) \
  static constexpr TErrCode name = (TErrCode{index} << 24) | TErrCode{number};
#include "GErrorCodes.def"
#undef GERROR_CLASS
#undef GERROR_CODE
#undef GERROR_CODE_OF

using CoreErrorCodes = CoreErrorCodesCodes;

// The classes that live in the agent.
using GValue = GValueCodes;
using GLibXMLSerializable = GLibXMLSerializableCodes;
using GIPCReceiver = GIPCReceiverCodes;
using GIPCSender = GIPCSenderCodes;
using GTimedWaitable = GTimedWaitableCodes;
using GIPCClient = GIPCClientCodes;
using GLibXML = GLibXMLCodes;
using GLibXMLDoc = GLibXMLDocCodes;
using GLibXMLNode = GLibXMLNodeCodes;
using GSqliteDatabase = GSqliteDatabaseCodes;
using GSqliteDatabaseConnMgr = GSqliteDatabaseConnMgrCodes;
using GProcessManager = GProcessManagerCodes;
using GFileVault = GFileVaultCodes;
using GSqliteSimpleOperator = GSqliteSimpleOperatorCodes;
using GSqliteQuery = GSqliteQueryCodes;
using GExclusionList = GExclusionListCodes;
using GKVTree = GKVTreeCodes;
using GHTTP = GHTTPCodes;
using GUuid = GUuidCodes;
using GOperationQueue = GOperationQueueCodes;
using GExponentialBackoff = GExponentialBackoffCodes;
using GOspreyDataFacade = GOspreyDataFacadeCodes;
using GFontManagerFacade = GFontManagerFacadeCodes;
using GOspreyServerFacade = GOspreyServerFacadeCodes;
using GOspreyConfig = GOspreyConfigCodes;
using GOspreySdk = GOspreySdkCodes;
using GOspreyDatabaseUpgradeManager = GOspreyDatabaseUpgradeManagerCodes;
using GFontActivation = GFontActivationCodes;
using GOspreyFacade = GOspreyFacadeCodes;
using GAgentIF = GAgentIFCodes;
using GFontActivationUtils = GFontActivationUtilsCodes;
using GVaultArchiver = GVaultArchiverCodes;
using GFontActivationManager = GFontActivationManagerCodes;
using GActiveFontScanner = GActiveFontScannerCodes;
using GKVMessageHandler_FontAdder = GKVMessageHandler_FontAdderCodes;
using GFontToolConnector = GFontToolConnectorCodes;
using GOspreyExportFonts = GOspreyExportFontsCodes;
using GOspreySetManager = GOspreySetManagerCodes;
using GOspreyFontManager = GOspreyFontManagerCodes;
using GOspreyWorkgroupManager = GOspreyWorkgroupManagerCodes;
using GOspreyAssetManager = GOspreyAssetManagerCodes;
using GFontToolResults = GFontToolResultsCodes;
using GSystemFontsManager = GSystemFontsManagerCodes;
using GOspreyAgentAppController = GOspreyAgentAppControllerCodes;
using GWebFontReplicationManager = GWebFontReplicationManagerCodes;
using GAgentAppController = GAgentAppControllerCodes;
using GKVMessageDataHandler = GKVMessageDataHandlerCodes;
using GTaskThread = GTaskThreadCodes;
using GFontServerReplicationManager = GFontServerReplicationManagerCodes;
using GFontServerProxy = GFontServerProxyCodes;
using GHornbeamSessionManager = GHornbeamSessionManagerCodes;
using GResultSpecVectorXMLParser = GResultSpecVectorXMLParserCodes;
using GQuarryVaultCommand = GQuarryVaultCommandCodes;
using GScopedXMPFile = GScopedXMPFileCodes;
