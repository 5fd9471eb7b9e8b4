// The help that F1 opens.
#pragma once

#include <string>

namespace zel {

class Component;

// The host's HelpFile when it names one, else the component's own guide.
std::string helpFile(Component& component);
// Shows it in the program that the desktop has for it. Throws RuntimeError 53 when there is no such file and
// 445 when the desktop has no program for it.
void openHelp(Component& component);

}  // namespace zel
