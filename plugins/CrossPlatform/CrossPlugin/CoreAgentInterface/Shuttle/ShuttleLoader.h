#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

#include "CoreAgentInterface/Shuttle/ShuttleFunctions.h"
#include "Memory/RetainPtr.h"

/// Finds the agent's client library, the bundle "TalworthPluginInterface.framework", and binds its entries.
///
/// Life of the shared instance:
///   1. Not created.
///   2. Created without a bundle: every pointer null, kNeverBound entries missing, both texts empty.
///   3. Bound, wholly or in part. A partly bound table is used entry by entry, but IsLoaded() says false,
///      and no manager is made on it.
/// The search runs once, in the first call of GetSharedInstance(); the bundle then stays for the life of the
/// process.
///
/// Each entry has a pointer `pfName` and an operation `Name(arguments...)` that calls through it, with a
/// freshly fetched facade in front where the entry wants one. A call through a pointer that was not bound
/// does nothing and gives kEntryMissing (0 for a flag, null for the facade), with the out arguments
/// untouched.
///
/// Thread: the first GetSharedInstance() on the main thread, where it can take seconds, since it may start
/// the font manager; later any, the table doesn't change any more.
class ShuttleLoader : public ShuttleFunctions {
 public:
  /// The missing count of a loader that never had a bundle. It isn't the number of entries: it says "never
  /// bound" apart from "all missing".
  static constexpr int kNeverBound = 86;

  /// CoreErrorCodes::kNotInitialized: the entry isn't there.
  static constexpr ErrCode kEntryMissing = 0x11000000;

  /// The bundle's name, in each of its three places.
  static constexpr const char* kFrameworkName = "TalworthPluginInterface.framework";

  /// Looks for the bundle on the first call: in the plug-in's private frameworks, then beside the running
  /// font manager, which is started if it doesn't run, then in /Library/Frameworks below the system's root.
  ///
  /// \return Never null, also when nothing was found. Not owned; it is never freed.
  static ShuttleLoader* GetSharedInstance();

  /// For tests: puts `instance` in the place of the shared one. Not owned. Null makes the next
  /// GetSharedInstance() search again.
  ///
  /// \return The instance that stood there, now the caller's.
  static ShuttleLoader* ReplaceSharedInstanceForTesting(ShuttleLoader* instance);

  /// A loader without a bundle.
  ShuttleLoader();

  /// A loader over a table that was filled elsewhere, such as a fake of the library. The missing count is the
  /// number of null entries.
  ShuttleLoader(const ShuttleFunctions& functions, std::string location, std::string version);

  ShuttleLoader(const ShuttleLoader&) = delete;
  ShuttleLoader& operator=(const ShuttleLoader&) = delete;
  virtual ~ShuttleLoader() = default;

  /// Where the library is and whether it can be relied on.
  ///
  /// \param outLocation  The folder that holds the bundle, never with the bundle's name in it; it ends in "/"
  ///        exactly when the bundle was found beside the running font manager.
  /// \param outVersion  The bundle's CFBundleShortVersionString, empty when it has none.
  /// \return True when every entry is bound. False with nothing written when one of the pointers is null.
  bool IsLoaded(std::string* outLocation, std::string* outVersion, int* outMissingCount) const;

  /// \return The version as a new string, which the caller releases.
  CFStringRef VersionStringRef() const;

  /// Binds all entries of `bundle` in the order of the table and counts what is missing. A null bundle makes
  /// all pointers null and leaves the count alone.
  static void ResetFunctionPointers(ShuttleLoader* loader, const void* bundle);

  /// A self-check: logs each entry that is not as expected.
  ///
  /// \return True when all entries are.
  bool VerifyThatAllMembersAre(bool expectBound) const;

#define AGENT_ENTRY(name, ...)                      \
  template <typename... Arguments>                  \
  ErrCode name(Arguments... arguments) const {      \
    return CallAgent(this->pf##name, arguments...); \
  }
#define FLAG_ENTRY(name)                              \
  int name() const {                                  \
    if (this->pf##name == nullptr) return 0;          \
    return this->pf##name(GetPluginFacadeInstance()); \
  }
#define COLUMN_ENTRY(name)                                                \
  ErrCode name(char* buffer, unsigned long size) const {                  \
    return this->pf##name ? this->pf##name(buffer, size) : kEntryMissing; \
  }
#define PLAIN_ENTRY(result, name, ...)              \
  template <typename... Arguments>                  \
  result name(Arguments... arguments) const {       \
    return CallPlain(this->pf##name, arguments...); \
  }
#include "CoreAgentInterface/Shuttle/ShuttleEntries.h"

 private:
  template <typename... Parameters, typename... Arguments>
  ErrCode CallAgent(ErrCode (*entry)(FacadeRef, Parameters...), Arguments... arguments) const {
    if (entry == nullptr || pfGetPluginFacadeInstance == nullptr) return kEntryMissing;
    return entry(pfGetPluginFacadeInstance(), arguments...);
  }

  template <typename... Parameters, typename... Arguments>
  ErrCode CallPlain(ErrCode (*entry)(Parameters...), Arguments... arguments) const {
    return entry == nullptr ? kEntryMissing : entry(arguments...);
  }

  FacadeRef CallPlain(FacadeRef (*entry)()) const {
    return entry == nullptr ? nullptr : entry();
  }

  void FindAndBind();

  std::string m_location;
  std::string m_version;
  int m_nMissing = kNeverBound;
  RetainPtr<CFBundleRef> m_bundle;

  static ShuttleLoader* sSharedInstance;
};
