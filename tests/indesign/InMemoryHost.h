#pragma once

#include <set>
#include <string>
#include <vector>

#include "CPMUnknown.h"
#include "FakeBoss.h"
#include "HornbeamID.h"
#include "HornbeamPlugIn.h"
#include "IAlert.h"
#include "ICommandProcessor.h"
#include "IDocumentSignalData.h"
#include "IFontActivityReport.h"
#include "IFontMgr.h"
#include "IIdleTask.h"
#include "ILinkFacade.h"
#include "IResponder.h"
#include "ISession.h"
#include "ISignalMgr.h"
#include "ISubject.h"
#include "InMemoryDocument.h"
#include "InterfacePtr.h"
#include "ServiceIDs.h"

/// What a signal carries there and back.
struct TestSignal {
  bool isClone = false;
  bool hasData = true;
  IDocumentSignalData::UIFlags uiFlags = IDocumentSignalData::kFullUI;
};

/// A host in memory: it is the plug-in's session as long as it exists, sends signals as a test asks for them,
/// and notes what it was told.
class InMemoryHost {
 public:
  InMemoryHost()
      : session_(*this),
        fontMgr_(*this),
        subject_(*this),
        links_(*this),
        commands_(*this),
        report_(*this),
        alert_(*this) {
    session.Offer<ISession>(session_);
    session.Offer<IFontMgr>(fontMgr_);
    session.Offer<ISubject>(subject_);
    session.Offer<Facade::ILinkFacade>(links_);
    session.Offer<ICommandProcessor>(commands_);
    session.Offer<IFontActivityReport>(report_);
    session.Offer<IAlert>(alert_);
    HornbeamPlugIn::GetInstance().SetSession(&session_);
  }
  InMemoryHost(const InMemoryHost&) = delete;
  InMemoryHost& operator=(const InMemoryHost&) = delete;
  ~InMemoryHost() { HornbeamPlugIn::GetInstance().SetSession(nullptr); }

  /// Sends one signal to the plug-in's responder.
  ///
  /// \return Whether the host's alerts were suppressed in answer to it.
  bool Send(ServiceID service, InMemoryDocument& document, TestSignal signal = {}) {
    FakeBoss boss;
    SignalMgr manager(&boss, service);
    SignalData data(&boss, document, signal);
    boss.Offer<ISignalMgr>(manager);
    if (signal.hasData) boss.Offer<IDocumentSignalData>(data);
    Responder()->Respond(&manager);
    return signal.uiFlags == IDocumentSignalData::kSuppressUI;
  }

  /// The three signals of an open; the answer to the last.
  bool Open(InMemoryDocument& document, TestSignal signal = {}) {
    Send(kBeforeOpenDocSignalResponderService, document, signal);
    Send(kDuringOpenDocSignalResponderService, document, signal);
    return Send(kAfterOpenDocSignalResponderService, document, signal);
  }

  void Close(InMemoryDocument& document) {
    Send(kBeforeCloseDocSignalResponderService, document);
    document.Vanish();
    Send(kAfterCloseDocSignalResponderService, document);
  }

  /// The responder of the plug-in's list of bosses.
  std::unique_ptr<IResponder> Responder() {
    return std::unique_ptr<IResponder>(
        static_cast<IResponder*>(Make(kHornbeamResponderBoss, IID_IRESPONDER).release()));
  }

  /// One implementation of one of the plug-in's bosses, with no boss around it.
  static std::unique_ptr<IPMUnknown> Make(ClassID boss, PMIID interfaceID) {
    for (const BossDefinition& definition : HornbeamPlugIn::GetInstance().GetBosses()) {
      if (definition.classID != boss) continue;
      for (const InterfaceFactory& factory : definition.interfaces) {
        if (factory.interfaceID == interfaceID) return factory.create(nullptr);
      }
    }
    return nullptr;
  }

  std::set<std::string> fonts;  ///< PostScript names that it can set text in.
  int32 seed = 1;
  bool isMainThread = true;
  std::vector<ClassID> changes;
  std::vector<ClassID> commandsDone;
  std::vector<std::string> matched;  ///< Reports as "name id", with "*" for a font that was active.
  std::vector<std::string> problems;
  std::vector<std::string> deactivated;
  std::vector<std::string> alerts;
  FakeBoss session;

