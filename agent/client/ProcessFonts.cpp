#include "client/ProcessFonts.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

ProcessFonts::ProcessFonts(std::unique_ptr<FontSystem> system) : mSystem(std::move(system)) {}

std::vector<unsigned int> ProcessFonts::Activate(const std::vector<Font>& fonts, uint64_t order) {
  std::scoped_lock lock(mMutex);
  std::vector<std::string> files;
  files.reserve(fonts.size());
  for (const Font& font : fonts) files.push_back(font.file);
  const std::vector<bool> seen = mSystem->AddFiles(files);

  std::vector<unsigned int> unseen;
  std::vector<std::string> left;
  for (std::size_t i = 0; i < fonts.size(); ++i) {
    const auto& [id, file, local] = fonts[i];
    if (!seen[i]) {
      unseen.push_back(id);
      continue;
    }
    if (const auto place = mPlaces.find(id); place != mPlaces.end() && place->second.file != file) {
      std::ranges::move(Forget({id}), std::back_inserter(left));
    }
    const auto [place, isNew] = mPlaces.try_emplace(id, Place{file, order, local});
    if (isNew) ++mFontsInFile[file];
    place->second.order = order;
    place->second.local &= local;
  }
  if (!left.empty()) mSystem->RemoveFiles(left);
  return unseen;
}

// With mMutex held; gives the files that no font is left in.
std::vector<std::string> ProcessFonts::Forget(const std::vector<unsigned int>& fontIDs) {
  std::vector<std::string> files;
  for (const unsigned int id : fontIDs) {
    const auto place = mPlaces.find(id);
    if (place == mPlaces.end()) continue;
    const auto file = mFontsInFile.find(place->second.file);
    if (--file->second == 0) {
      files.push_back(file->first);
      mFontsInFile.erase(file);
    }
    mPlaces.erase(place);
  }
  return files;
}

void ProcessFonts::Deactivate(const std::vector<unsigned int>& gone,
                              const std::vector<unsigned int>& released) {
  std::scoped_lock lock(mMutex);
  std::vector<unsigned int> fontIDs = gone;
  std::ranges::copy_if(released, std::back_inserter(fontIDs), [this](unsigned int id) {
    const auto place = mPlaces.find(id);
    return place != mPlaces.end() && place->second.local;
  });
  const std::vector<std::string> files = Forget(fontIDs);
  if (!files.empty()) mSystem->RemoveFiles(files);
}

void ProcessFonts::DeactivateAll() {
  std::scoped_lock lock(mMutex);
  std::vector<std::string> files;
  for (const auto& [file, count] : mFontsInFile) files.push_back(file);
  mPlaces.clear();
  mFontsInFile.clear();
  if (!files.empty()) mSystem->RemoveFiles(files);
}

std::map<unsigned int, const ProcessFonts::Change*> ProcessFonts::LastOf(
    const std::vector<Change>& changes) const {
  std::map<unsigned int, const Change*> last;
  for (const Change& change : changes) {
    const auto place = mPlaces.find(change.fontID);
    if (place == mPlaces.end() || place->second.order < change.order) last[change.fontID] = &change;
  }
  return last;
}

bool ProcessFonts::NeedsToFollow(const std::vector<Change>& changes) const {
  std::set<std::string> appeared;
  std::set<std::string> gone;
  {
    std::scoped_lock lock(mMutex);
    for (const auto& [id, change] : LastOf(changes)) {
      const bool held = mPlaces.contains(id);
      if (held && !change->active) return true;
      if (change->file.empty() || held) continue;
      (change->active ? appeared : gone).insert(change->file);
    }
  }
  return (!appeared.empty() && mSystem->CountInFolders(appeared) < appeared.size()) ||
         (!gone.empty() && mSystem->CountInFolders(gone) > 0);
}

void ProcessFonts::Follow(const std::vector<Change>& changes) {
  if (!NeedsToFollow(changes)) return;
  {
    std::scoped_lock lock(mMutex);
    std::vector<unsigned int> gone;
    for (const auto& [id, change] : LastOf(changes)) {
      if (!change->active) gone.push_back(id);
    }
    mSystem->ForgetFiles(Forget(gone));
  }
  mSystem->Reload();
}

void ProcessFonts::ReloadIfStale() {
  if (mSystem->IsStale()) mSystem->Reload();
}
