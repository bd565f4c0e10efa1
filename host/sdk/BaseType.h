#pragma once

#include <cstdint>

/// The plain types of the host's interfaces, and the kinds of number that name things in it. Numbers are
/// fixed once given out: they stand in documents and in plug-ins that were built against them.
using int16 = std::int16_t;
using int32 = std::int32_t;
using uint16 = std::uint16_t;
using uint32 = std::uint32_t;
using uchar = unsigned char;
/// The host's truth value: 16 bits wide, 0 is false.
using bool16 = int16;

/// Names an interface; an object is asked for its interfaces by it. See InterfaceIDs.h.
using PMIID = uint32;
/// Names a boss, a command or a change that is broadcast. See ClassIDs.h.
using ClassID = uint32;
/// Names the code that stands behind one interface of a boss; chosen by whoever wrote that code.
using ImplementationID = uint32;
/// Names a service that a boss offers, among them the host's signals. See ServiceIDs.h.
using ServiceID = uint32;
