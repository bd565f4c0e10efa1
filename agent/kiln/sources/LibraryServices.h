#pragma once

#include <boost/asio/io_context.hpp>
#include <cstdint>
#include <functional>
#include <vector>

#include "protocol/Kiln.pb.h"

namespace kiln {

class BoundedLog;
class FontReaderPool;
class OrphanSweep;
class ReplicationBoard;
struct FontLibrary;

/// What those who fill the library work with. All of it outlives them.
struct LibraryServices {
  boost::asio::io_context& context;
  FontLibrary& library;
  FontReaderPool& readers;
  ReplicationBoard& replications;
  OrphanSweep& sweep;
  BoundedLog& log;
  std::function<void(const wire::ServerMessage&)> broadcast;

  /// Tells the clients of fonts that came into a workgroup, left one, or have gone. Nothing for none.
  void TellLibraryChanged(const std::vector<uint32_t>& fontIDs) const;
  void TellWorkgroupsChanged() const;

  /// A number that changes when sets go, with their workgroup or out of sight with it, or lose fonts.
  int64_t CountSetEntries() const;
  void TellSetsChanged() const;
};

}  // namespace kiln
