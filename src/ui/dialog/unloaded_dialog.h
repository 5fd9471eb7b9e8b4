// A dialog that is unloaded once, in whichever way it goes: closed, hidden, deleted, or before it ever came
// up. What is unloaded is not shown any more.
#pragma once

#include <QDialog>

namespace zel {

class UnloadedDialog : public QDialog {
 public:
  explicit UnloadedDialog(QWidget* parent = nullptr) : QDialog(parent) {}

  bool isUnloaded() const { return unloaded_; }
  int exec() override;
  void done(int result) override;
  void setVisible(bool visible) override;

 protected:
  // To be called by the destructor of the class that has Form_Unload.
  void unload();
  virtual void Form_Unload() = 0;
  // One that never came up has no place on the screen to be kept.
  bool hasBeenShown() const { return shown_; }

 private:
  bool shown_ = false;
  bool unloaded_ = false;
};

}  // namespace zel
