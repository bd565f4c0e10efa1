#include "client/ClientLibrary.h"

#include <CoreFoundation/CoreFoundation.h>
#include <unistd.h>

#include <thread>
#include <utility>

#include "Memory/CFVector.h"
#include "Memory/RetainPtr.h"
#include "client/FontconfigSystem.h"

using kiln::wire::ServerMessage;

namespace {

// Before fonts that somebody else seems to have activated make the process read its font folders, the call of
// this process that may have caused the event gets this long to put them in place itself.
constexpr std::chrono::milliseconds kOwnCallsPause{20};

std::string NewUUID() {
  const auto uuid = adoptCF(CFUUIDCreate(nullptr));
  return ToStdString(adoptCF(CFUUIDCreateString(nullptr, uuid.get())).get());
}

template <typename Event>
std::vector<Notification> FontNotifications(int kind, const Event& event, uint64_t order) {
  std::vector<Notification> notifications;
  for (const auto& font : event.fonts()) {
    notifications.push_back({kind, font.font_id(), event.local() ? "" : font.path(), order});
  }
  return notifications;
}

template <typename Event>
std::vector<Notification> OfEachFont(int kind, const Event& event) {
  std::vector<Notification> notifications;
  for (const uint32_t id : event.font_ids()) {
    Notification& notification = notifications.emplace_back();
    notification.kind = kind;
    notification.data = id;
  }
  return notifications;
}

std::vector<Notification> OfReplication(const kiln::wire::ReplicationEvent& event) {
  int progress = 0;
  switch (event.kind()) {
    case kiln::wire::REPLICATION_BULK:
      progress = kNotification_BulkReplicationProgress;
      break;
    case kiln::wire::REPLICATION_INCREMENTAL:
      progress = kNotification_IncrementalReplicationProgress;
      break;
    case kiln::wire::REPLICATION_GOOGLE:
      progress = kNotification_GoogleReplicationProgress;
      break;
    case kiln::wire::REPLICATION_FONT_SERVER:
      progress = kNotification_FontServerReplicationProgress;
      break;
    default:  // a newer agent's
      return {};
  }
  if (event.stopped()) return {{progress + 1}};
  return {{progress, Notification::Progress{event.text(), event.step(), event.step_count()}}};
}

std::vector<Notification> NotificationsOf(const Connection::Incoming& event) {
  const ServerMessage& message = event.message;
  switch (message.body_case()) {
    case ServerMessage::kFontsActivated:
      return FontNotifications(kNotification_FontActivated, message.fonts_activated(), event.order);
    case ServerMessage::kFontsDeactivated:
      return FontNotifications(kNotification_FontDeactivated, message.fonts_deactivated(), event.order);
    case ServerMessage::kFontsMissing:
      return OfEachFont(kNotification_FontMissing, message.fonts_missing());
    case ServerMessage::kComplianceRefused:
      return OfEachFont(kNotification_DesignActivationNonCompliant, message.compliance_refused());
    case ServerMessage::kOnlineState:
      return {{kNotification_OnlineStateChanged, message.online_state().online()}};
    case ServerMessage::kLogInState:
      return {
          {kNotification_LoggedInStateChanged,
           Notification::LogIn{message.log_in_state().logged_in(), message.log_in_state().server_type()}}};
    case ServerMessage::kWorkgroupsChanged:
      return {{kNotification_WorkgroupsChanged}};
    case ServerMessage::kPermissionsChanged:
      return {{kNotification_UserPermissionsChanged}};
    case ServerMessage::kGoogleEnabled:
      return {{kNotification_GoogleWebFontsEnabled, message.google_enabled().enabled()}};
    case ServerMessage::kReplication:
      return OfReplication(message.replication());
    case ServerMessage::kSetsChanged:
      return {{kNotification_SmartListsChanged}, {kNotification_PanelDataChanged}};
    case ServerMessage::kLibraryChanged:
      return {{kNotification_PanelDataChanged}};
    case ServerMessage::kShutdown:
      return {{kNotification_AgentShutdown}};
    default:  // a newer agent's, or no event
      return {};
  }
}

std::vector<ProcessFonts::Change> FontChanges(const std::vector<Notification>& notifications) {
  std::vector<ProcessFonts::Change> changes;
  for (const Notification& notification : notifications) {
    const bool active = notification.kind == kNotification_FontActivated;
    if (!active && notification.kind != kNotification_FontDeactivated) continue;
    changes.push_back(
        {std::get<unsigned int>(notification.data), active, notification.file, notification.order});
  }
  return changes;
}

// At the end of the process no thread of the library may run into what is being taken down. A fork of it that
// exits has no such threads, and shares the connection, which isn't its to end.
struct StopAtExit {
  ~StopAtExit() {
    if (getpid() == process) ClientLibrary::Get().StopThreads();
  }
  const pid_t process = getpid();
};

}  // namespace

ClientLibrary& ClientLibrary::Get() {
  static ClientLibrary& library = *new ClientLibrary(std::make_unique<FontconfigSystem>());
  static StopAtExit stopAtExit;
  return library;
}

ClientLibrary::ClientLibrary(std::unique_ptr<FontSystem> fontSystem)
    : mClientUUID(NewUUID()),
      mFonts(std::move(fontSystem)),
      mNotifications([this](const auto& batch) { PrepareProcess(batch); },
                     [this] { return CheckProcess(); }) {}

FacadeRef ClientLibrary::Facade() {
  std::scoped_lock lock(mMutex);
  if (mSession == nullptr) {
    mNotifications.Start();
    mSession = std::make_shared<Session>(
        mClientUUID, [this](Connection::Incoming&& event) { mNotifications.Post(NotificationsOf(event)); },
        mWaitedInVain);
    ++mLastFacade;
  }
  return reinterpret_cast<FacadeRef>(mLastFacade);
}

std::shared_ptr<Session> ClientLibrary::Find(FacadeRef facade) {
  std::scoped_lock lock(mMutex);
  return reinterpret_cast<uintptr_t>(facade) == mLastFacade ? mSession : nullptr;
}

void ClientLibrary::Reset() {
  std::shared_ptr<Session> session;
  {
    std::scoped_lock lock(mMutex);
    session = std::exchange(mSession, nullptr);
    if (session != nullptr) mWaitedInVain = session->WaitedInVain();
  }
  if (session != nullptr) session->Drop();
}

void ClientLibrary::StopThreads() {
  Reset();
  mNotifications.Stop();
}

void ClientLibrary::CleanUp() {
  StopThreads();
  {
    std::scoped_lock lock(mMutex);
    mWaitedInVain = {};
  }
  mFonts.DeactivateAll();
}

void ClientLibrary::PrepareProcess(const std::vector<Notification>& batch) {
  const std::vector<ProcessFonts::Change> changes = FontChanges(batch);
  if (changes.empty() || !mFonts.NeedsToFollow(changes)) return;
  std::this_thread::sleep_for(kOwnCallsPause);
  mFonts.Follow(changes);
}

std::chrono::seconds ClientLibrary::CheckProcess() {
  const auto now = std::chrono::steady_clock::now();
  const std::chrono::seconds interval = mFonts.CheckInterval();
  if (interval.count() > 0 && now - mLastCheck >= interval) {
    mLastCheck = now;
    mFonts.ReloadIfStale();
  }
  return interval;
}
