#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "kiln/store/Statement.h"
#include "kiln/store/WorkgroupScope.h"
#include "protocol/Kiln.pb.h"

namespace kiln {

class Database;

/// The sets: named choices of the fonts of one workgroup. A font that leaves the workgroup leaves its sets
/// with it, and a workgroup that is deleted takes its sets along (Migrations.cpp).
///
/// What changes sets is one transaction: with an error nothing has changed. Codes as Kiln.proto tells them
/// with CreateSetRequest, and the database's error.
class SetStore {
 public:
  explicit SetStore(Database& database);

  /// \param fontIDs  One that stands twice is one.
  /// \param setID  Receives the new set on success.
  uint32_t Create(const std::string& name, uint32_t workgroupID, std::span<const uint32_t> fontIDs,
                  uint32_t& setID);
  uint32_t AddFonts(std::span<const uint32_t> setIDs, std::span<const uint32_t> fontIDs);
  uint32_t Delete(uint32_t setID);

  /// The sets of the workgroups of the scope, without those of hidden ones, by ascending ID.
  std::vector<wire::FontSet> List(const WorkgroupScope& scope);

 private:
  uint32_t CheckWorkgroup(uint32_t workgroupID);
  uint32_t PutFonts(uint32_t setID, uint32_t workgroupID, std::span<const uint32_t> fontIDs);
  uint32_t WorkgroupOf(uint32_t setID);

  Database& mDatabase;
  Statement mWorkgroup;
  Statement mWorkgroupOfSet;
  Statement mMembership;
  Statement mAdd;
  Statement mPutFont;
  Statement mDelete;
  Statement mAll;
  Statement mFonts;
};

}  // namespace kiln
