// One setting as a row: label, editor, a button for its default, and under them what it takes, or what is
// wrong with what is in it.
//
// What was stored stays as it was written until the editor shows something else. A setting that is given for
// this run is shown, said to be so, and cannot be edited.
#pragma once

#include <QString>
#include <memory>
#include <optional>
#include <string>

#include "preferences/preference_fields.h"
#include "preferences/setting_editor.h"
#include "zel/settings.h"

class QBoxLayout;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;

namespace zel::host {

struct StoredText {
  std::optional<std::string> text;
  bool forThisRun = false;
};

class FieldRow : public SettingEditor {
 public:
  FieldRow(const PreferenceField& field, SettingDescription known);

  // Throws SettingsError where the choices cannot be had; the editor then has none.
  void addTo(QGridLayout& grid, QWidget* group);
  void load(const StoredText& stored);

  std::string text() const;               // as it would be stored
  void setText(const std::string& text);  // as a person's edit
  const PreferenceField& field() const { return field_; }
  QWidget* editor() const { return editor_; }

  std::string name() const override;
  std::string words() const override;
  bool changed() const override;
  std::string problem() const override;
  void store() override;
  void reveal() override;

 protected:
  // The editor, put into the row with whatever stands beside it.
  virtual QWidget* makeEditor(QBoxLayout& row, QWidget* group) = 0;
  virtual void display(const std::string& stored) = 0;
  virtual std::string displayed() const = 0;
  // Of what is displayed; nothing where it has none.
  virtual std::optional<std::string> storedForm(const std::string& shown) const = 0;
  virtual std::string problemOf(const std::string& shown) const = 0;
  // What the editor takes, and what is to be said of what is in it.
  virtual QString hint() const = 0;
  virtual std::string defaultText() const { return known_.defaultText; }
  virtual void enableEditor(bool enabled);
  virtual void wasStored(const std::string&) {}
  // Whether a value for this run may be edited all the same.
  virtual bool editsRunValue(const StoredText&) const { return false; }

  const SettingDescription& known() const { return known_; }
  bool isStored() const { return stored_.text.has_value(); }
  bool isForThisRun() const { return stored_.forThisRun; }
  QString objectName(const char* part) const;
  void edited();

 private:
  void refresh();

  const PreferenceField& field_;
  SettingDescription known_;
  StoredText stored_;
  std::string before_;       // stored form when it was read
  std::string beforeShown_;  // what the editor made of it
  QWidget* editor_ = nullptr;
  QLabel* hint_ = nullptr;
  QPushButton* default_ = nullptr;
};

// A row for the field's kind.
std::unique_ptr<FieldRow> makeFieldRow(const PreferenceField& field, const SettingDescription& known);

}  // namespace zel::host
