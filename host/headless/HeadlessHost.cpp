#include "headless/HeadlessHost.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <map>

#include "ClassIDs.h"
#include "PlugIn.h"
#include "headless/ActivityReport.h"
#include "headless/Alert.h"
#include "headless/CommandProcessor.h"
#include "headless/FontManager.h"
#include "headless/HostLink.h"
#include "headless/IdleTaskManager.h"
#include "headless/InstalledFonts.h"
#include "headless/OpenDocument.h"
#include "headless/PlugInLoader.h"
#include "headless/PlugInRegistry.h"
#include "headless/Session.h"
#include "headless/Subject.h"

namespace headless {

/// What the host is made of. The order of the members is the order of their making, and the reverse of their
/// going.
class HostServices {
 public:
  HostServices() : m_session(new Boss()), m_registry(*m_session.get()) {
    m_session->Emplace<Session>([this] { return FrontDocument(); });
    m_session->Emplace<FontManager>(m_fonts, [this] { RebindFamilies(); });
    m_session->Emplace<Subject>([this](ClassID change) {
      if (change == kFontSystemChangedMsg) RebindFamilies();
    });
    m_session->Emplace<LinkFacade>();
    m_session->Emplace<CommandProcessor>();
    m_session->Emplace<Alert>();
    m_session->Emplace<ActivityReport>([this](const UIDRef& document) { return LogOf(document); });
    m_pIdleTasks = m_session->Emplace<IdleTaskManager>();
  }

  PlugInRegistry& Registry() { return m_registry; }
  PlugInLoader& Loader() { return m_loader; }
  IdleTaskManager& IdleTasks() { return *m_pIdleTasks; }
  InstalledFonts& Fonts() { return m_fonts; }

  HeadlessHost::DocumentID Add(std::unique_ptr<OpenDocument> document) {
    const HeadlessHost::DocumentID id = ++m_nLastID;
    m_mDocuments.emplace(id, std::move(document));
    return id;
  }

  /// Null for a number that was never given.
  OpenDocument* Find(HeadlessHost::DocumentID id) const {
    const auto document = m_mDocuments.find(id);
    return document == m_mDocuments.end() ? nullptr : document->second.get();
  }

  /// Null also for one that is closed.
  OpenDocument* FindOpen(HeadlessHost::DocumentID id) const {
    OpenDocument* document = Find(id);
    return document && document->IsOpen() ? document : nullptr;
  }

  std::vector<HeadlessHost::DocumentID> OpenIDs() const {
    std::vector<HeadlessHost::DocumentID> ids;
    for (const auto& [id, document] : m_mDocuments) {
      if (document->IsOpen()) ids.push_back(id);
    }
    return ids;
  }

  IDocumentSignalData::UIFlags Send(ServiceID service, const OpenDocument& document) {
    return m_registry.Send(service, document.Ref(), document.File());
  }

 private:
  UIDRef FrontDocument() const {
    const std::vector<HeadlessHost::DocumentID> open = OpenIDs();
    return open.empty() ? UIDRef::Null() : Find(open.back())->Ref();
  }

  void RebindFamilies() {
    for (const HeadlessHost::DocumentID id : OpenIDs()) Find(id)->RebindFamilies();
  }

  FontActivityLog* LogOf(const UIDRef& ref) {
    for (const auto& [id, document] : m_mDocuments) {
      if (document->IsOpen() && document->Ref() == ref) return &document->Log();
    }
    return nullptr;
  }

  InstalledFonts m_fonts;
  PlugInLoader m_loader;
  std::map<HeadlessHost::DocumentID, std::unique_ptr<OpenDocument>> m_mDocuments;
  HeadlessHost::DocumentID m_nLastID = 0;
  InterfacePtr<Boss> m_session;
  IdleTaskManager* m_pIdleTasks = nullptr;
  PlugInRegistry m_registry;
};

namespace {

/// Says for its scope that the user is at work.
class UserAtWork {
 public:
  explicit UserAtWork(IdleTaskManager& idleTasks) : m_idleTasks(idleTasks) {
    m_idleTasks.SetApplicationFlags(IIdleTask::kUserActive);
  }
  ~UserAtWork() { m_idleTasks.SetApplicationFlags(0); }
  UserAtWork(const UserAtWork&) = delete;
  UserAtWork& operator=(const UserAtWork&) = delete;

