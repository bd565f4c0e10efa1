#include "KilnConnection.h"

#include <string>

#include "Complaint.h"
#include "Memory/CFVector.h"
#include "Utilities/AgentLauncher.h"

namespace {

constexpr char kAgentName[] = "Kiln";
constexpr char kLibraryName[] = "TalworthPluginInterface.framework";

}  // namespace

KilnConnection::KilnConnection(CFBundleRef bundle) : m_bundle(retainCF(bundle)) {
  m_getFacade = reinterpret_cast<decltype(m_getFacade)>(FindEntry("GetPluginFacadeInstance"));
}

KilnConnection::~KilnConnection() {
  if (m_getFacade) Call(KILN_ENTRY(CleanUpOnShutdown));
}

void* KilnConnection::FindEntry(const char* name) const {
  return CFBundleGetFunctionPointerForName(m_bundle.get(), ToCFString(name).get());
}

bool KilnConnection::IsKilnRunning() {
  std::string folder;
  return GetPathToRunningProcessExe(kAgentName, folder) == 0;
}

std::unique_ptr<KilnConnection> KilnConnection::Open(Launch launch) {
  std::string folder;
  if (GetPathToRunningProcessExe(kAgentName, folder) != 0) {
    if (launch == Launch::kNever) {
      Complain("Kiln isn't running");
      return nullptr;
    }
    if (FindAndLaunchKiln(&folder) != 0) {
      Complain(
          "Kiln isn't running and couldn't be started; com.talworth.Kiln-LaunchInfo.conf must say where it "
          "is, and Kiln.log may say why it ended");
      return nullptr;
    }
  }
  const std::string path = folder + kLibraryName;
  const RetainPtr<CFBundleRef> bundle = adoptCF(CFBundleCreate(nullptr, ToCFURL(path, true).get()));
  std::unique_ptr<KilnConnection> connection(bundle ? new KilnConnection(bundle.get()) : nullptr);
  if (!connection || !connection->m_getFacade) {
    Complain(path + ": can't be loaded");
    return nullptr;
  }
  return connection;
}
