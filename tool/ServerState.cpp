#include "ServerState.h"

#include "Memory/CFVector.h"
#include "XCFUtils.h"

ErrCode ServerState::Read(const KilnConnection& kiln, ServerState& outState) {
  const RetainPtr<CFMutableDictionaryRef> server = MakeDictionary();
  const RetainPtr<CFMutableDictionaryRef> google = MakeDictionary();
  int isTakingOver = 0;
  ErrCode code = kiln.Call(KILN_ENTRY(KilnLibraryServerState), server.get());
  if (code == 0) code = kiln.Call(KILN_ENTRY(KilnLibraryGoogleState), google.get());
  if (code == 0) code = kiln.Call(KILN_ENTRY(GetIsReplicationRunning), &isTakingOver);
  if (code != 0) return code;
  outState.isStandalone = XCFUtils::GetBoolFromDictString(server.get(), CFSTR("standalone"));
  outState.server = XCFUtils::GetStringFromDict(server.get(), CFSTR("server"));
  outState.user = XCFUtils::GetStringFromDict(server.get(), CFSTR("user"));
  outState.isLoggedIn = XCFUtils::GetBoolFromDictString(server.get(), CFSTR("loggedIn"));
  outState.isOnline = XCFUtils::GetBoolFromDictString(server.get(), CFSTR("online"));
  outState.isGoogleOn = XCFUtils::GetBoolFromDictString(google.get(), CFSTR("enabled"));
  outState.googleFolder = XCFUtils::GetStringFromDict(google.get(), CFSTR("folder"));
  outState.isTakingOver = isTakingOver != 0;
  return 0;
}
