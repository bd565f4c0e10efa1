#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// The 24 entries of the UI framework, as a plug-in binds them by name.
///
/// Life: LoomIsVersionCompatible(), then LoomInitializeFramework(), then the rest in any order. The rest also
/// works without an initialisation; texts then speak of "Kiln" and "the host application".
///
/// What is asked and shown goes to the user's terminal when standard input and standard error are one.
/// LOOM_TERMINAL_PROMPT=0 in the environment says there is none. Without one every box is answered by rule,
/// with one line on standard error that tells the box and the answer: a notice by its one button, a question
/// by its last button (the one that gives up, so that nothing is tried for ever), a text by the proposed one,
/// a choice of fonts by no choice.
///
/// Preferences live in `$XDG_CONFIG_HOME/hornbeam/Preferences.plist` (`~/.config` when unset), an XML
/// property list that other processes may change at any time. LOOM_PREFERENCES="Key=1;Key2=0" overrides
/// preferences for this process; an override always wins and is never stored.
///
/// Strings are UTF-8 inside. Null arguments are taken as absent. No entry throws. Thread: main.
#define LOOM_EXPORT __attribute__((visibility("default")))

extern "C" {

/// \param version  The version of these entries that the caller was built for.
/// \return True for "1.0" alone.
LOOM_EXPORT bool LoomIsVersionCompatible(const char* version);

/// Starts the framework. The dictionary is read now: "HostApp", "PluginVersion",
/// "TalworthPluginInterfaceVersion" and "FontManager" are strings, "FrameworkURL" a URL or its string; each
/// may be missing. It is retained, since "FontManager" may be set later and is read at each text.
///
/// \return 0 when the framework is up; 1 for a null dictionary.
LOOM_EXPORT int LoomInitializeFramework(CFMutableDictionaryRef startup);

/// The sentence for a key, with the names of the font manager and of the host filled in; the key itself when
/// it isn't known. A "%@" stays, for the caller to fill.
/// \return A new string, the caller's; null for a null key.
LOOM_EXPORT CFStringRef LoomLocalizedString(CFStringRef key);

/// The name by which users know the host, "InDesign" say.
/// \return Never null. The framework's; it stays valid.
LOOM_EXPORT CFStringRef LoomGetHostAppDisplayName(void);

/// \return False for a preference that isn't set or has no truth value; a number counts when it isn't 0.
LOOM_EXPORT bool LoomGetPreferenceForKey(CFStringRef key);
/// The value is stored when the call returns; what can't be stored is said on standard error and holds for
/// this process. The same goes for the other two kinds.
LOOM_EXPORT void LoomSetPreferenceForKey(CFStringRef key, bool value);
/// \return 0 for a preference that isn't set or is no number.
LOOM_EXPORT long LoomGetLongPreferenceForKey(CFStringRef key);
LOOM_EXPORT void LoomSetLongPreferenceForKey(CFStringRef key, long value);
/// \return Null for a preference that isn't set or is no text. The framework's; it stays valid until the next
///         call for the same key.
LOOM_EXPORT CFStringRef LoomGetStringPreferenceForKey(CFStringRef key);
/// A null value removes the preference.
LOOM_EXPORT void LoomSetStringPreferenceForKey(CFStringRef key, CFStringRef value);
/// True when preferences have ever been stored; overrides don't count, nor does the selected workgroup alone,
/// which is stored before a plug-in's first start is over.
LOOM_EXPORT bool LoomDoPreferencesExist(void);

LOOM_EXPORT void LoomShowAboutBox(void);

/// Shows a box; header and message are keys, or texts that are shown as they are. The header may be null.
/// \param buttons  1 or less for a notice, which the user only takes note of; 2 for a question with the
/// buttons
///                 Yes and No.
/// \return The button, 1 for the first. A notice gives 1.
LOOM_EXPORT int LoomShowMessageBox(CFStringRef headerKey, CFStringRef messageKey, int buttons);

/// Asks for one line of text. An empty answer takes the proposed text.
/// \param outString  Receives a new string, the caller's; untouched on a cancel. Must not be null.
/// \return False when the user cancels (end of input) or `outString` is null.
LOOM_EXPORT bool LoomAskForOneString(CFStringRef title, CFStringRef prompt, CFStringRef proposed,
                                     CFStringRef* outString);

/// Shows the preferences and where they are stored, and lets the user switch them.
LOOM_EXPORT void LoomShowPreferences(void);

/// Lets the user choose a replacement for each problem font.
/// \param problemFonts  Mutable dictionaries with "PostScriptName" and perhaps "PossibleReplacements", an
/// array
///                      of font records. A choice is written under "MatchedFont"; a record that isn't a
///                      dictionary or has no replacements is left alone.
LOOM_EXPORT void LoomShowResolveFonts(CFArrayRef problemFonts);

/// Tells which fonts may not be used under the compliance rules of the font manager.
LOOM_EXPORT void LoomShowRestrictedFonts(CFArrayRef fonts);

/// A question whose first button goes ahead with a command.
/// \return 1 to go ahead, 2 to leave it.
LOOM_EXPORT int LoomShowCommandBox(CFStringRef headerKey, CFStringRef messageKey);

/// Progress of long work, on one line of the terminal; nothing without a terminal.
LOOM_EXPORT void LoomShowProgress(CFStringRef title);
/// \param steps  0 or less when their number isn't known.
LOOM_EXPORT void LoomUpdateProgress(CFStringRef text, int step, int steps);
LOOM_EXPORT void LoomHideProgress(void);

/// Remembers whether the font manager is online, for the about box.
LOOM_EXPORT void LoomSetIsOnline(bool online);

/// Further details of the host; "HostAppDisplayName" takes the place of the name that the host's code stands
/// for.
LOOM_EXPORT void LoomSetHostDetails(CFDictionaryRef details);

/// Tells which fonts of a document stay missing.
LOOM_EXPORT void LoomShowMissingFonts(CFArrayRef fonts);
}
