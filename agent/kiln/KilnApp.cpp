#include "kiln/KilnApp.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/signal_set.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "kiln/server/Server.h"
#include "kiln/system/BoundedLog.h"
#include "kiln/system/KilnPaths.h"
#include "kiln/system/LockFile.h"
#include "protocol/SocketPath.h"
#include "protocol/Version.h"

namespace kiln {
namespace {

constexpr int kExitCantRun = 1;
constexpr int kExitUsage = 2;
constexpr int kLongestIdleSeconds = 86400;

struct Arguments {
  bool background = false;
  int exitWhenIdleSeconds = 0;
  int status = -1;  // of the program, when the arguments settle that
};

Arguments Parse(int argc, char** argv) {
  Arguments arguments;
  CLI::App app("Kiln keeps the font library and activates its fonts for the programs that ask for them.",
               "Kiln");
  app.set_version_flag("--version", std::string("Kiln ") + kKilnVersion);
  app.add_flag("--background", arguments.background,
               "write to the log only, and leave the terminal's session");
  app.add_option("--exit-when-idle", arguments.exitWhenIdleSeconds,
                 "end when no client has been connected for that many seconds; implies --background")
      ->check(CLI::Range(1, kLongestIdleSeconds));
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    arguments.status = app.exit(error) == 0 ? 0 : kExitUsage;
  }
  arguments.background = arguments.background || arguments.exitWhenIdleSeconds > 0;
  return arguments;
}

std::string ReaderBesideThis() {
  char path[4096];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
  const std::string self(path, length > 0 ? static_cast<size_t>(length) : 0);
  return self.substr(0, self.rfind('/') + 1) + "KilnFontReader";
}

// Whoever started this one may wait for its end of a pipe, or be ended from the keyboard.
void LeaveTerminal() {
  setsid();
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  if (nothing < 0) return;
  for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, standard);
  if (nothing > STDERR_FILENO) close(nothing);
}

int Fail(BoundedLog& log, const std::string& what, int error) {
  log.Print("Kiln: %s: %s", what.c_str(), std::strerror(error));
  return kExitCantRun;
}

int Serve(const Arguments& arguments, BoundedLog& log, const KilnPaths& paths) {
  if (const int error = MakeRuntimeFolder()) return Fail(log, "can't use '" + RuntimeFolder() + "'", error);
  LockFile lock;
  if (const int error = lock.Take(LockPath())) {
    if (error != EWOULDBLOCK) return Fail(log, "can't lock '" + LockPath() + "'", error);
    log.Write("Kiln: another Kiln already serves this session");
    return kExitCantRun;
  }
  boost::asio::io_context wire(1);
  boost::asio::io_context context(1);
  boost::asio::signal_set signals(context, SIGTERM, SIGINT);
  Server server(context, wire, paths, {ReaderBesideThis(), arguments.exitWhenIdleSeconds}, log);
  if (const int error = server.Listen(SocketPath()))
    return Fail(log, "can't listen at '" + SocketPath() + "'", error);
  signals.async_wait([&server, &log](auto error, int signal) {
    if (error) return;
    log.Print("Ending on signal %d", signal);
    server.Stop();
  });
  log.Print("Kiln %s serves '%s' at '%s'", kKilnVersion, paths.data.c_str(), SocketPath().c_str());
  server.OpenLibrary();
  context.run();
  log.Write("Kiln has ended");
  return 0;
}

}  // namespace

int RunKiln(int argc, char** argv) {
  const Arguments arguments = Parse(argc, argv);
  if (arguments.status >= 0) return arguments.status;
  signal(SIGPIPE, SIG_IGN);
  const KilnPaths paths = KilnPaths::FromEnvironment();
  MakeFolders(paths.state);
  BoundedLog log(paths.log);
  if (arguments.background) {
    LeaveTerminal();
  } else {
    log.EchoToTerminal();
  }
  try {
    return Serve(arguments, log, paths);
  } catch (const std::exception& error) {
    log.Print("Kiln: %s", error.what());
    return kExitCantRun;
  }
}

}  // namespace kiln
