#include "SetCommands.h"

#include <cstdio>

#include "Amount.h"
#include "Complaint.h"
#include "ExitCodes.h"
#include "FontFinder.h"
#include "JsonText.h"
#include "LibrarySession.h"
#include "Memory/CFVector.h"
#include "Utf8Text.h"
#include "XCFUtils.h"
#include "client/RecordKeys.h"

namespace {

struct FontSet {
  unsigned int id = 0;
  std::string name;
  unsigned int workgroupID = 0;
  std::vector<unsigned int> fontIDs;
};

unsigned int ReadID(CFDictionaryRef record, CFStringRef key) {
  return static_cast<unsigned int>(XCFUtils::GetULongFromDictString(record, key));
}

bool ReadSets(const KilnConnection& kiln, std::vector<FontSet>& outSets) {
  const RetainPtr<CFMutableArrayRef> records = MakeArray();
  if (const ErrCode code = kiln.Call(KILN_ENTRY(KilnLibraryListSets), records.get())) {
    ComplainOfCode("the sets could not be listed", code);
    return false;
  }
  for (const auto& record : ToVector<CFDictionaryRef>(records.get())) {
    FontSet set;
    set.id = ReadID(record.get(), RecordKeys::kSetID);
    set.name = XCFUtils::GetStringFromDict(record.get(), RecordKeys::kSetName);
    set.workgroupID = ReadID(record.get(), RecordKeys::kWorkgroupID);
    const auto ids = dynamicCF<CFArrayRef>(CFDictionaryGetValue(record.get(), RecordKeys::kFontIDs));
    for (const std::string& id : ids ? ToStringVector(ids) : std::vector<std::string>()) {
      set.fontIDs.push_back(ParseFontID(id));
    }
    outSets.push_back(std::move(set));
  }
  return true;
}

void PrintSet(const FontSet& set, const LibrarySession& session) {
  std::printf("%6u  %s, in %s, %s\n", set.id, PrintableText(set.name).c_str(),
              PrintableText(session.workgroups.NameOf(set.workgroupID)).c_str(),
              Amount(set.fontIDs.size(), "font").c_str());
  const FontFinder finder(*session.kiln);
  for (const unsigned int id : set.fontIDs) {
    NamedFont font;
    if (finder.FindByID(id, font) == 0)
      std::printf("        %s\n", PrintableText(font.postScriptName).c_str());
  }
}

void PrintSetAsJson(const FontSet& set, const LibrarySession& session) {
  JsonText json;
  json.BeginObject();
  json.Key("setID").Integer(set.id);
  json.Key("name").String(set.name);
  json.Key("libraryID").Integer(set.workgroupID);
  json.Key("library").String(session.workgroups.NameOf(set.workgroupID));
  json.Key("fontIDs").BeginArray();
  for (const unsigned int id : set.fontIDs) json.Integer(id);
  json.EndArray().EndObject();
  std::puts(json.Text().c_str());
}

}  // namespace

int RunSets(const SetsOptions& options) {
  const std::optional<LibrarySession> session = LibrarySession::Open();
  std::vector<FontSet> sets;
  if (!session || !ReadSets(*session->kiln, sets)) return kExitFailed;
  for (const FontSet& set : sets) options.json ? PrintSetAsJson(set, *session) : PrintSet(set, *session);
  return kExitOk;
}

int RunMakeSet(const MakeSetOptions& options) {
  const std::optional<LibrarySession> session = LibrarySession::Open();
  const Workgroup* library = session ? session->workgroups.FindOne(options.library) : nullptr;
  if (!library) return kExitFailed;
  std::vector<NamedFont> fonts;
  const FontFinder finder(*session->kiln, {library->AgentID()});
  // A set of the fonts that happened to be found would not be what was asked for.
  if (!finder.Find(options.fonts, FontFinder::Take::kAll, fonts)) return kExitFailed;
  const std::vector<unsigned int> ids = IDsOf(fonts);
  int setID = 0;
  if (const ErrCode code = session->kiln->Call(KILN_ENTRY(CreateTopLevelSet), &setID, options.name.c_str(),
                                               library->id, 0, 0, ids.size(), ids.data())) {
    ComplainOfCode(options.name + ": the set could not be made", code);
    return kExitFailed;
  }
  std::printf("%s was made of %s; its ID is %d.\n", PrintableText(options.name).c_str(),
              Amount(ids.size(), "font").c_str(), setID);
  return kExitOk;
}

int RunAddToSet(const AddToSetOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  std::vector<FontSet> sets;
  if (!kiln || !ReadSets(*kiln, sets)) return kExitFailed;
  // Without the set the agent says so.
  std::vector<unsigned int> scope;
  for (const FontSet& set : sets) {
    if (set.id == options.id) scope = {set.workgroupID};
  }
  std::vector<NamedFont> fonts;
  const bool foundAll = FontFinder(*kiln, scope).Find(options.fonts, FontFinder::Take::kAll, fonts);
  if (fonts.empty()) return kExitFailed;
  const std::vector<unsigned int> ids = IDsOf(fonts);
  if (const ErrCode code = kiln->Call(KILN_ENTRY(AddFontsToSets), ids.size(), ids.data(), 1UL, &options.id)) {
    ComplainOfCode("the fonts could not be added to the set", code);
    return kExitFailed;
  }
  std::printf("Added %s to the set.\n", Amount(ids.size(), "font").c_str());
  return foundAll ? kExitOk : kExitFailed;
}

int RunDeleteSet(const DeleteSetOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  if (const ErrCode code = kiln->Call(KILN_ENTRY(KilnLibraryDeleteSet), options.id)) {
    ComplainOfCode("the set could not be deleted", code);
    return kExitFailed;
  }
  std::printf("The set was deleted; its fonts stay.\n");
  return kExitOk;
}
