#include "component/desktop/help_file.h"

#include <QDesktopServices>
#include <QUrl>
#include <filesystem>

#include "component/component.h"
#include "component/data_folder.h"
#include "foundation/runtime_error.h"

namespace zel {

std::string helpFile(Component& component) {
  const std::string own = component.host().optionalClientText("HelpFile");
  return own.empty() ? (dataFolder() / "guide" / "index.html").string() : own;
}

void openHelp(Component& component) {
  const std::string file = helpFile(component);
  const QUrl address = QUrl::fromUserInput(QString::fromStdString(file));
  if (address.isLocalFile()) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(address.toLocalFile().toStdString(), error))
      throw RuntimeError(53, "File not found: " + file);
  }
  if (!QDesktopServices::openUrl(address))
    throw RuntimeError(RuntimeError::actionNotSupported().number(),
                       "The desktop has no program to open the guide; it is " + file);
}

}  // namespace zel
