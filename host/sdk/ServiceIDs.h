#pragma once

#include "BaseType.h"

/// The services that a boss may offer. A boss that offers one of the signals is called at its IResponder when
/// the host sends that signal; the numbers come from the host and have gaps.
constexpr ServiceID kInvalidService = 0;

constexpr ServiceID kDuringNewDocSignalResponderService = 3595;
constexpr ServiceID kBeforeOpenDocSignalResponderService = 3597;
constexpr ServiceID kDuringOpenDocSignalResponderService = 3598;
constexpr ServiceID kAfterOpenDocSignalResponderService = 3599;
constexpr ServiceID kBeforeSaveDocSignalResponderService = 3600;
constexpr ServiceID kAfterSaveDocSignalResponderService = 3601;
constexpr ServiceID kBeforeSaveAsDocSignalResponderService = 3602;
constexpr ServiceID kAfterSaveAsDocSignalResponderService = 3603;
constexpr ServiceID kBeforeSaveACopyDocSignalResponderService = 3604;
constexpr ServiceID kAfterSaveACopyDocSignalResponderService = 3606;
constexpr ServiceID kBeforeCloseDocSignalResponderService = 3609;
constexpr ServiceID kAfterCloseDocSignalResponderService = 3610;
constexpr ServiceID kAfterAddLinkSignalResponderService = 35851;
