#pragma once

#include "kiln/sources/FontServer.h"
#include "kiln/sources/GoogleLibrary.h"
#include "kiln/sources/LibraryServices.h"
#include "kiln/sources/OrphanSweep.h"
#include "kiln/sources/ReplicationBoard.h"

namespace kiln {

/// All that fills the library, and empties it, by itself.
struct LibrarySources {
  LibrarySources(boost::asio::io_context& context, FontLibrary& library, FontReaderPool& readers,
                 BoundedLog& log, const std::function<void(const wire::ServerMessage&)>& broadcast)
      : replications(broadcast),
        sweep(context, library, [this](const auto& fontIDs) { services.TellLibraryChanged(fontIDs); }),
        services{context, library, readers, replications, sweep, log, broadcast},
        google(services),
        fontServer(services) {}
  LibrarySources(const LibrarySources&) = delete;
  LibrarySources& operator=(const LibrarySources&) = delete;

  /// Goes on as the last Kiln left it.
  void Resume() {
    sweep.Run();
    google.Resume();
    fontServer.Resume();
  }

  ReplicationBoard replications;
  OrphanSweep sweep;
  const LibraryServices services;
  GoogleLibrary google;
  FontServer fontServer;
};

}  // namespace kiln
