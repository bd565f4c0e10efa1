// Which fonts the document's text uses, by PostScript name.
#include <string_view>

#include "Activation/Vocabulary/FontRecord.h"
#include "DocumentElement.h"
#include "HBInDesignUtils.h"
#include "HBIndesignPluginGlobals.h"
#include "IDocument.h"
#include "IUsedFontList.h"
#include "Identity/GlyphMarkSupport.h"
#include "Identity/IndexedFontArray.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

/// The longest PostScript name that goes to the font manager, in bytes.
constexpr size_t kMaxPSNameLength = 32;

/// Fonts of this family are installed with the host, for itself alone.
constexpr std::string_view kHostOnlyFontPrefix = "MinionPro-";

/// A name of more than 32 bytes is cut at its second separator, when that may still lie in the first 32
/// bytes, else at 32 bytes.
std::string CreateResolvedPSName(const std::string& name) {
  constexpr std::string_view kSeparators = ".-";
  if (name.size() <= kMaxPSNameLength) {
    return name;
  }
  const size_t first = name.find_first_of(kSeparators);
  const size_t last = name.find_last_of(kSeparators, kMaxPSNameLength);
  if (first != std::string::npos && last != std::string::npos && first < last) {
    return name.substr(0, name.find_first_of(kSeparators, first + 1));
  }
  size_t end = kMaxPSNameLength;
  while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0) == 0x80) {
    --end;  // Not within a character.
  }
  return name.substr(0, end);
}

void AddVariantsOfFamily(const UIDRef& document, const IUsedFontList& usedFonts, int32 family,
                         const InterfacePtr<IDocFontMgr>& docFontMgr, bool isConvertedFromID2,
                         IndexedFontArray& fonts) {
  IDataBase* database = document.GetDataBase();
  const UID familyUID = usedFonts.GetNthFamilyUID(family);
  const InterfacePtr<IFontFamily> fontFamily(database, familyUID, UseDefaultIID());
  const int32 variants = usedFonts.GetVariantCount(family);
  OutputIndentedAndFormattedString(0, "   Family \"%s\":  %d variants used in document...",
                                   fontFamily ? fontFamily->GetFamilyName().c_str() : "", variants);
  for (int32 variant = 0; variant < variants; ++variant) {
    const PMString style = usedFonts.GetNthVariantStyle(family, variant);
    if (isConvertedFromID2) {
      HBIndesignPluginGlobals::FixID2FontUID(database, docFontMgr, familyUID, style);
    }
    // Asked for again: the look-up may have bound the family to other fonts.
    const int added = HBIndesignPluginGlobals::AddToUsedFontsPSNames(
        InterfacePtr<IFontFamily>(database, familyUID, UseDefaultIID()), &style, fonts);
    if (added == 0) {
      OutputIndentedAndFormattedString(
          0, "      *** Nothing added for variant %d, style \"%s\" (no PostScript name was determined)",
          variant, style.c_str());
    } else if (added > 1) {
      OutputIndentedAndFormattedString(
          0,
          "      >>> Note that %d PostScript names (faces) were added for variant "
          "%d, style \"%s\", probably multiple Regular style faces",
          added, variant, style.c_str());
    }
  }
}

void AddUsedFonts(const UIDRef& document, const IDocument& hostDocument, IUsedFontList& usedFonts,
                  CFMutableArrayRef fonts) {
  if (hostDocument.IsModified()) {
    OutputIndentedAndFormattedString(
        0, ">>> the document is modified, attempting to update the list of fonts used.");
    usedFonts.Refresh();
  }
  const bool isConvertedFromID2 = hostDocument.IsConvertedFromID2();
  const InterfacePtr<IDocFontMgr> docFontMgr(hostDocument.GetDocWorkSpace(), UseDefaultIID());

  const int32 nTotalNoOfFonts = usedFonts.GetFamilyCount();
  OutputIndentedAndFormattedString(
      0, "...DocumentElement::GetFontsInDocument:  nTotalNoOfFonts (font families) = %d", nTotalNoOfFonts);
  if (nTotalNoOfFonts == 0) {
    OutputIndentedAndFormattedString(0, "...nTotalNoOfFonts is 0");
  }
  IndexedFontArray indexed(fonts);
  for (int32 family = 0; family < nTotalNoOfFonts; ++family) {
    AddVariantsOfFamily(document, usedFonts, family, docFontMgr, isConvertedFromID2, indexed);
  }
  OutputIndentedAndFormattedString(0, "...[ %d fonts were added. ]",
                                   static_cast<int>(CFArrayGetCount(fonts)));
}

}  // namespace

RetainPtr<CFMutableArrayRef> DocumentElement::GetFontsInDocument() {
  OperationTrace trace("DocumentElement::GetFontsInDocument",
                       "Entering DocumentElement::GetFontsInDocument()");
  RetainPtr<CFMutableArrayRef> fonts = MakeArray();
  const InterfacePtr<IDocument> document(mDocUIDRef, UseDefaultIID());
  if (!document || document->GetDataBase() == nullptr) {
    return fonts;
  }
  mDocumentName = document->GetName();
  const InterfacePtr<IUsedFontList> usedFonts(document, UseDefaultIID());
  if (!usedFonts) {
    return fonts;
  }
  AddUsedFonts(mDocUIDRef, *document.get(), *usedFonts.get(), fonts.get());
  FilterOutInDesignOnlyFonts(fonts.get(), true);

  mNumberOfFontsUsedByDocument = static_cast<unsigned int>(CFArrayGetCount(fonts.get()));
  trace.Exiting("Exiting DocumentElement::GetFontsInDocument(mNumberOfFontsUsedByDocument=%d)",
                static_cast<int>(mNumberOfFontsUsedByDocument));
  return fonts;
}

void DocumentElement::FilterOutInDesignOnlyFonts(CFMutableArrayRef problemFonts, bool bSkipHostQuery) {
  if (problemFonts == nullptr) {
    return;
  }
  const InterfacePtr<IFontMgr> fontMgr = HBInDesignUtils::QueryFontMgr();
  int removed = 0;
  for (CFIndex i = CFArrayGetCount(problemFonts) - 1; i >= 0; --i) {
    const std::string name = ToStdString(FontRecord::GetPostScriptName(FontRecord::At(problemFonts, i)));
    if (name.empty()) {
      continue;
    }
    bool isHostOnly = name.starts_with(kHostOnlyFontPrefix);
    if (!isHostOnly && !bSkipHostQuery && fontMgr && HBInDesignUtils::HostHasFont(*fontMgr.get(), name)) {
      OutputIndentedAndFormattedString(
          0, "Removing font \"%s\" from problem fonts, since it's activated in InDesign", name.c_str());
      isHostOnly = true;
    }
    if (isHostOnly) {
      CFArrayRemoveValueAtIndex(problemFonts, i);
      ++removed;
    }
  }
  OutputIndentedAndFormattedString(0, "%s() removed %d entries from problemFonts, now with %d elements.",
                                   "FilterOutInDesignOnlyFonts", removed,
                                   static_cast<int>(CFArrayGetCount(problemFonts)));
}

bool DocumentElement::AddFontToArray(const PMString& name, CFMutableArrayRef fonts, bool bAllowDuplicates) {
  const RetainPtr<CFStringRef> psName = ToCFString(CreateResolvedPSName(name.GetUTF8String()));
  return psName && GlyphMarkSupport::AddFontToArray(psName.get(), fonts, bAllowDuplicates);
}
