#include "CommandLine.h"

#include <exception>

#include "CommandBinding.h"
#include "Complaint.h"
#include "EpsWriteCommand.h"
#include "ExitCodes.h"
#include "FontsCommand.h"
#include "HornbeamVersion.h"
#include "LibraryCommandLine.h"
#include "MatchCommand.h"
#include "OpenCommand.h"
#include "StatusCommand.h"

namespace {

void AddOpen(CLI::App& app, CommandToRun& run) {
  CLI::App* command = app.add_subcommand("open", "Open documents, activate their fonts, report, close");
  OpenOptions& options = BindCommand(command, run, &RunOpen);
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
  command->footer(
      "Exit codes: 0 all documents were opened, also when standard error says that Kiln couldn't look after\n"
      "their fonts; 1 one was not, or couldn't be saved; 2 wrong usage.");
}

void AddStatus(CLI::App& app, CommandToRun& run) {
  CLI::App* command = app.add_subcommand("status", "Say whether the font manager runs and what it holds");
  command->add_flag("--json", BindCommand(command, run, &RunStatus).json, "One JSON object, on one line");
}

void AddFonts(CLI::App& app, CommandToRun& run) {
  CLI::App* command = app.add_subcommand("fonts", "List the fonts of EPS, PDF and Illustrator files");
  FontsOptions& options = BindCommand(command, run, &RunFonts);
  command->add_option("FILE", options.files, "EPS, PDF and Illustrator files");
  command->add_option("-r", options.folder, "All of them below a folder, by their extensions")
      ->type_name("FOLDER");
  command->add_flag("--json", options.json, "One JSON object a file, on one line");
  command->add_flag("--glyphmark", options.glyphMark, "With all that the file says of each font");
  command->footer("Exit codes as grep's: 0 a font was found, 1 none, 2 trouble.");
}

void AddMatch(CLI::App& app, CommandToRun& run) {
  CLI::App* command =
      app.add_subcommand("match", "Show the fonts that documents are offered for a name, the best first");
  MatchOptions& options = BindCommand(command, run, &RunMatch);
  command->add_option("NAME", options.names, "PostScript names")->required();
  command->add_option("--kind", options.kind, "What the document knows: OpenType, Postscript, TrueType");
  command->add_option("--foundry", options.foundry, "What the document knows: the foundry's name");
  command->add_flag("--family", options.family, "The names are those of families");
  command->add_flag("--json", options.json, "One JSON object a name, on one line");
  command->footer("Exit codes: 0 all names were found, 1 one was not, 2 wrong usage.");
}

void AddEpsWrite(CLI::App& app, CommandToRun& run) {
  CLI::App* command = app.add_subcommand("eps-write", "Write font records into an EPS file, in place");
  EpsWriteOptions& options = BindCommand(command, run, &RunEpsWrite);
  command->add_option("FILE", options.file, "EPS file")->required();
  command->add_option("--from", options.records, "XML property list: an array of font records")
      ->required()
      ->type_name("RECORDS");
}

int RunGiven(int argc, char** argv) {
  CLI::App app("Opens page-layout documents and has the fonts that they need activated, just for as long.",
               "hornbeam");
  app.set_version_flag("--version", std::string("hornbeam ") + kHornbeamVersion);
  app.require_subcommand(1);
  app.footer("Exit codes: 0 all went well, 1 something named on standard error did not, 2 wrong usage.");
  CommandToRun run;
  AddOpen(app, run);
  AddLibraryCommands(app, run);
  AddStatus(app, run);
  AddMatch(app, run);
  AddFonts(app, run);
  AddEpsWrite(app, run);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? kExitOk : kExitUsage;
  }
  return run();
}

}  // namespace

int RunCommandLine(int argc, char** argv) {
  try {
    return RunGiven(argc, argv);
  } catch (const std::exception& error) {
    Complain(error.what());
    return kExitFailed;
  }
}
