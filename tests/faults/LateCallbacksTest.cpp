// The library's own thread calls back while managers come and go: most telling under the thread sanitizer.

#include <atomic>
#include <thread>

#include "FaultTest.h"

namespace {

TEST_F(FaultTest, EventsMayComeInWhileTheManagerGoes) {
  FakeAgent busy([](const FakeAgent::Request& request, FakeAgent::Reply& reply) {
    if (request.has_logged_in()) reply.mutable_logged_in()->set_logged_in(true);
    if (request.has_standalone()) reply.mutable_standalone()->set_standalone(true);
    if (request.has_workgroups()) reply.mutable_workgroups();
  });
  std::atomic<bool> stop = false;
  std::thread events([&busy, &stop] {
    FakeAgent::Reply activated;
    FakeAgent::Reply changed;
    activated.mutable_fonts_activated()->add_fonts()->set_font_id(7);
    changed.mutable_library_changed();
    while (!stop) {
      busy.SendEvent(activated);
      busy.SendEvent(changed);
      std::this_thread::sleep_for(std::chrono::microseconds(100));
    }
  });
  int handled = 0;
  for (int i = 0; i < 40; ++i) {
    FontManagerInterface::CompatibleFontManagerIsRunning(nullptr);
    FontManagerInterface* manager = FontManagerInterface::GetFontManager();
    ASSERT_NE(manager, nullptr);
    if (i % 2 == 0) WaitUntil([&] { return (handled += manager->ProcessNotifications()) > i; });
    FontManagerInterface::OnHostAppShuttingDown();
    EXPECT_EQ(FontManagerInterface::GetFontManager(), nullptr);
  }
  stop = true;
  events.join();
}

}  // namespace
