// The procedures of ProfileControl as error messages and the log name them.
#pragma once

#include <string_view>

namespace zel::procedures {

inline constexpr std::string_view kClassInitialize = ":Class_Initialize:";
inline constexpr std::string_view kClassTerminate = ":Class_Terminate:";
inline constexpr std::string_view kGetElevLines = ":Get ElevLines:";
inline constexpr std::string_view kLetElevLines = ":Let ElevLines:";
inline constexpr std::string_view kExportDataToCSV = ":ExportDataToCSV:";
inline constexpr std::string_view kExportITMToCSV = ":ExportITMToCSV:";
inline constexpr std::string_view kGetOFrmLoaded = ":Get OFrmLoaded:";
inline constexpr std::string_view kGetOptionButtonVisible = ":Get OptionButtonVisible:";
inline constexpr std::string_view kLetOptionButtonVisible = ":Let OptionButtonVisible:";
inline constexpr std::string_view kLetOwnerName = ":Let OwnerName:";
inline constexpr std::string_view kGetPForm = ":Get PForm:";
inline constexpr std::string_view kGetPFrmLoaded = ":Get PFrmLoaded:";
inline constexpr std::string_view kLetPrintDescription = ":Let PrintDescription:";
inline constexpr std::string_view kLetPrintLandscape = ":Let PrintLandscape:";
inline constexpr std::string_view kPrintProfile = ":PrintProfile:";
inline constexpr std::string_view kLetProgName = ":Let ProgName:";
inline constexpr std::string_view kGetRangeLines = ":Get RangeLines:";
inline constexpr std::string_view kLetRangeLines = ":Let RangeLines:";
inline constexpr std::string_view kSetClientApp = ":SetClientApp:";
inline constexpr std::string_view kGetPathLoss = ":GetPathLoss:";
inline constexpr std::string_view kShowMainForm = ":ShowMainForm:";
inline constexpr std::string_view kShowOptionsForm = ":ShowOptionsForm:";
inline constexpr std::string_view kGetStaDatum = ":Get StaDatum:";
inline constexpr std::string_view kLetStaDatum = ":Let StaDatum:";
inline constexpr std::string_view kUnloadMainForm = ":UnloadMainForm:";
// The blanks around this name are meant.
inline constexpr std::string_view kGetHWnd = " :Get hWnd: ";

}  // namespace zel::procedures
