#pragma once

#include <gtest/gtest.h>

#include <string>

#include "FakeAgent.h"
#include "FontHome.h"
#include "Memory/CFCast.h"
#include "Memory/CFVector.h"
#include "XCFUtils.h"
#include "client/PluginInterface.h"
#include "client/RecordKeys.h"
#include "support/FakeSystem.h"
#include "support/ScopedReplacement.h"

inline RetainPtr<CFMutableDictionaryRef> Record(const std::string& postScriptName) {
  auto record = MakeDictionary();
  XCFUtils::PutStringIntoDict(record.get(), RecordKeys::kPostScriptName, postScriptName);
  return record;
}

inline CFDictionaryRef At(const RetainPtr<CFMutableArrayRef>& array, CFIndex index) {
  return dynamicCF<CFDictionaryRef>(CFArrayGetValueAtIndex(array.get(), index));
}

/// A home with fonts, and the entries of the library that is linked in.
class EntriesTest : public testing::Test {
 protected:
  ~EntriesTest() override { CleanUpOnShutdown(Facade()); }
  static FacadeRef Facade() { return GetPluginFacadeInstance(); }

  FontHome m_fonts;
  PrivateHome& m_home = m_fonts.home;
  FakeProcesses m_processes;
  ScopedReplacement<platform::Processes> m_replaced{m_processes};
};
