#pragma once

#include <boost/asio/io_context.hpp>
#include <cstdint>
#include <functional>
#include <memory>

#include "kiln/fonts/FontLibrary.h"
#include "kiln/fonts/FontReaderPool.h"
#include "kiln/fonts/SystemFonts.h"
#include "kiln/fonts/VaultWatch.h"
#include "kiln/server/ClientHub.h"
#include "kiln/sources/LibrarySources.h"
#include "kiln/system/BoundedLog.h"
#include "kiln/system/KilnPaths.h"

namespace kiln {

/// What the requests work on. Without a library `vaultError` says why.
struct AgentState {
  boost::asio::io_context& context;
  const KilnPaths& paths;
  BoundedLog& log;
  ClientHub& clients;
  FontReaderPool& readers;
  std::unique_ptr<FontLibrary> library;
  std::unique_ptr<SystemFonts> systemFonts;
  std::unique_ptr<LibrarySources> sources;  ///< there with the library
  uint32_t vaultError = 0;
  uint64_t requestCount = 0;                         ///< without what asks only how Kiln is
  std::unique_ptr<VaultWatch> vaultWatch = nullptr;  ///< there with the library
};

}  // namespace kiln
