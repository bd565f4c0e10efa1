#include "EpsWriteCommand.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Complaint.h"
#include "ExitCodes.h"
#include "FontsReport.h"
#include "Identity/GlyphMarkSupport.h"
#include "Memory/CFVector.h"
#include "Parsers/EPSAttributes.h"
#include "Parsers/FontParserEPS.h"
#include "Parsers/ParsedText.h"
#include "Utf8Text.h"

namespace {

RetainPtr<CFMutableArrayRef> ReadRecords(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  const auto list = adoptCF(CFPropertyListCreateWithData(nullptr, ToCFData(text).get(),
                                                         kCFPropertyListMutableContainers, nullptr, nullptr));
  return retainCF(dynamicCF<CFMutableArrayRef>(list.get()));
}

std::unique_ptr<FontParserEPS> OpenEPS(const std::string& path, bool readOnly) {
  std::unique_ptr<FontParser> parser(FontParser::CreateParserWithFile(
      MakeParsedText(path).get(), readOnly, FontParser::GetDefaultSystemPathStyle()));
  auto* eps = dynamic_cast<FontParserEPS*>(parser.get());
  if (eps == nullptr) return nullptr;
  static_cast<void>(parser.release());
  eps->Parse();
  return std::unique_ptr<FontParserEPS>(eps);
}

CFDictionaryRef FindRecord(CFArrayRef fonts, const std::string& name) {
  for (CFIndex i = 0; i < FontRecord::Count(fonts); ++i) {
    CFDictionaryRef font = FontRecord::At(fonts, i);
    if (ToStdString(FontRecord::GetPostScriptName(font)) == name) return font;
  }
  return nullptr;
}

struct Comparison {
  CFDictionaryRef found;
  const std::string& name;
  bool allCameBack = true;
};

void CompareValue(const void* key, const void* value, void* context) {
  auto& comparison = *static_cast<Comparison*>(context);
  std::string attribute;
  auto keyText = dynamicCF<CFStringRef>(key);
  if (!keyText || CFEqual(keyText, kGM_PostScriptNameKey) ||
      !EPSAttributes::OutputKeyForGlyphMarkKey(keyText, attribute)) {
    return;
  }
  const void* found = CFDictionaryGetValue(comparison.found, key);
  if (found != nullptr && CFEqual(found, value)) return;
  Complain(comparison.name + ": " + attribute + " can't be written as it is");
  comparison.allCameBack = false;
}

// Says of each record whether the file gives it back.
int CompareWithFile(CFArrayRef records, const std::string& path) {
  const std::unique_ptr<FontParserEPS> parser = OpenEPS(path, true);
  if (!parser) {
    Complain(path + ": can't be read again");
    return kExitFailed;
  }
  const RetainPtr<CFMutableArrayRef> fonts = MakeArray();
  CFMutableArrayRef target = fonts.get();
  parser->GetObsoleteGlyphmarkData(true, target);
  int exitCode = kExitOk;
  for (const auto& record : ToVector<CFDictionaryRef>(records)) {
    std::string name = ToStdString(FontRecord::GetPostScriptName(record.get()));
    GlyphMarkSupport::ResolveMMFontString(&name);
    Comparison comparison{FindRecord(fonts.get(), name), name};
    if (comparison.found == nullptr) {
      Complain(name + ": isn't found in the file again");
      exitCode = kExitFailed;
      continue;
    }
    CFDictionaryApplyFunction(record.get(), CompareValue, &comparison);
    if (!comparison.allCameBack) exitCode = kExitFailed;
    std::printf("  %s\n", PrintableText(name).c_str());
  }
  return exitCode;
}

}  // namespace

int RunEpsWrite(const EpsWriteOptions& options) {
  for (const std::string& path : {options.file, options.records}) {
    if (const std::string problem = WhyUnreadable(path); !problem.empty()) {
      Complain(problem);
      return kExitFailed;
    }
  }
  const RetainPtr<CFMutableArrayRef> records = ReadRecords(options.records);
  if (!records || ToVector<CFDictionaryRef>(records.get()).empty()) {
    Complain(options.records + ": is no property list of font records");
    return kExitFailed;
  }
  const std::unique_ptr<FontParserEPS> parser = OpenEPS(options.file, false);
  if (!parser) {
    Complain(options.file + ": is no EPS file that can be written");
    return kExitFailed;
  }
  parser->SetFonts(records.get());
  if (parser->Save() != 0) {
    Complain(options.file + ": " + parser->GetNotes().back());
    return kExitFailed;
  }
  std::printf("%s: %zu records written; read back:\n", PrintableText(options.file).c_str(),
              ToVector<CFDictionaryRef>(records.get()).size());
  return CompareWithFile(records.get(), options.file);
}
