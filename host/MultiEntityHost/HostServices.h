#pragma once

#include <cstddef>
#include <cstdint>
#include <version>

#include "MultiEntityHost/Application.h"
#include "MultiEntityHost/ChartOfAccounts.h"
#include "MultiEntityHost/Journal.h"
#include "MultiEntityHost/Messages.h"
#include "MultiEntityHost/Money.h"
#include "MultiEntityHost/MultiEntityDBManager.h"
#include "MultiEntityHost/NameList.h"
#include "MultiEntityHost/Ops.h"
#include "MultiEntityHost/Permissions.h"
#include "MultiEntityHost/Platform.h"
#include "MultiEntityHost/Preferences.h"
#include "MultiEntityHost/QueryEngine.h"
#include "MultiEntityHost/Runtime.h"
#include "MultiEntityHost/Switches.h"
#include "MultiEntityHost/TargetLines.h"

inline constexpr std::uint32_t kHostServicesVersion = 1;

// What both sides of the seam must have in common besides these headers: the C++ ABI, the standard library and the
// widths of long and of a pointer. Texts, lists and exceptions cross the seam, so each side is compiled with its own.
inline constexpr std::uint32_t kHostAbiTag =
#if defined(_MSC_VER)
    0x02000000U
#else
    0x01000000U
#endif
#if defined(__GLIBCXX__)
    + (_GLIBCXX_USE_CXX11_ABI ? 0x00010000U : 0x00020000U)
#elif defined(_LIBCPP_VERSION)
    + 0x00030000U
#elif defined(_MSVC_STL_VERSION)
    +0x00040000U
#endif
    + (static_cast<std::uint32_t>(sizeof(long)) << 8U) + static_cast<std::uint32_t>(sizeof(void*));

// Every service of a host. The host owns the services and keeps them alive while it is attached; this record itself is
// copied when the host attaches.
struct HostServices {
  std::size_t size = sizeof(HostServices);
  std::uint32_t version = kHostServicesVersion;
  std::uint32_t abiTag = kHostAbiTag;

  Util::Ops& ops;
  Util::Runtime& runtime;
  KillSwitchHelper& killSwitches;
  FileSystem::DCE& remoteValues;
  DBPreferences& databasePreferences;
  PrefsTag& preferences;
  MultiEntityDBManager& multiEntity;
  Permissions& permissions;
  ChartOfAccounts& accounts;
  NameList& names;
  Journal& journal;
  TargetLines& lines;
  QueryEngine& queries;
  Money& money;
  Application& application;
  Messages& messages;
  // Null for the library's own native one.
  Platform* platform = nullptr;
};
