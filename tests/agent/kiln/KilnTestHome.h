#pragma once

#include <gtest/gtest.h>
#include <signal.h>

#include <memory>
#include <string>

#include "WireClient.h"
#include "support/FontBuilder.h"
#include "support/PrivateHome.h"
#include "support/ProgramRun.h"

/// A private session with a real Kiln in it, and made-up fonts to add to its library.
class KilnTestHome : public testing::Test {
 protected:
  static constexpr const char* kKiln = HORNBEAM_STAGE "/lib/hornbeam/Kiln/Kiln";

  void StartKiln() { mKiln = std::make_unique<ProgramRun>(kKiln, std::vector<std::string>{}); }
  void KillKiln() { mKiln.reset(); }

  /// A font file of that name.
  std::string FontFile(const std::string& postScriptName, const std::string& family = "Testa") {
    FontBuilder font;
    font.postScriptName = postScriptName;
    font.family = family;
    return mFiles.Write(postScriptName + ".ttf", font.TrueType());
  }

  /// What another program sees.
  static bool FcListShows(const std::string& postScriptName) {
    ProgramRun list("/usr/bin/fc-list", {":postscriptname=" + postScriptName, "file"});
    return list.Wait() == 0 && !list.Output().empty();
  }

  PrivateHome mHome;
  ScopedEnvironment mNoOtherFonts{"XDG_DATA_DIRS", mHome.Folder().Path("nowhere")};
  TemporaryFolder mFiles;
  std::unique_ptr<ProgramRun> mKiln;
};
