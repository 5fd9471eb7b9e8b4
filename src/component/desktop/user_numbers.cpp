#include "component/desktop/user_numbers.h"

#include <QLocale>

namespace zel {

NumberStyle userNumberStyle() {
  const QLocale locale;
  return {locale.decimalPoint().toStdString(), locale.groupSeparator().toStdString()};
}

}  // namespace zel
