#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>

#include "Memory/RetainPtr.h"
#include "protocol/Kiln.pb.h"

/// Between the records that cross the entries (RecordKeys.h) and the messages of the wire.
namespace FontRecords {

/// What the agent knows of a font. Texts that are empty and numbers that aren't known are left out.
RetainPtr<CFMutableDictionaryRef> MakeRecord(const kiln::wire::Font& font);

/// Adds what the raw state means: "IsActive", "IsTemp", "IsAutoActivated".
void PutMeaningOfState(CFMutableDictionaryRef record, kiln::wire::ActivationState state);

/// Whether the font is active in this state, for all programs or for one.
bool IsActive(kiln::wire::ActivationState state);

/// The identity data of a record; nothing when it has no PostScript name.
std::optional<kiln::wire::FontIdentity> ReadIdentity(CFDictionaryRef record);

/// Decimal texts.
RetainPtr<CFMutableArrayRef> MakeIDList(const google::protobuf::RepeatedField<uint32_t>& ids);

RetainPtr<CFMutableDictionaryRef> MakeWorkgroupRecord(const kiln::wire::Workgroup& workgroup);

}  // namespace FontRecords
