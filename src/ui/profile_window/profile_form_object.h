// A profile window of a host's own, reached by the names of its members.
//
// Members, case ignored:
//   Caption, Visible                     properties
//   Left, Top, Width, Height             properties, twips
//   hWnd                                 property, read only
//   Contour                              property: the terrain source is Con_TRes; set before Show
//   Show, Hide, Unload                   the window is made at the first need, and anew after Unload
//   InitFromRegistry, SetDistanceLabels, SetStartEndPointLabels, ValidateInfo, LoadFormSettings,
//   DoPreCalc, MinMaxAv, drawLine, UpdateModeledLoss
//   MenuHeight, WindowTitleHeight        give twips
//   lExportDataToCSV, lExportITMToCSV, lExportSignalProfileToCSV, lMakeGNUSignalPlot
//                                        take the path of the file; a window that is not shown will do
//   PrintProfile                         takes printer, copies, orientation (1 portrait, 2 landscape) and, if
//                                        wanted, the description; the printer is a name, a path that ends in
//                                        ".pdf", or empty for the last one. Gives whether it was printed
//   cmdClear1_Click, cmdClear2_Click, cmdExit_Click, mnuProfileExpand_Click, mnuProfileLinkBudget_Click,
//   mnuProfileOptions_Click, mnuEditCopyPicture_Click, mnuEditCopyValues_Click, mnuExportBMP_Click,
//   mnuExportProfile_Click, mnuExportPathLoss_Click, mnuExportPathLossGraph_Click,
//   mnuExportPathSignalGraph_Click, mnuExportPathLossProfile_Click, mnuPrint_Click, mnuPrintPreview_Click
//   every control and menu item by its name; control arrays with an index, optCurve(0)
//
// A control is an object with Name, Text (boxes and labels), Caption (labels, buttons, frames, menu items),
// Value (options as booleans, the slider as a number), Enabled, Visible, and the methods Click and SetFocus.
// A host that sets a text or a value has done what a person would do with the keyboard: its handlers run.
//
// The window works on a state of its own: neither the loaded flag nor the handle of the component's window
// change. Errors: AutomationError as of Dispatch, kFailed for a control of a window that has been unloaded.
#pragma once

#include <functional>
#include <memory>

#include "ui/profile_window/frm_profile.h"
#include "zel/automation.h"

namespace zel {

struct ProfileFormHost {
  // A new window that is not yet loaded. It stays the maker's; release says that it is no longer wanted.
  std::function<FrmProfile*()> make;
  std::function<void(FrmProfile*)> release;
  std::function<void()> checkThread;  // throws AutomationError kWrongThread on a foreign thread
  // Whether the object is let go where windows can be touched; on another thread its window stays.
  std::function<bool()> onOwnThread;
};

DispatchPtr makeProfileFormObject(ProfileFormHost host);

}  // namespace zel
