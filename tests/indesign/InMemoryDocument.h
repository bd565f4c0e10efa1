#pragma once

#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "CPMUnknown.h"
#include "FakeBoss.h"
#include "IDataBase.h"
#include "IDocFontMgr.h"
#include "IDocument.h"
#include "IDocumentFontUsage.h"
#include "IFontFamily.h"
#include "ILinkFacade.h"
#include "ILinkManager.h"
#include "IUsedFontList.h"

/// A document that lives in the test: what its text uses is what the test wrote down. It answers as the
/// host's documents do, and stops answering after Vanish(), as they do after their close.
class InMemoryDocument : public IDataBase {
 public:
  struct Face {
    std::string style;
    std::string postscriptName;  ///< Empty for a face without a real name.
  };

  struct Family {
    std::string name;
    std::vector<Face> faces;
    std::vector<std::string> usedStyles;
  };

  explicit InMemoryDocument(const std::string& name)
      : name(name),
        file("/documents/" + name),
        document_(*this),
        usedFonts_(*this),
        usage_(*this),
        links_(*this),
        docFontMgr_(*this) {
    boss.Offer<IDocument>(document_);
    boss.Offer<IUsedFontList>(usedFonts_);
    boss.Offer<IDocumentFontUsage>(usage_);
    boss.Offer<ILinkManager>(links_);
    boss.Offer<IDocFontMgr>(docFontMgr_);
  }

  /// A family whose every face is used.
  void Use(const std::string& family, const std::vector<Face>& faces) {
    Family added{family, faces, {}};
    for (const Face& face : faces) added.usedStyles.push_back(face.style);
    Use(added);
  }
  void Use(const Family& family) { families_.emplace_back(family); }

  UIDRef Ref() { return {this, kRoot}; }

  /// The objects go, as at the end of a close; the database stays for the after-close signal.
  void Vanish() { isThere_ = false; }

  IPMUnknown* QueryInstance(UID uid, PMIID interfaceID) override {
    if (!isThere_) return nullptr;
    if (uid == kRoot) return boss.QueryInterface(interfaceID);
    const size_t family = uid.Get() - kFirstFamily;
    return uid.Get() >= kFirstFamily && family < families_.size()
               ? families_[family].boss.QueryInterface(interfaceID)
               : nullptr;
  }
  UID GetRootUID() const override { return kRoot; }
  const IDFile* GetSysFile() const override { return file.IsEmpty() ? nullptr : &file; }

  std::string name;
  IDFile file;  ///< Empty for a document that was never saved.
  bool isModified = false;
  bool isConvertedFromID2 = false;
  bool hasDataBase = true;
  std::vector<Facade::ILinkFacade::LinkStatus> linkStates;
  std::vector<std::pair<std::string, std::string>> familyLookUps;  ///< Family and style.
  int refreshes = 0;
  int usageUpdates = 0;
  FakeBoss boss;

 private:
  static constexpr UID kRoot{1};
  static constexpr UID kUsedFontList{2};
  static constexpr uint32 kFirstFamily = 100;

  template <class T>
  class Part : public CPMUnknown<T> {
   public:
    explicit Part(InMemoryDocument& owner) : CPMUnknown<T>(&owner.boss), owner(owner) {}
    InMemoryDocument& owner;
  };

  class Document : public Part<IDocument> {
   public:
    using Part::Part;
    PMString GetName() const override { return owner.name; }
    bool IsModified() const override { return owner.isModified; }
    IDataBase* GetDataBase() const override { return owner.hasDataBase ? &owner : nullptr; }
    bool IsConvertedFromID2() const override { return owner.isConvertedFromID2; }
    UIDRef GetDocWorkSpace() const override { return owner.Ref(); }
  };

  class UsedFonts : public Part<IUsedFontList> {
   public:
    using Part::Part;
    int32 GetFamilyCount() const override { return static_cast<int32>(owner.families_.size()); }
    UID GetNthFamilyUID(int32 family) const override {
      return UID(kFirstFamily + static_cast<uint32>(family));
    }
    int32 GetVariantCount(int32 family) const override {
      return static_cast<int32>(At(family).usedStyles.size());
    }
    PMString GetNthVariantStyle(int32 family, int32 variant) const override {
      return At(family).usedStyles[static_cast<size_t>(variant)];
    }
    void Refresh() override { ++owner.refreshes; }
    UIDRef GetUIDRef() const override { return {&owner, kUsedFontList}; }

   private:
    const Family& At(int32 family) const { return owner.families_[static_cast<size_t>(family)].family; }
  };

  class Usage : public Part<IDocumentFontUsage> {
   public:
    using Part::Part;
    void UpdateFontList() override { ++owner.usageUpdates; }
  };

  class Links : public Part<ILinkManager> {
   public:
    using Part::Part;
    /// Each link's number is its index and 1.
    void QueryLinks(const LinkQuery&, K2Vector<UID>& links) const override {
      for (size_t i = 0; i < owner.linkStates.size(); ++i) links.emplace_back(static_cast<uint32>(i + 1));
    }
  };

  class DocFontMgr : public Part<IDocFontMgr> {
   public:
    using Part::Part;
    UID GetFamilyUID(const PMString& family, const PMString& style, bool, bool) override {
      owner.familyLookUps.emplace_back(family.GetUTF8String(), style.GetUTF8String());
      return UID(kFirstFamily);
    }
  };

  /// One family as an object of the document.
  class FamilyObject {
   public:
    explicit FamilyObject(const Family& family) : family(family), interface_(*this) {
      boss.Offer<IFontFamily>(interface_);
    }
    Family family;
    FakeBoss boss;

   private:
    class Interface : public CPMUnknown<IFontFamily> {
     public:
      explicit Interface(FamilyObject& owner) : CPMUnknown(&owner.boss), family(owner.family) {}
      PMString GetFamilyName() const override { return family.name; }
      int32 GetFaceCount() const override { return static_cast<int32>(family.faces.size()); }
      PMString GetNthFaceStyle(int32 face) const override { return At(face).style; }
      PMString GetNthFacePostscriptName(int32 face) const override { return At(face).postscriptName; }
      PMString GetFacePostscriptName(const PMString& style, bool getOnlyRealPSName, bool) const override {
        for (const Face& face : family.faces) {
          if (face.style == style.GetUTF8String() && !face.postscriptName.empty()) return face.postscriptName;
        }
        PMString madeUp = family.name;
        madeUp.StripWhiteSpace(PMString::kAllWhiteSpace);
        return getOnlyRealPSName ? kNullString : madeUp;
      }
      const Face& At(int32 face) const { return family.faces[static_cast<size_t>(face)]; }
      const Family& family;
    };

    Interface interface_;
  };

  bool isThere_ = true;
  std::deque<FamilyObject> families_;
  Document document_;
  UsedFonts usedFonts_;
  Usage usage_;
  Links links_;
  DocFontMgr docFontMgr_;
};
