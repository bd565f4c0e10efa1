#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFError.h>
#include <CoreFoundation/CFURL.h>

/// A folder with an Info property list, resources, and one shared object.
///
/// The Info.plist lies in `Contents/`, `Resources/` or the folder itself, the first that has one. The shared
/// object (or program) that its CFBundleExecutable names lies in `Contents/Linux/`, `Contents/` or the folder
/// itself. Resources lie in `Resources/` beside the Info.plist (or in the folder, when that is `Resources/`),
/// localized ones in `Resources/<development region, else en>.lproj/`.
///
/// Life of one bundle: there is one object for a folder; creating it again gives the same one. While anybody
/// holds it, everybody finds it by its identifier: so does a plug-in its own, which the host has created. The
/// executable, once loaded, stays loaded when the object goes, since code from it may still be called; only
/// CFBundleUnloadExecutable() lets go of it.
///
/// Thread: any.

using CFBundleRef = struct __CFBundle*;

/// The code in kCFErrorDomainCocoa of an executable that can't be loaded.
constexpr CFIndex kCFBundleExecutableLoadError = 3587;

CF_EXTERN_C_BEGIN

extern const CFStringRef kCFBundleInfoDictionaryVersionKey;
extern const CFStringRef kCFBundleExecutableKey;
extern const CFStringRef kCFBundleIdentifierKey;
extern const CFStringRef kCFBundleVersionKey;
extern const CFStringRef kCFBundleDevelopmentRegionKey;
extern const CFStringRef kCFBundleNameKey;

CFTypeID CFBundleGetTypeID();

/// \name Finding bundles
/// @{

/// NULL when there is no such folder. One without an Info.plist, or with one that can't be read, is a bundle
/// with an empty Info dictionary. The caller owns the result.
CFBundleRef CFBundleCreate(CFAllocatorRef allocator, CFURLRef bundleURL);
/// Those in `folder` whose names end in "." and `type` (NULL: any folder), sorted by name. The caller owns
/// the result.
CFArrayRef CFBundleCreateBundlesFromDirectory(CFAllocatorRef allocator, CFURLRef folder, CFStringRef type);
/// The bundle of the running program, by /proc/self/exe: the folder around `Contents/Linux/` or `Contents/`,
/// else the program's folder. Never NULL, lives for ever.
CFBundleRef CFBundleGetMainBundle();
/// Among the main bundle and those that somebody holds; NULL when there is none. Not the caller's.
CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier);
/// The same bundles as an array, which doesn't retain them; good until this thread asks again.
CFArrayRef CFBundleGetAllBundles();
/// @}

/// \name The Info dictionary. Nothing given is the caller's.
/// @{

CFDictionaryRef CFBundleGetInfoDictionary(CFBundleRef bundle);
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle);
/// @}

/// \name Places. The caller owns each result.
/// @{

CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle);
/// NULL when there is no such file.
CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle);
/// `Frameworks/` and `PlugIns/` beside the Info.plist; they need not exist.
CFURLRef CFBundleCopyPrivateFrameworksURL(CFBundleRef bundle);
CFURLRef CFBundleCopyBuiltInPlugInsURL(CFBundleRef bundle);
CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle);
/// A resource `name`, with "." and `type` when that isn't NULL or empty, in `subfolder` (may be NULL) of the
/// resources, else of the localized ones. NULL when there is none.
CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type,
                                 CFStringRef subfolder);
/// The text for `key` in the localized `<table>.strings` ("Localizable" for NULL), else `value`, else `key`.
/// A table is read once.
CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                        CFStringRef table);
/// @}

/// \name Code
/// @{

/// Opens the executable with all its symbols resolved and none given to others. True also when it is open.
Boolean CFBundleLoadExecutable(CFBundleRef bundle);
/// As above; `error` receives the loader's words, the caller's. May be NULL.
Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle, CFErrorRef* error);
Boolean CFBundleIsExecutableLoaded(CFBundleRef bundle);
void CFBundleUnloadExecutable(CFBundleRef bundle);
/// Loads the executable if need be. NULL when it can't, or has no such symbol.
void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef name);
void* CFBundleGetDataPointerForName(CFBundleRef bundle, CFStringRef name);
/// @}

CF_EXTERN_C_END
