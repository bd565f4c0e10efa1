#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// Reading the workgroup of a workgroup's or a font's record. Null and missing values read as 0. Any thread.

/// kGM_WorkgroupTypeKey, as a text, which is how the agent writes it, or as a number, which is how
/// GetAllWorkgroupsForUser() writes it into the records that it gives a name.
long GetWorkgroupType(CFDictionaryRef record);

/// kGM_WorkgroupIDKey in 32 bits, in which "all workgroups" is -2 whichever sign it was written with.
int GetWorkgroupRecordID(CFDictionaryRef record);
