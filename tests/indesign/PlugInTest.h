#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Activation/State/HornbeamGlobals.h"
#include "DocumentElement.h"
#include "HBIndesignPluginGlobals.h"
#include "InMemoryHost.h"
#include "support/FakeClientLibrary.h"
#include "support/FakeFontManager.h"
#include "support/FakeLoom.h"

/// The plug-in in a host in memory, switched on and logged in, with the preferences of its first start.
/// Nothing of it is left for the next test.
class PlugInTest : public testing::Test {
 protected:
  PlugInTest() {
    HornbeamGlobals::SetPluginServicesEnabled(true);
    HornbeamGlobals::SetLoggedIn(true);
    HornbeamGlobals::SetUserHasWorkgroups(true);
    for (const char* key : {"EnablePlugin", "EnableGlyphMark", "PickBestMatch", "SupportEmbeddedObjects"}) {
      loom.SetPreference(key, 1);
    }
  }

  ~PlugInTest() override {
    HBIndesignPluginGlobals::CleanUpOnShutdown();
    HornbeamGlobals::CleanUpOnShutdown();
    HornbeamGlobals::SetLoggedIn(false);
    HornbeamGlobals::SetUserHasWorkgroups(false);
  }

  /// A font of the font manager's library.
  unsigned int AddFont(const std::string& name, bool isActive = false) {
    return manager.AddFont({{kGM_PostScriptNameKey, name}}, isActive ? 2 : 1);
  }

  static DocumentElement* ElementOf(InMemoryDocument& document) {
    return HBIndesignPluginGlobals::GetDocumentFromDocumentList(document.Ref());
  }

  FakeClientLibrary library;
  FakeFontManager manager;
  FakeLoom loom;
  InMemoryHost host;
};
