#pragma once

#include "BaseType.h"

/// Every interface of the host, so that no number is given twice. Plug-ins number theirs from
/// kFirstPlugInIID on.
constexpr PMIID IID_IPMUNKNOWN = 1;
constexpr PMIID IID_ISESSION = 2;
constexpr PMIID IID_IAPPLICATION = 3;
constexpr PMIID IID_IDOCUMENT = 4;
constexpr PMIID IID_IUSEDFONTLIST = 5;
constexpr PMIID IID_IDOCUMENTFONTUSAGE = 6;
constexpr PMIID IID_IDOCFONTMGR = 7;
constexpr PMIID IID_IFONTMGR = 8;
constexpr PMIID IID_IFONTFAMILY = 9;
constexpr PMIID IID_IPMFONT = 10;
constexpr PMIID IID_ISIGNALMGR = 11;
constexpr PMIID IID_IDOCUMENTSIGNALDATA = 12;
constexpr PMIID IID_IRESPONDER = 13;
constexpr PMIID IID_ISUBJECT = 14;
constexpr PMIID IID_ILINKMANAGER = 15;
constexpr PMIID IID_ILINK = 16;
constexpr PMIID IID_ILINKFACADE = 17;
constexpr PMIID IID_ICOMMAND = 18;
constexpr PMIID IID_ICOMMANDPROCESSOR = 19;
constexpr PMIID IID_ISTARTUPSHUTDOWNSERVICE = 20;
constexpr PMIID IID_IK2SERVICEPROVIDER = 21;
constexpr PMIID IID_IIDLETASK = 22;
constexpr PMIID IID_IIDLETASKMGR = 23;
constexpr PMIID IID_IFONTACTIVITYREPORT = 24;
constexpr PMIID IID_IALERT = 25;

constexpr PMIID kFirstPlugInIID = 0x00010000;
