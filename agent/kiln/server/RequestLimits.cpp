#include "kiln/server/RequestLimits.h"

#include <google/protobuf/io/coded_stream.h>
#include <google/protobuf/wire_format_lite.h>

#include <algorithm>
#include <climits>
#include <cstdint>

namespace kiln {
namespace {

using google::protobuf::internal::WireFormatLite;
using google::protobuf::io::CodedInputStream;

// Fields of the request that is the message's body. False at what is no message.
bool CountFields(CodedInputStream& input, size_t& count) {
  while (const uint32_t tag = input.ReadTag()) {
    if (!WireFormatLite::SkipField(&input, tag)) return false;
    if (++count > kMostEntries) return true;
  }
  return true;
}

int CountOfIDs(const wire::ClientMessage& message) {
  switch (message.body_case()) {
    case wire::ClientMessage::kActivateFonts:
      return message.activate_fonts().font_ids_size();
    case wire::ClientMessage::kDeactivateFonts:
      return message.deactivate_fonts().font_ids_size();
    case wire::ClientMessage::kClientActivationStates:
      return message.client_activation_states().font_ids_size();
    case wire::ClientMessage::kFontIsActivated:
      return message.font_is_activated().font_ids_size();
    case wire::ClientMessage::kSetCompliance:
      return message.set_compliance().font_ids_size();
    case wire::ClientMessage::kFontConflicts:
      return message.font_conflicts().font_ids_size();
    case wire::ClientMessage::kFontInfo:
      return message.font_info().workgroup_ids_size();
    case wire::ClientMessage::kFontsByName:
      return message.fonts_by_name().workgroup_ids_size();
    case wire::ClientMessage::kListFonts:
      return message.list_fonts().workgroup_ids_size();
    case wire::ClientMessage::kFamilyFonts:
      return message.family_fonts().workgroup_ids_size();
    case wire::ClientMessage::kChangeWorkgroupFonts:
      return message.change_workgroup_fonts().font_ids_size();
    case wire::ClientMessage::kCreateSet:
      return message.create_set().font_ids_size();
    case wire::ClientMessage::kAddFontsToSets:
      return std::max(message.add_fonts_to_sets().font_ids_size(),
                      message.add_fonts_to_sets().set_ids_size());
    case wire::ClientMessage::kListSets:
      return message.list_sets().workgroup_ids_size();
    case wire::ClientMessage::kExportFonts:
      return message.export_fonts().font_ids_size();
    case wire::ClientMessage::kCanExportFonts:
      return message.can_export_fonts().font_ids_size();
    default:
      return 0;
  }
}

}  // namespace

bool HasTooManyEntries(std::string_view message) {
  CodedInputStream input(reinterpret_cast<const uint8_t*>(message.data()), static_cast<int>(message.size()));
  size_t count = 0;
  while (const uint32_t tag = input.ReadTag()) {
    uint32_t length = 0;
    if (WireFormatLite::GetTagWireType(tag) != WireFormatLite::WIRETYPE_LENGTH_DELIMITED) {
      if (!WireFormatLite::SkipField(&input, tag)) return false;
      continue;
    }
    if (!input.ReadVarint32(&length) || length > message.size()) return false;
    const CodedInputStream::Limit limit = input.PushLimit(static_cast<int>(length));
    if (!CountFields(input, count)) return false;
    if (count > kMostEntries) return true;
    input.PopLimit(limit);
  }
  return false;
}

bool IsWithinLimits(const wire::ClientMessage& message) {
  return static_cast<size_t>(CountOfIDs(message)) <= kMostEntries;
}

bool IsPath(const std::string& text) {
  return !text.empty() && text.front() == '/' && text.size() < PATH_MAX &&
         text.find('\0') == std::string::npos;
}

}  // namespace kiln
