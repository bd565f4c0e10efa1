#pragma once

#include "ClassIDs.h"
#include "InterfaceIDs.h"

/// The numbers that this plug-in gives its own things in the host. Once given they stay.
constexpr ClassID kHornbeamStartupShutdownBoss = kFirstPlugInClassID + 1;
constexpr ClassID kHornbeamResponderBoss = kFirstPlugInClassID + 2;

constexpr PMIID IID_IHORNBEAMIDLETASK = kFirstPlugInIID + 1;

constexpr ImplementationID kHornbeamApplicationStartupShutdownImpl = 1;
constexpr ImplementationID kHornbeamServiceProviderImpl = 2;
constexpr ImplementationID kHornbeamResponderImpl = 3;
