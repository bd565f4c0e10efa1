#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// Names of the stored preferences. The values live in the UI framework's store; defaults are written once,
/// at the plug-in's first start.

// Boolean preferences.
inline const CFStringRef kEnablePluginPrefKey = CFSTR("EnablePlugin");
inline const CFStringRef kEnableGlyphMarkPrefKey = CFSTR("EnableGlyphMark");
inline const CFStringRef kDialogSuppressionPrefKey = CFSTR("DialogSuppression");  // written, read by nobody
inline const CFStringRef kPickBestMatchPrefKey = CFSTR("PickBestMatch");
inline const CFStringRef kSupportEmbeddedObjectsPrefKey = CFSTR("SupportEmbeddedObjects");
inline const CFStringRef kCloseFontsOnHostAppQuitPrefKey = CFSTR("CloseFontsOnHostAppQuit");
inline const CFStringRef kCloseFontsOnDocClosePrefKey = CFSTR("CloseFontsOnDocClose");
inline const CFStringRef kActivateEntireFamiliesPrefKey = CFSTR("ActivateEntireFamilies");
inline const CFStringRef kEnableLoggingPrefKey = CFSTR("EnableLogging");
inline const CFStringRef kActivateLocallyPrefKey = CFSTR("ActivateLocally");
inline const CFStringRef kActivateGloballyPrefKey = CFSTR("ActivateGlobally");
inline const CFStringRef kSuppressPanelLaunchPrefKey = CFSTR("SuppressPanelLaunch");
inline const CFStringRef kDropDownSelectionSavesSmartListsPrefKey = CFSTR("DropDownSelectionSavesSmartLists");
inline const CFStringRef kGWFHaveEverBeenEnabledPrefKey = CFSTR("GWFHaveEverBeenEnabled");

// Whole numbers.
inline const CFStringRef kCS5PanelWidthPrefKey = CFSTR("CS5PanelWidth");
inline const CFStringRef kCS5PanelHeightPrefKey = CFSTR("CS5PanelHeight");
inline const CFStringRef kDropDownSelectionPrefKey = CFSTR("DropDownSelection");
inline const CFStringRef kCurrentWorkgroupPrefKey = CFSTR("CurrentWorkgroup");
