#pragma once

#include <functional>
#include <thread>
#include <utility>

#include "CPMUnknown.h"
#include "IApplication.h"
#include "ISession.h"
#include "InterfacePtr.h"
#include "headless/Boss.h"

namespace headless {

/// The application; its front document is the one opened last.
class Application final : public CPMUnknown<IApplication> {
 public:
  Application(IPMUnknown* boss, std::function<UIDRef()> frontDocument)
      : CPMUnknown(boss), m_frontDocument(std::move(frontDocument)) {}

  UIDRef GetFrontDocument() const override { return m_frontDocument(); }

 private:
  std::function<UIDRef()> m_frontDocument;
};

/// The session. The thread that makes it is the main one.
class Session final : public CPMUnknown<ISession> {
 public:
  Session(IPMUnknown* boss, std::function<UIDRef()> frontDocument)
      : CPMUnknown(boss), m_application(new Boss()), m_mainThread(std::this_thread::get_id()) {
    m_application->Emplace<Application>(std::move(frontDocument));
  }

  IApplication* QueryApplication() override {
    return InterfacePtr<IApplication>(m_application, UseDefaultIID()).forget();
  }
  bool IsMainThreadDomain() const override { return std::this_thread::get_id() == m_mainThread; }

 private:
  InterfacePtr<Boss> m_application;
  std::thread::id m_mainThread;
};

}  // namespace headless
