#include "client/Entries/EntryGuard.h"

#include <cstring>

#include "Memory/CFVector.h"

ErrCode EntryGuard::ReadText(const char* argument, std::string& text) {
  if (argument == nullptr) return CoreErrorCodes::kNullPointer;
  if (ToCFString(argument) == nullptr) return CoreErrorCodes::kInvalidParam;
  text = argument;
  return CoreErrorCodes::kSuccess;
}

ErrCode EntryGuard::FillBuffer(std::string_view text, char* buffer, unsigned long size) {
  if (buffer == nullptr) return CoreErrorCodes::kNullPointer;
  if (text.size() >= size) return CoreErrorCodes::kIndexOutOfRange;
  std::memcpy(buffer, text.data(), text.size());
  buffer[text.size()] = '\0';
  return CoreErrorCodes::kSuccess;
}
