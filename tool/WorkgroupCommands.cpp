#include "WorkgroupCommands.h"

#include <cstdio>

#include "Amount.h"
#include "Complaint.h"
#include "ExitCodes.h"
#include "FontFinder.h"
#include "JsonText.h"
#include "LibrarySession.h"
#include "Memory/CFVector.h"
#include "Utf8Text.h"

namespace {

void PrintWorkgroup(const Workgroup& workgroup) {
  const char* const mark = workgroup.isSelected ? "*" : " ";
  const std::string id = workgroup.IsAll() ? "all" : std::to_string(workgroup.id);
  const std::string count = workgroup.IsAll() ? "" : Amount(workgroup.fontCount, "font");
  std::printf("%s %4s  %-32s %s\n", mark, id.c_str(), PrintableText(workgroup.name).c_str(), count.c_str());
}

void PrintWorkgroupAsJson(const Workgroup& workgroup) {
  JsonText json;
  json.BeginObject();
  json.Key("libraryID").Integer(workgroup.id);
  json.Key("name").String(workgroup.name);
  if (!workgroup.IsAll()) {
    json.Key("type").Integer(workgroup.type);
    json.Key("fonts").Integer(static_cast<long long>(workgroup.fontCount));
  }
  json.Key("selected").Boolean(workgroup.isSelected);
  json.EndObject();
  std::puts(json.Text().c_str());
}

int Failed(const std::string& text, ErrCode code) {
  ComplainOfCode(text, code);
  return kExitFailed;
}

int ChangeFonts(const WorkgroupFontsOptions& options, bool remove) {
  const std::optional<LibrarySession> session = LibrarySession::Open();
  const Workgroup* library = session ? session->workgroups.FindOne(options.library) : nullptr;
  if (!library) return kExitFailed;
  const FontFinder finder(
      *session->kiln, remove ? std::vector<unsigned int>{library->AgentID()} : session->workgroups.UserIDs());
  std::vector<NamedFont> fonts;
  bool wellDone = finder.Find(options.fonts, FontFinder::Take::kAll, fonts);
  if (fonts.empty()) return kExitFailed;
  const std::vector<unsigned int> ids = IDsOf(fonts);
  const RetainPtr<CFMutableArrayRef> kept = MakeArray();
  if (const ErrCode code =
          session->kiln->Call(KILN_ENTRY(KilnLibraryChangeWorkgroupFonts), library->AgentID(), ids.size(),
                              ids.data(), remove, kept.get())) {
    return Failed(library->name + " could not be changed", code);
  }
  for (const std::string& id : ToStringVector(kept.get())) {
    for (const NamedFont& font : fonts) {
      if (std::to_string(font.id) != id) continue;
      Complain(font.postScriptName + " (" + id + "): stays; it is active, and no other library holds it");
      wellDone = false;
    }
  }
  const size_t changed = ids.size() - static_cast<size_t>(CFArrayGetCount(kept.get()));
  std::printf(remove ? "Took %s out of %s.\n" : "Put %s into %s.\n", Amount(changed, "font").c_str(),
              PrintableText(library->name).c_str());
  return wellDone ? kExitOk : kExitFailed;
}

}  // namespace

int RunWorkgroups(const WorkgroupsOptions& options) {
  const std::optional<LibrarySession> session = LibrarySession::Open();
  if (!session) return kExitFailed;
  for (const Workgroup& workgroup : session->workgroups.All()) {
    options.json ? PrintWorkgroupAsJson(workgroup) : PrintWorkgroup(workgroup);
  }
  return kExitOk;
}

int RunMakeWorkgroup(const MakeWorkgroupOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  unsigned int id = 0;
  if (const ErrCode code = kiln->Call(KILN_ENTRY(KilnLibraryCreateWorkgroup), options.name.c_str(), &id)) {
    return Failed("the library could not be made", code);
  }
  std::printf("%s was made; its ID is %u.\n", PrintableText(options.name).c_str(), id);
  return kExitOk;
}

int RunRenameWorkgroup(const RenameWorkgroupOptions& options) {
  const std::optional<LibrarySession> session = LibrarySession::Open();
  const Workgroup* library = session ? session->workgroups.FindOne(options.library) : nullptr;
  if (!library) return kExitFailed;
  if (const ErrCode code = session->kiln->Call(KILN_ENTRY(KilnLibraryRenameWorkgroup), library->AgentID(),
                                               options.name.c_str())) {
    return Failed(library->name + ": the library could not be renamed", code);
  }
  std::printf("%s is now named %s.\n", PrintableText(library->name).c_str(),
              PrintableText(options.name).c_str());
  return kExitOk;
}

int RunDeleteWorkgroup(const DeleteWorkgroupOptions& options) {
  const std::optional<LibrarySession> session = LibrarySession::Open();
  const Workgroup* library = session ? session->workgroups.FindOne(options.library) : nullptr;
  if (!library) return kExitFailed;
  if (const ErrCode code = session->kiln->Call(KILN_ENTRY(KilnLibraryDeleteWorkgroup), library->AgentID())) {
    return Failed(library->name + ": the library could not be deleted", code);
  }
  std::printf("%s was deleted; fonts that no other library holds are in the first one now.\n",
              PrintableText(library->name).c_str());
  return kExitOk;
}

int RunPutFonts(const WorkgroupFontsOptions& options) {
  return ChangeFonts(options, false);
}

int RunTakeFonts(const WorkgroupFontsOptions& options) {
  return ChangeFonts(options, true);
}

int RunSelect(const SelectOptions& options) {
  const std::optional<LibrarySession> session = LibrarySession::Open();
  const Workgroup* library = session ? session->workgroups.Find(options.library) : nullptr;
  if (!library) return kExitFailed;
  FontManagerInterface& manager = session->logic->GetManager();
  if (!manager.IsValidWorkgroupForUser(library->id)) {
    Complain(library->name + " can't be selected; documents find its fonts in any case");
    return kExitFailed;
  }
  manager.SetDefaultWorkgroupID(library->id);
  if (FontManagerInterface::GetCurrentWorkgroupID() != library->id) {
    Complain("the preference could not be stored; LOOM_PREFERENCES may hold another one");
    return kExitFailed;
  }
  std::printf("Documents' fonts are looked for in %s.\n", PrintableText(library->name).c_str());
  return kExitOk;
}
