#pragma once

#include <map>
#include <memory>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "IDataBase.h"
#include "InterfaceFactory.h"
#include "InterfacePtr.h"
#include "headless/Boss.h"
#include "headless/DocumentContent.h"

namespace headless {

/// The objects of one open document: the document itself, its workspace, its links, and the families that
/// were used or asked for.
///
/// Life: made with its objects; TakeDown() lets go of them while the database itself stays, for those who
/// still have its address.
class DocumentDataBase final : public IDataBase {
 public:
  /// \param additions  What plug-ins add to each document.
  DocumentDataBase(std::shared_ptr<DocumentContent> content, std::span<const InterfaceFactory> additions);
  ~DocumentDataBase() override;
  DocumentDataBase(const DocumentDataBase&) = delete;
  DocumentDataBase& operator=(const DocumentDataBase&) = delete;

  IPMUnknown* QueryInstance(UID uid, PMIID interfaceID) override;
  UID GetRootUID() const override { return kRootUID; }
  const IDFile* GetSysFile() const override;

  const DocumentContent& Content() const { return *m_pContent; }

  /// The object of a family.
  ///
  /// \param add  Makes one for a family that has none yet.
  /// \return kInvalidUID when there is none.
  UID FamilyUID(const std::string& name, bool add);

  /// Has every family look at the installed fonts again, when it is next asked.
  void RebindFamilies() { ++m_pContent->fontGeneration; }

  /// The data that the plug-ins' interfaces want kept in the file, by the name it is stored under.
  std::map<std::string, std::string> WriteAttributes();

  /// Lets go of all objects.
  void TakeDown();

 private:
  static constexpr UID kRootUID{1};
  static constexpr UID kWorkSpaceUID{2};

  Boss& AddObject(UID uid);
  void ReadAttributes();

  std::shared_ptr<DocumentContent> m_pContent;
  std::vector<InterfaceFactory> m_vAdditions;
  std::unordered_map<uint32, InterfacePtr<Boss>> m_mObjects;
  std::unordered_map<std::string, UID> m_mFamilyUIDs;
  uint32 m_nNextUID;
};

}  // namespace headless
