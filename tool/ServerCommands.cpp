#include "ServerCommands.h"

#include <cstdio>
#include <memory>

#include "Amount.h"
#include "Complaint.h"
#include "ExitCodes.h"
#include "FontFinder.h"
#include "KilnConnection.h"
#include "Memory/CFVector.h"
#include "PathText.h"
#include "ProgressLine.h"
#include "ServerState.h"
#include "Utf8Text.h"
#include "XCFUtils.h"

namespace {

int Failed(const std::string& text, ErrCode code) {
  ComplainOfCode(text, code);
  return kExitFailed;
}

// Names the fonts of that list.
size_t ComplainOfFiles(const KilnConnection& kiln, CFDictionaryRef report, CFStringRef list,
                       const char* what) {
  const auto ids = ToStringVector(dynamicCF<CFArrayRef>(CFDictionaryGetValue(report, list)));
  for (const std::string& id : ids) {
    NamedFont font;
    FontFinder(kiln).FindByID(ParseFontID(id), font);
    Complain(font.postScriptName + " (" + id + "): its file " + what + "; add it again");
  }
  return ids.size();
}

}  // namespace

int RunLogin(const LoginOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  const std::string folder = AbsolutePath(options.folder);
  const char* const user = options.user.empty() ? nullptr : options.user.c_str();
  if (const ErrCode code = kiln->Call(KILN_ENTRY(KilnLibraryLogIn), folder.c_str(), user)) {
    return Failed(folder + ": nobody was logged in", code);
  }
  ServerState state;
  if (const ErrCode code = ServerState::Read(*kiln, state)) return Failed("Kiln doesn't say how it is", code);
  std::printf("%s is logged in to %s%s.\n", PrintableText(state.user).c_str(), PrintableText(folder).c_str(),
              state.isTakingOver ? "; its fonts are on their way" : "");
  return kExitOk;
}

int RunLogout(const LogoutOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  if (const ErrCode code = kiln->Call(KILN_ENTRY(KilnLibraryLogOut), options.leave)) {
    return Failed("nobody was logged out", code);
  }
  std::puts(options.leave ? "Kiln stands alone." : "Nobody is logged in now.");
  return kExitOk;
}

int RunGoogleOn(const GoogleOnOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  const std::string folder = options.folder.empty() ? "" : AbsolutePath(options.folder);
  const ErrCode code = kiln->Call(KILN_ENTRY(KilnLibrarySetGoogle), true, folder.c_str());
  if (code == CoreErrorCodes::kInvalidParam && folder.empty()) {
    Complain("no folder was ever named for the Google library; hornbeam library google on FOLDER");
    return kExitFailed;
  }
  if (code != 0) return Failed("the Google library could not be switched on", code);
  std::puts("The Google library is on; its fonts are on their way.");
  return kExitOk;
}

int RunGoogleOff(const GoogleOffOptions&) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  if (const ErrCode code = kiln->Call(KILN_ENTRY(KilnLibrarySetGoogle), false, nullptr)) {
    return Failed("the Google library could not be switched off", code);
  }
  std::puts("The Google library is off.");
  return kExitOk;
}

int RunRescan(const RescanOptions&) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  const RetainPtr<CFMutableDictionaryRef> report = MakeDictionary();
  ErrCode code = 0;
  {
    ProgressLine progress("Checking");
    code = kiln->Call(KILN_ENTRY(KilnLibraryRescan), &ProgressLine::Report, static_cast<void*>(&progress),
                      report.get());
  }
  if (code != 0) return Failed("the library could not be checked", code);
  const size_t missing = ComplainOfFiles(*kiln, report.get(), CFSTR("missingIDs"), "has gone");
  const size_t damaged = ComplainOfFiles(*kiln, report.get(), CFSTR("unusableIDs"), "is damaged");
  std::printf("%s checked, %s missing, %zu damaged.\n",
              Amount(XCFUtils::GetULongFromDictString(report.get(), CFSTR("filesChecked")), "file").c_str(),
              Amount(missing, "font").c_str(), damaged);
  return missing + damaged == 0 ? kExitOk : kExitFailed;
}