 private:
  template <class T>
  class Part : public CPMUnknown<T> {
   public:
    explicit Part(InMemoryHost& owner) : CPMUnknown<T>(&owner.session), owner(owner) {}
    InMemoryHost& owner;
  };

  class Session : public Part<ISession> {
   public:
    using Part::Part;
    IApplication* QueryApplication() override { return nullptr; }
    bool IsMainThreadDomain() const override { return owner.isMainThread; }
  };

  class Font : public CPMUnknown<IPMFont> {
   public:
    explicit Font(PMString name) : CPMUnknown(nullptr), name(std::move(name)) {}
    PMString GetPostscriptName() const override { return name; }
    PMString name;
  };

  class FontMgr : public Part<IFontMgr> {
   public:
    using Part::Part;
    IPMFont* QueryFont(const PMString& name, uint32 flags) override {
      EXPECT_EQ(flags, 0x40000000u);
      return owner.fonts.contains(name.GetUTF8String()) ? new Font(name) : nullptr;
    }
    int32 GetFontChangeSeed(bool update, bool force) override {
      EXPECT_TRUE(update && !force);
      return owner.seed;
    }
    void Refresh() override {}
  };

  class Subject : public Part<ISubject> {
   public:
    using Part::Part;
    void Change(ClassID change) override { owner.changes.push_back(change); }
  };

  class Links : public Part<Facade::ILinkFacade> {
   public:
    using Part::Part;
    LinkStatus GetLinkStatus(const UIDRef& link) const override {
      const auto* document = static_cast<const InMemoryDocument*>(link.GetDataBase());
      return document->linkStates[link.GetUID().Get() - 1];
    }
  };

  class Command : public CPMUnknown<ICommand> {
   public:
    explicit Command(ClassID commandClass) : CPMUnknown(nullptr), commandClass(commandClass) {}
    ClassID GetCommandClass() const override { return commandClass; }
    void SetItemList(const UIDList& list) override { items = list; }
    const UIDList& GetItemList() const override { return items; }
    ClassID commandClass;
    UIDList items;
  };

  class Commands : public Part<ICommandProcessor> {
   public:
    using Part::Part;
    ICommand* CreateCommand(ClassID commandClass) override { return new Command(commandClass); }
    int32 ProcessCommand(ICommand* command) override {
      EXPECT_EQ(command->GetItemList().Length(), 1);
      owner.commandsDone.push_back(command->GetCommandClass());
      return 0;
    }
  };

  class Report : public Part<IFontActivityReport> {
   public:
    using Part::Part;
    void ReportMatched(const UIDRef&, const PMString& name, uint32 id, bool wasActive) override {
      owner.matched.push_back(name.GetUTF8String() + " " + std::to_string(id) + (wasActive ? "*" : ""));
    }
    void ReportProblem(const UIDRef&, const PMString& name) override {
      owner.problems.push_back(name.GetUTF8String());
    }
    void ReportDeactivated(const UIDRef&, const PMString& name) override {
      owner.deactivated.push_back(name.GetUTF8String());
    }
  };

  class Alert : public Part<IAlert> {
   public:
    using Part::Part;
    void ShowInformation(const PMString& text) override { owner.alerts.push_back(text.GetUTF8String()); }
  };

  class SignalMgr : public CPMUnknown<ISignalMgr> {
   public:
    SignalMgr(IPMUnknown* boss, ServiceID service) : CPMUnknown(boss), service(service) {}
    ServiceID GetServiceID() const override { return service; }
    ServiceID service;
  };

  class SignalData : public CPMUnknown<IDocumentSignalData> {
   public:
    SignalData(IPMUnknown* boss, InMemoryDocument& document, TestSignal& signal)
        : CPMUnknown(boss), document(document), signal(signal) {}
    UIDRef GetDocument() const override { return document.Ref(); }
    IDFile GetFile() const override { return document.file; }
    bool IsClone() const override { return signal.isClone; }
    void Set(const IDFile& file, bool isClone, const UIDRef& ref, UIFlags uiFlags) override {
      EXPECT_EQ(file, document.file);
      EXPECT_EQ(isClone, signal.isClone);
      EXPECT_EQ(ref, document.Ref());
      signal.uiFlags = uiFlags;
    }
    InMemoryDocument& document;
    TestSignal& signal;
  };

  Session session_;
  FontMgr fontMgr_;
  Subject subject_;
  Links links_;
  Commands commands_;
  Report report_;
  Alert alert_;
};
