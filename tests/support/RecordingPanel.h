#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Panel/HornbeamPanel.h"
#include "Panel/PanelManager.h"

/// A panel that notes what it was told, as "FontActivated 7", and is registered as long as its Registration
/// exists. A dictionary is noted by its number of pairs.
class RecordingPanel : public HornbeamPanel {
 public:
  /// Holds a panel in the PanelManager.
  class Registration {
   public:
    Registration() {
      auto panel = std::make_unique<RecordingPanel>();
      panel_ = panel.get();
      PanelManager::GetSharedInstance()->AddPanel(std::move(panel));
    }
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;
    ~Registration() { PanelManager::GetSharedInstance()->RemovePanel(panel_); }

    RecordingPanel* operator->() const { return panel_; }

   private:
    RecordingPanel* panel_;
  };

  /// What was told since the last call.
  std::vector<std::string> Take() { return std::exchange(calls, {}); }

  std::vector<std::string> calls;
  std::map<std::string, TErrCode> results;  ///< By call as noted; else 0.
  std::function<void()> duringPop;

  TErrCode SetEnabled(bool enabled) override { return Note("SetEnabled", enabled); }
  TErrCode PopNotifications() override {
    const TErrCode result = Note("Pop");
    if (duringPop) duringPop();
    return result;
  }
  TErrCode PushLoggedInStateChangedNotification(EServerType type) override {
    return Note("LoggedInStateChanged", static_cast<int>(type));
  }
  TErrCode PushOnlineStateChangedNotification(bool isOnline) override {
    return Note("OnlineStateChanged", isOnline);
  }
  TErrCode PushGoogleWebFontsEnabledNotificaton(bool enabled) override {
    return Note("GoogleWebFontsEnabled", enabled);
  }
  TErrCode PushFontActivatedNotification(unsigned int id) override { return Note("FontActivated", id); }
  TErrCode PushFontDeactivatedNotification(unsigned int id) override { return Note("FontDeactivated", id); }
  TErrCode PushFontMissingNotification(unsigned int id) override { return Note("FontMissing", id); }
  TErrCode PushFontNonCompliantNotification(unsigned int id) override { return Note("FontNonCompliant", id); }
  TErrCode PushBulkReplicationProgressNotification(CFDictionaryRef pairs) override {
    return Note("BulkProgress", Pairs(pairs));
  }
  TErrCode PushBulkReplicationStoppedNotification() override { return Note("BulkStopped"); }
  TErrCode PushIncrementalReplicationProgressNotification(CFDictionaryRef pairs) override {
    return Note("IncrementalProgress", Pairs(pairs));
  }
  TErrCode PushIncrementalReplicationStoppedNotification() override { return Note("IncrementalStopped"); }
  TErrCode PushGoogleReplicationProgressNotification(CFDictionaryRef pairs) override {
    return Note("GoogleProgress", Pairs(pairs));
  }
  TErrCode PushGoogleReplicationStoppedNotification() override { return Note("GoogleStopped"); }
  TErrCode PushFontServerReplicationProgressNotification(CFDictionaryRef pairs) override {
    return Note("FontServerProgress", Pairs(pairs));
  }
  TErrCode PushFontServerReplicationStoppedNotification() override { return Note("FontServerStopped"); }
  TErrCode PushDataChangedNotification() override { return Note("DataChanged"); }
  TErrCode PushSmartListsChangedNotification() override { return Note("SmartListsChanged"); }
  TErrCode PushOfflineDownloadFinishedNotification() override { return Note("OfflineDownloadFinished"); }
  TErrCode OpenSocket() override { return Note("OpenSocket"); }
  TErrCode SelectSocket(bool close) override { return Note("SelectSocket", close); }
  unsigned int GetSocketPort() override { return 0; }
  TErrCode SendFontImages(CFDictionaryRef pairs) override { return Note("FontImages", Pairs(pairs)); }
  TErrCode CheckForTypekit() override { return Note("CheckForTypekit"); }

 private:
  static long Pairs(CFDictionaryRef pairs) { return pairs == nullptr ? -1 : CFDictionaryGetCount(pairs); }

  TErrCode Note(const std::string& call) {
    calls.push_back(call);
    const auto found = results.find(call);
    return found == results.end() ? 0 : found->second;
  }
  TErrCode Note(const std::string& call, long value) { return Note(call + " " + std::to_string(value)); }
};
