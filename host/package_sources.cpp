// Writes what the package's files are made from out of the program's own code: the command line as
// commands.json, and the icon in every size of the theme as icon-<side>.png.
//
//   package-sources FOLDER
#include <QGuiApplication>
#include <QIcon>
#include <QPixmap>
#include <QString>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include "command_line/command_line.h"
#include "desktop/program_icon.h"

namespace {

void writeCommands(const std::filesystem::path& file) {
  std::ofstream stream(file, std::ios::binary);
  stream << zel::host::describedCommandLine();
  stream.close();
  if (!stream) throw std::runtime_error(file.string() + " cannot be written");
}

void writeIcons(const std::filesystem::path& folder) {
  const QIcon icon = zel::host::programIcon();
  for (const QSize& size : icon.availableSizes()) {
    const std::string file = (folder / ("icon-" + std::to_string(size.width()) + ".png")).string();
    if (!icon.pixmap(size).save(QString::fromStdString(file)))
      throw std::runtime_error(file + " cannot be written");
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: package-sources FOLDER\n";
    return 2;
  }
  const std::filesystem::path folder = argv[1];
  const QGuiApplication application(argc, argv);
  try {
    std::filesystem::create_directories(folder);
    writeCommands(folder / "commands.json");
    writeIcons(folder);
  } catch (const std::exception& error) {
    std::cerr << "package-sources: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
