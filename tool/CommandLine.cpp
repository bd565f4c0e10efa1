#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "Complaint.h"
#include "EpsWriteCommand.h"
#include "ExitCodes.h"
#include "FontsCommand.h"
#include "HornbeamVersion.h"
#include "LibraryCommands.h"
#include "MatchCommand.h"
#include "OpenCommand.h"
#include "StatusCommand.h"

namespace {

/// The options of every subcommand, and the one that was chosen.
struct Invocation {
  OpenOptions open;
  LibraryAddOptions libraryAdd;
  LibraryListOptions libraryList;
  StatusOptions status;
  FontsOptions fonts;
  MatchOptions match;
  EpsWriteOptions epsWrite;
  std::function<int()> run;
};

void AddOpen(CLI::App& app, Invocation& invocation) {
  CLI::App* command = app.add_subcommand("open", "Open documents, activate their fonts, report, close");
  OpenOptions& options = invocation.open;
  command->add_option("DOCUMENT", options.documents, "IDML documents")->required();
  command->add_flag("--json", options.json, "One JSON object a document, on one line");
  command->add_flag("--give-back", options.giveBack,
                    "Give fonts back when their last document closes, not first when the host quits");
  CLI::Option* keepOpen = command->add_flag("--keep-open", options.keepOpen,
                                            "Leave the documents open: their fonts stay active afterwards");
  command
      ->add_flag("--wait", options.wait,
                 "Close the documents only after Enter, the end of standard input, or Ctrl-C")
      ->excludes(keepOpen);
  command->add_flag("--save", options.save, "Save each document before it is closed");
  command->callback([&invocation] { invocation.run = [&invocation] { return RunOpen(invocation.open); }; });
}

void AddLibrary(CLI::App& app, Invocation& invocation) {
  CLI::App* library = app.add_subcommand("library", "The font manager's library");
  library->require_subcommand(1);

  CLI::App* add = library->add_subcommand("add", "Put fonts into the library; they stay inactive");
  add->add_option("PATH", invocation.libraryAdd.paths, "Font files, or folders of them")->required();
  add->callback(
      [&invocation] { invocation.run = [&invocation] { return RunLibraryAdd(invocation.libraryAdd); }; });

  CLI::App* list = library->add_subcommand("list", "List the library's fonts");
  list->add_flag("--json", invocation.libraryList.json, "One JSON object a font, on one line");
  list->callback(
      [&invocation] { invocation.run = [&invocation] { return RunLibraryList(invocation.libraryList); }; });
}

void AddStatus(CLI::App& app, Invocation& invocation) {
  CLI::App* command = app.add_subcommand("status", "Say whether the font manager runs and what it holds");
  command->add_flag("--json", invocation.status.json, "One JSON object, on one line");
  command->callback(
      [&invocation] { invocation.run = [&invocation] { return RunStatus(invocation.status); }; });
}

void AddFonts(CLI::App& app, Invocation& invocation) {
  CLI::App* command = app.add_subcommand("fonts", "List the fonts of EPS, PDF and Illustrator files");
  FontsOptions& options = invocation.fonts;
  CLI::Option* files = command->add_option("FILE", options.files, "EPS, PDF and Illustrator files");
  command->add_option("-r", options.folder, "All of them below a folder, by their extensions")
      ->type_name("FOLDER");
  command->add_flag("--json", options.json, "One JSON object a file, on one line");
  command->add_flag("--glyphmark", options.glyphMark, "With all that the file says of each font");
  command->footer("Exit codes as grep's: 0 a font was found, 1 none, 2 trouble.");
  command->callback([&invocation, files] {
    if (files->empty() && invocation.fonts.folder.empty()) throw CLI::RequiredError("FILE or -r FOLDER");
    invocation.run = [&invocation] { return RunFonts(invocation.fonts); };
  });
}

void AddMatch(CLI::App& app, Invocation& invocation) {
  CLI::App* command =
      app.add_subcommand("match", "Show the fonts that documents are offered for a name, the best first");
  MatchOptions& options = invocation.match;
  command->add_option("NAME", options.names, "PostScript names")->required();
  command->add_option("--kind", options.kind, "What the document knows: OpenType, Postscript, TrueType");
  command->add_option("--foundry", options.foundry, "What the document knows: the foundry's name");
  command->add_flag("--family", options.family, "The names are those of families");
  command->add_flag("--json", options.json, "One JSON object a name, on one line");
  command->footer("Exit codes: 0 all names were found, 1 one was not, 2 wrong usage.");
  command->callback([&invocation] { invocation.run = [&invocation] { return RunMatch(invocation.match); }; });
}

void AddEpsWrite(CLI::App& app, Invocation& invocation) {
  CLI::App* command = app.add_subcommand("eps-write", "Write font records into an EPS file, in place");
  command->add_option("FILE", invocation.epsWrite.file, "EPS file")->required();
  command->add_option("--from", invocation.epsWrite.records, "XML property list: an array of font records")
      ->required()
      ->type_name("RECORDS");
  command->callback(
      [&invocation] { invocation.run = [&invocation] { return RunEpsWrite(invocation.epsWrite); }; });
}

int Run(int argc, char** argv) {
  CLI::App app("Opens page-layout documents and has the fonts that they need activated, just for as long.",
               "hornbeam");
  app.set_version_flag("--version", std::string("hornbeam ") + kHornbeamVersion);
  app.require_subcommand(1);
  app.footer("Exit codes: 0 all went well, 1 something named on standard error did not, 2 wrong usage.");
  Invocation invocation;
  AddOpen(app, invocation);
  AddLibrary(app, invocation);
  AddStatus(app, invocation);
  AddFonts(app, invocation);
  AddMatch(app, invocation);
  AddEpsWrite(app, invocation);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kExitOk : kExitUsage;
  }
  return invocation.run();
}

}  // namespace

int RunCommandLine(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& error) {
    Complain(error.what());
    return kExitFailed;
  }
}
