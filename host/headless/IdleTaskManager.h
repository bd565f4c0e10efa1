#pragma once

#include <memory>
#include <vector>

#include "CPMUnknown.h"
#include "IIdleTaskMgr.h"

namespace headless {

/// The idle loop: a timer of the main thread's run loop for each task. A task isn't run again while it runs,
/// even when it turns the run loop itself.
class IdleTaskManager final : public CPMUnknown<IIdleTaskMgr> {
 public:
  using CPMUnknown::CPMUnknown;
  ~IdleTaskManager() override;

  void AddTask(IIdleTask* task, uint32 delay) override;
  void RemoveTask(IIdleTask* task) override;

  /// Says what the application is doing, as bits of IIdleTask. A change makes due every task that waits for
  /// one.
  void SetApplicationFlags(uint32 flags);

  void RemoveAllTasks();

 private:
  class Entry;

  std::vector<std::shared_ptr<Entry>> m_vEntries;
  uint32 m_nFlags = 0;
};

}  // namespace headless
