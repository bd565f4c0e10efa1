#pragma once

#include <functional>
#include <utility>

#include "CPMUnknown.h"
#include "ISubject.h"

namespace headless {

/// Hands each change to the one observer that this host has: itself.
class Subject final : public CPMUnknown<ISubject> {
 public:
  Subject(IPMUnknown* boss, std::function<void(ClassID)> observer)
      : CPMUnknown(boss), m_observer(std::move(observer)) {}

  void Change(ClassID change) override { m_observer(change); }

 private:
  std::function<void(ClassID)> m_observer;
};

}  // namespace headless
