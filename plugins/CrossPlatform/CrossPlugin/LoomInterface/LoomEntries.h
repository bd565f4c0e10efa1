// The entries of the UI framework, in the order in which they are bound: the one list from which the
// pointers, the binding and the self-check are made. It is included several times, so it has no include
// guard. The includer defines LOOM_ENTRY(result, name, parameters...).
//
// clang-format off
#ifndef LOOM_ENTRY
#error "Define LOOM_ENTRY before including LoomEntries.h"
#endif

LOOM_ENTRY(bool, LoomIsVersionCompatible, const char* version)
LOOM_ENTRY(int, LoomInitializeFramework, CFMutableDictionaryRef startup)  // 0 = up
LOOM_ENTRY(CFStringRef, LoomLocalizedString, CFStringRef key)             // the caller releases
LOOM_ENTRY(CFStringRef, LoomGetHostAppDisplayName)                        // the framework keeps it
LOOM_ENTRY(bool, LoomGetPreferenceForKey, CFStringRef key)
LOOM_ENTRY(void, LoomSetPreferenceForKey, CFStringRef key, bool value)
LOOM_ENTRY(long, LoomGetLongPreferenceForKey, CFStringRef key)
LOOM_ENTRY(void, LoomSetLongPreferenceForKey, CFStringRef key, long value)
LOOM_ENTRY(CFStringRef, LoomGetStringPreferenceForKey, CFStringRef key)
LOOM_ENTRY(void, LoomSetStringPreferenceForKey, CFStringRef key, CFStringRef value)
LOOM_ENTRY(bool, LoomDoPreferencesExist)
LOOM_ENTRY(void, LoomShowAboutBox)
LOOM_ENTRY(int, LoomShowMessageBox, CFStringRef headerKey, CFStringRef messageKey, int buttons)  // 1 = first button
LOOM_ENTRY(bool, LoomAskForOneString, CFStringRef title, CFStringRef prompt, CFStringRef proposed,
                                      CFStringRef* outString)             // false = cancel; the caller releases
LOOM_ENTRY(void, LoomShowPreferences)
LOOM_ENTRY(void, LoomShowResolveFonts, CFArrayRef problemFonts)           // writes into the records
LOOM_ENTRY(void, LoomShowRestrictedFonts, CFArrayRef fonts)
LOOM_ENTRY(int, LoomShowCommandBox, CFStringRef headerKey, CFStringRef messageKey)
LOOM_ENTRY(void, LoomShowProgress, CFStringRef title)
LOOM_ENTRY(void, LoomUpdateProgress, CFStringRef text, int step, int steps)
LOOM_ENTRY(void, LoomHideProgress)
LOOM_ENTRY(void, LoomSetIsOnline, bool online)
LOOM_ENTRY(void, LoomSetHostDetails, CFDictionaryRef details)
LOOM_ENTRY(void, LoomShowMissingFonts, CFArrayRef fonts)

// clang-format on
#undef LOOM_ENTRY
