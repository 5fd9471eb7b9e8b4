// The program's icon, drawn: two stations over a ridge.
#pragma once

#include <QIcon>

namespace zel::host {

QIcon programIcon();  // needs a graphical application

}  // namespace zel::host
