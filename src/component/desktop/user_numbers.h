// How the user's locale writes numbers.
#pragma once

#include "foundation/number_text.h"

namespace zel {

// Of the toolkit's default locale, which is the user's unless the process has set another. No application
// object is needed.
NumberStyle userNumberStyle();

}  // namespace zel
