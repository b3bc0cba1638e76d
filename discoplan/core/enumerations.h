// SPDX-License-Identifier: MIT
#pragma once

/// The enumerations of the controls' interface, each with what its values mean.

#include <array>
#include <cstdint>

#include "discoplan/platform/member_list.h"

namespace discoplan {

enum class WaferSt : std::int32_t { Notch = 1, Flat = 2 };
enum class Sites : std::int32_t { ShowSite = -1, HideSite = 0 };
enum class ResoEnum : std::int16_t { LowQuality = 0, HighQuality = 1, Automatic = 2 };
enum class ExconEnum : std::int16_t { Exact = 1, Converted = 2, None = 3 };
enum class DrawColEnum : std::int32_t { BWhitePlot = 0, ColorPlot = -1 };
enum class PlotTypeEnum : std::int16_t { PolyEdge = 1, HiddenWireFrame = 2, WireFrame = 3 };
enum class PlotTyEnum : std::int32_t { vbbottom = 1, vbTop = 2, vbLeft = 3, vbRight = 4 };
enum class PlotTypeEnumLineScan : std::int16_t { vbAngle = 1, vbline = 2 };

namespace enumeration_rows {

inline constexpr std::array kWaferSt = {
    Enumerator{"Notch", 1, "A notch marks the wafer's orientation."},
    Enumerator{"Flat", 2, "A flat marks the wafer's orientation."},
};
inline constexpr std::array kSites = {
    Enumerator{"ShowSite", -1, "Each measured site is marked on the plot."},
    Enumerator{"HideSite", 0, "The sites aren't marked."},
};
inline constexpr std::array kReso = {
    Enumerator{"LowQuality", 0, "Lines through a mesh of 121 points."},
    Enumerator{"HighQuality", 1, "Lines through a mesh of 441 points."},
    Enumerator{"Automatic", 2, "A mesh of 9 to 441 points, by the number of measured sites."},
};
inline constexpr std::array kExcon = {
    Enumerator{"Exact", 1, "The measured sites are marked."},
    Enumerator{"Converted", 2, "The points of the mesh are marked."},
    Enumerator{"None", 3, "Nothing is marked.", "NoMarks"},
};
inline constexpr std::array kDrawCol = {
    Enumerator{"BWhitePlot", 0, "All lines are black."},
    Enumerator{"ColorPlot", -1, "Lines have the colour of their side of the mean."},
};
inline constexpr std::array kPlotType = {
    Enumerator{"PolyEdge", 1, "Faces in the colours of their intervals, with edges."},
    Enumerator{"HiddenWireFrame", 2, "A wire frame that hides what lies behind it."},
    Enumerator{"WireFrame", 3, "A wire frame that is seen through."},
};
inline constexpr std::array kPlotTy = {
    Enumerator{"vbbottom", 1, "The value axis lies at the bottom, bars stand upright."},
    Enumerator{"vbTop", 2, "The value axis lies at the top, bars hang down."},
    Enumerator{"vbLeft", 3, "The value axis stands at the left, bars point to the right."},
    Enumerator{"vbRight", 4, "The value axis stands at the right, bars point to the left."},
};
inline constexpr std::array kPlotTypeLineScan = {
    Enumerator{"vbAngle", 1, "The cut goes through the rotation point, at an angle."},
    Enumerator{"vbline", 2, "The cut goes from the start point to the end point."},
};

}  // namespace enumeration_rows

inline constexpr std::array<Enumeration, 8> kEnumerations = {{
    {"WaferSt", enumeration_rows::kWaferSt},
    {"Sites", enumeration_rows::kSites},
    {"ResoEnum", enumeration_rows::kReso},
    {"ExconEnum", enumeration_rows::kExcon},
    {"DrawColEnum", enumeration_rows::kDrawCol},
    {"PlotTypeEnum", enumeration_rows::kPlotType},
    {"PlotTyEnum", enumeration_rows::kPlotTy},
    {"PlotTypeEnumLineScan", enumeration_rows::kPlotTypeLineScan},
}};

template <>
inline constexpr const Enumeration* kEnumeration<WaferSt> = &kEnumerations[0];
template <>
inline constexpr const Enumeration* kEnumeration<Sites> = &kEnumerations[1];
template <>
inline constexpr const Enumeration* kEnumeration<ResoEnum> = &kEnumerations[2];
template <>
inline constexpr const Enumeration* kEnumeration<ExconEnum> = &kEnumerations[3];
template <>
inline constexpr const Enumeration* kEnumeration<DrawColEnum> = &kEnumerations[4];
template <>
inline constexpr const Enumeration* kEnumeration<PlotTypeEnum> = &kEnumerations[5];
template <>
inline constexpr const Enumeration* kEnumeration<PlotTyEnum> = &kEnumerations[6];
template <>
inline constexpr const Enumeration* kEnumeration<PlotTypeEnumLineScan> = &kEnumerations[7];

}  // namespace discoplan