 private:
  IdleTaskManager& m_idleTasks;
};

}  // namespace

HeadlessHost::HeadlessHost() : m_pServices(std::make_unique<HostServices>()) {}

HeadlessHost::~HeadlessHost() {
  Shutdown();
}

int HeadlessHost::LoadPlugIns(const std::string& folder, std::vector<std::string>& errors) {
  const std::vector<PlugIn*> plugIns = m_pServices->Loader().Load(folder, errors);
  for (PlugIn* plugIn : plugIns) RegisterPlugIn(*plugIn);
  return static_cast<int>(plugIns.size());
}

void HeadlessHost::RegisterPlugIn(PlugIn& plugIn) {
  m_pServices->Registry().Register(plugIn);
}

void HeadlessHost::Start() {
  if (m_bStarted) return;
  m_bStarted = true;
  m_pServices->Registry().Startup();
}

HeadlessHost::DocumentID HeadlessHost::Open(const std::string& path, std::string& error) {
  HostServices& host = *m_pServices;
  const UserAtWork atWork(host.IdleTasks());
  std::unique_ptr<OpenDocument> read =
      OpenDocument::Read(path, host.Fonts(), host.Registry().DocumentAdditions(), error);
  if (!read) return 0;
  OpenDocument& document = *read;
  const DocumentID id = host.Add(std::move(read));
  host.Send(kBeforeOpenDocSignalResponderService, document);
  host.Send(kDuringOpenDocSignalResponderService, document);
  const auto flags = host.Send(kAfterOpenDocSignalResponderService, document);
  document.RebindFamilies();
  document.NoteAlert(flags == IDocumentSignalData::kSuppressUI);
  return id;
}

bool HeadlessHost::Save(DocumentID id, std::string& error) {
  HostServices& host = *m_pServices;
  OpenDocument* document = host.FindOpen(id);
  if (!document) {
    error = "the document isn't open";
    return false;
  }
  const UserAtWork atWork(host.IdleTasks());
  host.Send(kBeforeSaveDocSignalResponderService, *document);
  const bool saved = document->WriteAttributes(error);
  host.Send(kAfterSaveDocSignalResponderService, *document);
  return saved;
}

void HeadlessHost::Close(DocumentID id) {
  HostServices& host = *m_pServices;
  OpenDocument* document = host.FindOpen(id);
  if (!document) return;
  const UserAtWork atWork(host.IdleTasks());
  host.Send(kBeforeCloseDocSignalResponderService, *document);
  document->TakeDown();
  host.Send(kAfterCloseDocSignalResponderService, *document);
  document->Forget();
}

std::vector<HeadlessHost::DocumentID> HeadlessHost::OpenDocuments() const {
  return m_pServices->OpenIDs();
}

std::string HeadlessHost::DocumentName(DocumentID id) const {
  const OpenDocument* document = m_pServices->FindOpen(id);
  return document ? document->Name() : std::string();
}

std::vector<HeadlessHost::UsedFont> HeadlessHost::UsedFonts(DocumentID id) const {
  const OpenDocument* document = m_pServices->FindOpen(id);
  return document ? document->UsedFonts() : std::vector<UsedFont>();
}

HeadlessHost::OpenAlert HeadlessHost::AlertAtOpen(DocumentID id) const {
  OpenDocument* document = m_pServices->Find(id);
  return document ? document->Alert() : OpenAlert();
}

HeadlessHost::FontActivity HeadlessHost::Activity(DocumentID id) const {
  OpenDocument* document = m_pServices->Find(id);
  return document ? document->Log().Activity() : FontActivity();
}

void HeadlessHost::RunIdle(std::uint32_t milliseconds) {
  constexpr double kSecondsPerMillisecond = 0.001;
  CFRunLoopRunInMode(kCFRunLoopDefaultMode, milliseconds * kSecondsPerMillisecond, false);
}

void HeadlessHost::Shutdown() {
  if (m_bShutDown) return;
  m_bShutDown = true;
  HostServices& host = *m_pServices;
  for (const DocumentID id : host.OpenIDs()) Close(id);
  if (m_bStarted) host.Registry().Shutdown();
  host.IdleTasks().RemoveAllTasks();
  host.Registry().Clear();
}

}  // namespace headless
