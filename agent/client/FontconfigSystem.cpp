#include "client/FontconfigSystem.h"

#include <filesystem>
#include <unordered_set>
#include <utility>

static_assert(FC_VERSION >= 21400, "before 2.14 FcConfigSetCurrent() takes over the caller's reference");

namespace {

const FcChar8* AsFcText(const std::string& text) {
  return reinterpret_cast<const FcChar8*>(text.c_str());
}

int ApplicationFontCount(FcConfig* config) {
  const FcFontSet* set = FcConfigGetFonts(config, FcSetApplication);
  return set == nullptr ? 0 : set->nfont;
}

}  // namespace

FontconfigSystem::Patterns FontconfigSystem::ScanInto(FcConfig* config, const std::string& file) {
  const int before = ApplicationFontCount(config);
  FcConfigAppFontAddFile(config, AsFcText(file));
  const FcFontSet* set = FcConfigGetFonts(config, FcSetApplication);
  Patterns found;
  for (int i = before; set != nullptr && i < set->nfont; ++i) {
    FcPatternReference(set->fonts[i]);
    found.emplace_back(set->fonts[i]);
  }
  return found;
}

// A new application set comes into being only by adding a file; the other files need no second reading.
void FontconfigSystem::AddKept(FcConfig* config) {
  FcFontSet* set = nullptr;
  for (auto& [file, patterns] : mFiles) {
    if (set == nullptr) {
      if (Patterns fresh = ScanInto(config, file); !fresh.empty()) patterns = std::move(fresh);
      set = FcConfigGetFonts(config, FcSetApplication);
      continue;
    }
    for (const auto& pattern : patterns) {
      FcPatternReference(pattern.get());
      if (!FcFontSetAdd(set, pattern.get())) FcPatternDestroy(pattern.get());
    }
  }
}

void FontconfigSystem::Adopt(Config config) {
  mRescanInterval = FcConfigGetRescanInterval(config.get());
  FcConfigSetRescanInterval(config.get(), 0);
  mAdopted = std::move(config);
}

std::vector<bool> FontconfigSystem::AddFiles(const std::vector<std::string>& files) {
  std::vector<bool> seen(files.size(), false);
  std::scoped_lock lock(mMutex);
  Config current = Current();
  if (current == nullptr) return seen;
  if (current != mAdopted) {
    // The first fonts, or the host has made another configuration current in between.
    AddKept(current.get());
    Adopt(std::move(current));
  }
  for (std::size_t i = 0; i < files.size(); ++i) {
    Patterns& patterns = mFiles[files[i]];
    if (patterns.empty()) patterns = ScanInto(mAdopted.get(), files[i]);
    seen[i] = !patterns.empty();
    if (!seen[i]) mFiles.erase(files[i]);
  }
  return seen;
}

void FontconfigSystem::RemoveFiles(const std::vector<std::string>& files) {
  std::scoped_lock lock(mMutex);
  bool changed = false;
  for (const std::string& file : files) changed |= mFiles.erase(file) != 0;
  if (!changed) return;

  Config current = Current();
  if (current == nullptr) return;
  FcConfigAppFontClear(current.get());
  AddKept(current.get());
  if (mFiles.empty()) {
    if (current == mAdopted) FcConfigSetRescanInterval(current.get(), mRescanInterval);
    mAdopted.reset();
  } else if (current != mAdopted) {
    Adopt(std::move(current));
  }
}

void FontconfigSystem::ForgetFiles(const std::vector<std::string>& files) {
  std::scoped_lock lock(mMutex);
  for (const std::string& file : files) mFiles.erase(file);
}

void FontconfigSystem::Reload() {
  Config fresh(FcInitLoadConfigAndFonts());
  if (fresh == nullptr) return;

  std::scoped_lock lock(mMutex);
  Config replaced = Current();
  AddKept(fresh.get());
  if (!FcConfigSetCurrent(fresh.get())) return;
  mReplaced = std::move(replaced);
  mAdopted.reset();
  if (!mFiles.empty()) Adopt(std::move(fresh));
}

std::size_t FontconfigSystem::CountInFolders(const std::set<std::string>& files) {
  std::unordered_set<std::string> wanted;
  for (const std::string& file : files) wanted.insert(std::filesystem::path(file).lexically_normal());
  const Config current = Current();
  const FcFontSet* set = current == nullptr ? nullptr : FcConfigGetFonts(current.get(), FcSetSystem);
  std::size_t found = 0;
  for (int i = 0; set != nullptr && i < set->nfont && !wanted.empty(); ++i) {
    FcChar8* file = nullptr;
    if (FcPatternGetString(set->fonts[i], FC_FILE, 0, &file) == FcResultMatch) {
      found += wanted.erase(reinterpret_cast<const char*>(file));
    }
  }
  return found;
}

bool FontconfigSystem::IsStale() {
  Config current;
  {
    std::scoped_lock lock(mMutex);
    if (mFiles.empty()) return false;
    current = Current();
    if (current != mAdopted) return true;
  }
  return !FcConfigUptoDate(current.get());
}

std::chrono::seconds FontconfigSystem::CheckInterval() {
  std::scoped_lock lock(mMutex);
  return std::chrono::seconds(mAdopted == nullptr ? 0 : mRescanInterval);
}
