#include "client/Entries/EntryGuard.h"

#include <cstring>
#include <filesystem>

#include "GFileSystem.h"
#include "Memory/CFVector.h"

ErrCode EntryGuard::ReadText(const char* argument, std::string& text) {
  if (argument == nullptr) return CoreErrorCodes::kNullPointer;
  if (ToCFString(argument) == nullptr) return CoreErrorCodes::kInvalidParam;
  text = argument;
  return CoreErrorCodes::kSuccess;
}

ErrCode EntryGuard::ReadPath(const char* argument, std::string& path) {
  std::string text;
  if (const ErrCode code = ReadText(argument, text)) return code;
  if (text.empty()) return CoreErrorCodes::kInvalidParam;
  std::error_code error;
  const std::string whole = std::filesystem::absolute(text, error);
  if (error || ToCFString(whole) == nullptr) return GFileSystem::kInvalidPath;
  path = whole;
  return CoreErrorCodes::kSuccess;
}

ErrCode EntryGuard::Order(Session& session, kiln::wire::ClientMessage& request, const CallLimit& limit) {
  Connection::Incoming reply;
  return session.Call(request, reply, limit);
}

Connection::ProgressSink EntryGuard::TellCounts(KilnProgressProc progress, void* context) {
  return [=](const kiln::wire::ServerMessage& message) {
    if (progress == nullptr || !message.has_task_progress()) return;
    progress(message.task_progress().done(), message.task_progress().total(), "", context);
  };
}

ErrCode EntryGuard::FillBuffer(std::string_view text, char* buffer, unsigned long size) {
  if (buffer == nullptr) return CoreErrorCodes::kNullPointer;
  if (text.size() >= size) return CoreErrorCodes::kIndexOutOfRange;
  std::memcpy(buffer, text.data(), text.size());
  buffer[text.size()] = '\0';
  return CoreErrorCodes::kSuccess;
}
