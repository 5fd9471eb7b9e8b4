// The graphical application that the texts of a picture need, for a process that has none.
#pragma once

namespace zel {

// Sees to it that there is one: the process's own, or a QApplication that is made and kept. False when the
// process has an application without graphics, beside which there can be no other.
bool ensurePictureApplication();

// From now on the application serves windows, too. False when it was made without a screen because there was
// none; a platform without a screen that somebody has chosen does serve.
bool allowWindows();

// Whether the process's application was made here, without a screen. Nobody could answer a box in it.
bool isScreenlessPictureApplication();

}  // namespace zel
