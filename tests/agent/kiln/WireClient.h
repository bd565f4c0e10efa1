#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "protocol/Framing.h"
#include "protocol/Kiln.pb.h"

/// A client of Kiln as bare as the wire: it says what a test tells it to, sound or not.
class WireClient {
 public:
  static constexpr const char* kFirstUuid = "11111111-1111-1111-1111-111111111111";
  static constexpr const char* kSecondUuid = "22222222-2222-2222-2222-222222222222";

  /// Waits until Kiln listens. With an empty uuid it says no Hello.
  explicit WireClient(const std::string& uuid = kFirstUuid);
  ~WireClient();
  WireClient(const WireClient&) = delete;
  WireClient& operator=(const WireClient&) = delete;

  /// Sends a request and waits for its final reply; events and progress that come before it are kept.
  kiln::wire::ServerMessage Ask(kiln::wire::ClientMessage request);
  /// Waits for an event of a kind, among those kept and those to come. Nothing when the connection ends
  /// first.
  std::optional<kiln::wire::ServerMessage> WaitForEvent(kiln::wire::ServerMessage::BodyCase kind);
  const std::vector<kiln::wire::AddFilesProgress>& Progress() const { return mProgress; }

  void SendBytes(const std::string& bytes);
  /// Sends without waiting for the answer.
  void Send(const kiln::wire::ClientMessage& request);
  /// Waits for the end of the connection, whatever comes before it.
  bool WaitForEnd();
  void Close();

  // What most tests ask.
  kiln::wire::AddFilesReply AddFiles(const std::vector<std::string>& paths);
  kiln::wire::ActivateDocumentFontsReply OpenDocument(const std::vector<std::string>& names);
  kiln::wire::ActivateFontsReply Activate(std::vector<uint32_t> ids, kiln::wire::ActivationMode mode);
  kiln::wire::DeactivateFontsReply Deactivate(std::vector<uint32_t> ids, bool byHand = false);
  bool Holds(uint32_t id);
  kiln::wire::ActivationState StateOf(uint32_t id);
  uint32_t IdOf(const std::string& postScriptName);

 private:
  bool Read(kiln::wire::ServerMessage& message);

  int mSocket = -1;
  uint32_t mNextID = 1;
  kiln::FrameReader mFrames;
  std::deque<kiln::wire::ServerMessage> mEvents;
  std::vector<kiln::wire::AddFilesProgress> mProgress;
};
