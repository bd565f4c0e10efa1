#include "LibraryCommandLine.h"

#include "FontCommands.h"
#include "LibraryCommands.h"
#include "ServerCommands.h"
#include "SetCommands.h"
#include "WorkgroupCommands.h"

namespace {

constexpr char kFontText[] = "Fonts, each by its PostScript name or its ID";
constexpr char kLibraryText[] = "A library, by its name or its ID";

// An empty text is a variable that a script has forgotten to set, not a wish for the usual.
std::string ComplainOfEmpty(const std::string& text) {
  return text.empty() ? "must not be empty" : "";
}

void AddFonts(CLI::App* command, std::vector<std::string>& fonts) {
  command->add_option("FONT", fonts, kFontText)->required();
}

void AddLibrary(CLI::App* command, std::string& library) {
  command->add_option("LIBRARY", library, kLibraryText)->required();
}

void AddFiles(CLI::App* library, CommandToRun& run) {
  CLI::App* add = library->add_subcommand("add", "Put fonts into the library; they stay inactive");
  LibraryAddOptions& added = BindCommand(add, run, &RunLibraryAdd);
  add->add_option("PATH", added.paths, "Font files, or folders of them")->required();
  add->add_option("--to", added.library, "The library that they go to; the first one otherwise")
      ->type_name("LIBRARY")
      ->check(&ComplainOfEmpty);

  CLI::App* list = library->add_subcommand("list", "List the library's fonts");
  LibraryListOptions& listed = BindCommand(list, run, &RunLibraryList);
  list->add_flag("--json", listed.json, "One JSON object a font, on one line");

  CLI::App* rescan = library->add_subcommand("rescan", "Look whether all files of the library are there");
  BindCommand(rescan, run, &RunRescan);
}

void AddActivation(CLI::App* library, CommandToRun& run) {
  CLI::App* activate = library->add_subcommand("activate", "Activate fonts until you deactivate them");
  AddFonts(activate, BindCommand(activate, run, &RunActivate).fonts);

  CLI::App* deactivate = library->add_subcommand("deactivate", "Take fonts away from every program");
  AddFonts(deactivate, BindCommand(deactivate, run, &RunDeactivate).fonts);

  CLI::App* exported = library->add_subcommand("export", "Copy the files of fonts into a folder");
  ExportOptions& exporting = BindCommand(exported, run, &RunExport);
  exported->add_option("FOLDER", exporting.folder, "Made when it isn't there; nothing in it is overwritten")
      ->required();
  AddFonts(exported, exporting.fonts);

  CLI::App* refuse = library->add_subcommand("refuse", "Mark fonts of a library as not to be activated");
  RefuseOptions& refused = BindCommand(refuse, run, &RunRefuse);
  AddLibrary(refuse, refused.library);
  AddFonts(refuse, refused.fonts);

  CLI::App* allow = library->add_subcommand("allow", "Take that mark back");
  RefuseOptions& allowed = BindCommand(allow, run, &RunAllow);
  AddLibrary(allow, allowed.library);
  AddFonts(allow, allowed.fonts);
}

void AddWorkgroups(CLI::App* library, CommandToRun& run) {
  CLI::App* workgroups = library->add_subcommand("workgroups", "List the libraries, or change them");
  workgroups->require_subcommand(0, 1);
  WorkgroupsOptions& listed = BindCommand(workgroups, run, &RunWorkgroups);
  workgroups->add_flag("--json", listed.json, "One JSON object a library, on one line");

  CLI::App* make = workgroups->add_subcommand("make", "Make a library");
  make->add_option("NAME", BindCommand(make, run, &RunMakeWorkgroup).name, "Its name")->required();

  CLI::App* rename = workgroups->add_subcommand("rename", "Give a library another name");
  RenameWorkgroupOptions& renamed = BindCommand(rename, run, &RunRenameWorkgroup);
  AddLibrary(rename, renamed.library);
  rename->add_option("NAME", renamed.name, "Its new name")->required();

  CLI::App* remove = workgroups->add_subcommand("delete", "Delete a library; its fonts are kept");
  AddLibrary(remove, BindCommand(remove, run, &RunDeleteWorkgroup).library);

  CLI::App* put = workgroups->add_subcommand("put", "Put fonts into a library, beside where they are");
  WorkgroupFontsOptions& added = BindCommand(put, run, &RunPutFonts);
  AddLibrary(put, added.library);
  AddFonts(put, added.fonts);

  CLI::App* take = workgroups->add_subcommand(
      "take", "Take fonts out of a library; those that no other one holds are deleted");
  WorkgroupFontsOptions& taken = BindCommand(take, run, &RunTakeFonts);
  AddLibrary(take, taken.library);
  AddFonts(take, taken.fonts);

  CLI::App* select = library->add_subcommand("select", "Choose where documents' fonts are looked for");
  select
      ->add_option("LIBRARY", BindCommand(select, run, &RunSelect).library,
                   "A library, by its name or its ID, or all")
      ->required();
}

void AddSets(CLI::App* library, CommandToRun& run) {
  CLI::App* sets = library->add_subcommand("sets", "List the sets of fonts, or change them");
  sets->require_subcommand(0, 1);
  sets->add_flag("--json", BindCommand(sets, run, &RunSets).json, "One JSON object a set, on one line");

  CLI::App* make = sets->add_subcommand("make", "Make a set of fonts of one library");
  MakeSetOptions& made = BindCommand(make, run, &RunMakeSet);
  make->add_option("NAME", made.name, "Its name")->required();
  make->add_option("--library", made.library, kLibraryText)->required();
  AddFonts(make, made.fonts);

  CLI::App* add = sets->add_subcommand("add", "Add fonts of its library to a set");
  AddToSetOptions& added = BindCommand(add, run, &RunAddToSet);
  add->add_option("SET", added.id, "A set, by its ID")->required();
  AddFonts(add, added.fonts);

  CLI::App* remove = sets->add_subcommand("delete", "Delete a set; its fonts stay");
  remove->add_option("SET", BindCommand(remove, run, &RunDeleteSet).id, "A set, by its ID")->required();
}

void AddServers(CLI::App* library, CommandToRun& run) {
  CLI::App* login = library->add_subcommand("login", "Log in to a font server");
  LoginOptions& server = BindCommand(login, run, &RunLogin);
  login->add_option("FOLDER", server.folder, "The server's folder, with its server.conf")
      ->required()
      ->check(&ComplainOfEmpty);
  login->add_option("--user", server.user, "Whom the server knows you as; your own name otherwise")
      ->check(&ComplainOfEmpty);

  CLI::App* logout = library->add_subcommand("logout", "Log out; the server's libraries go");
  logout->add_flag("--leave", BindCommand(logout, run, &RunLogout).leave, "Stand alone from now on");

  CLI::App* google = library->add_subcommand("google", "Switch the library of Google fonts on or off");
  google->require_subcommand(1);
  CLI::App* on = google->add_subcommand("on", "Take its fonts from a folder, and watch it");
  on->add_option("FOLDER", BindCommand(on, run, &RunGoogleOn).folder, "That of the last time otherwise")
      ->check(&ComplainOfEmpty);
  BindCommand(google->add_subcommand("off", "Leave its fonts out"), run, &RunGoogleOff);
}

}  // namespace

void AddLibraryCommands(CLI::App& app, CommandToRun& run) {
  CLI::App* library = app.add_subcommand("library", "The font manager's library");
  library->require_subcommand(1);
  AddFiles(library, run);
  AddActivation(library, run);
  AddWorkgroups(library, run);
  AddSets(library, run);
  AddServers(library, run);
}
