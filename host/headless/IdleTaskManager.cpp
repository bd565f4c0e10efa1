#include "headless/IdleTaskManager.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <chrono>

#include "InterfacePtr.h"
#include "Memory/RetainPtr.h"

namespace headless {
namespace {

// Far enough for a timer that waits to be told: a year.
constexpr CFTimeInterval kNever = 365.0 * 24 * 60 * 60;
constexpr CFTimeInterval kSecondsPerMillisecond = 0.001;

/// The share of the idle time that a task may use without the user noticing.
class RunBudget final : public IdleTimer {
 public:
  uint32 GetTimeLeft() const override {
    const auto left = m_end - std::chrono::steady_clock::now();
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(left).count();
    return milliseconds > 0 ? static_cast<uint32>(milliseconds) : 0;
  }

 private:
  static constexpr std::chrono::milliseconds kBudget{100};
  std::chrono::steady_clock::time_point m_end = std::chrono::steady_clock::now() + kBudget;
};

}  // namespace

/// One task with its timer.
class IdleTaskManager::Entry {
 public:
  Entry(IdleTaskManager& manager, IIdleTask& task, uint32 delay) : m_manager(manager) {
    task.AddRef();
    m_task = InterfacePtr<IIdleTask>(&task);
    CFRunLoopTimerContext context = {0, this, nullptr, nullptr, nullptr};
    m_timer = adoptCF(CFRunLoopTimerCreate(kCFAllocatorDefault, CFAbsoluteTimeGetCurrent() + kNever, kNever,
                                           0, 0, &Entry::Fire, &context));
    SetDelay(delay);
    CFRunLoopAddTimer(CFRunLoopGetMain(), m_timer.get(), kCFRunLoopCommonModes);
  }
  ~Entry() { CFRunLoopTimerInvalidate(m_timer.get()); }
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;

  bool IsFor(const IIdleTask* task) const { return m_task.get() == task; }
  bool WaitsForFlags() const { return m_bWaitsForFlags; }

  void SetDelay(uint32 milliseconds) {
    m_bWaitsForFlags = false;
    SetNext(milliseconds * kSecondsPerMillisecond);
  }

 private:
  static void Fire(CFRunLoopTimerRef, void* info) {
    auto* self = static_cast<Entry*>(info);
    auto& entries = self->m_manager.m_vEntries;
    const auto entry = std::find_if(entries.begin(), entries.end(),
                                    [self](const auto& candidate) { return candidate.get() == self; });
    if (entry == entries.end()) return;
    const std::shared_ptr<Entry> kept = *entry;  // The task may remove itself.
    kept->Run();
  }

  void Run() {
    if (m_bRuns) return;
    m_bRuns = true;
    RunBudget budget;
    const uint32 result = m_task->RunTask(m_manager.m_nFlags, &budget);
    m_bRuns = false;
    if (result == IIdleTask::kNeverAgain) {
      m_manager.RemoveTask(m_task.get());
    } else if (result == IIdleTask::kOnFlagChange) {
      SetNext(kNever);
      m_bWaitsForFlags = true;
    } else {
      SetDelay(result);
    }
  }

  void SetNext(CFTimeInterval seconds) {
    CFRunLoopTimerSetNextFireDate(m_timer.get(), CFAbsoluteTimeGetCurrent() + seconds);
  }

  IdleTaskManager& m_manager;
  InterfacePtr<IIdleTask> m_task;
  RetainPtr<CFRunLoopTimerRef> m_timer;
  bool m_bRuns = false;
  bool m_bWaitsForFlags = false;
};

IdleTaskManager::~IdleTaskManager() = default;

void IdleTaskManager::AddTask(IIdleTask* task, uint32 delay) {
  if (!task) return;
  for (const std::shared_ptr<Entry>& entry : m_vEntries) {
    if (entry->IsFor(task)) {
      entry->SetDelay(delay);
      return;
    }
  }
  m_vEntries.push_back(std::make_shared<Entry>(*this, *task, delay));
}

void IdleTaskManager::RemoveTask(IIdleTask* task) {
  const auto entry = std::find_if(m_vEntries.begin(), m_vEntries.end(),
                                  [task](const auto& candidate) { return candidate->IsFor(task); });
  if (entry == m_vEntries.end()) return;
  const std::shared_ptr<Entry> last = *entry;  // Goes when the list is whole again.
  m_vEntries.erase(entry);
}

void IdleTaskManager::SetApplicationFlags(uint32 flags) {
  if (flags == m_nFlags) return;
  m_nFlags = flags;
  for (const std::shared_ptr<Entry>& entry : m_vEntries) {
    if (entry->WaitsForFlags()) entry->SetDelay(0);
  }
}

void IdleTaskManager::RemoveAllTasks() {
  const std::vector<std::shared_ptr<Entry>> last = std::move(m_vEntries);
  m_vEntries.clear();
}

}  // namespace headless
