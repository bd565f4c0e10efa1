#include "client/ProcessFonts.h"

ProcessFonts::ProcessFonts(std::unique_ptr<FontSystem> system) : mSystem(std::move(system)) {}

std::vector<unsigned int> ProcessFonts::Activate(
    const std::vector<std::pair<unsigned int, std::string>>& fonts) {
  std::scoped_lock lock(mMutex);
  std::vector<std::string> files;
  files.reserve(fonts.size());
  for (const auto& [id, file] : fonts) files.push_back(file);
  const std::vector<bool> seen = mSystem->AddFiles(files);

  std::vector<unsigned int> unseen;
  for (std::size_t i = 0; i < fonts.size(); ++i) {
    const auto& [id, file] = fonts[i];
    if (!seen[i]) {
      unseen.push_back(id);
    } else if (mFileOfFont.emplace(id, file).second) {
      ++mFontsInFile[file];
    }
  }
  return unseen;
}

void ProcessFonts::Deactivate(const std::vector<unsigned int>& fontIDs) {
  std::scoped_lock lock(mMutex);
  std::vector<std::string> files;
  for (const unsigned int id : fontIDs) {
    const auto font = mFileOfFont.find(id);
    if (font == mFileOfFont.end()) continue;
    const auto file = mFontsInFile.find(font->second);
    if (--file->second == 0) {
      files.push_back(file->first);
      mFontsInFile.erase(file);
    }
    mFileOfFont.erase(font);
  }
  if (!files.empty()) mSystem->RemoveFiles(files);
}

void ProcessFonts::DeactivateAll() {
  std::scoped_lock lock(mMutex);
  std::vector<std::string> files;
  for (const auto& [file, count] : mFontsInFile) files.push_back(file);
  mFileOfFont.clear();
  mFontsInFile.clear();
  if (!files.empty()) mSystem->RemoveFiles(files);
}

bool ProcessFonts::Holds(unsigned int fontID) const {
  std::scoped_lock lock(mMutex);
  return mFileOfFont.contains(fontID);
}
