#pragma once

#include "CoreAgentInterface/Shuttle/PluginInterface.h"

/// The table of the agent library's entries, each pointer named `pf` and the entry's name. A null pointer is
/// an entry that could not be bound.
struct ShuttleFunctions {
  using FacadeRef = PluginInterface::FacadeRef;
  using ErrCode = PluginInterface::ErrCode;
  using NotifyProc = PluginInterface::NotifyProc;

#define AGENT_ENTRY(name, ...) ErrCode (*pf##name)(FacadeRef __VA_OPT__(, ) __VA_ARGS__) = nullptr;
#define FLAG_ENTRY(name) int (*pf##name)(FacadeRef) = nullptr;
#define COLUMN_ENTRY(name) ErrCode (*pf##name)(char* buffer, unsigned long size) = nullptr;
#define PLAIN_ENTRY(result, name, ...) result (*pf##name)(__VA_ARGS__) = nullptr;
#include "CoreAgentInterface/Shuttle/ShuttleEntries.h"
};
