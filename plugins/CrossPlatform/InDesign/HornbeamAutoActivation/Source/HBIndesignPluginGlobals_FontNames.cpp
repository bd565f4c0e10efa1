// The way from a used font family and style to PostScript names.
#include <algorithm>
#include <array>
#include <utility>

#include "HBIndesignPluginGlobals.h"
#include "Identity/IndexedFontArray.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

bool StyleIsRegular(const PMString& style) {
  static const std::array<PMString, 6> kRegularStyles = {"R", "Roman", "Regular", "Book", "Plain", "Normal"};
  PMString stripped = style;
  stripped.StripWhiteSpace(PMString::kAllWhiteSpace);
  return stripped.IsEmpty() ||
         std::any_of(kRegularStyles.begin(), kRegularStyles.end(),
                     [&](const PMString& candidate) { return stripped.IsEqual(candidate, true, false); });
}

/// Whether a new entry came about.
bool AddPMFontNameToArray(const PMString& name, IndexedFontArray& usedFontsArray) {
  if (name.IsEmpty()) {
    return false;
  }
  const RetainPtr<CFStringRef> text = ToCFString(name.GetUTF8String());
  return text && usedFontsArray.AddFont(text.get(), false);
}

const char* AddedText(bool added) {
  return added ? "Adding " : "NOT Adding (already there)";
}

int AddNameOfStyle(const IFontFamily& family, const PMString& style, IndexedFontArray& usedFontsArray) {
  int count = 0;
  PMString name = family.GetFacePostscriptName(style, true, true);
  if (name == kNullString) {
    name = family.GetFacePostscriptName(style, false, false);
    count += AddPMFontNameToArray(name, usedFontsArray);
    name.Append("-");
    name.Append(style);
    OutputIndentedAndFormattedString(
        0,
        "      *** IFontFamily::GetFacePostscriptName(style \"%s\", getOnlyRealPSName true) yielded nothing, "
        "had to use getOnlyRealPSName false:  \"%s\"",
        style.c_str(), name.c_str());
  }
  const bool added = AddPMFontNameToArray(name, usedFontsArray);
  OutputIndentedAndFormattedString(0, "      ...%s \"%s\" (style \"%s\")", AddedText(added), name.c_str(),
                                   style.c_str());
  return count + added;
}

int AddNamesOfRegularFaces(const IFontFamily& family, IndexedFontArray& usedFontsArray) {
  int count = 0;
  const int32 faces = family.GetFaceCount();
  for (int32 i = 0; i < faces; ++i) {
    const PMString style = family.GetNthFaceStyle(i);
    if (style.IsEmpty() || !StyleIsRegular(style)) {
      continue;
    }
    const PMString name = family.GetNthFacePostscriptName(i);
    const bool added = AddPMFontNameToArray(name, usedFontsArray);
    OutputIndentedAndFormattedString(
        0, "      ...%s \"%s\" (style \"\" ==> REGULAR style \"%s\", face index %d of %d)", AddedText(added),
        name.c_str(), style.c_str(), i, faces);
    count += added;
  }
  return count;
}

int AddNamesMadeFromFamily(const IFontFamily& family, IndexedFontArray& usedFontsArray) {
  PMString name = family.GetFamilyName();
  int count = 0;
  const auto add = [&] {
    if (AddPMFontNameToArray(name, usedFontsArray)) {
      OutputIndentedAndFormattedString(0, "Fallback adding FamilyName %s", name.c_str());
      ++count;
    }
  };
  add();
  name.Append("-Regular");
  add();
  return count;
}

}  // namespace

namespace HBIndesignPluginGlobals {

int AddToUsedFontsPSNames(const InterfacePtr<IFontFamily>& family, const PMString* style,
                          CFMutableArrayRef usedFontsArray) {
  if (usedFontsArray != nullptr) {
    IndexedFontArray indexed(usedFontsArray);
    return AddToUsedFontsPSNames(std::move(family), style, indexed);
  }
  OperationTrace trace("AddToUsedFontsPSNames", "Entering %s()", "AddToUsedFontsPSNames");
  OutputIndentedAndFormattedString(
      0, "      *** usedFontsArray is NULL in HBIndesignPluginGlobals::AddToUsedFontsPSNames !!!");
  trace.Exiting("%s() returning %d", "AddToUsedFontsPSNames", 0);
  return 0;
}

int AddToUsedFontsPSNames(const InterfacePtr<IFontFamily>& family, const PMString* style,
                          IndexedFontArray& usedFontsArray) {
  OperationTrace trace("AddToUsedFontsPSNames", "Entering %s()", "AddToUsedFontsPSNames");
  int count = 0;
  if (!family) {
    OutputIndentedAndFormattedString(
        0, "      *** pFontFamilyInterface is NULL in HBIndesignPluginGlobals::AddToUsedFontsPSNames !!!");
  } else {
    if (style != nullptr && !style->IsEmpty()) {
      count += AddNameOfStyle(*family.get(), *style, usedFontsArray);
    }
    if (count == 0) {
      count += AddNamesOfRegularFaces(*family.get(), usedFontsArray);
    }
    if (count == 0) {
      count += AddNamesMadeFromFamily(*family.get(), usedFontsArray);
    }
  }
  trace.Exiting("%s() returning %d", "AddToUsedFontsPSNames", count);
  return count;
}

int FixID2FontUID(IDataBase* database, const InterfacePtr<IDocFontMgr>& docFontMgr, UID fontUID,
                  const PMString& style) {
  const InterfacePtr<IFontFamily> family(database, fontUID, UseDefaultIID());
  if (!family || !docFontMgr) {
    return 0;
  }
  PMString name = family->GetFamilyName();
  name.StripWhiteSpace(PMString::kLeadingAndTrailingWhiteSpace);
  if (name.IsEmpty()) {
    return 0;
  }
  return docFontMgr->GetFamilyUID(name, style, true, true).IsValid() ? 1 : 0;
}

}  // namespace HBIndesignPluginGlobals
